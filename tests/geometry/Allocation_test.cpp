// The symmetry relation test runs for every atom pair of a crystal: it must
// not touch the heap. This file replaces the global allocation functions of
// the test program with counting ones.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <new>

#include "SymmetryTestGroups.h"
#include "molcryst/geometry/Cell.h"

namespace {
std::uint64_t allocations = 0;
}

[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new[](std::size_t size) {
    ++allocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete[](void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

using namespace molcryst;

TEST(Cell, IsSymmetryRelatedAllocatesNothing) {
    const Cell cell(10, 11, 12, Angle::from_degrees(90), Angle::from_degrees(90), Angle::from_degrees(90),
                    molcryst_test::pm_3m());
    const std::uint64_t before = allocations;
    int related = 0;
    for (const CrystalSymmetryOperator& op : cell.spacegroup().operators()) {
        related += cell.is_symmetry_related(Point(0.1, 0.2, 0.3), op * Point(0.1, 0.2, 0.3)) ? 1 : 0;
        related += cell.is_symmetry_related(Point(0.1, 0.2, 0.3), Point(0.5, 0.5, 0.5)) ? 1 : 0;
    }
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(related, 48);
    // The relation itself is a new object, and counted.
    cell.symmetry_relation(Point(0.1, 0.2, 0.3), Point(0.1, 0.2, 1.3));
    EXPECT_GT(allocations, before);
}

#include "molcryst/support/IndexedTable.h"

#include <gtest/gtest.h>

#include <string>

#include "molcryst/support/ResizableArray2D.h"
#include "molcryst/support/THandle.h"

using namespace molcryst;

namespace {
template <class E, class F>
std::string error_text(F f) {
    try {
        f();
    } catch (const E& e) {
        return e.what();
    }
    return "no exception";
}
}  // namespace

TEST(IndexedTable, AddReturnsIndicesAndIgnoresDuplicates) {
    IndexedTable<std::string> table;
    EXPECT_EQ(table.add("a"), 0u);
    EXPECT_EQ(table.add("b"), 1u);
    EXPECT_EQ(table.add("a"), 0u);
    EXPECT_EQ(table.size(), 2u);
    EXPECT_EQ(table.at(1), "b");
    EXPECT_EQ(table.first_index(), 0);
    EXPECT_EQ(error_text<std::out_of_range>([&] { table.at(2); }), "IndexedTable::at Illegal index: 2");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { table.index("z"); }), "IndexedTable::index(Value): Unknown value.");
}

TEST(IndexedTable, IndicesRepairThemselvesAfterRemoval) {
    IndexedTable<THandle<int> > table;
    std::vector<THandle<int> > values;
    for (int i = 0; i < 5; ++i) {
        values.push_back(THandle<int>(new int(i)));
        table.add(values.back());
    }
    table.remove_value(values[0]);
    EXPECT_EQ(table.index(values[4]), 3u);
    EXPECT_EQ(table.index(values[1]), 0u);
    EXPECT_THROW(table.at(4), std::out_of_range);
    EXPECT_THROW(table.index(values[0]), std::invalid_argument);

    table.remove(table.begin() + 1);  // values[2]
    EXPECT_EQ(table.index(values[3]), 1u);
    EXPECT_EQ(table.at(2), values[4]);
    // A value added after removals takes the next index.
    THandle<int> late(new int(9));
    EXPECT_EQ(table.add(late), 3u);
    EXPECT_EQ(table.index(values[4]), 2u);

    table.clear();
    EXPECT_EQ(table.size(), 0u);
    EXPECT_THROW(table.index(values[4]), std::invalid_argument);
}

TEST(IndexedTable, RemovingTheFirstOfThree) {
    IndexedTable<int> table;
    table.add(10);
    table.add(20);
    table.add(30);
    table.remove_value(10);
    EXPECT_EQ(table.index(30), 1u);
    EXPECT_EQ(error_text<std::out_of_range>([&] { table.at(2); }), "IndexedTable::at Illegal index: 2");
}

TEST(ResizableArray2D, RowMajorElementsAndCheckedIndices) {
    ResizableArray2D<int> m(2, 3, 0);
    m[1][2] = 5;
    m.element(0, 1) = 7;
    EXPECT_EQ(m.element(1, 2), 5);
    EXPECT_EQ(m[0][1], 7);
    const ResizableArray2D<int>& c = m;
    EXPECT_EQ(c[1][2], 5);
    EXPECT_THROW(m.element(2, 0), std::out_of_range);
    EXPECT_THROW(m[0][3], std::out_of_range);
    m.resize(3, 4, -1);
    EXPECT_EQ(m.element(1, 2), 5);
    EXPECT_EQ(m.element(0, 1), 7);
    EXPECT_EQ(m.element(2, 3), -1);
    EXPECT_EQ(m.rows(), 3u);
    EXPECT_EQ(m.columns(), 4u);
}

#include "molcryst/support/IndexedTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/ErrorText.h"
#include "molcryst/support/ResizableArray2D.h"
#include "molcryst/support/THandle.h"

using namespace molcryst;
using molcryst::testing::error_text;

namespace {
IndexedTable<int> table_of(const std::vector<int>& values) {
    IndexedTable<int> table;
    for (int v : values) table.add(v);
    return table;
}

// The values in order, each with the index the table gives it, e.g. "10:0 30:1";
// an index that disagrees with the position shows as "10:0!1".
template <class V>
std::string layout(const IndexedTable<V>& table) {
    std::string text;
    for (unsigned int i = 0; i < table.size(); ++i) {
        const V& v = table.at(i);
        text += (text.empty() ? "" : " ") + std::to_string(v) + ":" + std::to_string(i);
        if (table.index(v) != i) text += "!" + std::to_string(table.index(v));
    }
    return text;
}

// Same values in the same order, each found at its own index, and the same
// answer from `contains` for every value in `probes`.
template <class V>
void expect_same(const IndexedTable<V>& table, const IndexedTable<V>& expected, const std::vector<V>& probes) {
    ASSERT_EQ(table.size(), expected.size());
    EXPECT_TRUE(std::equal(table.begin(), table.end(), expected.begin()));
    for (unsigned int i = 0; i < table.size(); ++i) EXPECT_EQ(table.index(table.at(i)), i);
    for (const V& v : probes) EXPECT_EQ(table.contains(v), expected.contains(v));
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
    EXPECT_EQ(error_text<std::invalid_argument>([&] { table.index("z"); }),
              "IndexedTable::index(Value): Unknown value.");
}

TEST(IndexedTable, IndicesRepairThemselvesAfterRemoval) {
    IndexedTable<int> table = table_of({10, 20, 30, 40, 50});
    table.remove_value(10);  // every hint now one too high
    EXPECT_EQ(layout(table), "20:0 30:1 40:2 50:3");
    EXPECT_THROW(table.at(4), std::out_of_range);
    EXPECT_THROW(table.index(10), std::invalid_argument);
    table.remove(table.begin() + 1);
    EXPECT_EQ(table.index(50), 2u);  // its hint points past the end
    // A value added after removals takes the next index.
    EXPECT_EQ(table.add(90), 3u);
    EXPECT_EQ(layout(table), "20:0 40:1 50:2 90:3");
    table.clear();
    EXPECT_EQ(table.size(), 0u);
    EXPECT_THROW(table.index(50), std::invalid_argument);
}

TEST(IndexedTable, IndicesStayExactThroughRunsOfRemovalsAndAdditions) {
    // Removals scattered through the table, lookups between them, additions
    // at the end: every index must equal the value's place, whether found
    // just below a stale hint or after a renumbering.
    IndexedTable<int> table;
    for (int v = 0; v < 400; ++v) table.add(v);
    for (int round = 0; round < 120; ++round) {
        table.remove_value(table.values()[(round * 37) % table.size()]);
        if (round % 7 == 0) table.add(1000 + round);
        const int probe = table.values()[(round * 13) % table.size()];
        EXPECT_EQ(table.values()[table.index(probe)], probe);
    }
    for (unsigned int i = 0; i < table.size(); ++i) EXPECT_EQ(i, table.index(table.values()[i]));
}

TEST(IndexedTable, BulkRemovalKeepsTheOrderOfTheRest) {
    IndexedTable<int> table = table_of({10, 20, 30, 40, 50});
    // Foreign values are ignored and not counted.
    EXPECT_EQ(table.remove_values({50, 20, 99}), 2u);
    EXPECT_EQ(layout(table), "10:0 30:1 40:2");
    EXPECT_FALSE(table.contains(20));
    EXPECT_THROW(table.at(3), std::out_of_range);
    EXPECT_EQ(table.add(60), 3u);

    // Hints left stale by a single removal do not mislead the bulk one.
    table.remove_value(10);
    EXPECT_EQ(table.remove_if([](int v) { return v == 40; }), 1u);
    EXPECT_EQ(layout(table), "30:0 60:1");

    // Nothing to remove changes nothing; a predicate that throws neither.
    EXPECT_EQ(table.remove_values({}), 0u);
    EXPECT_EQ(table.remove_if([](int) { return false; }), 0u);
    auto judge_throws = [](int v) -> bool { return v == 60 ? throw std::runtime_error("judged") : true; };
    EXPECT_THROW(table.remove_if(judge_throws), std::runtime_error);
    EXPECT_EQ(layout(table), "30:0 60:1");

    // Everything: the table starts again from index 0.
    EXPECT_EQ(table.remove_if([](int) { return true; }), 2u);
    EXPECT_EQ(table.size(), 0u);
    EXPECT_EQ(table.add(30), 0u);
}

TEST(IndexedTable, BulkRemovalEqualsRemovingOneByOne) {
    // Handles order by address, not by the order of addition.
    std::vector<THandle<int> > values;
    IndexedTable<THandle<int> > bulk, single;
    for (int i = 0; i < 300; ++i) {
        values.push_back(THandle<int>(new int(i)));
        bulk.add(values.back());
        single.add(values.back());
    }
    std::mt19937 random(7);
    std::set<THandle<int> > doomed;
    for (const THandle<int>& v : values)
        if (random() % 3 == 0) doomed.insert(v);
    doomed.insert(values.front());
    doomed.insert(values.back());
    for (const THandle<int>& v : values)
        if (doomed.count(v) != 0) single.remove_value(v);
    EXPECT_EQ(bulk.remove_values(doomed), static_cast<unsigned int>(doomed.size()));
    expect_same(bulk, single, values);
}

TEST(IndexedTable, ReorderGivesWhatClearingAndAddingGives) {
    const std::vector<int> probes = {10, 20, 30, 40, 50, 99};
    const std::vector<std::vector<int> > orders = {
        {40, 10, 30, 20},      // a permutation: the map keeps its entries
        {10, 10, 30, 40},      // a duplicate in a list of the right length
        {10, 20, 30, 99},      // a foreign value in place of one
        {30, 10},              // a shorter list drops the others
        {10, 20, 30, 40, 50},  // a longer one adds
        {},
    };
    for (const std::vector<int>& order : orders) {
        IndexedTable<int> table = table_of({10, 20, 30, 40});
        table.reorder(order);
        expect_same(table, table_of(order), probes);
    }
    // A permutation after removals, with the hints stale or renumbered.
    IndexedTable<int> table = table_of({10, 20, 30, 40, 50});
    table.remove_value(20);
    table.reorder({50, 40, 10, 30});
    EXPECT_EQ(layout(table), "50:0 40:1 10:2 30:3");
    table.remove_values({40});
    table.reorder({30, 10, 50});
    expect_same(table, table_of({30, 10, 50}), probes);
    // A removed value in a list of the right length is a foreign one.
    table.reorder({30, 10, 40});
    expect_same(table, table_of({30, 10, 40}), probes);
    EXPECT_EQ(table.add(20), 3u);
}

TEST(ResizableArray2D, RowMajorElementsAndCheckedIndices) {
    // The elements row by row, through the const subscript.
    auto rows = [](const ResizableArray2D<int>& a) {
        std::string text;
        for (unsigned int r = 0; r < a.rows(); ++r)
            for (unsigned int c = 0; c < a.columns(); ++c)
                text += std::to_string(a[r][c]) + (c + 1 < a.columns() ? " " : r + 1 < a.rows() ? " | " : "");
        return text;
    };
    ResizableArray2D<int> m(2, 3, 0);
    m[1][2] = 5;
    m.element(0, 1) = 7;
    EXPECT_EQ(rows(m), "0 7 0 | 0 0 5");
    EXPECT_EQ(m.element(1, 2), 5);
    EXPECT_THROW(m.element(2, 0), std::out_of_range);
    EXPECT_THROW(m[0][3], std::out_of_range);
    m.resize(3, 4, -1);
    EXPECT_EQ(rows(m), "0 7 0 -1 | 0 0 5 -1 | -1 -1 -1 -1");
}

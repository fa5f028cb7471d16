#include "molcryst/support/PolymorphicIterator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <set>
#include <string>

#include "common/ErrorText.h"
#include "molcryst/support/TransformingIterator.h"

using namespace molcryst;
using molcryst::testing::error_text;

namespace {
struct Twice {
    int operator()(int x) const { return 2 * x; }
};
}  // namespace

TEST(PolymorphicConstIterator, CopiesCloneThePosition) {
    std::deque<int> values = {1, 2, 3, 4};
    PolymorphicConstIterator<int> a = make_polymorphic_const_iterator<int>(values.cbegin());
    PolymorphicConstIterator<int> end = make_polymorphic_const_iterator<int>(values.cend());
    PolymorphicConstIterator<int> b = a;
    ++b;
    EXPECT_EQ(*a, 1);
    EXPECT_EQ(*b, 2);
    PolymorphicConstIterator<int> c = b + 2;
    EXPECT_EQ(*c, 4);
    EXPECT_EQ(*b, 2);
    c -= 3;
    EXPECT_EQ(*c, 1);
    EXPECT_TRUE(a == c);
    EXPECT_TRUE(a < b);
    EXPECT_TRUE(b > a);
    EXPECT_FALSE(a < c);
    EXPECT_EQ(std::count_if(a, end, [](int x) { return x % 2 == 0; }), 2);
    b = end;
    --b;
    EXPECT_EQ(*b, 4);
}

TEST(PolymorphicConstIterator, SetIteratorsStepAndCompareWithinTheirSequence) {
    std::set<int> values = {5, 1, 3};
    auto at = [&](std::set<int>::const_iterator i) { return make_polymorphic_const_iterator<int>(i, values.cend()); };
    PolymorphicConstIterator<int> first = at(values.cbegin());
    PolymorphicConstIterator<int> last = at(std::prev(values.cend()));
    EXPECT_EQ(*(first + 2), 5);
    EXPECT_EQ(*(last - 2), 1);
    EXPECT_TRUE(first < last);
    EXPECT_TRUE(last > first);
    EXPECT_FALSE(last < first);
    EXPECT_TRUE(at(values.cend()) > first);
}

TEST(PolymorphicConstIterator, DifferentContainersMismatchAndNullIsAnError) {
    std::deque<int> d = {1};
    std::set<int> s = {1};
    PolymorphicConstIterator<int> a = make_polymorphic_const_iterator<int>(d.cbegin());
    PolymorphicConstIterator<int> b = make_polymorphic_const_iterator<int>(s.cbegin(), s.cend());
    EXPECT_EQ(error_text<std::runtime_error>([&] { (void)(a == b); }),
              "PolymorphicConstIteratorImpl::equal types mismatch");
    EXPECT_EQ(error_text<std::runtime_error>([&] { (void)(a < b); }),
              "PolymorphicConstIteratorImpl::distance types mismatch");
    // A null iterator refuses everything, copying included.
    PolymorphicConstIterator<int> null;
    EXPECT_THROW(*null, std::logic_error);
    EXPECT_THROW(++null, std::logic_error);
    EXPECT_THROW(PolymorphicConstIterator<int> copy(null), std::logic_error);
}

TEST(PolymorphicIterator, WritesThroughAndConvertsToConst) {
    std::deque<std::string> words = {"a", "b", "c"};
    PolymorphicIterator<std::string> i = make_polymorphic_iterator<std::string>(words.begin());
    PolymorphicIterator<std::string> end = make_polymorphic_iterator<std::string>(words.end());
    *i = "x";
    i->append("y");
    EXPECT_EQ(words[0], "xy");
    PolymorphicIterator<std::string> j = i;
    j += 2;
    EXPECT_EQ(*j, "c");
    EXPECT_EQ(*i, "xy");
    PolymorphicConstIterator<std::string> c = j;
    ++j;
    EXPECT_EQ(*c, "c");  // the const copy keeps its own position
    EXPECT_TRUE(j == end);

    std::deque<int> d = {1};
    PolymorphicIterator<int> from_deque = make_polymorphic_iterator<int>(d.begin());
    PolymorphicIterator<int> other_deque = make_polymorphic_iterator<int>(d.end());
    EXPECT_TRUE(from_deque < other_deque);
    std::deque<int>::iterator raw = d.begin();
    PolymorphicIterator<int> again = make_polymorphic_iterator<int>(raw);
    EXPECT_TRUE(again == from_deque);
    std::vector<int> v = {1};
    PolymorphicIterator<int> from_vector = make_polymorphic_iterator<int>(v.begin());
    EXPECT_EQ(error_text<std::runtime_error>([&] { (void)(from_vector == from_deque); }),
              "PolymorphicIteratorImpl::equal types mismatch");
    EXPECT_EQ(error_text<std::runtime_error>([&] { (void)(from_vector < from_deque); }),
              "PolymorphicIteratorImpl::distance types mismatch");
}

TEST(TransformingIterator, YieldsTheTransformedValuesThroughAPolymorphicIterator) {
    std::set<int> values = {1, 2, 3};
    typedef TransformingIterator<std::set<int>::const_iterator, Twice, int> T;
    std::vector<int> out(T(values.cbegin()), T(values.cend()));
    EXPECT_EQ(out, (std::vector<int>{2, 4, 6}));
    PolymorphicConstIterator<int> p = make_polymorphic_const_iterator<int>(T(values.cbegin()), T(values.cend()));
    ++p;
    EXPECT_EQ(*p, 4);
    --p;
    EXPECT_EQ(*p, 2);
    std::deque<int> d = {5, 6};
    typedef TransformingIterator<std::deque<int>::const_iterator, Twice, int> R;
    R r(d.cbegin());
    EXPECT_EQ(r[1], 12);
    EXPECT_EQ(R(d.cend()) - r, 2);
}

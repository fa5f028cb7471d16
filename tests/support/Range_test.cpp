// Range and DoubleComparator: closed, open and absent ends under a tolerance.
#include "molcryst/support/Range.h"

#include <gtest/gtest.h>

using namespace molcryst;

TEST(Range, EndsUnderTheComparatorsTolerance) {
    const DoubleComparator less(0.01);
    EXPECT_TRUE(less(1.0, 1.02));
    EXPECT_FALSE(less(1.0, 1.005));  // nearer than the tolerance: equal
    EXPECT_FALSE(less(1.02, 1.0));

    typedef Range<double, DoubleComparator> R;
    const R closed(1.0, 1, 2.0, 1, less), open(1.0, 2, 2.0, 2, less), above(1.0, 2, 0.0, 0, less), all;
    // value: closed, open, above 1 only, no ends
    const double values[] = {0.995, 1.0, 1.5, 2.0, 2.005, 2.5};
    const bool expected[][4] = {{true, false, false, true}, {true, false, false, true}, {true, true, true, true},
                                {true, false, true, true},  {true, false, true, true},  {false, false, true, true}};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(closed.contains(values[i]), expected[i][0]) << values[i];
        EXPECT_EQ(open.contains(values[i]), expected[i][1]) << values[i];
        EXPECT_EQ(above.contains(values[i]), expected[i][2]) << values[i];
        EXPECT_EQ(all.contains(values[i]), expected[i][3]) << values[i];
    }
    // (a, a) within the tolerance is null: it holds nothing and overlaps nothing.
    const R null(1.0, 2, 1.005, 2, less);
    EXPECT_TRUE(null.is_null());
    EXPECT_FALSE(R(1.0, 1, 1.0, 1, less).is_null());
    EXPECT_FALSE(null.contains(1.0));
    EXPECT_FALSE(null.overlaps(all));
    EXPECT_TRUE(all.overlaps(closed));
    EXPECT_TRUE(closed.overlaps(R(2.0, 1, 3.0, 1, less)));   // touching closed ends
    EXPECT_FALSE(open.overlaps(R(2.0, 2, 3.0, 2, less)));    // touching open ends
    EXPECT_TRUE(open.overlaps(R(1.0, 2, 2.0, 2, less)));     // equal minima
    EXPECT_TRUE(R(0.0, 0, 5.0, 2, less).overlaps(above));
    EXPECT_FALSE(R(0.0, 0, 0.5, 1, less).overlaps(above));
}

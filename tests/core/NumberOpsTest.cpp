#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <stdexcept>

#include "core/NumberOps.h"
#include "core/myOps.h"

TEST(RoundDownInt, IsTheCeilingMinusOneOfAPositiveValue) {
    EXPECT_EQ(RoundDownInt(3.2), 3);
    EXPECT_EQ(RoundDownInt(3.0), 2);
    EXPECT_EQ(RoundDownInt(0.7), 0);
    EXPECT_EQ(RoundDownInt(3.5), 3) << "the cut-off half rounds to even";
    EXPECT_EQ(RoundDownInt(-0.2), -1);
    EXPECT_EQ(RoundDownInt(NAN), 0) << "not a number";
    EXPECT_THROW(RoundDownInt(40000.0), std::overflow_error);
}

TEST(RoundToFactor, StepsHalfAStepUpOrDownAndRoundsTheRestToEven) {
    EXPECT_DOUBLE_EQ(RoundToFactor(3.0, 1, true), 3.0);
    EXPECT_DOUBLE_EQ(RoundToFactor(2.6, 0.5, true), 3.0);
    EXPECT_DOUBLE_EQ(RoundToFactor(2.6, 0.5, false), 2.5);
    EXPECT_DOUBLE_EQ(RoundToFactor(250, 100, false), 200);
    EXPECT_THROW(RoundToFactor(1e9, 1, true), std::overflow_error);
}

TEST(RandomBetween, StaysInItsRangeAndRepeatsWithTheSameSeed) {
    SeedRandom(42);
    std::vector<double> first;
    for (int i = 0; i < 200; ++i) {
        const double r = RandomBetween(-2, 5, false);
        EXPECT_GE(r, -2);
        EXPECT_LT(r, 5);
        first.push_back(r);
    }
    SeedRandom(42);
    for (double r : first) EXPECT_EQ(RandomBetween(-2, 5, false), r);

    std::set<double> whole;
    for (int i = 0; i < 200; ++i) whole.insert(RandomBetween(0, 3, true));
    EXPECT_EQ(whole, (std::set<double>{0, 1, 2, 3}));
    EXPECT_THROW(RandomBetween(40000, 40001, true), std::overflow_error);
}

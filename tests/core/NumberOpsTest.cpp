#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <stdexcept>
#include <tuple>

#include "core/NumberOps.h"
#include "core/Shading.h"
#include "core/myOps.h"

TEST(Rounding, RoundDownIsTheCeilingMinusOneAndFactorsStepHalfAStepWithTheRestToEven) {
    // The cut-off half of 3.5 rounds to even; not a number gives 0.
    for (const auto& [x, n] : {std::pair{3.2, 3}, {3.0, 2}, {0.7, 0}, {3.5, 3}, {-0.2, -1}, {NAN, 0}})
        EXPECT_EQ(RoundDownInt(x), n) << x;
    EXPECT_THROW(RoundDownInt(40000.0), std::overflow_error);
    const std::tuple<double, double, bool, double> factors[] = {
        {3.0, 1, true, 3.0}, {2.6, 0.5, true, 3.0}, {2.6, 0.5, false, 2.5}, {250, 100, false, 200}};
    for (const auto& [x, factor, up, want] : factors) EXPECT_DOUBLE_EQ(RoundToFactor(x, factor, up), want) << x;
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

// One rule for the 3DS import, the Stadium Importer and the lighting wizard: greys from 240 at
// the origin to 30 at the farthest vertex, rounded to even; unshaded is one flat colour.
TEST(ShadeByDistance, GreysFrom240AtTheOriginTo30AtTheFarthestOrFlat) {
    const auto shades = [](std::vector<OIFVertex> v, bool shade) {
        ShadeByDistance(v, shade);
        std::vector<std::uint32_t> out;
        for (const OIFVertex& x : v) out.push_back(x.Shadow);
        return out;
    };
    const auto grey = [](std::uint32_t g) { return 0xFF000000u + g * 0x010101u; };
    const std::vector<OIFVertex> v = {
        {0, 0, 0, 0, 0, 0}, {3, 4, 0, 0, 0, 0}, {0, 0, -10, 0, 0, 0}, {0, 0, 2.5f, 0, 0, 0}};
    EXPECT_EQ(shades(v, true), (std::vector<std::uint32_t>{grey(240), grey(135), grey(30), grey(188)}));
    EXPECT_EQ(shades({OIFVertex{}}, true), std::vector<std::uint32_t>{grey(240)}) << "a lone vertex at the origin";
    EXPECT_EQ(shades(v, false), std::vector<std::uint32_t>(4, 0x006E6E6Eu));
}

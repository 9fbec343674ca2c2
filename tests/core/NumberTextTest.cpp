#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "core/NumberText.h"

TEST(SingleText, MatchesTheWrittenExamples) {
    EXPECT_EQ(SingleText(30000), "30000");
    EXPECT_EQ(SingleText(-1.57f), "-1.57");
    EXPECT_EQ(SingleText(0.74f), "0.74");
    EXPECT_EQ(SingleText(1234.5678f), "1234.568");
    EXPECT_EQ(SingleText(10000000), "1E+07");
    EXPECT_EQ(SingleText(9999999), "9999999");
    EXPECT_EQ(SingleText(0), "0");
    EXPECT_EQ(SingleText(-0.0f), "0");
    EXPECT_EQ(SingleText(-15000), "-15000");
    EXPECT_EQ(SingleText(0.5f), "0.5");
    EXPECT_EQ(SingleText(100), "100");
    EXPECT_EQ(SingleText(123456789.0f), "1.234568E+08");
    EXPECT_EQ(SingleText(0.1f), "0.1");  // 7 digits hide the float's binary tail
}

TEST(DoubleText, MatchesTheWrittenExamples) {
    EXPECT_EQ(DoubleText(90 * 3.14159265358979 / 180), "1.5707963267949");
    EXPECT_EQ(DoubleText(128 / 255.0), "0.501960784313725");
    EXPECT_EQ(DoubleText(0), "0");
    EXPECT_EQ(DoubleText(1), "1");
    EXPECT_EQ(DoubleText(1e15), "1E+15");
    EXPECT_EQ(DoubleText(-2.5), "-2.5");
}

TEST(IndexText, PrintsSixteenBitIndicesSigned) {
    EXPECT_EQ(IndexText(static_cast<std::int16_t>(65535)), "-1");
    EXPECT_EQ(IndexText(32767), "32767");
    EXPECT_EQ(IndexText(0), "0");
}

TEST(SingleText, ReadsBackToTheValueRoundedToSevenDigits) {
    std::mt19937 rng(7);
    std::uniform_int_distribution<std::uint32_t> bits;
    int checked = 0;
    while (checked < 200000) {
        const std::uint32_t b = bits(rng);
        float f;
        std::memcpy(&f, &b, 4);
        if (!std::isfinite(f)) continue;
        ++checked;
        const std::string text = SingleText(f);
        char rounded[64];
        std::snprintf(rounded, sizeof rounded, "%.6e", static_cast<double>(f));
        ASSERT_EQ(std::strtod(text.c_str(), nullptr), std::strtod(rounded, nullptr)) << text << " for " << rounded;
        // The text has no plus sign, no trailing zeros and no trailing point in its mantissa.
        const std::string mantissa = text.substr(0, text.find('E'));
        ASSERT_EQ(text.find('+') == std::string::npos || text.find("E+") != std::string::npos, true) << text;
        if (mantissa.find('.') != std::string::npos) {
            ASSERT_NE(mantissa.back(), '0') << text;
            ASSERT_NE(mantissa.back(), '.') << text;
        }
        ASSERT_NE(text.front(), '.') << text;
    }
}

TEST(ShortestSingleText, IsTheShortestTextThatReadsBackExactly) {
    EXPECT_EQ(ShortestSingleText(0.1f), "0.1");
    EXPECT_EQ(ShortestSingleText(1.0f / 3), "0.33333334");
    EXPECT_EQ(ShortestSingleText(16777216.0f), "16777216");
    EXPECT_EQ(ShortestSingleText(100.0f), "100");
    EXPECT_EQ(ShortestSingleText(1e7f), "1e+07");
    EXPECT_EQ(ShortestSingleText(-2.5f), "-2.5");
    std::mt19937 rng(11);
    std::uniform_int_distribution<std::uint32_t> bits;
    for (int i = 0; i < 50000; ++i) {
        const std::uint32_t b = bits(rng);
        float f;
        std::memcpy(&f, &b, 4);
        if (!std::isfinite(f)) continue;
        const std::string text = ShortestSingleText(f);
        ASSERT_EQ(std::strtof(text.c_str(), nullptr), f == 0 ? 0.f : f) << text;
    }
}

TEST(LeadingNumber, TakesTheNumberAtTheStartAndIgnoresTheRest) {
    EXPECT_EQ(LeadingNumber("150.00"), 150);
    EXPECT_EQ(LeadingNumber("150abc"), 150);
    EXPECT_EQ(LeadingNumber("  -2.5 m"), -2.5);
    EXPECT_EQ(LeadingNumber("+7"), 7);
    EXPECT_EQ(LeadingNumber(".5"), 0.5);
    EXPECT_EQ(LeadingNumber("1.2.3"), 1.2);
    EXPECT_EQ(LeadingNumber("2e3"), 2000);
    EXPECT_EQ(LeadingNumber("2e"), 2);
    EXPECT_EQ(LeadingNumber("2E-1x"), 0.2);
    EXPECT_EQ(LeadingNumber(""), 0);
    EXPECT_EQ(LeadingNumber("abc"), 0);
    EXPECT_EQ(LeadingNumber("-"), 0);
    EXPECT_EQ(LeadingNumber("."), 0);
    EXPECT_EQ(LeadingNumber("1 "), 1);
}

TEST(NumberText, TextAndNumberMeetInTheMiddle) {
    // What a text box shows after it is written and read again.
    for (float f : {260.0f, 150.0f, -1.57f, 0.74f, 1234.568f, 3e-5f})
        EXPECT_EQ(static_cast<float>(LeadingNumber(SingleText(f))), f) << SingleText(f);
}

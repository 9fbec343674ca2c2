#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "core/NumberText.h"

TEST(NumberTexts, MatchTheWrittenExamples) {
    // Seven digits hide a float's binary tail (0.1); an exponent from 1E+07 on.
    const std::pair<float, const char*> singles[] = {
        {30000, "30000"},   {-1.57f, "-1.57"},    {0.74f, "0.74"}, {1234.5678f, "1234.568"},
        {1e7f, "1E+07"},    {9999999, "9999999"}, {0, "0"},        {-0.0f, "0"},
        {-15000, "-15000"}, {0.5f, "0.5"},        {100, "100"},    {123456789.0f, "1.234568E+08"},
        {0.1f, "0.1"}};
    for (const auto& [f, text] : singles) EXPECT_EQ(SingleText(f), text);
    const std::pair<double, const char*> doubles[] = {{90 * 3.14159265358979 / 180, "1.5707963267949"},
                                                      {128 / 255.0, "0.501960784313725"},
                                                      {0, "0"},
                                                      {1, "1"},
                                                      {1e15, "1E+15"},
                                                      {-2.5, "-2.5"}};
    for (const auto& [d, text] : doubles) EXPECT_EQ(DoubleText(d), text);
    for (const auto& [i, text] :
         {std::pair<std::int16_t, const char*>{static_cast<std::int16_t>(65535), "-1"}, {32767, "32767"}, {0, "0"}})
        EXPECT_EQ(IndexText(i), text);
    const std::pair<float, const char*> shortest[] = {
        {0.1f, "0.1"},   {1.0f / 3, "0.33333334"}, {16777216.0f, "16777216"},
        {100.0f, "100"}, {1e7f, "1e+07"},          {-2.5f, "-2.5"}};
    for (const auto& [f, text] : shortest) EXPECT_EQ(ShortestSingleText(f), text);
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
    const std::pair<const char*, double> cases[] = {{"150.00", 150}, {"150abc", 150}, {"  -2.5 m", -2.5}, {"+7", 7},
                                                    {".5", 0.5},     {"1.2.3", 1.2},  {"2e3", 2000},      {"2e", 2},
                                                    {"2E-1x", 0.2},  {"", 0},         {"abc", 0},         {"-", 0},
                                                    {".", 0},        {"1 ", 1}};
    for (const auto& [text, number] : cases) EXPECT_EQ(LeadingNumber(text), number) << '"' << text << '"';
}

#include <gtest/gtest.h>

#include "core/Cp1252.h"

TEST(Cp1252, DecodesEightBitCharactersToUtf8) {
    EXPECT_EQ(Cp1252ToUtf8("Caf\xE9"), "Caf\xC3\xA9");
    EXPECT_EQ(Cp1252ToUtf8("\x80"), "\xE2\x82\xAC");  // euro sign
    EXPECT_EQ(Cp1252ToUtf8("~\x7F"), "~\x7F");        // the last character of seven bits is one byte
    EXPECT_EQ(Cp1252ToUtf8("\x93q\x94"), "\xE2\x80\x9Cq\xE2\x80\x9D");
    EXPECT_EQ(Cp1252ToUtf8(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(Cp1252, EveryByteSurvivesTheWayThereAndBack) {
    std::string all;
    for (int b = 0; b < 256; ++b) all += static_cast<char>(b);
    EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(all)), all);
}

TEST(Cp1252, CharactersOutsideTheCodePageBecomeQuestionMarks) {
    EXPECT_EQ(Utf8ToCp1252("\xE4\xB8\xAD"), "?");  // a CJK character
    EXPECT_EQ(Utf8ToCp1252("\xC3\xA9t\xC3\xA9"), "\xE9t\xE9");
    EXPECT_EQ(Utf8ToCp1252("\xC3"), "\xC3");  // cut-off sequence kept as a byte
}

#include <gtest/gtest.h>

#include <stdexcept>

#include "core/FileOps.h"
#include "support/TestFiles.h"

TEST(FileExtension, LooksOnlyAtTheLastPathElement) {
    EXPECT_EQ(FileExtension("stadium.OIF"), "oif");
    EXPECT_EQ(FileExtension("/home/me/v1.2/stadium"), "");
    EXPECT_EQ(FileExtension("C:\\v1.2\\stadium"), "");
    EXPECT_EQ(FileExtension("model.3ds"), "3ds");
    EXPECT_EQ(FileExtension("name."), "");
    EXPECT_EQ(FileExtension("archive.tar.gz"), "gz");
    EXPECT_EQ(FileExtension(""), "");
}

TEST(TextFiles, ReadAllLinesAndAppendFile) {
    ScratchFolder dir;
    const std::string text = "first\r\nsecond\n\nlast";
    WriteFile(dir.file("a.txt"), std::vector<std::uint8_t>(text.begin(), text.end()));
    EXPECT_EQ(ReadAllLines(dir.file("a.txt")), (std::vector<std::string>{"first", "second", "", "last"}));
    EXPECT_TRUE(ReadAllLines(dir.file("missing.txt")).empty());
    WriteFile(dir.file("b.txt"), {'X'});
    AppendFile(dir.file("a.txt"), dir.file("b.txt"));
    EXPECT_EQ(ReadText(dir.file("b.txt")), "X" + text);
    EXPECT_THROW(AppendFile(dir.file("missing.txt"), dir.file("b.txt")), std::runtime_error);
}

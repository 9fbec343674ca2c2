#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>

#include <sys/stat.h>
#include <unistd.h>
#include <filesystem>
#include <stdexcept>

#include "core/binaryOps.h"
#include "support/TestFiles.h"

using namespace binaryOps;

TEST(BinaryNumbers, AreLittleEndianAndSigned) {
    ByteBuffer b(12);
    PutI16(b, 0, -2);
    PutI32(b, 2, -123456789);
    PutF32(b, 6, -1.5f);
    EXPECT_EQ(b[0], 0xFE);
    EXPECT_EQ(b[1], 0xFF);
    EXPECT_EQ(GetI16(b, 0), -2);
    EXPECT_EQ(GetI32(b, 2), -123456789);
    EXPECT_EQ(GetF32(b, 6), -1.5f);
    EXPECT_EQ(b[9], 0xBF);  // sign and exponent of -1.5f in the last byte
    ByteBuffer s{0xFF, 0xFF, 0xFF, 0xFF};
    EXPECT_EQ(GetU32(s, 0), 0xFFFFFFFFu);
    EXPECT_EQ(GetI32(s, 0), -1);
}

TEST(GetText, StopsAtNulAtCountOrAtTheEndAndCountsDown) {
    const ByteBuffer b{'a', 'b', 0, 'c', 'd', 'e'};
    int count = 4;
    EXPECT_EQ(GetText(b, 0, count), "ab");
    EXPECT_EQ(count, 2);
    count = 2;
    EXPECT_EQ(GetText(b, 3, count), "cd");
    EXPECT_EQ(count, 0);
    count = 10;
    EXPECT_EQ(GetText(b, 3, count), "cde");  // end of the buffer
    EXPECT_EQ(count, 7);
    count = 5;
    EXPECT_EQ(GetText(b, 2, count), "");  // NUL at the first position: empty
    count = 5;
    EXPECT_EQ(GetText(b, 6, count), "");  // position past the end
}

TEST(GetText, CountZeroMeansUpToTheLastByteIndex) {
    const ByteBuffer b{'w', 'x', 'y', 'z'};
    int count = 0;
    // The last byte's index is 3, so three characters are read.
    EXPECT_EQ(GetText(b, 0, count), "wxy");
    const ByteBuffer empty;
    count = 0;
    EXPECT_EQ(GetText(empty, 0, count), "");
}

TEST(PutText, WritesTextThenOneNulThenBlanks) {
    ByteBuffer b(8, 0xAA);
    std::string text = "abc";
    PutText(b, 1, text, 6);
    EXPECT_EQ(b, (ByteBuffer{0xAA, 'a', 'b', 'c', 0, ' ', ' ', 0xAA}));
    EXPECT_TRUE(text.empty()) << "the text argument is consumed";
}

TEST(PutText, CutsTextThatIsTooLongAndWritesNoNulWhenItFits) {
    ByteBuffer b(4, 0xAA);
    std::string text = "abcdef";
    PutText(b, 0, text, 4);
    EXPECT_EQ(b, (ByteBuffer{'a', 'b', 'c', 'd'}));
    EXPECT_TRUE(text.empty());
    ByteBuffer exact(3, 0xAA);
    std::string three = "xyz";
    PutText(exact, 0, three, 3);
    EXPECT_EQ(exact, (ByteBuffer{'x', 'y', 'z'}));
    ByteBuffer blank(3, 0xAA);
    std::string none;
    PutText(blank, 0, none, 3);
    EXPECT_EQ(blank, (ByteBuffer{0, ' ', ' '}));
}

TEST(UnsignedConversions, FollowTheirOverflowRules) {
    EXPECT_EQ(UnsignedFromLong(-1), 4294967295.0);
    EXPECT_EQ(UnsignedFromLong(5), 5.0);
    EXPECT_EQ(UnsignedFromLong(INT32_MIN), 2147483648.0);
    EXPECT_EQ(LongFromUnsigned(4294967295.0), -1);
    EXPECT_EQ(LongFromUnsigned(2147483648.0), INT32_MIN);
    EXPECT_EQ(LongFromUnsigned(2147483647.0), INT32_MAX);
    EXPECT_EQ(LongFromUnsigned(0), 0);
    EXPECT_THROW(LongFromUnsigned(4294967296.0), std::overflow_error);
    EXPECT_THROW(LongFromUnsigned(-1), std::overflow_error);
    for (std::int32_t v : {0, 1, -1, 255, -256, INT32_MAX, INT32_MIN})
        EXPECT_EQ(LongFromUnsigned(UnsignedFromLong(v)), v);
}

TEST(WriteBytesFile, CreatesAndReplacesWholeFiles) {
    ScratchFolder dir;
    const std::string path = dir.file("out.oif");
    WriteBytesFile(ByteBuffer{1, 2, 3, 4, 5}, path);
    EXPECT_EQ(ReadFile(path), (std::vector<std::uint8_t>{1, 2, 3, 4, 5}));
    WriteBytesFile(ByteBuffer{9}, path);
    EXPECT_EQ(ReadFile(path), (std::vector<std::uint8_t>{9}));
    WriteBytesFile(ByteBuffer{}, path);
    EXPECT_TRUE(ReadFile(path).empty());
    // No temporary file is left behind.
    int files = 0;
    for ([[maybe_unused]] auto& e : std::filesystem::directory_iterator(dir.path())) ++files;
    EXPECT_EQ(files, 1);
}

TEST(WriteBytesFile, KeepsTheModeOfTheFileItReplaces) {
    ScratchFolder dir;
    const std::string path = dir.file("kept.oif");
    WriteFile(path, {7});
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    WriteBytesFile(ByteBuffer{8}, path);
    struct stat st {};
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
}

TEST(WriteBytesFile, FailureLeavesTheOldFileAndSaysWhy) {
    ScratchFolder dir;
    const std::string missingFolder = dir.file("no/such/folder/x.oif");
    try {
        WriteBytesFile(ByteBuffer{1}, missingFolder);
        FAIL() << "writing into a missing folder must fail";
    } catch (const std::runtime_error& e) { EXPECT_NE(std::string(e.what()).find("x.oif"), std::string::npos); }
    if (::geteuid() == 0) GTEST_SKIP() << "root may write into read-only folders";
    const std::string path = dir.file("locked.oif");
    WriteFile(path, {1, 2, 3});
    ASSERT_EQ(::chmod(dir.path().c_str(), 0500), 0);
    EXPECT_THROW(WriteBytesFile(ByteBuffer{4}, path), std::runtime_error);
    ::chmod(dir.path().c_str(), 0700);
    EXPECT_EQ(ReadFile(path), (std::vector<std::uint8_t>{1, 2, 3}));
}

TEST(WriteBytesFile, AFullDiskLeavesTheOldFileByteForByte) {
    ScratchFolder dir;
    const std::string path = dir.file("stadium.oif");
    const std::vector<std::uint8_t> old(1000, 0x5A);
    WriteFile(path, old);
    // A file size limit fails the write half-way, as a full disk does, and works as root too.
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit small = before;
    small.rlim_cur = 64 * 1024;
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    std::string error;
    try {
        WriteBytesFile(ByteBuffer(1 << 20, 1), path);
    } catch (const std::runtime_error& e) { error = e.what(); }
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, previousHandler);
    EXPECT_NE(error.find("The file was not changed."), std::string::npos) << error;
    EXPECT_EQ(ReadFile(path), old);
    int files = 0;
    for ([[maybe_unused]] auto& e : std::filesystem::directory_iterator(dir.path())) ++files;
    EXPECT_EQ(files, 1) << "the half-written temporary file is gone";
}

TEST(WriteBytesFile, ATargetThatCannotBeReplacedStaysAsItWas) {
    ScratchFolder dir;
    const std::string folderTarget = dir.file("stadium.oif");
    std::filesystem::create_directory(folderTarget);
    WriteFile(folderTarget + "/inside", {5});
    EXPECT_THROW(WriteBytesFile(ByteBuffer{1, 2}, folderTarget), std::runtime_error);
    EXPECT_TRUE(std::filesystem::is_directory(folderTarget));
    EXPECT_EQ(ReadFile(folderTarget + "/inside"), (std::vector<std::uint8_t>{5}));
    int files = 0;
    for ([[maybe_unused]] auto& e : std::filesystem::directory_iterator(dir.path())) ++files;
    EXPECT_EQ(files, 1) << "the temporary file is removed after a failure";
}

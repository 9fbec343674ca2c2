#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>

#include <sys/stat.h>
#include <unistd.h>
#include <filesystem>
#include <stdexcept>
#include <tuple>

#include "core/binaryOps.h"
#include "support/TestFiles.h"

using namespace binaryOps;

// The numbers' byte order and signs are checked through the OIF codec's byte-exact tests.

TEST(GetText, StopsAtNulAtCountOrAtTheEndAndCountsDown) {
    // Bytes, start, count, text, count left (-1: not looked at). NUL at the first position or a
    // start past the end gives no text; a count of 0 reads up to the last byte's index, 3.
    const std::string b = std::string("ab\0cde", 6);
    const std::tuple<std::string, int, int, const char*, int> cases[] = {
        {b, 0, 4, "ab", 2}, {b, 3, 2, "cd", 0},        {b, 3, 10, "cde", 7}, {b, 2, 5, "", -1},
        {b, 6, 5, "", -1},  {"wxyz", 0, 0, "wxy", -1}, {"", 0, 0, "", -1}};
    for (auto [bytes, at, count, text, left] : cases) {
        EXPECT_EQ(GetText(ByteBuffer(bytes.begin(), bytes.end()), at, count), text) << at << " " << left;
        if (left >= 0) { EXPECT_EQ(count, left); }
    }
}

TEST(PutText, WritesTextThenOneNulThenBlanksCutsLongTextAndConsumesIt) {
    // No NUL when the text just fits.
    const std::tuple<std::size_t, int, std::string, int, ByteBuffer> cases[] = {
        {8, 1, "abc", 6, {0xAA, 'a', 'b', 'c', 0, ' ', ' ', 0xAA}},
        {4, 0, "abcdef", 4, {'a', 'b', 'c', 'd'}},
        {3, 0, "xyz", 3, {'x', 'y', 'z'}},
        {3, 0, "", 3, {0, ' ', ' '}}};
    for (auto [size, at, text, n, want] : cases) {
        ByteBuffer b(size, 0xAA);
        PutText(b, at, text, n);
        EXPECT_EQ(b, want);
        EXPECT_TRUE(text.empty()) << "the text argument is consumed";
    }
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

namespace {
int FilesIn(const std::string& dir) {
    int files = 0;
    for ([[maybe_unused]] auto& e : std::filesystem::directory_iterator(dir)) ++files;
    return files;
}
}  // namespace

TEST(WriteBytesFile, ReplacesWholeFilesKeepingTheirModeAndLeavesNoTemporaryFile) {
    ScratchFolder dir;
    const std::string path = dir.file("out.oif");
    for (const ByteBuffer& bytes : {ByteBuffer{1, 2, 3, 4, 5}, ByteBuffer{9}, ByteBuffer{}}) {
        WriteBytesFile(bytes, path);
        EXPECT_EQ(ReadFile(path), bytes);
        ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    }
    struct stat st {};
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    EXPECT_EQ(FilesIn(dir.path()), 1);
}

TEST(WriteBytesFile, FailureLeavesTheOldFileAndSaysWhy) {
    ScratchFolder dir;
    try {
        WriteBytesFile(ByteBuffer{1}, dir.file("no/such/folder/x.oif"));
        FAIL() << "writing into a missing folder must fail";
    } catch (const std::runtime_error& e) { EXPECT_NE(std::string(e.what()).find("x.oif"), std::string::npos); }
    // A folder in the file's place cannot be replaced.
    const std::string folderTarget = dir.file("stadium.oif");
    std::filesystem::create_directory(folderTarget);
    WriteFile(folderTarget + "/inside", {5});
    EXPECT_THROW(WriteBytesFile(ByteBuffer{1, 2}, folderTarget), std::runtime_error);
    EXPECT_EQ(ReadFile(folderTarget + "/inside"), (std::vector<std::uint8_t>{5}));
    EXPECT_EQ(FilesIn(dir.path()), 1) << "the temporary file is removed after a failure";
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
    EXPECT_EQ(FilesIn(dir.path()), 1) << "the half-written temporary file is gone";
}

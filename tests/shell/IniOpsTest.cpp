#include <gtest/gtest.h>

#include <filesystem>

#include "core/ProgramState.h"
#include "shell/IniOps.h"
#include "support/TestFiles.h"

namespace {
class ConfigFile : public ::testing::Test {
protected:
    void SetUp() override { AppFolder = dir.path(); }
    void TearDown() override { AppFolder.clear(); }
    ScratchFolder dir;
};
}  // namespace

TEST_F(ConfigFile, MissingFileSectionOrKeyReadsEmpty) {
    EXPECT_EQ(ReadConfig("Startup", "Maximise"), "");
    EXPECT_FALSE(ReadConfigFlag("Startup", "Maximise"));
    EXPECT_EQ(ReadConfigNumber("Previews", "ZoomAmount"), 0);
    WriteConfig("Startup", "NewProj", "1");
    EXPECT_EQ(ReadConfig("Startup", "Maximise"), "");
    EXPECT_EQ(ReadConfig("Other", "NewProj"), "");
}

TEST_F(ConfigFile, AWrittenValueIsSeenByTheNextRead) {
    WriteConfig("Crowd Wizard", "CrowdSpacing", "150");
    EXPECT_EQ(ReadConfig("Crowd Wizard", "CrowdSpacing"), "150");
    WriteConfig("Crowd Wizard", "CrowdSpacing", "175.5");
    EXPECT_EQ(ReadConfigNumber("Crowd Wizard", "CrowdSpacing"), 175.5);
    WriteConfig("Crowd Wizard", "NoOfRows", "12");
    EXPECT_EQ(ReadConfig("Crowd Wizard", "CrowdSpacing"), "175.5") << "other keys of the section stay";
    // Another writer of the file is seen too: nothing is cached.
    WriteIniValue("Startup", "Maximise", ConfigPath(), "1");
    EXPECT_TRUE(ReadConfigFlag("Startup", "Maximise"));
}

TEST_F(ConfigFile, OnlyTheTextOneIsTrue) {
    for (const char* v : {"0", "", "yes", "true", "-1", "1 ", " 1", "01"}) {
        WriteConfig("Terramason", "Previews", v);
        EXPECT_FALSE(ReadConfigFlag("Terramason", "Previews")) << '"' << v << '"';
    }
    WriteConfig("Terramason", "Previews", "1");
    EXPECT_TRUE(ReadConfigFlag("Terramason", "Previews"));
    // The same by hand, where the file's own trimming would make "1 " true.
    for (const std::string line : {"Previews=1 ", "Previews = 1\t"}) {
        const std::string text = "[Terramason]\r\n" + line + "\r\n";
        WriteFile(ConfigPath(), std::vector<std::uint8_t>(text.begin(), text.end()));
        EXPECT_FALSE(ReadConfigFlag("Terramason", "Previews")) << '"' << line << '"';
    }
}

TEST_F(ConfigFile, BlanksAroundAValueAreKept) {
    WriteConfig("Import", "Note", "  two blanks  ");
    EXPECT_EQ(ReadConfig("Import", "Note"), "  two blanks  ");
    WriteConfig("Import", "Quoted", "\"q\"");
    EXPECT_EQ(ReadConfig("Import", "Quoted"), "\"q\"");
}

TEST_F(ConfigFile, LongValuesAreCutAt254Characters) {
    const std::string longValue(400, 'x');
    WriteConfig("Startup", "Long", longValue);
    EXPECT_EQ(ReadConfig("Startup", "Long"), std::string(254, 'x'));
}

TEST_F(ConfigFile, KeysAndSectionsIgnoreCaseAsTheProfileFilesDo) {
    WriteConfig("Startup", "Maximise", "1");
    EXPECT_EQ(ReadConfig("startup", "MAXIMISE"), "1");
}

TEST_F(ConfigFile, AnUnreadableOrUnwritableFileIsPassedOverQuietly) {
    std::filesystem::create_directory(ConfigPath());  // a folder where the file should be
    EXPECT_EQ(ReadConfig("Startup", "Maximise"), "");
    WriteConfig("Startup", "Maximise", "1");  // must neither throw nor crash
    EXPECT_EQ(ReadConfig("Startup", "Maximise"), "");
    AppFolder = dir.file("missing/folder");
    WriteConfig("Startup", "Maximise", "1");
    EXPECT_EQ(ReadConfig("Startup", "Maximise"), "");
}

TEST_F(ConfigFile, AnUnclosedSectionLineIsDroppedAndDoesNotGrowWithEverySave) {
    const std::string text = "[Startup]\nMaximise=0\n[Previews\nMaximise=1\nNewProj=1\n";
    WriteFile(ConfigPath(), std::vector<std::uint8_t>(text.begin(), text.end()));
    // The keys below the broken line stay in the section above it.
    EXPECT_EQ(ReadConfig("Startup", "Maximise"), "1");
    EXPECT_EQ(ReadConfig("Startup", "NewProj"), "1");
    for (int i = 0; i < 3; ++i) WriteConfig("Terramason", "Starter", std::to_string(i));
    EXPECT_EQ(ReadConfig("Startup", "Maximise"), "1");
    EXPECT_EQ(ReadConfig("Startup", "NewProj"), "1");
    EXPECT_EQ(ReadConfig("Terramason", "Starter"), "2");
    const std::string saved = ReadText(ConfigPath());
    std::size_t start = 0;
    while (start < saved.size()) {
        std::size_t end = saved.find('\n', start);
        if (end == std::string::npos) end = saved.size();
        const std::string line = saved.substr(start, end - start);
        if (!line.empty() && line[0] == '[') {
            EXPECT_EQ(line.back(), ']') << "a section header over several lines: " << line;
        }
        start = end + 1;
    }
}

TEST_F(ConfigFile, FirstRunWritesDefaultsOnceAndNeverOverwrites) {
    AppFolder = dir.file("fresh");  // created on demand
    EXPECT_TRUE(EnsureConfigFile());
    EXPECT_EQ(ReadConfig("Terramason", "Starter"), "0");
    EXPECT_TRUE(ReadConfigFlag("Terramason", "Previews"));
    EXPECT_TRUE(ReadConfigFlag("Terramason", "OIFEditor"));
    EXPECT_EQ(ReadConfigNumber("Import", "CrowdHeight"), 260);
    EXPECT_EQ(ReadConfigNumber("Crowd Wizard", "CrowdHeight"), 260);
    EXPECT_EQ(ReadConfigNumber("Crowd Wizard", "NoOfRows"), 10);
    EXPECT_EQ(ReadConfigNumber("Crowd Wizard", "CrowdSpacing"), 150);
    EXPECT_FALSE(ReadConfigFlag("Startup", "Maximise"));
    WriteConfig("Terramason", "Starter", "1");
    EXPECT_FALSE(EnsureConfigFile());
    EXPECT_EQ(ReadConfig("Terramason", "Starter"), "1");
}

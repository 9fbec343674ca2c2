#include <gtest/gtest.h>

#include <set>

#include "shell/SystemInfoOps.h"

TEST(FindSystemInfoTool, TakesTheFirstInstalledToolInOrder) {
    const std::set<std::string> installed = {"gnome-system-monitor", "kinfocenter"};
    std::vector<std::string> asked;
    const std::string tool = FindSystemInfoTool([&](const std::string& name) {
        asked.push_back(name);
        return installed.count(name) > 0;
    });
    EXPECT_EQ(tool, "kinfocenter");
    EXPECT_EQ(asked.back(), "kinfocenter") << "it stops at the first it finds";
    EXPECT_EQ(FindSystemInfoTool([](const std::string&) { return false; }), "");
}

TEST(OsReleaseName, ReadsPrettyNameWithOrWithoutQuotes) {
    EXPECT_EQ(OsReleaseName("NAME=\"Debian GNU/Linux\"\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nID=debian\n"),
              "Debian GNU/Linux 12 (bookworm)");
    EXPECT_EQ(OsReleaseName("PRETTY_NAME=Arch Linux\r\n"), "Arch Linux");
    EXPECT_EQ(OsReleaseName("PRETTY_NAME='Void'\n"), "Void");
    EXPECT_EQ(OsReleaseName("NAME=Alpine\n#PRETTY_NAME=\"x\"\n"), "");
    EXPECT_EQ(OsReleaseName(""), "");
}

TEST(TotalMemoryText, GivesGigabytesWithOneDecimal) {
    EXPECT_EQ(TotalMemoryText("MemTotal:        8029412 kB\nMemFree:  1 kB\n"), "7.7 GB");
    EXPECT_EQ(TotalMemoryText("MemFree:  1 kB\nMemTotal: 1048576 kB\n"), "1.0 GB");
    EXPECT_EQ(TotalMemoryText("MemTotal: lots\n"), "");
    EXPECT_EQ(TotalMemoryText(""), "");
}

TEST(SystemFacts, StartWithTheOperatingSystemAndNameTheKernel) {
    const std::vector<std::string> facts = SystemFacts();
    ASSERT_GE(facts.size(), 2u);
    EXPECT_EQ(facts[0].rfind("Operating system: ", 0), 0u) << facts[0];
    EXPECT_EQ(facts[1].rfind("Kernel: Linux ", 0), 0u) << facts[1];
}

// The help book as shipped: a link that leads nowhere is a page the user cannot reach.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>
#include <set>

#include "support/TestFiles.h"

namespace fs = std::filesystem;

namespace {
std::set<std::string> Matches(const std::string& text, const std::regex& pattern, int group = 1) {
    std::set<std::string> found;
    for (auto it = std::sregex_iterator(text.begin(), text.end(), pattern); it != std::sregex_iterator(); ++it)
        found.insert((*it)[group].str());
    return found;
}
}  // namespace

TEST(ShippedHelpBook, EveryLinkReachesAPageAndItsAnchorAndEveryPageIsInTheContentsAndTheSideList) {
    const fs::path book = fs::path(TM_SAMPLES).parent_path() / "help";
    std::map<std::string, std::string> pages;
    for (const auto& entry : fs::directory_iterator(book))
        if (entry.path().extension() == ".html") pages[entry.path().filename().string()] = ReadText(entry.path());
    ASSERT_GT(pages.size(), 10u);
    const std::regex link(R"re(href="([^":#]*)(#([^"]*))?")re"), id(R"re(id="([^"]+)")re");
    std::set<std::string> reachedFromContents;
    for (const auto& [name, text] : pages) {
        for (auto it = std::sregex_iterator(text.begin(), text.end(), link); it != std::sregex_iterator(); ++it) {
            const std::string target = (*it)[1].str().empty() ? name : (*it)[1].str();
            if (fs::path(target).extension() != ".html") {
                EXPECT_TRUE(fs::exists(book / target)) << name << " links to " << target;
                continue;
            }
            ASSERT_TRUE(pages.count(target)) << name << " links to the missing page " << target;
            if (name == "index.html") reachedFromContents.insert(target);
            EXPECT_TRUE(!(*it)[3].matched || Matches(pages[target], id).count((*it)[3].str()))
                << name << " links to " << target << "#" << (*it)[3].str() << ", which has no such place";
        }
        EXPECT_NE(text.find(R"(<script src="nav.js"></script>)"), std::string::npos) << name << " has no side list";
    }
    for (const auto& [name, text] : pages)
        EXPECT_TRUE(name == "index.html" || reachedFromContents.count(name)) << name << " is not in the contents";
    // The side list that nav.js puts on every page names each page once, and only pages.
    const std::string nav = ReadText(book / "nav.js");
    const std::regex listed(R"re(\["([^"]+\.html)")re");
    std::multiset<std::string> inList;
    for (auto it = std::sregex_iterator(nav.begin(), nav.end(), listed); it != std::sregex_iterator(); ++it)
        inList.insert((*it)[1].str());
    std::set<std::string> names;
    for (const auto& [name, text] : pages) names.insert(name);
    EXPECT_EQ(inList, std::multiset<std::string>(names.begin(), names.end())) << "each page once in nav.js";
}

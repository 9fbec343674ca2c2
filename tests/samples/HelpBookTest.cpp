// The help book as shipped: a link that leads nowhere is a page the user cannot reach.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;

std::string ReadText(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

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
            if (!(*it)[3].matched) continue;
            const std::string& page = pages[target];
            bool found = false;
            for (auto m = std::sregex_iterator(page.begin(), page.end(), id); m != std::sregex_iterator() && !found;
                 ++m)
                found = (*m)[1].str() == (*it)[3].str();
            EXPECT_TRUE(found) << name << " links to " << target << "#" << (*it)[3].str()
                               << ", which has no such place";
        }
    }
    for (const auto& [name, text] : pages)
        if (name != "index.html") { EXPECT_TRUE(reachedFromContents.count(name)) << name << " is not in the contents"; }

    // The side list that nav.js puts on every page names each page once, and only pages.
    const std::string nav = ReadText(book / "nav.js");
    const std::regex listed(R"re(\["([^"]+\.html)")re");
    std::set<std::string> inList;
    for (auto it = std::sregex_iterator(nav.begin(), nav.end(), listed); it != std::sregex_iterator(); ++it) {
        EXPECT_TRUE(pages.count((*it)[1].str())) << "nav.js lists the missing page " << (*it)[1].str();
        EXPECT_TRUE(inList.insert((*it)[1].str()).second) << "nav.js lists " << (*it)[1].str() << " twice";
    }
    EXPECT_EQ(inList.size(), pages.size());
    for (const auto& [name, text] : pages)
        EXPECT_NE(text.find(R"(<script src="nav.js"></script>)"), std::string::npos) << name << " has no side list";
}

}  // namespace

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

TEST(ShippedHelpBook, EveryLinkReachesAPageAndItsAnchorAndEveryPageIsLinkedFromTheContents) {
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
            for (auto m = std::sregex_iterator(page.begin(), page.end(), id); m != std::sregex_iterator() && !found; ++m)
                found = (*m)[1].str() == (*it)[3].str();
            EXPECT_TRUE(found) << name << " links to " << target << "#" << (*it)[3].str() << ", which has no such place";
        }
    }
    for (const auto& [name, text] : pages)
        if (name != "index.html") {
            EXPECT_TRUE(reachedFromContents.count(name)) << name << " is not in the contents";
        }
}

}  // namespace

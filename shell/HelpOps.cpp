#include "shell/HelpOps.h"

#include <filesystem>

#include "core/Desktop.h"
#include "shell/IniOps.h"

namespace fs = std::filesystem;

std::string ResourceFolder;

namespace {

constexpr const char* MakersSite = "https://www.fifa-osk.com";
constexpr const char* OnlineHelpPage = "/stadiums/Terramason";

std::string Trimmed(const std::string& s) {
    const auto a = s.find_first_not_of(" \t");
    if (a == std::string::npos) return {};
    return s.substr(a, s.find_last_not_of(" \t") - a + 1);
}

std::string InResources(const std::string& relative) {
    if (ResourceFolder.empty()) return relative;
    return ResourceFolder + "/" + relative;
}

}  // namespace

std::string FindResourceFolder(const std::string& executableFolder, const std::string& sourceFolder) {
    std::error_code ec;
    const fs::path installed = fs::path(executableFolder) / ".." / "share" / "terramason";
    if (!executableFolder.empty() && fs::is_directory(installed, ec)) return installed.lexically_normal().string();
    return sourceFolder;
}

std::string HelpPagePath(const std::string& page) {
    std::error_code ec;
    return fs::absolute(InResources("help/" + page), ec).lexically_normal().string();
}

std::string HelpPageAddress(const std::string& page) { return FileUrl(HelpPagePath(page)); }

namespace {
// Shipped files and the scratch folder's previews can be missing: a broken install, or a view
// not written yet. The box names the file, so that the user knows what to look for.
bool Present(const std::string& path) {
    std::error_code ec;
    if (fs::is_regular_file(path, ec)) return true;
    ShowMessage("The file " + path + " could not be opened: it does not exist.", MessageIcon::Exclamation);
    return false;
}
}  // namespace

void OpenHelpPage(const std::string& page) {
    const std::string path = HelpPagePath(page);
    if (Present(path)) TheDesktop().ShowHelpBook(path);
}

void ShowTextFile(const std::string& path) {
    if (Present(path)) TheDesktop().ShowTextFile(path);
}

std::string ReadmePath() { return InResources("readme.txt"); }

void OpenReadme() { ShowTextFile(ReadmePath()); }

const char* WebPageKey(WebPage page) {
    switch (page) {
    case WebPage::TechnicalSupport: return "TechnicalSupport";
    case WebPage::OnlineHelp: return "OnlineHelp";
    case WebPage::MakersSite: return "MakersSite";
    case WebPage::Forums: return "Forums";
    case WebPage::ToolsSite: return "ToolsSite";
    }
    return "";
}

std::string DefaultWebAddress(WebPage page) {
    switch (page) {
    case WebPage::TechnicalSupport: return std::string(MakersSite) + "/contact";
    case WebPage::OnlineHelp: return std::string(MakersSite) + OnlineHelpPage;
    case WebPage::MakersSite: return std::string(MakersSite) + "/";
    case WebPage::Forums: return "https://www.soccergaming.com/forums/";
    case WebPage::ToolsSite: return "https://www.problemsinc.net/";
    }
    return {};
}

std::string WebPageAddress(WebPage page) {
    const std::string configured = Trimmed(ReadConfig("Web", WebPageKey(page)));
    if (!configured.empty()) return configured;
    if (page == WebPage::OnlineHelp) {
        std::string site = Trimmed(ReadConfig("Web", WebPageKey(WebPage::MakersSite)));
        if (!site.empty()) {
            while (!site.empty() && site.back() == '/') site.pop_back();
            return site + OnlineHelpPage;
        }
    }
    return DefaultWebAddress(page);
}

void OpenHelpWebPage(WebPage page) { OpenWebPage(WebPageAddress(page)); }

void OpenWebPage(const std::string& address) {
    if (TheDesktop().OpenWebPage(address)) return;
    ShowMessage("The page " + address + " could not be opened: no web browser took it.", MessageIcon::Exclamation);
}

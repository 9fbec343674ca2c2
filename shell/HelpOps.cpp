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

std::string HelpPageAddress(const std::string& page) {
    std::error_code ec;
    const fs::path path = fs::absolute(InResources("help/" + page), ec);
    return FileUrl(path.lexically_normal().string());
}

void OpenHelpPage(const std::string& page) { TheDesktop().OpenWebPage(HelpPageAddress(page)); }

std::string ReadmePath() { return InResources("readme.txt"); }

void OpenReadme() { TheDesktop().OpenInTextEditor(ReadmePath()); }

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

void OpenHelpWebPage(WebPage page) { TheDesktop().OpenWebPage(WebPageAddress(page)); }

#pragma once
// The help book and read-me shipped with the program, and the web pages of the Help menu.
#include <string>

// The read-only folder of the shipped files (help/, readme.txt). Set once at start; tests set
// their own.
extern std::string ResourceFolder;

// Where the shipped files are: <bin>/../share/terramason when the program runs from an install,
// otherwise `sourceFolder`, the source tree's resources/ folder of a build that was not
// installed. `executableFolder` is the folder of the running program.
std::string FindResourceFolder(const std::string& executableFolder, const std::string& sourceFolder);

// The file of a page of the help book, "index.html" or "crowdwizard.html", and its file:// address.
std::string HelpPagePath(const std::string& page);
std::string HelpPageAddress(const std::string& page);
// Shows a page of the help book in the program's help window.
void OpenHelpPage(const std::string& page);
inline constexpr const char* HelpContentsPage = "index.html";
// Shows a text file read-only in a window of the program; a missing file is told and nothing opens.
void ShowTextFile(const std::string& path);
// The read-me, shown as a text file.
std::string ReadmePath();
void OpenReadme();

// The pages of the Help menu on the web. Each has an address of its own that config.ini can
// replace: section "Web", the key below.
enum class WebPage { TechnicalSupport, OnlineHelp, MakersSite, Forums, ToolsSite };
const char* WebPageKey(WebPage page);
std::string DefaultWebAddress(WebPage page);
// The address from config.ini when it names one, otherwise the default. Without an address of
// its own, the online help is the page "/stadiums/Terramason" of the makers' site, wherever that
// is configured.
std::string WebPageAddress(WebPage page);
void OpenHelpWebPage(WebPage page);

// The browser with the address; when no browser takes it, a message that names the address.
void OpenWebPage(const std::string& address);

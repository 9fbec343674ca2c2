#include "shell/RegistryOps.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/ProgramState.h"

namespace fs = std::filesystem;

namespace {

std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

bool EqualNoCase(const std::string& a, const std::string& b) { return Lower(a) == Lower(b); }

std::string Trim(const std::string& s) {
    std::size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a]))) ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1]))) --b;
    return s.substr(a, b - a);
}

std::string ReadWhole(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return {};
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// Reads a quoted .reg string starting after its opening quote; stops after the closing quote.
std::string ReadRegString(const std::string& text, std::size_t& i) {
    std::string out;
    while (i < text.size() && text[i] != '"') {
        char c = text[i++];
        if (c != '\\' || i >= text.size()) {
            out += c;
            continue;
        }
        const char e = text[i++];
        switch (e) {
        case 'n': out += '\n'; break;
        case 'r': out += '\r'; break;
        case 't': out += '\t'; break;
        case '0': out += '\0'; break;
        case 'x': {
            // \xHHHH: a UTF-16 unit in hex; kept as UTF-8.
            unsigned code = 0;
            int digits = 0;
            while (i < text.size() && digits < 4 && std::isxdigit(static_cast<unsigned char>(text[i]))) {
                code = code * 16 + static_cast<unsigned>(std::stoi(std::string(1, text[i]), nullptr, 16));
                ++i;
                ++digits;
            }
            if (code < 0x80) out += static_cast<char>(code);
            else if (code < 0x800) {
                out += static_cast<char>(0xC0 | (code >> 6));
                out += static_cast<char>(0x80 | (code & 0x3F));
            } else {
                out += static_cast<char>(0xE0 | (code >> 12));
                out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
                out += static_cast<char>(0x80 | (code & 0x3F));
            }
            break;
        }
        default: out += e; break;
        }
    }
    if (i < text.size()) ++i;  // closing quote
    return out;
}

// The key of a section header line "[Software\\\\EA SPORTS\\\\FIFA 2003] 1234", unescaped.
std::string SectionKey(const std::string& line) {
    std::string key;
    std::size_t i = 1;
    while (i < line.size() && line[i] != ']') {
        if (line[i] == '\\' && i + 1 < line.size() && line[i + 1] == '\\') {
            key += '\\';
            i += 2;
        } else {
            key += line[i++];
        }
    }
    return key;
}

}  // namespace

std::string RegistryFilePath() { return AppPath("registry.conf"); }

std::string DefaultWinePrefix() {
    if (const char* prefix = std::getenv("WINEPREFIX"); prefix && *prefix) return prefix;
    if (const char* home = std::getenv("HOME"); home && *home) return std::string(home) + "/.wine";
    return {};
}

bool FindRegValue(const std::string& regText, const std::string& key, const std::string& name, std::string& value) {
    std::istringstream in(regText);
    std::string line;
    bool inKey = false;
    const std::string wantName = name == "@" ? "" : name;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty()) continue;
        if (line[0] == '[') {
            inKey = EqualNoCase(SectionKey(line), key);
            continue;
        }
        if (!inKey) continue;
        std::size_t i = 0;
        std::string valueName;
        if (line[0] == '@') {
            i = 1;
        } else if (line[0] == '"') {
            i = 1;
            valueName = ReadRegString(line, i);
        } else {
            continue;
        }
        if (!EqualNoCase(valueName, wantName) || i >= line.size() || line[i] != '=') continue;
        ++i;
        std::string data = line.substr(i);
        if (!data.empty() && data[0] == '"') {
            std::size_t j = i + 1;
            value = ReadRegString(line, j);
            return true;
        }
        if (data.rfind("str(2):\"", 0) == 0 || data.rfind("str(7):\"", 0) == 0) {
            std::size_t j = i + 8;
            value = ReadRegString(line, j);
            return true;
        }
        if (data.rfind("dword:", 0) == 0) {
            value = std::to_string(std::strtoul(data.c_str() + 6, nullptr, 16));
            return true;
        }
        value.clear();  // binary and other kinds have no text form here
        return true;
    }
    return false;
}

std::string FindNoCase(const std::string& base, const std::string& relative) {
    fs::path local = base;
    std::error_code ec;
    std::size_t start = 0;
    while (start <= relative.size()) {
        const std::size_t end = std::min(relative.find_first_of("\\/", start), relative.size());
        const std::string element = relative.substr(start, end - start);
        start = end + 1;
        if (element.empty()) continue;
        fs::path exact = local / element;
        if (!fs::exists(exact, ec) && fs::is_directory(local, ec)) {
            for (const auto& entry : fs::directory_iterator(local, ec))
                if (EqualNoCase(entry.path().filename().string(), element)) {
                    exact = entry.path();
                    break;
                }
        }
        local = exact;
    }
    return local.string();
}

std::string WindowsPathToLocal(const std::string& windowsPath, const std::string& winePrefix) {
    if (windowsPath.size() < 3 || !std::isalpha(static_cast<unsigned char>(windowsPath[0])) || windowsPath[1] != ':' ||
        (windowsPath[2] != '\\' && windowsPath[2] != '/') || winePrefix.empty())
        return windowsPath;
    const char drive = static_cast<char>(std::tolower(static_cast<unsigned char>(windowsPath[0])));
    fs::path base = fs::path(winePrefix) / "dosdevices" / (std::string(1, drive) + ":");
    std::error_code ec;
    if (!fs::exists(base, ec)) base = drive == 'c' ? fs::path(winePrefix) / "drive_c" : base;
    fs::path local = FindNoCase(base.string(), windowsPath.substr(3));
    std::string result = local.string();
    const char last = windowsPath.back();
    if ((last == '\\' || last == '/') && (result.empty() || result.back() != '/')) result += '/';
    return result;
}

std::string LocalPathToWindows(const std::string& localPath, const std::string& winePrefix) {
    std::error_code ec;
    const std::string path = fs::weakly_canonical(fs::absolute(localPath, ec), ec).string();
    if (ec || winePrefix.empty()) return {};
    std::string bestRoot;
    char bestDrive = 0;
    for (const auto& entry : fs::directory_iterator(fs::path(winePrefix) / "dosdevices", ec)) {
        const std::string name = entry.path().filename().string();
        if (name.size() != 2 || name[1] != ':' || !std::isalpha(static_cast<unsigned char>(name[0]))) continue;
        std::error_code rootError;
        std::string root = fs::canonical(entry.path(), rootError).string();
        if (rootError) continue;
        if (root.back() != '/') root += '/';
        const char drive = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
        const bool holds = (path + '/').rfind(root, 0) == 0;
        if (holds && (root.size() > bestRoot.size() || (root.size() == bestRoot.size() && drive < bestDrive))) {
            bestRoot = root;
            bestDrive = drive;
        }
    }
    if (!bestDrive) return {};
    std::string windows =
        std::string(1, bestDrive) + ":\\" + (path.size() > bestRoot.size() ? path.substr(bestRoot.size()) : "");
    std::replace(windows.begin(), windows.end(), '/', '\\');
    return windows;
}

std::string LinuxRegistryValue(const std::string& valuePath, const std::string& registryFile,
                               const std::string& winePrefix) {
    std::ifstream file(registryFile);
    std::string line;
    while (file && std::getline(file, line)) {
        const std::string t = Trim(line);
        if (t.empty() || t[0] == '#' || t[0] == ';') continue;
        const std::size_t eq = t.find('=');
        if (eq == std::string::npos) continue;
        if (EqualNoCase(Trim(t.substr(0, eq)), valuePath))
            return WindowsPathToLocal(Trim(t.substr(eq + 1)), winePrefix);
    }
    if (winePrefix.empty()) return {};

    const std::size_t firstSep = valuePath.find('\\');
    const std::size_t lastSep = valuePath.rfind('\\');
    if (firstSep == std::string::npos || lastSep == firstSep) return {};
    const std::string hive = Lower(valuePath.substr(0, firstSep));
    const std::string key = valuePath.substr(firstSep + 1, lastSep - firstSep - 1);
    const std::string name = valuePath.substr(lastSep + 1);
    std::string regFile;
    if (hive == "hkey_local_machine" || hive == "hklm") regFile = "system.reg";
    else if (hive == "hkey_current_user" || hive == "hkcu") regFile = "user.reg";
    else return {};
    const std::string text = ReadWhole((fs::path(winePrefix) / regFile).string());
    std::string value;
    if (FindRegValue(text, key, name, value)) return WindowsPathToLocal(value, winePrefix);
    // 32-bit programs in a 64-bit prefix keep their keys under Wow6432Node.
    const std::size_t sep = key.find('\\');
    if (sep != std::string::npos) {
        const std::string wow = key.substr(0, sep) + "\\Wow6432Node" + key.substr(sep);
        if (FindRegValue(text, wow, name, value)) return WindowsPathToLocal(value, winePrefix);
    }
    return {};
}

std::string ReadRegistry(const std::string& valuePath) { return TheDesktop().RegistryValue(valuePath); }

std::string FifaInstallDir() {
    std::string dir = ReadRegistry("HKEY_LOCAL_MACHINE\\SOFTWARE\\EA SPORTS\\FIFA 2003\\Install Dir");
    if (dir.empty() || (dir.back() != '/' && dir.back() != '\\')) dir += '/';
    return dir;
}

std::string RhinoExecutable() {
    const std::string version = ReadRegistry("HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\3.0\\MostRecent");
    std::string folder =
        ReadRegistry("HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\" + version + "\\Install\\Path");
    if (folder.empty()) return {};
    if (folder.back() != '/' && folder.back() != '\\') folder += '/';
    const std::string program = folder + "rhino3.exe";
    return FileExists(program) ? program : std::string();
}

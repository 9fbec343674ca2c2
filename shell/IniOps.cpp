#include "shell/IniOps.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

// Only the narrow-character form is used: config.ini values are kept as the bytes they are.
#define SI_NO_CONVERSION
#include <SimpleIni.h>

#include "core/NumberText.h"
#include "core/ProgramState.h"

namespace {
// The platform's profile reader delivers at most 254 characters through its 255-byte buffer.
constexpr std::size_t ValueLimit = 254;

struct DefaultKey {
    const char* section;
    const char* key;
    const char* value;
};

// What a new user starts with. The viewer is part of this program, so the reminder to download
// one is off; the Options window can still turn it on.
constexpr DefaultKey FirstRunKeys[] = {
    {"Startup", "Maximise", "0"},
    {"Startup", "NewProj", "0"},
    {"Terramason", "Starter", "0"},
    {"Terramason", "Previews", "1"},
    {"Terramason", "PreviewRefresh", "1"},
    {"Terramason", "OIFEditor", "1"},
    {"Previews", "PerspectiveTex", "1"},
    {"Previews", "ZoomAmount", "500"},
    {"Crowd Wizard", "CrowdHeight", "260"},
    {"Crowd Wizard", "NoOfRows", "10"},
    {"Crowd Wizard", "CrowdSpacing", "150"},
    {"Crowd Wizard", "Home", "1"},
    {"Import", "CrowdHeight", "260"},
    {"Stadium Importer", "AutoClose", "0"},
};

// Blanks at either end of a value would be lost to the file's own trimming, so such values are
// written in double quotes, which the reader takes off again.
bool NeedsQuotes(const std::string& value) {
    if (value.empty()) return false;
    auto blank = [](char c) { return c == ' ' || c == '\t'; };
    return blank(value.front()) || blank(value.back()) ||
           (value.size() >= 2 && value.front() == '"' && value.back() == '"');
}
// A key line whose value ends in blanks, with the value put in the quotes that the reader takes off
// again: SimpleIni would trim them, and "1 " is not true.
std::string WithTrailingBlanksQuoted(const std::string& line) {
    const std::size_t first = line.find_first_not_of(" \t");
    const std::size_t eq = line.find('=');
    if (first == std::string::npos || line[first] == ';' || line[first] == '#' || line[first] == '[' ||
        eq == std::string::npos || (line.back() != ' ' && line.back() != '\t'))
        return line;
    const std::size_t value = line.find_first_not_of(" \t", eq + 1);
    if (value == std::string::npos) return line;
    return line.substr(0, value) + '"' + line.substr(value) + '"';
}

// SimpleIni takes a "[" line without "]" for a section it never closes: the keys below it land
// in a section whose name runs over the following lines, and the next save writes that name as
// a header across several lines, which grows with every save. Such a line is dropped before
// parsing, as SimpleIni drops other lines it cannot read, so the keys below it stay in the
// section above.
std::string PrepareLines(const std::string& data) {
    std::string kept;
    kept.reserve(data.size());
    std::size_t start = 0;
    if (data.compare(0, 3, "\xEF\xBB\xBF") == 0) {  // the UTF-8 signature is not part of the first line
        kept = data.substr(0, 3);
        start = 3;
    }
    while (start < data.size()) {
        std::size_t end = data.find_first_of("\r\n", start);
        if (end == std::string::npos) end = data.size();
        const std::size_t first = data.find_first_not_of(" \t", start);
        const bool unclosed = first < end && data[first] == '[' && data.find(']', first) >= end;
        if (!unclosed) kept += WithTrailingBlanksQuoted(data.substr(start, end - start));
        if (end < data.size()) kept += data[end];
        start = end + 1;
    }
    return kept;
}

bool LoadIni(CSimpleIniA& ini, const std::string& path) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return false;
    std::string data;
    char chunk[4096];
    std::size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, f)) > 0) data.append(chunk, n);
    const bool failed = std::ferror(f) != 0;
    std::fclose(f);
    if (failed) return false;
    const std::string kept = PrepareLines(data);
    return ini.LoadData(kept.data(), kept.size()) >= 0;
}
}  // namespace

std::string ReadIniValue(const std::string& section, const std::string& key, const std::string& path) {
    CSimpleIniA ini(false, false, false);
    if (!LoadIni(ini, path)) return {};
    std::string value = ini.GetValue(section.c_str(), key.c_str(), "");
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') value = value.substr(1, value.size() - 2);
    if (value.size() > ValueLimit) value.resize(ValueLimit);
    return value;
}

void WriteIniValue(const std::string& section, const std::string& key, const std::string& path,
                   const std::string& value) {
    CSimpleIniA ini(false, false, false);
    std::error_code ec;
    if (std::filesystem::exists(path, ec) && !LoadIni(ini, path)) return;  // unreadable: leave it be
    const std::string stored = NeedsQuotes(value) ? '"' + value + '"' : value;
    ini.SetValue(section.c_str(), key.c_str(), stored.c_str());
    ini.SaveFile(path.c_str());
}

std::string ConfigPath() { return AppPath("config.ini"); }

std::string ReadConfig(const std::string& section, const std::string& key) {
    return ReadIniValue(section, key, ConfigPath());
}

void WriteConfig(const std::string& section, const std::string& key, const std::string& value) {
    WriteIniValue(section, key, ConfigPath(), value);
}

bool ReadConfigFlag(const std::string& section, const std::string& key) { return ReadConfig(section, key) == "1"; }

double ReadConfigNumber(const std::string& section, const std::string& key) {
    return LeadingNumber(ReadConfig(section, key));
}

bool EnsureConfigFile() {
    std::error_code ec;
    const std::string path = ConfigPath();
    if (std::filesystem::exists(path, ec)) return false;
    if (!AppFolder.empty()) std::filesystem::create_directories(AppFolder, ec);
    CSimpleIniA ini(false, false, false);
    for (const DefaultKey& k : FirstRunKeys) ini.SetValue(k.section, k.key, k.value);
    return ini.SaveFile(path.c_str()) >= 0;
}

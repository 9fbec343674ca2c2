// config.ini reading and writing over arbitrary file contents. The input is the file; the keys
// it holds are read through ReadIniValue and held against the raw ini library, then values
// made from the input are written and read back.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#define SI_NO_CONVERSION  // as shell/IniOps.cpp: values are bytes
#include <SimpleIni.h>

#include "FuzzCheck.h"
#include "shell/IniOps.h"

namespace {

constexpr std::size_t ValueLimit = 254;

// One pair of files per process; libFuzzer runs inputs one after the other. TMPDIR may point
// at a memory file system: on ext4 every truncate-and-rewrite of a file waits for the disk.
std::string TempFolder() {
    const char* dir = std::getenv("TMPDIR");
    return dir && *dir ? dir : "/tmp";
}

struct TempFiles {
    std::string input = TempFolder() + "/terramason-fuzz-ini-" + std::to_string(::getpid()) + ".ini";
    std::string fresh = TempFolder() + "/terramason-fuzz-ini-" + std::to_string(::getpid()) + "-fresh.ini";
    ~TempFiles() {
        std::remove(input.c_str());
        std::remove(fresh.c_str());
    }
};

const TempFiles& Files() {
    static const TempFiles files;
    return files;
}

void WriteWhole(const std::string& path, const std::uint8_t* data, std::size_t size) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    FUZZ_CHECK(f != nullptr, "the scratch file can be written");
    if (size > 0) FUZZ_CHECK(std::fwrite(data, 1, size, f) == size, "the scratch file takes the input");
    std::fclose(f);
}

// Sections and keys match without regard to ASCII case, as the profile functions do.
bool SameName(const std::string& a, const std::string& b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lower(a[i]) != lower(b[i])) return false;
    return true;
}

bool HasLineBreak(const std::string& s) { return s.find_first_of("\r\n") != std::string::npos; }

// What a read must give for a value the library holds: the quotes that protect blanks come
// off, and the platform's buffer cuts at 254 characters.
std::string Delivered(std::string raw) {
    if (raw.size() >= 2 && raw.front() == '"' && raw.back() == '"') raw = raw.substr(1, raw.size() - 2);
    if (raw.size() > ValueLimit) raw.resize(ValueLimit);
    return raw;
}

struct Entry {
    std::string section, key, value;
};

// Up to a handful of the keys the file holds, with the value each should read as.
std::vector<Entry> SampleEntries(const std::string& path, bool& loaded) {
    CSimpleIniA ini(false, false, false);
    loaded = ini.LoadFile(path.c_str()) >= 0;
    std::vector<Entry> entries;
    if (!loaded) return entries;
    CSimpleIniA::TNamesDepend sections;
    ini.GetAllSections(sections);
    for (const auto& s : sections) {
        CSimpleIniA::TNamesDepend keys;
        ini.GetAllKeys(s.pItem, keys);
        for (const auto& k : keys) {
            entries.push_back({s.pItem, k.pItem, Delivered(ini.GetValue(s.pItem, k.pItem, ""))});
            if (entries.size() == 6) return entries;
        }
    }
    return entries;
}

std::string CheckedRead(const std::string& section, const std::string& key, const std::string& path) {
    const std::string value = ReadIniValue(section, key, path);
    FUZZ_CHECK(value.size() <= ValueLimit, "no read delivers more than 254 characters");
    FUZZ_CHECK(!HasLineBreak(value), "a value is one line");
    return value;
}

// A key above every section can be the first thing in the saved file, and a name that starts
// with the UTF-8 signature then loses it to the next reader, which takes it for the file's.
bool LostToTheSignature(const Entry& e) { return e.section.empty() && e.key.rfind("\xEF\xBB\xBF", 0) == 0; }

// A "[" line without "]" is dropped before parsing; the library alone would misfile the keys
// below it, so it is no reference for such files.
bool HasUnclosedSectionLine(std::string_view data) {
    if (data.substr(0, 3) == "\xEF\xBB\xBF") data.remove_prefix(3);
    std::size_t start = 0;
    while (start <= data.size()) {
        std::size_t end = data.find_first_of("\r\n", start);
        if (end == std::string_view::npos) end = data.size();
        const std::string_view line = data.substr(start, end - start);
        const std::size_t first = line.find_first_not_of(" \t");
        if (first != std::string_view::npos && line[first] == '[' && line.find(']') == std::string_view::npos)
            return true;
        start = end + 1;
    }
    return false;
}

// A value written by hand with blanks after it keeps them, where the library trims them, so it
// is no reference for a file with such a line either.
bool HasTrailingBlank(std::string_view data) {
    for (std::size_t at = data.find_first_of("\r\n");; at = data.find_first_of("\r\n", at + 1)) {
        const std::size_t end = at == std::string_view::npos ? data.size() : at;
        if (end > 0 && (data[end - 1] == ' ' || data[end - 1] == '\t')) return true;
        if (at == std::string_view::npos) return false;
    }
}

// A value without line breaks round-trips exactly, up to the cut at 254 characters.
void CheckRoundTrip(const std::string& section, const std::string& key, const std::string& value,
                    const std::string& path) {
    WriteIniValue(section, key, path, value);
    const std::string expected = value.substr(0, ValueLimit);
    FUZZ_CHECK(ReadIniValue(section, key, path) == expected, "a written value reads back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const TempFiles& files = Files();
    WriteWhole(files.input, data, size);
    const std::string text(reinterpret_cast<const char*>(data), size);

    bool loaded = false;
    std::vector<Entry> entries = SampleEntries(files.input, loaded);
    const bool libraryIsReference = !HasUnclosedSectionLine(text) && !HasTrailingBlank(text);
    std::vector<std::string> before;
    for (const Entry& e : entries) {
        before.push_back(CheckedRead(e.section, e.key, files.input));
        if (libraryIsReference)
            FUZZ_CHECK(before.back() == e.value, "a read delivers the stored value, unquoted and cut at 254");
    }
    // A key name cannot hold a line break, so no file holds this one.
    FUZZ_CHECK(ReadIniValue("Startup", "Maximise\n", files.input).empty(), "a missing key reads empty");
    for (const char* key : {"Maximise", "NewProj"}) CheckedRead("Startup", key, files.input);

    // Values are C strings to the library, and an ini line ends at a line break, so the value to
    // write is the input up to its first NUL without its line breaks.
    const std::string upToNul = text.substr(0, text.find('\0'));
    std::string oneLine;
    for (char c : upToNul)
        if (c != '\r' && c != '\n') oneLine += c;

    std::remove(files.fresh.c_str());
    CheckRoundTrip("Fuzz", "Value", oneLine, files.fresh);
    CheckRoundTrip("Fuzz", "Other", "", files.fresh);
    FUZZ_CHECK(ReadIniValue("Fuzz", "Value", files.fresh) == oneLine.substr(0, ValueLimit),
               "writing one key leaves the others");

    if (loaded) {
        // Written into the file the input made: the new key reads back, an existing key takes
        // the new value, and every other key reads as it did before.
        CheckRoundTrip("Fuzz", "Value", oneLine, files.input);
        // A name with a line break can only come from the library's reading of an unclosed "["
        // line, and no file of lines can hold it.
        const Entry* overwritten = nullptr;
        for (const Entry& e : entries)
            if (!overwritten && !HasLineBreak(e.section) && !HasLineBreak(e.key) && !LostToTheSignature(e))
                overwritten = &e;
        if (overwritten)
            CheckRoundTrip(overwritten->section, overwritten->key, oneLine.substr(0, oneLine.size() / 2), files.input);
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const Entry& e = entries[i];
            const bool written =
                (overwritten && SameName(e.section, overwritten->section) && SameName(e.key, overwritten->key)) ||
                (SameName(e.section, "Fuzz") && SameName(e.key, "Value"));
            if (!written && !LostToTheSignature(e))
                FUZZ_CHECK(CheckedRead(e.section, e.key, files.input) == before[i], "a write leaves the other keys");
        }
    }

    // A value with line breaks cannot survive a file of lines; the read still gives one line.
    if (HasLineBreak(upToNul)) {
        WriteIniValue("Fuzz", "Broken", files.fresh, upToNul);
        CheckedRead("Fuzz", "Broken", files.fresh);
    }
    return 0;
}

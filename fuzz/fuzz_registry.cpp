// The registry readers over arbitrary text: a Wine .reg file and the per-user file of values.
// Besides memory safety, a value written the way each file writes it reads back unchanged.
#include <unistd.h>

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "FuzzCheck.h"
#include "shell/RegistryOps.h"

namespace {

std::string ScratchFile() {
    const char* dir = std::getenv("TMPDIR");
    return std::string(dir && *dir ? dir : "/tmp") + "/terramason-fuzz-registry-" + std::to_string(::getpid()) +
           ".conf";
}

void Write(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

// A string as a .reg file quotes it.
std::string RegQuoted(const std::string& value) {
    std::string out = "\"";
    for (const char c : value) {
        switch (c) {
        case '\\': out += "\\\\"; break;
        case '"': out += "\\\""; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        case '\0': out += "\\0"; break;
        default: out += c;
        }
    }
    return out + "\"";
}

bool IsBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string key = "Software\\EA SPORTS\\FIFA 2003";
    std::string value;
    FindRegValue(text, key, "Install Dir", value);
    FindRegValue(text, key, "@", value);

    const std::string stored = text.substr(0, 200);
    const std::string reg =
        "WINE REGISTRY Version 2\n\n[Software\\\\EA SPORTS\\\\FIFA 2003] 1700000000\n\"Install Dir\"=" +
        RegQuoted(stored) + "\n";
    FUZZ_CHECK(FindRegValue(reg, key, "install dir", value), "the value is found, its name without regard to case");
    FUZZ_CHECK(value == stored, "a quoted .reg string reads back as written");

    static const std::string conf = ScratchFile();
    Write(conf, text);
    LinuxRegistryValue("HKEY_LOCAL_MACHINE\\" + key + "\\Install Dir", conf, "");
    // One line of the per-user file: the reader trims white space and stops at the line's end.
    const std::string line = stored.substr(0, stored.find_first_of("\r\n"));
    if (!line.empty() && !IsBlank(line.front()) && !IsBlank(line.back())) {
        Write(conf, "# values\nHKEY_LOCAL_MACHINE\\" + key + "\\Install Dir = " + line + "\n");
        FUZZ_CHECK(LinuxRegistryValue("hkey_local_machine\\" + key + "\\install dir", conf, "") == line,
                   "a line of the per-user file reads back trimmed");
    }
    return 0;
}

#include "shell/OptionsOps.h"

#include "core/NumberText.h"
#include "shell/IniOps.h"

const OptionKey* OptionKeyOf(std::string_view control) {
    for (const OptionKey& k : OptionKeys)
        if (control == k.control) return &k;
    return nullptr;
}

bool FlagShown(const std::string& stored) { return stored == "1"; }

// Every reader of these keys parses them as a double (ReadConfigNumber), so the box prints
// that double: 15 digits, which keeps a value such as 123456789 whole where single precision
// would show "1.234568E+08".
std::string NumberShown(const std::string& stored) { return DoubleText(LeadingNumber(stored)); }

std::string FlagStored(bool checked) { return checked ? "1" : "0"; }

std::string NumberStored(const std::string& shown) { return DoubleText(LeadingNumber(shown)); }

OptionContents ReadOptions() {
    OptionContents contents;
    for (const OptionKey& k : OptionKeys) {
        const std::string stored = ReadConfig(k.section, k.key);
        contents[k.control] = k.kind == OptionKind::Flag ? FlagStored(FlagShown(stored)) : NumberShown(stored);
    }
    return contents;
}

namespace {
void StoreControl(const char* control, const OptionContents& contents, const ConfigWriter& write) {
    const OptionKey* k = OptionKeyOf(control);
    const auto it = contents.find(control);
    const std::string content = it == contents.end() ? std::string() : it->second;
    const std::string value = k->kind == OptionKind::Flag ? FlagStored(content == "1") : NumberStored(content);
    if (write) write(k->section, k->key, value);
    else WriteConfig(k->section, k->key, value);
}
}  // namespace

void ApplyOptions(const OptionContents& contents, const std::function<void()>& viewerChange,
                  const ConfigWriter& write) {
    for (const char* control : ApplyBeforeViewer) StoreControl(control, contents, write);
    if (viewerChange) viewerChange();
    for (const char* control : ApplyAfterViewer) StoreControl(control, contents, write);
}

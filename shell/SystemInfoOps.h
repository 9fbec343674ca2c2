#pragma once
// What the About box's "System Info..." button shows: the desktop's own system information tool
// when one is installed, otherwise a few facts gathered here.
#include <functional>
#include <string>
#include <vector>

// The system information tools looked for, best first.
extern const std::vector<std::string> SystemInfoTools;
// The first of them that `installed` accepts (it is asked with the bare program name); "" for none.
std::string FindSystemInfoTool(const std::function<bool(const std::string&)>& installed);

// PRETTY_NAME of an os-release text, without its quotes; "" when it has none.
std::string OsReleaseName(const std::string& osRelease);
// MemTotal of a /proc/meminfo text as "7.6 GB" (binary gigabytes, one decimal); "" when absent.
std::string TotalMemoryText(const std::string& meminfo);

// The facts of this machine that need no window system: one "Name: value" line each, for the
// operating system, the kernel, the processor count and the memory.
std::vector<std::string> SystemFacts();

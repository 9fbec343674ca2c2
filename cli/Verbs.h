#pragma once
// The verbs of terramason-cli. A verb declares its arguments on its own subcommand; when the
// command line chooses it, it leaves its work in `run`, which main calls once parsing is done,
// so that a wrong argument stops everything before any file is touched.
#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/CliDesktop.h"
#include "core/oif.h"

enum ExitStatus : int { ExitDone = 0, ExitFailed = 1, ExitUsage = 2 };

using VerbWork = std::function<int()>;

struct Verb {
    const char* name;
    const char* arguments;  // as the usage line shows them
    const char* description;
    void (*declare)(CLI::App& verb, CliDesktop& desktop, VerbWork& run);
};

// Every verb, in the order the help lists them.
const std::vector<Verb>& Verbs();

// What the verbs that change a document share.
// The document a changing verb starts from: --into, or the empty stadium. False when refused.
bool StartDocument(const std::string& into, OIFFile& doc);
int SaveDocument(OIFFile& doc, const std::string& out);

// "0,2,5": part indices counted from 0. Throws CLI::ValidationError naming `option` on anything
// else, so that a malformed list stops the run before a file is read.
std::vector<std::size_t> PartIndices(const std::string& list, const char* option);
// The same as one flag per part of a document of `parts` parts, true for the listed ones. An
// index the document does not have is a usage error too.
std::vector<bool> ListedParts(const std::string& list, std::size_t parts, const char* option);

// What a run wrote, told in one line on standard error at its successful end unless --quiet.
extern bool QuietRun;
void NoteWritten(const std::string& what);
// "OUT.wrl (2,048 bytes)" for a file just written.
void NoteWrittenFile(const std::string& path);
// "wrote a.oif: 14 parts, 5,120 vertices, b.wrl (2,048 bytes)"; empty when nothing was written.
std::string WrittenLine();

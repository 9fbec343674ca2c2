#pragma once
// The verbs of terramason-cli. A verb declares its arguments on its own subcommand; when the
// command line chooses it, it leaves its work in `run`, which main calls once parsing is done,
// so that a wrong argument stops everything before any file is touched.
#include <functional>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/CliDesktop.h"

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

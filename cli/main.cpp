// terramason-cli: the editor's operations without a window, for batch work, scripts and tests.
#include <exception>
#include <iostream>
#include <map>
#include <new>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/CliDesktop.h"
#include "cli/Verbs.h"
#include "core/Desktop.h"
#include "core/Memory.h"
#include "core/ProgramState.h"

namespace {

constexpr const char* Program = "terramason-cli";

void PrintUsage(const CLI::App& app, const std::map<const CLI::App*, const Verb*>& verbs) {
    for (const CLI::App* chosen : app.get_subcommands()) {
        if (auto it = verbs.find(chosen); it != verbs.end()) {
            std::cerr << "Usage: " << Program << ' ' << it->second->name << ' ' << it->second->arguments << '\n';
            return;
        }
    }
    std::string names;
    for (const Verb& verb : Verbs()) names += (names.empty() ? "" : ", ") + std::string(verb.name);
    std::cerr << "Usage: " << Program << " VERB ARGUMENTS... (verbs: " << names << "; " << Program
              << " VERB --help tells more)\n";
}

// Parses the command line and runs the chosen verb; whatever a verb throws goes to main.
int RunCommandLine(int argc, char** argv, CliDesktop& desktop) {
    CLI::App app("The editor's operations without a window.", Program);
    app.require_subcommand(1);
    // Taken before or after the verb's own arguments.
    app.fallthrough();
    app.add_flag("--quiet", QuietRun, "Say nothing of the files written");
    VerbWork run;
    std::map<const CLI::App*, const Verb*> verbs;
    for (const Verb& verb : Verbs()) {
        CLI::App* sub = app.add_subcommand(verb.name, verb.description);
        verbs[sub] = &verb;
        verb.declare(*sub, desktop, run);
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& e) {
        return app.exit(e);  // --help
    } catch (const CLI::ParseError& e) {
        // CLI11 takes an unknown verb for a stray argument and only says a verb is missing.
        if (app.get_subcommands().empty() && argc > 1 && argv[1][0] != '-')
            std::cerr << "Unknown verb \"" << argv[1] << "\".\n";
        else std::cerr << e.what() << '\n';
        PrintUsage(app, verbs);
        return ExitUsage;
    }
    if (!run) return ExitUsage;
    try {
        const int status = run();
        if (status == ExitDone && !QuietRun && !WrittenLine().empty()) std::cerr << WrittenLine() << '\n';
        return status;
    } catch (const CLI::ValidationError& e) {
        // Arguments that only the document can judge, such as a part it does not have.
        std::cerr << e.what() << '\n';
        PrintUsage(app, verbs);
        return ExitUsage;
    }
}

}  // namespace

int main(int argc, char** argv) {
    KeepLargeBlocksForReuse();
    CliDesktop desktop(std::cerr);
    InstallDesktop(&desktop);
    // The editor's per-user folder: registry.conf and the hand-over files of .o conversion.
    AppFolder = DefaultAppFolder();

    // Whatever goes wrong ends the run with its message, never with a crash.
    int status = ExitFailed;
    std::string failure;
    try {
        status = RunCommandLine(argc, argv, desktop);
    } catch (const std::bad_alloc&) { failure = "There is not enough memory."; } catch (const std::exception& e) {
        failure = e.what();
    } catch (...) { failure = "An unknown error occurred."; }
    if (!failure.empty()) PrintMessageLines(std::cerr, failure);
    InstallDesktop(nullptr);
    return status;
}

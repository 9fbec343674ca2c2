#pragma once
// Runs the built terramason-cli as a user would and captures what it says.
#include <string>
#include <vector>

struct CliResult {
    int status = -1;  // the exit status; -1 when the program did not exit normally (a crash)
    std::string out, err;
    // stderr split at line ends, without the last empty piece.
    std::vector<std::string> errLines() const;
};

CliResult RunCli(const std::vector<std::string>& args);

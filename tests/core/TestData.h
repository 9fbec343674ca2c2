#pragma once
// Inputs and expected outputs worked out by hand, kept as files under tests/data.
#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "support/TestFiles.h"

inline std::string TestData(const std::string& name) { return ReadText(std::string(TM_TEST_DATA) + "/" + name); }

// The rows of a table kept under tests/data: a case a line, its cells parted by " | ", where \r,
// \n and \\ stand for their characters; blank lines and lines that start with # are no rows.
inline std::vector<std::vector<std::string>> TestTable(const std::string& name) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream in(TestData(name));
    for (std::string line, text; std::getline(in, line); text.clear()) {
        if (line.empty() || line[0] == '#') continue;
        for (std::size_t i = 0; i < line.size(); ++i) {
            char c = line[i];
            if (c == '\\' && i + 1 < line.size()) c = line[++i] == 'r' ? '\r' : line[i] == 'n' ? '\n' : line[i];
            text += c;
        }
        std::vector<std::string>& cells = rows.emplace_back();
        for (std::size_t at = 0, bar = 0; at <= text.size(); at = bar + 3) {
            bar = std::min(text.find(" | ", at), text.size());
            cells.push_back(text.substr(at, bar - at));
        }
    }
    return rows;
}

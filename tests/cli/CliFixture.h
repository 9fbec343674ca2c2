#pragma once
// A terramason-cli test whose scratch folder is also the program's per-user folder and Wine
// prefix, so that no run reads or writes the tester's own.
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/RunCli.h"
#include "support/TestFiles.h"

class CliScratchTest : public ::testing::Test {
protected:
    void SetUp() override {
        setenv("XDG_DATA_HOME", scratch.path().c_str(), 1);
        setenv("WINEPREFIX", scratch.file("no-wine").c_str(), 1);
    }
    std::string Put(const std::string& name, const std::vector<std::uint8_t>& bytes) {
        WriteFile(scratch.file(name), bytes);
        return scratch.file(name);
    }
    nlohmann::json Dump(const std::string& path) {
        const CliResult r = RunCli({"dump", path});
        EXPECT_EQ(r.status, 0) << r.err;
        return r.status == 0 ? nlohmann::json::parse(r.out) : nlohmann::json();
    }
    ScratchFolder scratch;
};

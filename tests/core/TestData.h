#pragma once
// Inputs and expected outputs worked out by hand, kept as files under tests/data.
#include <string>

#include "support/TestFiles.h"

inline std::string TestData(const std::string& name) { return ReadText(std::string(TM_TEST_DATA) + "/" + name); }

#pragma once
// What the fuzz targets share: a check that stops the run with a readable reason, so that
// libFuzzer records the input as a crash and the log says which property broke.
#include <cstdio>
#include <cstdlib>

#define FUZZ_CHECK(condition, what)                                                                                   \
    do {                                                                                                              \
        if (!(condition)) {                                                                                           \
            std::fprintf(stderr, "\nFUZZ CHECK FAILED at %s:%d: %s\n  (%s)\n", __FILE__, __LINE__, what, #condition); \
            std::abort();                                                                                             \
        }                                                                                                             \
    } while (false)

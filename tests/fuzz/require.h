// Require checks a condition that must hold whatever the input is. It ends the process otherwise,
// so that the fuzzer keeps the input and a replay of the corpus fails.

#ifndef FUZZ_REQUIRE_H
#define FUZZ_REQUIRE_H

#include <cstdio>
#include <cstdlib>

inline void RequireAt(bool holds, const char* what, const char* file, int line) {
    if (!holds) {
        std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, what);
        std::abort();
    }
}

#define REQUIRE(condition) RequireAt((condition), #condition, __FILE__, __LINE__)

#endif  // FUZZ_REQUIRE_H

// What fuzz targets hold the code to.
#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the program where a promise is broken: a fault that the fuzzer finds.
inline void require(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "A promise is broken: %s\n", promise);
        std::abort();
    }
}

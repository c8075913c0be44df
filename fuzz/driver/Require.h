// Require.h - a property that a fuzz target's input must not break.
#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the process with the property's text, in every kind of build.
#define REQUIRE(property)                                                       \
    do {                                                                        \
        if (!(property)) {                                                      \
            std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #property); \
            std::abort();                                                       \
        }                                                                       \
    } while (false)

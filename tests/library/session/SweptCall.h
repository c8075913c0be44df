// SweptCall.h - the calls of the closed libraries on a way, each of which a test lets fail in turn.
#pragma once

#include <algorithm>
#include <iterator>
#include <ostream>
#include <string>

#include "fakes/Script.h"

// One of them; a test adds what comes of its failure.
struct SweptCall {
    const char* function;
    int number;  // counts this function's calls from 1
};

inline std::ostream& operator<<(std::ostream& out, const SweptCall& call) {
    return out << call.function << " " << call.number;
}

// Whether a call that was made is one of `steps`.
template <typename Steps>
bool IsSwept(const Steps& steps, const std::string& function, int number) {
    return std::any_of(std::begin(steps), std::end(steps), [&](const SweptCall& step) {
        return function == step.function && number == step.number;
    });
}

template <typename Steps>
bool IsSwept(const Steps& steps, const fakes::Call& call) {
    return IsSwept(steps, call.function, call.number);
}

// Forward.h - calls of a library that is opened when the first of them is made.
#pragma once

#include <type_traits>

#include "platform/linux/SystemLibrary.h"

// The function `name` of `module`; null where there is no such module or function.
template <typename Function>
Function FindFunction(platform::ModuleHandle module, const char* name) {
    return module ? reinterpret_cast<Function>(platform::FindSymbol(module, name)) : nullptr;
}

// Calls `function`; `missing` comes out where it is null.
template <typename Result, typename... Arguments>
Result Forward(Result (*function)(Arguments...), std::type_identity_t<Result> missing,
               std::type_identity_t<Arguments>... arguments) {
    return function ? function(arguments...) : missing;
}

// The whole body of the function `name`, with its parameters; Module() tells the library. Looked up
// once, by whichever thread comes first.
#define FORWARD(name, missing, ...)                                                \
    static const auto function = FindFunction<decltype(&::name)>(Module(), #name); \
    return Forward(function, missing __VA_OPT__(, ) __VA_ARGS__)
// The same of a function without a result.
#define FORWARD_VOID(name, ...)                                                    \
    static const auto function = FindFunction<decltype(&::name)>(Module(), #name); \
    if (function) function(__VA_ARGS__)

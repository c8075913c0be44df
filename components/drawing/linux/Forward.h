// Forward.h - calls of a library that is opened when the first of them is made.
#pragma once

#include <type_traits>

#include "platform/linux/SystemLibrary.h"

// Calls `name` of `module` with these arguments; it is looked up once and kept in `function`.
// `missing` comes out where there is no such module or function.
template <typename Result, typename... Arguments>
Result Forward(platform::ModuleHandle module, const char* name, Result (*&function)(Arguments...),
               std::type_identity_t<Result> missing, std::type_identity_t<Arguments>... arguments) {
    if (!function && module) {
        function = reinterpret_cast<Result (*)(Arguments...)>(platform::FindSymbol(module, name));
    }
    return function ? function(arguments...) : missing;
}

// The same of a function without a result.
template <typename... Arguments>
void ForwardVoid(platform::ModuleHandle module, const char* name, void (*&function)(Arguments...),
                 std::type_identity_t<Arguments>... arguments) {
    if (!function && module) {
        function = reinterpret_cast<void (*)(Arguments...)>(platform::FindSymbol(module, name));
    }
    if (function) function(arguments...);
}

// The whole body of the function `name`, with its parameters; Module() tells the library.
#define FORWARD(name, missing, ...)              \
    static decltype(&::name) function = nullptr; \
    return Forward(Module(), #name, function, missing __VA_OPT__(, ) __VA_ARGS__)
#define FORWARD_VOID(name, ...)                  \
    static decltype(&::name) function = nullptr; \
    ForwardVoid(Module(), #name, function, __VA_ARGS__)

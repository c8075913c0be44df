// Registration.h - how a component's file is made known.
#pragma once

#include <string>

// The command for it. `setting` names the component's file, and `stem` is that file's name without
// what the platform puts around it. Where such a file stands beside the library it is named, else
// an example.
std::string HowToRegister(const char* setting, const char* stem);

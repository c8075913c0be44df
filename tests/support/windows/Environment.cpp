#include "support/Environment.h"

#include <cstdlib>

// The C library's call changes the system's variable too.
void SetVariable(const std::string& name, const std::string& value) {
    _putenv_s(name.c_str(), value.c_str());
}

void ClearVariable(const std::string& name) { _putenv_s(name.c_str(), ""); }

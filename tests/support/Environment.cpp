#include "support/Environment.h"

#include <cstdlib>

SavedVariable::SavedVariable(std::string name) : m_name(std::move(name)) {
    if (const char* value = std::getenv(m_name.c_str())) m_value = value;
}

SavedVariable::~SavedVariable() {
    if (m_value) {
        SetVariable(m_name, *m_value);
    } else {
        ClearVariable(m_name);
    }
}

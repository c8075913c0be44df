// Environment.h - this process's variables, as the C library and what it starts see them.
#pragma once

#include <optional>
#include <string>

void SetVariable(const std::string& name, const std::string& value);
void ClearVariable(const std::string& name);

// Gives a variable back at the end what it had at the beginning.
class SavedVariable {
public:
    explicit SavedVariable(std::string name);
    ~SavedVariable();
    SavedVariable(const SavedVariable&) = delete;
    SavedVariable& operator=(const SavedVariable&) = delete;

private:
    std::string m_name;
    std::optional<std::string> m_value;
};

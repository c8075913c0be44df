// ExportedNames.h - what a shared library lets out, as its file tells it.
#pragma once

#include <string>
#include <vector>

// The names of the functions that others can look up in the file, in the order of their bytes;
// empty if it can't be read.
std::vector<std::string> ExportedNames(const std::string& path);

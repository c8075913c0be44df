// LibraryFile.h - what a shared library's file tells of itself, as the loader reads it.
#pragma once

#include <string>
#include <vector>

// Names of functions and files stand as they are written in the file. A file that can't be read
// gives nothing.
std::vector<std::string> ExportedNames(const std::string& file);
// The files that the loader needs besides.
std::vector<std::string> NeededLibraries(const std::string& file);
// The functions that the file takes from any other.
std::vector<std::string> ImportedNames(const std::string& file);

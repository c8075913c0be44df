// LoadedObject.h - the shared libraries that this process has loaded: which file, which build.
#pragma once

#include <optional>
#include <string>

struct LoadedObject {
    std::string path;
    std::string buildId;  // hexadecimal, as the linker noted it; empty if it didn't
};

// By the file's name, such as "libTOVKx64.so". None if no such object is loaded.
std::optional<LoadedObject> FindLoaded(const std::string& fileName);

// The file of that name in the folder of the library, if it is there; else empty.
std::string BesideLibrary(const std::string& fileName);

// The program of that name on PATH; empty if there is none.
std::string FindProgram(const std::string& name);

// LoadedObject.h - the shared libraries that this process has loaded: which file, which build.
// Paths are this program's text (PathText.h).
#pragma once

#include <optional>
#include <string>

struct LoadedObject {
    std::string path;
    // What tells this build from others, as the file says it: "build 0123456789ab" of a linker's
    // note, or "version 1.2.3.4" of a version resource; else that there is none.
    std::string build;
};

// By the file's name, such as "libTOVKx64.so". None if no such object is loaded.
std::optional<LoadedObject> FindLoaded(const std::string& fileName);

// The file of that name in the folder of the library, if it is there; else empty.
std::string BesideLibrary(const std::string& fileName);

// The program of that name on PATH; empty if there is none.
std::string FindProgram(const std::string& name);

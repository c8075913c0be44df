#include "LibraryFile.h"

#include "LibraryFileOnLinux.h"

std::vector<std::string> ExportedNames(const std::string& file) {
    return AllMatches(OutputOf("nm -D --defined-only " + file), R"( [A-Za-z] ([^\s]+))");
}

std::vector<std::string> NeededLibraries(const std::string& file) {
    return AllMatches(OutputOf("readelf -d " + file), R"(\(NEEDED\).*\[(.*)\])");
}

std::vector<std::string> ImportedNames(const std::string& file) {
    return AllMatches(OutputOf("nm -D --undefined-only " + file), R"( [A-Za-z] ([^\s@]+))");
}

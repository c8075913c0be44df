#include "components/exports/ExportedNames.h"

#include <algorithm>
#include <sstream>

#include "support/Program.h"

std::vector<std::string> ExportedNames(const std::string& path) {
    std::istringstream lines(RunProgram({"/usr/bin/nm", "-D", "--defined-only", path}).out);
    std::vector<std::string> names;
    for (std::string address, kind, name; lines >> address >> kind >> name;) names.push_back(name);
    std::sort(names.begin(), names.end());
    return names;
}

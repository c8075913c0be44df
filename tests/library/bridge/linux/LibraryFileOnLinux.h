// LibraryFileOnLinux.h - the words of the tools that read ELF.
#pragma once

#include <cstdio>
#include <memory>
#include <regex>
#include <string>
#include <vector>

inline std::string OutputOf(const std::string& command) {
    const std::unique_ptr<FILE, decltype(&pclose)> pipe(popen(command.c_str(), "r"), &pclose);
    std::string output;
    for (int c = std::fgetc(pipe.get()); c != EOF; c = std::fgetc(pipe.get())) {
        output += static_cast<char>(c);
    }
    return output;
}

// The first group of every match of `pattern`.
inline std::vector<std::string> AllMatches(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
         ++match) {
        found.push_back((*match)[1]);
    }
    return found;
}

// PathText.h - paths as this program holds them: text in UTF-8 on Windows, bytes elsewhere.
#pragma once

#include <filesystem>
#include <string>

// Such a path for the standard library, which would take plain text for another code page's.
inline std::filesystem::path FileAt(const std::string& path) {
    return std::u8string(path.begin(), path.end());
}

// And back.
inline std::string TextOf(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

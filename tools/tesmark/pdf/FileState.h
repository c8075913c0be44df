// FileState.h - whether a path still leads to the same file with the same content.
#pragma once

#include <cstdint>
#include <string>

// Two that are equal were read from one file that nobody wrote in between, as far as the file
// system tells: a write within the same tick of its clock that keeps the size goes unseen.
struct FileState {
    // Which file it is, whatever its name.
    std::uint64_t volume = 0;
    std::uint64_t number = 0;
    std::uint64_t size = 0;
    // Of the last write, in the file system's own unit.
    std::int64_t written = 0;

    bool operator==(const FileState&) const = default;
    bool IsSameFile(const FileState& other) const {
        return volume == other.volume && number == other.number;
    }
};

// Follows links. False if there is nothing at `path`, or it can't be looked at.
bool ReadFileState(const std::string& path, FileState& state);

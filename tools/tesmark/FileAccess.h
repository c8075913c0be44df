// FileAccess.h - whole files in and out. Paths are this program's text (PathText.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Throws a usage Failure for "-", where neither standard input nor output can stand in a file's
// place.
void CheckIsNoStream(const std::string& path);

// The size of a file that can be opened for reading. Throws a file Failure for a folder, and for
// what isn't there or can't be opened; for "-" as CheckIsNoStream.
std::uint64_t CheckReadable(const std::string& path);

// The whole file; "-" is standard input to its end. Throws a file Failure if it can't be read or
// has more than `limit` bytes.
std::string ReadWholeFile(const std::string& path, std::uint64_t limit);

// Throws a file Failure if `output` is the file `input`, whatever the names of the two are, links
// followed. Neither what isn't there nor "-" is one.
void CheckIsNotInput(const std::string& output, const std::string& input);

// Writes a file beside `path`, brings it to the disk and gives it that name: `path` is either whole
// or as it was. A link there is followed, and what is no regular file refused. "-" is standard
// output. Throws a file Failure, or an interrupted one if an InterruptGuard was asked to stop.
void WriteWholeFile(const std::string& path, std::string_view content);

// Files.h - what the library asks of the file system. Paths are the file system's bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

// What stands between the folders of a path: "\\" or "/".
char PathSeparator();

// A path as text in UTF-8, for people and for documents, and such a text as a path. Where paths are
// the ANSI code page's, by the rules of CodePage.h; elsewhere the bytes as they are.
std::string Utf8FromPath(std::string_view path);
std::string PathFromUtf8(std::string_view text);

// True if something of that name is there, whatever it is and whatever its rights.
bool PathExists(const char* path);
bool IsDirectory(const char* path);
// One level, with default rights. False if it can't be made.
bool CreateDirectoryAt(const char* path);
// Makes every directory of `path`, which ends in a separator. False if one can't be made.
bool MakeDirectoryPath(const char* path);
// Is there a file of that name to be found? A path that ends in a separator never is.
bool FindFile(const char* path);
// The path of the file that `name` means in `folder`, which has a separator at its end: where the
// system's names regard case and none is there by the letter, one that differs in the case of
// letters from A to Z. `folder` with `name` behind it if there is no such file.
std::string FileInFolder(const std::string& folder, const std::string& name);

// True for a name that behind a folder's path doesn't mean a file in that folder: one with a
// separator, and on Windows that of a device or with a drive or a stream in it.
bool LeadsElsewhere(std::string_view name);

// The folder for the user's data of this machine, with "Velmora" and a separator at its end, not
// yet made; empty if the system tells none.
std::string UserDataFolder();
// The folder of the revocation lists, with a separator at its end.
std::string CrlFolder();

// Opens or makes `path`, shared with other processes, appends `record` in one write, with the
// line ends that a text file has on this platform. The file's size after it, or -1 if it could not
// be opened.
std::int64_t AppendTextRecord(const char* path, std::string_view record);
void RemoveFile(const char* path);
void RenameFile(const char* from, const char* to);

}  // namespace platform

// UserData.h - where this user's data of this machine lies, by version of the system.
#pragma once

#include <optional>
#include <string>

namespace platform {

// The major version as GetVersionExA tells this process, which depends on the program's manifest;
// nothing if it tells none.
std::optional<unsigned long> SystemMajorVersion();

// The name of the folder that programs of low integrity may write as well: "Low" behind `folder`
// for the major version 6 and where the version isn't known, `folder` itself for any other, later
// ones included.
std::string LowFolder(std::string folder, std::optional<unsigned long> majorVersion);

}  // namespace platform

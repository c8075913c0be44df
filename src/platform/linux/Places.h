// Places.h - where the user's and the machine's files are on this system.
#pragma once

#include <string>

namespace platform {

// $VELMORA_PREFIX with a separator at its end, or empty without it. Like every variable here, not
// heeded in a process with raised rights.
std::string PrefixFolder();

// The folder of $`variable` if that is an absolute path, else `belowHome` below the user's home,
// with a separator at its end. Empty if there is no home either.
std::string UserFolder(const char* variable, const char* belowHome);

}  // namespace platform

// LogHome.h - where the library's log goes in a test program.
#pragma once

#include <string>

namespace fakes {

// The library fixes its log's place when it is loaded, before any test runs. Where that place can
// be moved, the library of the script does it: it is loaded earlier, as the stand-ins need it, and
// makes a folder of the process, which is gone at its end. On Windows the system's place is the
// only one, and the log that is there is removed before the first test and behind the last.
std::string LogPath();

}  // namespace fakes

// LogHome.h - where the library's log goes in a test program.
#pragma once

#include <string>

namespace fakes {

// The library fixes its log's place when it is loaded, before any test runs. The library of the
// script is loaded earlier, as the stand-ins need it, and moves the log to a folder of the process,
// which is gone at its end.
std::string LogPath();

}  // namespace fakes

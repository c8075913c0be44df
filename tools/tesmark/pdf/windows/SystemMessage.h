// SystemMessage.h - the system's own words for what failed.
#pragma once

#include <string>

// Those for the calling thread's last error, in UTF-8 and English where the system has that, else
// in its own language; without a full stop at the end.
std::string LastErrorText();

// TimeStampWish.h - what --timestamp asks for: signatures that carry a time stamp, or none at all.
#pragma once

#include <string_view>

// The library stamps by a setting of the machine, not by a call. Throws a setup Failure unless it
// is on.
void RequireTimeStamps();

// 0 if the signature carries a time stamp that is good; else the certificate service's code.
int CheckTimeStamped(std::string_view signature);

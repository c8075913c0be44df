// TimeStampWish.h - signatures that are to carry a time stamp: whether they do, and what is told.
#pragma once

#include <string>
#include <string_view>

#include "Output.h"

// What a wait is told by (Terminal.h).
constexpr char kWaitingForAuthority[] = "Waiting for the time-stamp authority";

// The library stamps by a setting of the machine, not by a call. Whether it is on.
bool TimeStampsAreOn();

// For --timestamp, no signature without a time stamp. Throws a setup Failure unless the setting is
// on.
void RequireTimeStamps();

// 0 if the signature carries a time stamp that is good; else the certificate service's code.
int CheckTimeStamped(std::string_view signature);

// The line "time stamp <time> by <authority>..." or "no time stamp: <whyNone>", and in `json` the
// member timeStamp with its verdict, or null with the reason in noTimeStamp. Nothing, and an empty
// text, where the setting is off. `whyNone` is a clause for a signature that can't carry one, else
// empty. A LibrarySession is open.
std::string TellTimeStamp(std::string_view signature, const std::string& whyNone,
                          Json::Value& json);

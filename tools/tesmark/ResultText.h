// ResultText.h - what the result codes of the library and of its components mean.
#pragma once

#include <string>

#include "Failure.h"

// One English sentence without its full stop, for codes of the library, of the open certificate
// service and of the open seal library; for another code the words say so.
std::string ResultText(int code);

// What to do about it: lines of a hint, empty for most codes.
std::string ResultHint(int code);

// -3027, or 0x0B000020 for a component's.
std::string ResultNumber(int code);

// The exit code that suits a result: kPin for what a PIN can mend, kSetup for what is missing on
// the machine, kChoice for a dialog that wasn't shown, kFile for a file, else kFailed.
ExitCode ExitCodeFor(int code);

// True for the codes that stand for another one, which only the log tells.
bool HidesInnerCode(int code);

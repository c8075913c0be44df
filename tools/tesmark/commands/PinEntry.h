// PinEntry.h - the part of `tesmark doctor` about who asks for PINs.
#pragma once

#include "commands/Findings.h"

void ExaminePinEntry(Findings& findings);

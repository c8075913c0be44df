// ExamineSources.h - the part of `tesmark doctor` about where seals come from, and how services are
// reached.
#pragma once

#include "commands/Findings.h"

// What can't be found out is a problem, never a throw. No server is asked.
void ExamineSources(Findings& findings);

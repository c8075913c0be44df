// ExamineStore.h - what `tesmark doctor` finds in the settings' store.
#pragma once

#include "commands/Findings.h"

// Where the store is, whether it can be used, and each value that is set.
void ExamineStore(Findings& findings);

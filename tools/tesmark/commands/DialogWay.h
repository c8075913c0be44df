// DialogWay.h - the part of `tesmark doctor` about what shows dialogs.
#pragma once

#include "commands/Findings.h"

void ExamineDialogs(Findings& findings);

#include "commands/DialogWay.h"

void ExamineDialogs(Findings& findings) { findings.Good("dialogs", "the library's own windows"); }

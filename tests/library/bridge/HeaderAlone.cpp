#include "TesmarkOpt.h"

// Uses the header as a host in C++ does.
int StartForTestInCxx() { return InitKVLLib() == TESMARK_OK ? UnInitKVLLib() : TESMARK_FAILED; }

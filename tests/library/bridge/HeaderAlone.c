#include "TesmarkOpt.h"

/* Uses the header as a host in C does. */
int StartForTest(void);
int StartForTest(void) { return InitKVLLib() == TESMARK_OK ? UnInitKVLLib() : TESMARK_FAILED; }

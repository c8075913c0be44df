#include "commands/PinEntry.h"

// Nothing to mend on this machine, so no problem of it.
void ExaminePinEntry(Findings& findings) {
    findings.Good("PIN entry",
                  "the open certificate service has no window for it on Windows yet: give PINs "
                  "with --pin-file");
}

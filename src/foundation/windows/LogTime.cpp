#include "foundation/LogTime.h"

// Nothing is kept: for a thread's own memory the compiler's runtime makes events and semaphores,
// which stay behind each time that a host unloads the library.
LogTime CurrentLogTime() { return FormatLogTime(std::time(nullptr)); }

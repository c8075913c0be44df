#include "platform/Memory.h"

namespace platform {

// Large pages need a privilege there.
void ExpectToBeWritten(void*, std::size_t) {}

}  // namespace platform

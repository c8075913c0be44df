// Memory.h - what the system is told about memory.
#pragma once

#include <cstddef>

namespace platform {

// Says that all of this allocated memory is about to be written, so that the system may hand it
// out in large pages: to touch it for the first time costs more than to copy into it. A hint, which
// changes no content; of no use below some megabytes.
void ExpectToBeWritten(void* memory, std::size_t size);

}  // namespace platform

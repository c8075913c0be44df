#include "platform/Memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace platform {

void ExpectToBeWritten(void* memory, std::size_t size) {
    static const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto address = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t start = address / page * page;
    const std::uintptr_t end = (address + size + page - 1) / page * page;
    static_cast<void>(madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE));
}

}  // namespace platform

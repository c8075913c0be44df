#include "tests/components/seallibrary/linux/FailingAllocations.h"

#include <cstdlib>
#include <new>

namespace {

// Of one thread: a server on loopback goes on.
thread_local int g_allocationsLeft = -1;
thread_local bool g_hasFailed = false;

}  // namespace

void SetAllocationsLeft(int allocations) {
    g_allocationsLeft = allocations;
    g_hasFailed = false;
}

bool HasAllocationFailed() { return g_hasFailed; }

// By themselves in this file: the compiler would take what it inlines for a mismatch.
void* operator new(std::size_t size) {
    g_hasFailed = g_hasFailed || g_allocationsLeft == 0;
    if (g_allocationsLeft == 0) throw std::bad_alloc();
    if (g_allocationsLeft > 0) --g_allocationsLeft;
    if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

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

// By themselves in this file: the compiler would take what it inlines for a mismatch. All of them,
// since a sanitizer's own ones know what has to go with what.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    g_hasFailed = g_hasFailed || g_allocationsLeft == 0;
    if (g_allocationsLeft == 0) return nullptr;
    if (g_allocationsLeft > 0) --g_allocationsLeft;
    return std::malloc(size);
}
void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return operator new(size, std::nothrow);
}
void* operator new[](std::size_t size) { return operator new(size); }

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

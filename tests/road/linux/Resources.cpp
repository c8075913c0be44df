#include "road/Resources.h"

#include <link.h>
#include <malloc.h>

#include <filesystem>

namespace {

int CountObjects() {
    int count = 0;
    dl_iterate_phdr(
        [](dl_phdr_info*, std::size_t, void* data) {
            ++*static_cast<int*>(data);
            return 0;
        },
        &count);
    return count;
}

int CountDescriptors() {
    int count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

}  // namespace

Resources CurrentResources() {
    return {static_cast<long>(mallinfo2().uordblks), CountObjects(), CountDescriptors()};
}

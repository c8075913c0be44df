#include "components/picture/GdLibrary.h"

#include <cstdarg>

namespace {

// libgd would write to standard error, which is the host's.
void Silence(int, const char*, va_list) {}

}  // namespace

const CGdLibrary* CGdLibrary::Get() {
    static const CGdLibrary* const bound = []() -> const CGdLibrary* {
        static CGdLibrary library;
        if (!library.Bind()) return nullptr;
        library.setErrorMethod(Silence);
        return &library;
    }();
    return bound;
}

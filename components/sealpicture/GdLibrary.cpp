#include "components/sealpicture/GdLibrary.h"

#include <cstdarg>

#include "platform/SystemLibrary.h"

namespace {

template <typename Function>
bool Find(platform::ModuleHandle module, const char* name, Function& function) {
    function = reinterpret_cast<Function>(platform::FindSymbol(module, name));
    return function != nullptr;
}

// libgd would write to standard error, which is the host's.
void Silence(int, const char*, va_list) {}

}  // namespace

bool CGdLibrary::Bind(platform::ModuleHandle module) {
    return Find(module, "gdSetErrorMethod", setErrorMethod) &&
           Find(module, "gdImageCreateFromGifPtr", createFromGif) &&
           Find(module, "gdImageCreateFromPngPtr", createFromPng) &&
           Find(module, "gdImageCreateFromJpegPtrEx", createFromJpeg) &&
           Find(module, "gdImageCreateFromBmpPtr", createFromBmp) &&
           Find(module, "gdImageCreate", createPalette) &&
           Find(module, "gdImageCreateTrueColor", createTrueColor) &&
           Find(module, "gdImageGetTrueColorPixel", getTrueColorPixel) &&
           Find(module, "gdImageSetPixel", setPixel) &&
           Find(module, "gdImageTrueColorToPalette", trueColorToPalette) &&
           Find(module, "gdImageColorAllocate", colorAllocate) &&
           Find(module, "gdImageColorTransparent", colorTransparent) &&
           Find(module, "gdImageGifPtr", gif) && Find(module, "gdImageDestroy", destroy) &&
           Find(module, "gdFree", free);
}

const CGdLibrary* CGdLibrary::Get() {
    static const CGdLibrary* const bound = []() -> const CGdLibrary* {
        static CGdLibrary library;
        platform::ModuleHandle module = platform::LoadSystemLibrary("gd", 3);
        if (!module || !library.Bind(module)) return nullptr;
        library.setErrorMethod(Silence);
        return &library;
    }();
    return bound;
}

// libgd brings some sixty libraries along, whose loading takes longer than most commands; few of
// them touch a picture. So the calls that drawing makes stand here under libgd's names, and open it
// when the first of them is used. Where it can't be opened no picture can be read or made.
#include <gd.h>

#include "platform/linux/SystemLibrary.h"

namespace {

platform::ModuleHandle Gd() {
    static const platform::ModuleHandle module = platform::LoadSystemLibrary("gd", 3);
    return module;
}

// An image, or memory, is only ever at hand after the library was opened.
template <typename Result, typename... Arguments>
Result Forward(Result (*&function)(Arguments...), const char* name, Arguments... arguments) {
    if (!function && Gd()) {
        function = reinterpret_cast<Result (*)(Arguments...)>(platform::FindSymbol(Gd(), name));
    }
    return function ? function(arguments...) : Result();
}

}  // namespace

#define FORWARD(name, ...)                       \
    static decltype(&::name) function = nullptr; \
    return Forward(function, #name __VA_OPT__(, ) __VA_ARGS__)

void gdFree(void* memory) { FORWARD(gdFree, memory); }
void gdSetErrorMethod(gdErrorMethod method) { FORWARD(gdSetErrorMethod, method); }

gdImagePtr gdImageCreate(int width, int height) { FORWARD(gdImageCreate, width, height); }
gdImagePtr gdImageCreateTrueColor(int width, int height) {
    FORWARD(gdImageCreateTrueColor, width, height);
}
gdImagePtr gdImageCreateFromGifPtr(int size, void* data) {
    FORWARD(gdImageCreateFromGifPtr, size, data);
}
gdImagePtr gdImageCreateFromPngPtr(int size, void* data) {
    FORWARD(gdImageCreateFromPngPtr, size, data);
}
gdImagePtr gdImageCreateFromBmpPtr(int size, void* data) {
    FORWARD(gdImageCreateFromBmpPtr, size, data);
}
gdImagePtr gdImageCreateFromJpegPtrEx(int size, void* data, int ignoreWarning) {
    FORWARD(gdImageCreateFromJpegPtrEx, size, data, ignoreWarning);
}
void gdImageDestroy(gdImagePtr image) { FORWARD(gdImageDestroy, image); }

int gdImageGetTrueColorPixel(gdImagePtr image, int x, int y) {
    FORWARD(gdImageGetTrueColorPixel, image, x, y);
}
void gdImageSetPixel(gdImagePtr image, int x, int y, int colour) {
    FORWARD(gdImageSetPixel, image, x, y, colour);
}
void gdImageAlphaBlending(gdImagePtr image, int blending) {
    FORWARD(gdImageAlphaBlending, image, blending);
}
void gdImageSaveAlpha(gdImagePtr image, int save) { FORWARD(gdImageSaveAlpha, image, save); }

int gdImageTrueColorToPalette(gdImagePtr image, int dither, int colours) {
    FORWARD(gdImageTrueColorToPalette, image, dither, colours);
}
int gdImageColorAllocate(gdImagePtr image, int red, int green, int blue) {
    FORWARD(gdImageColorAllocate, image, red, green, blue);
}
int gdImageColorResolve(gdImagePtr image, int red, int green, int blue) {
    FORWARD(gdImageColorResolve, image, red, green, blue);
}
void gdImageColorTransparent(gdImagePtr image, int colour) {
    FORWARD(gdImageColorTransparent, image, colour);
}

void* gdImageGifPtr(gdImagePtr image, int* size) { FORWARD(gdImageGifPtr, image, size); }
void* gdImagePngPtr(gdImagePtr image, int* size) { FORWARD(gdImagePngPtr, image, size); }

// libgd brings some sixty libraries along, whose loading takes longer than most commands; few of
// them touch a picture. So the calls that drawing makes stand here under libgd's names, and open it
// when the first of them is used. Where it can't be opened no picture can be read or made.
#include <gd.h>

#include "components/drawing/linux/Forward.h"

namespace {

platform::ModuleHandle Module() {
    static const platform::ModuleHandle module = platform::LoadSystemLibrary("gd", 3);
    return module;
}

}  // namespace

void gdFree(void* memory) { FORWARD_VOID(gdFree, memory); }
void gdSetErrorMethod(gdErrorMethod method) { FORWARD_VOID(gdSetErrorMethod, method); }

gdImagePtr gdImageCreate(int width, int height) { FORWARD(gdImageCreate, nullptr, width, height); }
gdImagePtr gdImageCreateTrueColor(int width, int height) {
    FORWARD(gdImageCreateTrueColor, nullptr, width, height);
}
gdImagePtr gdImageCreateFromGifPtr(int size, void* data) {
    FORWARD(gdImageCreateFromGifPtr, nullptr, size, data);
}
gdImagePtr gdImageCreateFromPngPtr(int size, void* data) {
    FORWARD(gdImageCreateFromPngPtr, nullptr, size, data);
}
gdImagePtr gdImageCreateFromBmpPtr(int size, void* data) {
    FORWARD(gdImageCreateFromBmpPtr, nullptr, size, data);
}
gdImagePtr gdImageCreateFromJpegPtrEx(int size, void* data, int ignoreWarning) {
    FORWARD(gdImageCreateFromJpegPtrEx, nullptr, size, data, ignoreWarning);
}
void gdImageDestroy(gdImagePtr image) { FORWARD_VOID(gdImageDestroy, image); }

int gdImageGetTrueColorPixel(gdImagePtr image, int x, int y) {
    FORWARD(gdImageGetTrueColorPixel, 0, image, x, y);
}
void gdImageSetPixel(gdImagePtr image, int x, int y, int colour) {
    FORWARD_VOID(gdImageSetPixel, image, x, y, colour);
}
void gdImageAlphaBlending(gdImagePtr image, int blending) {
    FORWARD_VOID(gdImageAlphaBlending, image, blending);
}
void gdImageSaveAlpha(gdImagePtr image, int save) { FORWARD_VOID(gdImageSaveAlpha, image, save); }
void gdImageSetResolution(gdImagePtr image, const unsigned int x, const unsigned int y) {
    FORWARD_VOID(gdImageSetResolution, image, x, y);
}

int gdImageTrueColorToPalette(gdImagePtr image, int dither, int colours) {
    FORWARD(gdImageTrueColorToPalette, 0, image, dither, colours);
}
int gdImageColorAllocate(gdImagePtr image, int red, int green, int blue) {
    FORWARD(gdImageColorAllocate, 0, image, red, green, blue);
}
int gdImageColorResolve(gdImagePtr image, int red, int green, int blue) {
    FORWARD(gdImageColorResolve, 0, image, red, green, blue);
}
void gdImageColorTransparent(gdImagePtr image, int colour) {
    FORWARD_VOID(gdImageColorTransparent, image, colour);
}

void* gdImageGifPtr(gdImagePtr image, int* size) { FORWARD(gdImageGifPtr, nullptr, image, size); }
void* gdImagePngPtr(gdImagePtr image, int* size) { FORWARD(gdImagePngPtr, nullptr, image, size); }

#include "components/picture/GdLibrary.h"

#include "platform/linux/SystemLibrary.h"

namespace {

template <typename Function>
bool Find(platform::ModuleHandle module, const char* name, Function& function) {
    function = reinterpret_cast<Function>(platform::FindSymbol(module, name));
    return function != nullptr;
}

}  // namespace

// libgd brings some sixty libraries along, whose loading takes longer than most commands, and few
// processes ever touch a picture.
bool CGdLibrary::Bind() {
    const platform::ModuleHandle module = platform::LoadSystemLibrary("gd", 3);
    return module && Find(module, "gdSetErrorMethod", setErrorMethod) &&
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
           Find(module, "gdImageColorResolve", colorResolve) &&
           Find(module, "gdImageColorTransparent", colorTransparent) &&
           Find(module, "gdImageGifPtr", gif) &&
           Find(module, "gdImageAlphaBlending", alphaBlending) &&
           Find(module, "gdImageSaveAlpha", saveAlpha) &&
           Find(module, "gdImageSetResolution", setResolution) &&
           Find(module, "gdImagePngPtr", png) && Find(module, "gdImageJpegPtr", jpeg) &&
           Find(module, "gdImageBmpPtr", bmp) && Find(module, "gdImageDestroy", destroy) &&
           Find(module, "gdFree", free);
}

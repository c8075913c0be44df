// GdLibrary.h - the calls of libgd that components make, bound when first used, wherever it stands.
#pragma once

#include <gd.h>

#include <memory>

class CGdLibrary {
public:
    // Null if libgd or one of its calls isn't there. Stays open until the process ends. May be
    // called from any thread.
    static const CGdLibrary* Get();

    decltype(&::gdSetErrorMethod) setErrorMethod = nullptr;
    decltype(&::gdImageCreateFromGifPtr) createFromGif = nullptr;
    decltype(&::gdImageCreateFromPngPtr) createFromPng = nullptr;
    decltype(&::gdImageCreateFromJpegPtrEx) createFromJpeg = nullptr;
    decltype(&::gdImageCreateFromBmpPtr) createFromBmp = nullptr;
    decltype(&::gdImageCreate) createPalette = nullptr;
    decltype(&::gdImageCreateTrueColor) createTrueColor = nullptr;
    decltype(&::gdImageGetTrueColorPixel) getTrueColorPixel = nullptr;
    decltype(&::gdImageSetPixel) setPixel = nullptr;
    decltype(&::gdImageTrueColorToPalette) trueColorToPalette = nullptr;
    decltype(&::gdImageColorAllocate) colorAllocate = nullptr;
    decltype(&::gdImageColorResolve) colorResolve = nullptr;
    decltype(&::gdImageColorTransparent) colorTransparent = nullptr;
    decltype(&::gdImageGifPtr) gif = nullptr;
    decltype(&::gdImageAlphaBlending) alphaBlending = nullptr;
    decltype(&::gdImageSaveAlpha) saveAlpha = nullptr;
    decltype(&::gdImageSetResolution) setResolution = nullptr;
    decltype(&::gdImagePngPtr) png = nullptr;
    decltype(&::gdImageJpegPtr) jpeg = nullptr;
    decltype(&::gdImageBmpPtr) bmp = nullptr;
    decltype(&::gdImageDestroy) destroy = nullptr;
    decltype(&::gdFree) free = nullptr;

private:
    bool Bind();
};

struct GdDestroy {
    void operator()(gdImage* image) const { CGdLibrary::Get()->destroy(image); }
};
using GdImageHandle = std::unique_ptr<gdImage, GdDestroy>;

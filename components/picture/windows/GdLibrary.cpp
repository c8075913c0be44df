#include "components/picture/GdLibrary.h"

// Part of the library here.
bool CGdLibrary::Bind() {
    setErrorMethod = &::gdSetErrorMethod;
    createFromGif = &::gdImageCreateFromGifPtr;
    createFromPng = &::gdImageCreateFromPngPtr;
    createFromJpeg = &::gdImageCreateFromJpegPtrEx;
    createFromBmp = &::gdImageCreateFromBmpPtr;
    createPalette = &::gdImageCreate;
    createTrueColor = &::gdImageCreateTrueColor;
    getTrueColorPixel = &::gdImageGetTrueColorPixel;
    setPixel = &::gdImageSetPixel;
    trueColorToPalette = &::gdImageTrueColorToPalette;
    colorAllocate = &::gdImageColorAllocate;
    colorResolve = &::gdImageColorResolve;
    colorTransparent = &::gdImageColorTransparent;
    gif = &::gdImageGifPtr;
    alphaBlending = &::gdImageAlphaBlending;
    saveAlpha = &::gdImageSaveAlpha;
    setResolution = &::gdImageSetResolution;
    png = &::gdImagePngPtr;
    jpeg = &::gdImageJpegPtr;
    bmp = &::gdImageBmpPtr;
    destroy = &::gdImageDestroy;
    free = &::gdFree;
    return true;
}

// GdPicture.h - owning handles for what libgd hands out.
#pragma once

#include <gd.h>

#include <memory>

struct GdImageDestroyer {
    void operator()(gdImagePtr image) const { gdImageDestroy(image); }
};
using GdImage = std::unique_ptr<gdImageStruct, GdImageDestroyer>;

struct GdFree {
    void operator()(void* memory) const { gdFree(memory); }
};
using GdBytes = std::unique_ptr<void, GdFree>;

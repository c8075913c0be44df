// PictureCache.h - the fetch of a picture that an earlier call has left in g_sealInfoCache.
#pragma once

#include "host/ModuleState.h"

// Copies exactly `length` bytes, zero bytes behind what is stored, and cuts the cache's length at
// its first zero byte; the bytes behind that stay. Throws StringFailure for a negative length.
inline void CopyCachedPicture(unsigned char* out, int length) {
    g_sealInfoCache.CopyTo(out, length);
    g_sealInfoCache.CutAtZeroByte();
}

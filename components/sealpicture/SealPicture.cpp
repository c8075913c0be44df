#include "platform/closed/SealPicture.h"

#include <climits>
#include <cstring>

#include "components/sealpicture/Conversion.h"
#include "components/sealpicture/PictureCodes.h"

int MR_Init(void) { return kPictureOk; }

int MR_Release(void) { return kPictureOk; }

int AddWatermarkOnEseal(const unsigned char*, int, unsigned char*, int*) {
    return kPictureNotAvailable;
}

int SealFormatConvert(const unsigned char* picture, int pictureLen, unsigned char* out,
                      int* outLen) {
    if (!picture || pictureLen <= 0 || !outLen) return kPictureBadArgument;
    std::string gif;
    const std::string_view bytes(reinterpret_cast<const char*>(picture),
                                 static_cast<std::size_t>(pictureLen));
    if (const int code = ConvertToGif(bytes, gif)) return code;
    if (gif.size() > INT_MAX) return kPictureTooLarge;
    const int capacity = *outLen;
    *outLen = static_cast<int>(gif.size());
    if (!out) return kPictureOk;
    if (capacity < *outLen) return kPictureBufferTooSmall;
    std::memcpy(out, gif.data(), gif.size());
    return kPictureOk;
}

#include "platform/closed/SealPicture.h"

#include <climits>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "components/sealpicture/Conversion.h"
#include "components/sealpicture/PictureCodes.h"
#include "components/sealpicture/Watermark.h"

namespace {

using Treatment = int (*)(std::string_view picture, std::string& made);

// Nothing is thrown into the caller.
int Treat(Treatment treatment, const unsigned char* picture, int pictureLen,
          std::string& made) noexcept {
    if (!picture || pictureLen <= 0) return kPictureBadArgument;
    try {
        const std::string_view bytes(reinterpret_cast<const char*>(picture),
                                     static_cast<std::size_t>(pictureLen));
        const int code = treatment(bytes, made);
        return code == kPictureOk && made.size() > INT_MAX ? kPictureTooLarge : code;
    } catch (const std::bad_alloc&) {
        return kPictureNoMemory;
    }
}

int HandOut(const std::string& made, int capacity, unsigned char* out, int* outLen) {
    *outLen = static_cast<int>(made.size());
    if (!out) return kPictureOk;
    if (capacity < *outLen) return kPictureBufferTooSmall;
    std::memcpy(out, made.data(), made.size());
    return kPictureOk;
}

}  // namespace

int MR_Init(void) { return kPictureOk; }

int MR_Release(void) { return kPictureOk; }

int AddWatermarkOnEseal(const unsigned char* picture, int pictureLen, unsigned char* out,
                        int* outLen) {
    if (!outLen) return -kPictureBadArgument;
    std::string marked;
    if (const int code = Treat(AddWatermark, picture, pictureLen, marked)) return -code;
    // The library hands no capacity in: its buffer has the size that the query gave.
    const int capacity = *outLen > 0 ? *outLen : INT_MAX;
    return -HandOut(marked, capacity, out, outLen);
}

int SealFormatConvert(const unsigned char* picture, int pictureLen, unsigned char* out,
                      int* outLen) {
    if (!outLen) return kPictureBadArgument;
    std::string gif;
    if (const int code = Treat(ConvertToGif, picture, pictureLen, gif)) return code;
    return HandOut(gif, *outLen, out, outLen);
}

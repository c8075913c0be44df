#include "session/Watermark.h"

#include "platform/closed/SealPicture.h"

// The library is told no capacity, and a result above 0 is none of its failures here.
int session::SetWatermarkOnEseal(const unsigned char* picture, int pictureLen, unsigned char* out,
                                 int* outLen) {
    MR_Init();
    int length = 0;
    const int result = AddWatermarkOnEseal(picture, pictureLen, out, &length);
    if (result >= 0) *outLen = length;
    MR_Release();
    return result;
}

// SealPicture.h - the interface of the seal picture library, linked by its name.
#pragma once

// All return 0 for success or a code of the library. A pair (out, outLen): a null `out` asks for
// the size, which comes back in `*outLen`. The codes of AddWatermarkOnEseal are negative, and it
// takes an `*outLen` of 0 for a buffer that is large enough.
extern "C" {

int MR_Init(void);
int MR_Release(void);
int AddWatermarkOnEseal(const unsigned char* picture, int pictureLen, unsigned char* out,
                        int* outLen);
// Any picture to GIF.
int SealFormatConvert(const unsigned char* picture, int pictureLen, unsigned char* out,
                      int* outLen);

}  // extern "C"

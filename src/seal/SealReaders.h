// SealReaders.h - pictures of seals that come from the online service, and pictures as text.
#pragma once

#include <string>

#include "foundation/HeapBuffer.h"

// The picture of an old "ES" file; -3 if it is none, or ends too early. Empties `seal`.
int ReadSealPicEs(std::string seal, CBuffer& picture);

// The picture of any other seal, by the seal library, whose code passes through; its size goes to
// `*width` and `*height`.
int ReadSealPicV3(std::string seal, CBuffer& picture, int* width, int* height);

// Base64 of the picture in a terminated block of the C heap, which the caller frees. Always 0.
int GetSealPicBase64(const unsigned char* picture, int pictureLen, char** base64);

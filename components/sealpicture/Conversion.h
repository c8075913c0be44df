// Conversion.h - any picture that a seal may hold, as a GIF.
#pragma once

#include <string>
#include <string_view>

// PNG, JPEG and BMP become a GIF as GifOfPaint makes it; a GIF stays as it is, byte by byte, once
// it has been found readable. Returns a PictureCode; but for kPictureOk `gif` is empty.
int ConvertToGif(std::string_view picture, std::string& gif);

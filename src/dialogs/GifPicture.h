// GifPicture.h - a GIF file as pixels.
#pragma once

#include <string_view>

#include "platform/DialogWindow.h"

// What is larger isn't decoded, and nothing is allocated for it.
constexpr int kMaxGifSide = 16'384;
constexpr int kMaxGifPixels = 16 * 1024 * 1024;

// The first frame of a GIF (87a or 89a), at its place on the file's screen, over `background`: that
// is what stands where the frame is transparent or doesn't reach. A screen that doesn't hold the
// frame grows with it. Of a file that is cut off or damaged the rows before the damage. A picture
// without pixels for anything else: no GIF, no frame, no colours, a size beyond the limits, no
// memory. Never throws.
platform::Picture DecodeGif(std::string_view file, platform::Colour background);

// Pixels.h - a picture's pixels as a line carries them.
#pragma once

#include <string>
#include <string_view>

#include "platform/DialogWindow.h"

namespace platform {

// Red, green and blue of each pixel in Base64 (RFC 4648, section 4): four digits for each, so none
// is padding.
void AppendPixels(const Picture& picture, std::string& line);

// Fills `picture.pixels`, whose number is that of `picture.width` and `picture.height`. False if
// `text` is anything else.
bool ParsePixels(std::string_view text, Picture& picture);

// The picture, or if it has more than `most` pixels a smaller one of the same shape that has at
// most as many, each the average of those that it stands for. A picture without pixels, or with
// another number than its sides tell, has none afterwards.
Picture ReducedPicture(const Picture& picture, int most);

}  // namespace platform

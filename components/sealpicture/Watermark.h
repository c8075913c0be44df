// Watermark.h - the mark on a seal's picture that a person sees.
#pragma once

#include <string>
#include <string_view>

// Slanting stripes over the whole picture, from the lower left to the upper right: one begins every
// `StripePeriod` pixels of a row and is an eighth of that wide. Where they cross paint, it is mixed
// in equal parts with white, or if it is light itself, with a pale blue; nothing becomes more or
// less transparent, and what has no paint gets none. The form is that of the picture (GIF, PNG,
// JPEG, BMP), and so is the size; of a GIF with several frames the first one is left. The same
// picture gives the same bytes every time.
// Returns a PictureCode; but for kPictureOk `marked` is empty.
int AddWatermark(std::string_view picture, std::string& marked);

// A sixth of the shorter side, 8 at the least.
int StripePeriod(int width, int height);

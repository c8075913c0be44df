// PersonalSeal.h - the control's drawings: a PNG with a transparent background at 300 dpi.
#pragma once

#include <string>
#include <string_view>

// All texts are UTF-8. Each gives kSealDrawn with a picture in `png`, or another code of
// SealControlCodes.h with `png` empty. None throws: what can't go on for want of memory is
// kSealNoDrawing. They may be called from any thread.

// The text in columns, in the style of the settings (ReadSealSettings; an element that is missing
// is as in a SealStyle), as large as text, spaces and frame make it.
int DrawStyledSeal(std::string_view settingsXml, std::string_view text, std::string& png) noexcept;

// A name in a thin frame, exactly `width` by `height` pixels, both from 24 to 4096: one to three
// lines in 宋体, red, as large as they can be. kSealBadSize where that is less than 2 points.
int DrawNameSeal(std::string_view text, int width, int height, std::string& png) noexcept;

// Kind 0: `text1` as a line. Kind 1: `text1`, and below it `text2` at half its size, such as a name
// and a date; one of them may be blank. Both in 宋体 of 28 points, red, without a frame.
int DrawContentPicture(int kind, std::string_view text2, std::string_view text1,
                       std::string& png) noexcept;

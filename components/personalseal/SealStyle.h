// SealStyle.h - how a seal is to look, and the settings that say so.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Lengths are points, 72 to the inch.
struct SealStyle {
    std::uint32_t colour = 0xD7000F;  // 0xRRGGBB
    int frameThick = 3;
    std::string font = "SimSun";  // UTF-8, as the caller gave it
    bool frame = false;
    int space = 6;  // between characters
    int size = 28;  // of a character
    bool bold = false;
    int perColumn = 1;  // characters from the top to the bottom
};

inline constexpr int kSealMostFrameThick = 20;
inline constexpr int kSealMostSpace = 100;
inline constexpr int kSealLeastSize = 5;
inline constexpr int kSealMostSize = 100;
inline constexpr int kSealMostPerColumn = 10;
inline constexpr std::size_t kSealLongestSettings = 64 * 1024;

// Reads settings: elements m_iRadioColor (0 red, 1 blue, 2 black), m_strFrameThick, m_strFont,
// m_bFrame (0 or another number), m_strFontSpace, m_strFontSize, m_strFontThick ("粗体" for bold)
// and m_strArrangement (the first number in it), in any order, blanks around a value allowed. One
// that is missing leaves what `style` has.
//
// Their writer doesn't escape a value. So values are read as they stand, whatever else the text
// is, and the font's name is all between the first <m_strFont> and the last </m_strFont>: markup
// in it is a part of the name, and can't pass for another element.
//
// kSealDrawn; or kSealBadSettings where no element is there at all, the text is too long, or a
// number is none or out of its range: thickness 1 to 20 (not looked at without a frame), space 0
// to 100, size 5 to 100, per column 1 to 10. `style` is then of no use.
int ReadSealSettings(std::string_view settings, SealStyle& style);

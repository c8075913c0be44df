// SealControlCodes.h - why the drawing control made no picture. All are negative, as a failed call
// is; on Windows they are the EXCEPINFO's scode.
#pragma once

inline constexpr int kSealDrawn = 0;
inline constexpr int kSealNoText = -101;       // there is nothing in the text but blanks
inline constexpr int kSealLongText = -102;     // more than kSealLongestText characters
inline constexpr int kSealBadText = -103;      // the text is not UTF-8
inline constexpr int kSealBadSettings = -104;  // no settings, or a value out of its range
inline constexpr int kSealBadSize = -105;    // of the picture: out of range, or the text can't fit
inline constexpr int kSealBadKind = -106;    // a kind of content picture that isn't known
inline constexpr int kSealNoFont = -107;     // a character that no font of the machine has
inline constexpr int kSealNoDrawing = -108;  // FreeType or libgd is missing, or memory ran out

// PersonalSeal.h - pictures of texts, drawn by the personal seal control.
#pragma once

#include <string>

// What of the control is asked for.
enum class PersonalSealMode {
    FixedStyle = 0,  // the text in the library's own style
    BySize = 1,      // the text within 300 by 100
    Styled = 2,      // the text in a style of the caller's
};

// Numbers go to the control as they are but for the two with a range.
struct PersonalSealStyle {
    int radioColor;
    int frameThick;
    std::string font;  // goes into the settings unescaped, up to its first zero byte
    int bFrame;
    int fontSpace;
    int fontSize;   // 10 to 40
    int bold;       // 1; any other number is the regular weight
    int perColumn;  // 1 to 5 characters
};

// Both draw by a control that is made for this one drawing, unless g_personalSealEngine still holds
// one, and let it go; COM is the host's to have entered. Texts are GBK up to their first zero byte
// and aren't looked at.
//
// 0 with the picture's bytes in `picture`, which is left as it was where the control gives none.
// -1: there is no such control. -2: it lacks the method, or the call failed. -2014: the style is
// out of range, and the control stays in g_personalSealEngine. An exhausted memory that no
// automation string can be had from is StringFailure::kOutOfMemory; the control stays then too.
int BuildPersonalSeal(const std::string& content, PersonalSealMode mode, std::string& picture,
                      const PersonalSealStyle& style);

// What `kind` and the texts mean is the control's own.
int BuildContentPicture(int kind, const std::string& text1, const std::string& text2,
                        std::string& picture);

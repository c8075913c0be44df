// TtyHints.h - what the terminal's dialogs say besides the templates' texts, in UTF-8.
#pragma once

#include <string_view>

struct TtyHints {
    std::u8string_view title;
    std::u8string_view number;    // a number chooses
    std::u8string_view text;      // a text goes into the field
    std::u8string_view chosen;    // in front of what was chosen
    std::u8string_view field;     // in front of what stands in the field
    std::u8string_view noNumber;  // what was typed is none of the numbers
    std::u8string_view preview;   // in front of the preview
    std::u8string_view picture;   // in front of a picture's size
    std::u8string_view pixels;    // behind it
    std::u8string_view blank;     // a preview with nothing in it
    std::u8string_view answer;    // the return key answers a message
    std::u8string_view colon;
    std::u8string_view separator;
    // The buttons' labels where they aren't the templates'.
    bool ownLabels;
    std::u8string_view ok;
    std::u8string_view cancel;
    std::u8string_view other;
};

inline constexpr TtyHints kChineseHints = {
    .title = u8"电子签章",
    .number = u8"输入序号选择",
    .text = u8"输入新内容（“=”之后的照原样）",
    .chosen = u8"已选择：",
    .field = u8"当前内容：",
    .noNumber = u8"没有这个序号。",
    .preview = u8"印章预览：",
    .picture = u8"图片，",
    .pixels = u8" 像素",
    .blank = u8"（空）",
    .answer = u8"按回车键确定",
    .colon = u8"：",
    .separator = u8"；",
    .ownLabels = false,
    .ok = u8"",
    .cancel = u8"",
    .other = u8"",
};

// For a terminal that can't show Chinese.
inline constexpr TtyHints kAsciiHints = {
    .title = u8"Electronic seal",
    .number = u8"number to choose",
    .text = u8"new text (as it is behind \"=\")",
    .chosen = u8"Chosen: ",
    .field = u8"Text: ",
    .noNumber = u8"There is no such number.",
    .preview = u8"Preview: ",
    .picture = u8"picture, ",
    .pixels = u8" pixels",
    .blank = u8"(empty)",
    .answer = u8"press Return for OK",
    .colon = u8": ",
    .separator = u8"; ",
    .ownLabels = true,
    .ok = u8"OK",
    .cancel = u8"Cancel",
    .other = u8"test the connection",
};

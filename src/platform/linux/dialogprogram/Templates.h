// Templates.h - the dialogs' templates, as both ends of a dialog know them.
#pragma once

#include <span>
#include <string_view>

namespace platform {

enum class ControlKind {
    DefaultButton,  // pressed by the return key too
    Button,
    List,     // drop-down with an edit field; it doesn't sort what is put at its end
    Edit,     // one line, which scrolls
    Label,    // left-aligned
    Surface,  // a label centred on both axes that can be painted too
    Tree,     // with lines and buttons, at the root as well
    Group,    // a frame with a heading
};

constexpr int kNoControl = -1;
constexpr int kCancelButton = 2;

// Places are in dialog units: a quarter of the face's average width, an eighth of its height.
struct TemplateControl {
    ControlKind kind;
    int id;  // kNoControl for what is never spoken of
    std::u8string_view text;
    int left;
    int top;
    int width;
    int height;
    int capacity = 0;  // of an edit field: the most bytes of its text, as FrontWithin counts them
};

// Without a caption, above all other windows.
struct DialogTemplate {
    int id;
    int width;
    int height;
    bool centred;  // the program puts it in the middle of the screen; else the library places it
    std::span<const TemplateControl> controls;
};

// Null if there is no such template.
const DialogTemplate* FindTemplate(int id);

// Null if it has no such control.
const TemplateControl* FindControl(const DialogTemplate& dialog, int id);

}  // namespace platform

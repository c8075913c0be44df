#include "tools/dialog/tty/TtyFrontEnd.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "platform/linux/dialogprogram/Utf8.h"
#include "tools/dialog/tty/TtyText.h"

using platform::BytesOf;
using platform::ControlKind;
using platform::TemplateControl;

namespace {

// There is neither a window nor a screen: any size will do.
constexpr int kPixelsInUnit = 2;

// Steps of indentation.
constexpr int kDeepest = 20;

std::string Text(std::u8string_view text) { return std::string(BytesOf(text)); }

bool IsButton(const TemplateControl& control) {
    return control.kind == ControlKind::DefaultButton || control.kind == ControlKind::Button;
}

char LetterOf(const TemplateControl& button) {
    if (button.kind == ControlKind::DefaultButton) return 'y';
    return button.id == platform::kCancelButton ? 'n' : 't';
}

std::string WithoutBlanks(const std::string& line) {
    const auto first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos) return {};
    return line.substr(first, line.find_last_not_of(" \t\r") - first + 1);
}

std::string Numbered(std::size_t number, const std::string& text) {
    std::string digits = std::to_string(number);
    digits.insert(0, digits.size() < 3 ? 3 - digits.size() : 0, ' ');
    return digits + "  " + text;
}

}  // namespace

TtyFrontEnd::TtyFrontEnd(const TtyHints& hints, Print print)
    : m_hints(hints), m_print(std::move(print)) {}

int TtyFrontEnd::Find(ControlKind kind) const {
    if (!m_dialog) return platform::kNoControl;
    const auto& controls = m_dialog->controls;
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [kind](const auto& each) { return each.kind == kind; });
    return found == controls.end() ? platform::kNoControl : found->id;
}

void TtyFrontEnd::Typed(const std::string& line) {
    const std::string typed = WithoutBlanks(line);
    if (!m_dialog) {
        m_talk->Answered();
        return;
    }
    const int field = Find(ControlKind::Edit);
    if (PressButton(typed)) return;
    if (field == platform::kNoControl) {
        Choose(typed);
    } else {
        const int room = platform::FindControl(*m_dialog, field)->capacity;
        m_contents.field =
            platform::FrontWithin(typed.starts_with('=') ? typed.substr(1) : typed, room);
        m_talk->Typed(field, m_contents.field);
        PrintField();
    }
    Prompt();
}

void TtyFrontEnd::Closed() {
    Line("");
    if (m_dialog)
        m_talk->ClosedWindow();
    else
        m_talk->Answered();
}

// The return key alone presses the default button.
bool TtyFrontEnd::PressButton(const std::string& typed) {
    for (const TemplateControl& control : m_dialog->controls) {
        if (!IsButton(control)) continue;
        const bool isDefault = control.kind == ControlKind::DefaultButton && typed.empty();
        if (!isDefault && typed != std::string(1, LetterOf(control)) && typed != LabelOf(control))
            continue;
        m_talk->Pressed(control.id);
        return true;
    }
    return false;
}

void TtyFrontEnd::Choose(const std::string& number) {
    int value = -1;
    const auto [end, failure] =
        std::from_chars(number.data(), number.data() + number.size(), value);
    const bool isNumber = failure == std::errc() && end == number.data() + number.size();
    const bool isTree = Find(ControlKind::Tree) != platform::kNoControl;
    const int first = isTree ? 1 : 0;
    const auto count = static_cast<int>(isTree ? m_contents.shown.size() : m_contents.rows.size());
    if (!isNumber || value < first || value >= first + count)
        Line(Text(m_hints.noNumber));
    else if (isTree)
        ChooseNode(value);
    else
        ChooseRow(value);
}

void TtyFrontEnd::ChooseRow(int row) {
    m_contents.row = row;
    m_talk->PickedRow(Find(ControlKind::List), row);
    Line(Text(m_hints.chosen) + OneLine(m_contents.rows[static_cast<std::size_t>(row)]));
}

// A node that is selected already isn't selected anew.
void TtyFrontEnd::ChooseNode(int place) {
    const int node = m_contents.shown[static_cast<std::size_t>(place) - 1];
    Line(Text(m_hints.chosen) + OneLine(m_contents.nodes[static_cast<std::size_t>(node) - 1].text));
    if (node == m_contents.node) {
        PrintPreview();
        return;
    }
    m_contents.node = node;
    m_talk->PickedNode(Find(ControlKind::Tree), node);
}

void TtyFrontEnd::Prompt() {
    if (m_open && !m_talk->IsHandling()) m_print(m_prompt);
}

FrontEnd::Placement TtyFrontEnd::Build(const platform::DialogTemplate& dialog) {
    m_dialog = &dialog;
    Placement placement{
        {0, 0, dialog.width * kPixelsInUnit, dialog.height * kPixelsInUnit}, {}, {}};
    std::vector<std::string> hints;
    for (const TemplateControl& control : dialog.controls) {
        if (control.kind == ControlKind::Surface)
            placement.surfaces.push_back(
                {control.id, control.width * kPixelsInUnit, control.height * kPixelsInUnit});
        if (control.kind == ControlKind::List || control.kind == ControlKind::Tree)
            hints.insert(hints.begin(), Text(m_hints.number));
        if (control.kind == ControlKind::Edit) hints.insert(hints.begin(), Text(m_hints.text));
        if (IsButton(control))
            hints.push_back(std::string(1, LetterOf(control)) + " " + LabelOf(control));
    }
    for (const std::string& hint : hints)
        m_prompt += (m_prompt.empty() ? "" : Text(m_hints.separator)) + hint;
    m_prompt += Text(m_hints.colon);
    return placement;
}

void TtyFrontEnd::Show() {
    m_open = true;
    Line("");
    Line(Text(m_hints.title));
    PrintAll();
    m_print(m_prompt);
}

void TtyFrontEnd::EventHandled() {
    if (m_changed) PrintAll();
    if (m_previewChanged) PrintPreview();
    m_print(m_prompt);
}

void TtyFrontEnd::ShowMessage(int, const std::string& caption, const std::string& text) {
    m_open = true;
    Line("");
    Line(OneLine(caption));
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        Line(OneLine(text.substr(begin, end - begin)));
        begin = end + 1;
    }
    m_prompt = Text(m_hints.answer) + Text(m_hints.colon);
    m_print(m_prompt);
}

void TtyFrontEnd::AppendRow(int, const std::string& text) {
    m_contents.rows.push_back(text);
    m_changed = true;
}

void TtyFrontEnd::SelectRow(int, int row) {
    m_contents.row = row;
    m_changed = true;
}

void TtyFrontEnd::SetText(int control, const std::string& text) {
    if (control == Find(ControlKind::Edit)) {
        m_contents.field = text;
        m_changed = true;
    } else if (control == Find(ControlKind::Surface)) {
        m_contents.preview = OneLine(text);
        m_previewChanged = true;
    }
}

void TtyFrontEnd::AppendNode(int, int parent, int, const std::string& text) {
    const int depth =
        parent == 0 ? 0 : m_contents.nodes[static_cast<std::size_t>(parent) - 1].depth + 1;
    m_contents.nodes.push_back({parent, depth, text});
    m_changed = true;
}

void TtyFrontEnd::Fill(int, platform::Colour) {
    m_contents.preview.clear();
    m_previewChanged = true;
}

void TtyFrontEnd::Draw(int, const platform::Picture& picture, const platform::Rectangle&) {
    m_contents.preview = Text(m_hints.picture) + std::to_string(picture.width) + " x " +
                         std::to_string(picture.height) + Text(m_hints.pixels);
    m_previewChanged = true;
}

void TtyFrontEnd::PrintAll() {
    m_changed = false;
    if (Find(ControlKind::List) != platform::kNoControl) PrintRows();
    if (Find(ControlKind::Tree) != platform::kNoControl) PrintNodes();
    if (Find(ControlKind::Edit) != platform::kNoControl) {
        for (const TemplateControl& control : m_dialog->controls) {
            if (control.kind == ControlKind::Label) Line(Text(control.text));
        }
        PrintField();
    }
}

void TtyFrontEnd::PrintRows() {
    for (std::size_t i = 0; i < m_contents.rows.size(); ++i)
        Line(Numbered(i, OneLine(m_contents.rows[i])));
}

// Depth first, each parent's children in the order of their making.
void TtyFrontEnd::PrintNodes() {
    const std::vector<Node>& nodes = m_contents.nodes;
    std::vector<std::vector<int>> children(nodes.size() + 1);
    for (std::size_t i = nodes.size(); i > 0; --i)
        children[static_cast<std::size_t>(nodes[i - 1].parent)].push_back(static_cast<int>(i));
    m_contents.shown.clear();
    std::vector<int> waiting = children[0];
    while (!waiting.empty()) {
        const int number = waiting.back();
        const Node& node = nodes[static_cast<std::size_t>(number) - 1];
        waiting.pop_back();
        m_contents.shown.push_back(number);
        const auto indent = static_cast<std::size_t>(std::min(node.depth, kDeepest)) * 2;
        Line(Numbered(m_contents.shown.size(), std::string(indent, ' ') + OneLine(node.text)));
        const std::vector<int>& own = children[static_cast<std::size_t>(number)];
        waiting.insert(waiting.end(), own.begin(), own.end());
    }
}

void TtyFrontEnd::PrintField() { Line(Text(m_hints.field) + OneLine(m_contents.field)); }

void TtyFrontEnd::PrintPreview() {
    m_previewChanged = false;
    const std::string& preview = m_contents.preview;
    Line(Text(m_hints.preview) + (preview.empty() ? Text(m_hints.blank) : preview));
}

std::string TtyFrontEnd::LabelOf(const TemplateControl& button) const {
    if (!m_hints.ownLabels) return Text(button.text);
    if (button.kind == ControlKind::DefaultButton) return Text(m_hints.ok);
    return Text(button.id == platform::kCancelButton ? m_hints.cancel : m_hints.other);
}

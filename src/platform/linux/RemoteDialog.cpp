#include <algorithm>
#include <utility>

#include "platform/CodePage.h"
#include "platform/linux/DialogConversation.h"
#include "platform/linux/ShownLabel.h"
#include "platform/linux/dialogprogram/Pixels.h"
#include "platform/linux/dialogprogram/ProtocolLine.h"

namespace platform {

namespace {

std::string Utf8Of(const std::string& text) { return Utf8FromAnsi(text.c_str()); }

// What a user leaves behind is one state for each control.
constexpr int kMostStates = 100;

// No screen is larger, and no sum or difference of such numbers overflows.
constexpr int kFarthest = 1'000'000;

bool IsPlace(const Rectangle& place) {
    const auto near = [](int edge) { return edge >= -kFarthest && edge <= kFarthest; };
    return near(place.left) && near(place.top) && near(place.right) && near(place.bottom) &&
           place.left <= place.right && place.top <= place.bottom;
}

Rectangle AtOrigin(int width, int height) { return {0, 0, width, height}; }

}  // namespace

void RemoteDialog::Say(const DialogCommand& command) {
    if (m_broken) return;
    const std::string line = LineOf(command);
    m_broken = line.size() > kLongestLineToProgram || !m_link.Write(line);
}

std::optional<DialogReport> RemoteDialog::Hear(DialogLink::Patience patience) {
    const auto line = m_broken ? std::nullopt : m_link.Read(patience);
    auto report = line ? ParseReport(*line) : std::nullopt;
    m_broken = !report;
    return report;
}

bool RemoteDialog::Build() {
    constexpr auto kPatience = DialogLink::Patience::Program;
    Say(Greeting{});
    const auto greeting = Hear(kPatience);
    const auto* const version = greeting ? std::get_if<Greeting>(&*greeting) : nullptr;
    if (!version || version->version != kDialogProtocolVersion) return false;
    Say(command::Dialog{m_dialog.id});
    const auto ready = Hear(kPatience);
    const auto* const window = ready ? std::get_if<report::Ready>(&*ready) : nullptr;
    if (!window || !IsPlace(window->bounds)) return false;
    m_bounds = window->bounds;
    const auto place = Hear(kPatience);
    const auto* const area = place ? std::get_if<report::Area>(&*place) : nullptr;
    if (!area || (area->area && !IsPlace(*area->area))) return false;
    m_workArea = area->area;
    return HearSurfaces();
}

// One for each control at the most, so that a flood of them comes to an end.
bool RemoteDialog::HearSurfaces() {
    for (std::size_t i = 0; i <= m_dialog.controls.size(); ++i) {
        const auto next = Hear(DialogLink::Patience::Program);
        if (!next) return false;
        if (std::holds_alternative<report::Built>(*next)) return true;
        const auto* const surface = std::get_if<report::Surface>(&*next);
        if (!surface || !Take(*surface)) return false;
    }
    return false;
}

bool RemoteDialog::Show() {
    Say(command::Show{});
    const auto shown = Hear(DialogLink::Patience::Program);
    return shown && std::holds_alternative<report::Shown>(*shown);
}

std::optional<DialogReport> RemoteDialog::NextEvent() {
    const auto take = [this](const auto& state) {
        if constexpr (requires { Take(state); })
            return Take(state);
        else
            return false;
    };
    for (int states = 0; states <= kMostStates; ++states) {
        auto next = Hear(DialogLink::Patience::User);
        if (next && IsEvent(*next)) return next;
        if (!next || !std::visit(take, *next)) break;
    }
    m_broken = true;
    return {};
}

bool RemoteDialog::IsEvent(const DialogReport& report) const {
    if (const auto* const button = std::get_if<report::Button>(&report)) {
        return Is(button->control, ControlKind::Button) ||
               Is(button->control, ControlKind::DefaultButton);
    }
    if (const auto* const selected = std::get_if<report::Selected>(&report))
        return Is(selected->tree, ControlKind::Tree);
    return std::holds_alternative<report::Close>(report);
}

bool RemoteDialog::Take(const report::Row& row) {
    if (!Is(row.control, ControlKind::List)) return false;
    if (row.row < -1 || row.row >= At(row.control).rows) return false;
    m_controls[row.control].row = row.row;
    return true;
}

bool RemoteDialog::Take(const report::Text& text) {
    if (!Is(text.control, ControlKind::Edit)) return false;
    m_controls[text.control].text = AnsiFromUtf8(text.text);
    return true;
}

bool RemoteDialog::Take(const report::Node& node) {
    if (node.node < 0 || !Is(node.tree, ControlKind::Tree)) return false;
    const auto number = static_cast<TreeNode>(node.node);
    if (number != kNoNode && !HasNode(node.tree, number)) return false;
    m_controls[node.tree].node = number;
    return true;
}

bool RemoteDialog::Take(const report::Surface& surface) {
    const Rectangle area = AtOrigin(surface.width, surface.height);
    if (!IsPlace(area) || !Is(surface.control, ControlKind::Surface)) return false;
    m_controls[surface.control].area = area;
    return true;
}

bool RemoteDialog::Is(int control, ControlKind kind) const {
    const TemplateControl* const found = FindControl(m_dialog, control);
    return found && found->kind == kind;
}

bool RemoteDialog::HasNode(int tree, TreeNode node) const {
    return node != kNoNode && node <= At(tree).data.size();
}

const RemoteDialog::Control& RemoteDialog::At(int control) const {
    static const Control kUntouched;
    const auto found = m_controls.find(control);
    return found == m_controls.end() ? kUntouched : found->second;
}

void RemoteDialog::End(int value) {
    if (m_ended) return;
    m_ended = true;
    m_value = value;
}

void RemoteDialog::AppendRow(int list, const std::string& text) {
    if (!Is(list, ControlKind::List)) return;
    ++m_controls[list].rows;
    Say(command::Row{list, ShownLabel(text)});
}

void RemoteDialog::SelectRow(int list, int row) {
    if (!Is(list, ControlKind::List)) return;
    const int selected = row >= 0 && row < At(list).rows ? row : -1;
    m_controls[list].row = selected;
    Say(command::Select{list, selected});
}

int RemoteDialog::SelectedRow(int list) const { return At(list).row; }

void RemoteDialog::SetText(int control, const std::string& text) {
    const bool isField = Is(control, ControlKind::Edit);
    if (!isField && !Is(control, ControlKind::Label) && !Is(control, ControlKind::Surface)) return;
    m_controls[control].text = text.c_str();
    Say(command::Text{control, isField ? Utf8Of(text) : ShownLabel(text)});
}

std::string RemoteDialog::Text(int control, std::size_t capacity) const {
    return At(control).text.substr(0, capacity == 0 ? 0 : capacity - 1);
}

void RemoteDialog::TellDisabled(int control) {
    if (FindControl(m_dialog, control)) Say(command::Disabled{control});
}

TreeNode RemoteDialog::AppendNode(int tree, TreeNode parent, const std::string& text,
                                  std::intptr_t data) {
    if (!Is(tree, ControlKind::Tree)) return kNoNode;
    if (parent != kNoNode && !HasNode(tree, parent)) return kNoNode;
    std::vector<std::intptr_t>& nodes = m_controls[tree].data;
    nodes.push_back(data);
    Say(command::Node{tree, static_cast<int>(parent), ShownLabel(text)});
    return nodes.size();
}

void RemoteDialog::ExpandNode(int tree, TreeNode node) {
    if (HasNode(tree, node)) Say(command::Expand{tree, static_cast<int>(node)});
}

TreeNode RemoteDialog::SelectedNode(int tree) const { return At(tree).node; }

std::intptr_t RemoteDialog::NodeData(int tree, TreeNode node) const {
    return HasNode(tree, node) ? At(tree).data[node - 1] : 0;
}

Rectangle RemoteDialog::ClientArea(int control) const { return At(control).area; }

void RemoteDialog::Fill(int control, Colour colour) {
    if (Is(control, ControlKind::Surface)) Say(command::Fill{control, colour & 0xFF'FF'FF});
}

void RemoteDialog::Draw(int control, const Picture& picture, const Rectangle& place) {
    if (!Is(control, ControlKind::Surface)) return;
    Picture reduced = ReducedPicture(picture, kMostPixels);
    if (!reduced.pixels.empty()) Say(command::Draw{control, place, std::move(reduced)});
}

void RemoteDialog::MoveTo(int left, int top) {
    m_bounds = {left, top, left + (m_bounds.right - m_bounds.left),
                top + (m_bounds.bottom - m_bounds.top)};
    Say(command::Move{left, top});
}

}  // namespace platform

#include "tools/dialog/DialogTalk.h"

#include <algorithm>
#include <utility>

#include "platform/linux/dialogprogram/Utf8.h"

using platform::ControlKind;
using platform::LineOf;
namespace command = platform::command;
namespace report = platform::report;

namespace {

// The entries of `now` that `known` has not, or otherwise; known afterwards.
template <class Value, class Write>
void TellChanges(const std::map<int, Value>& now, std::map<int, Value>& known, Write write) {
    for (const auto& [control, value] : now) {
        const auto [place, isNew] = known.try_emplace(control, value);
        if (!isNew && place->second == value) continue;
        place->second = value;
        write(control, value);
    }
}

}  // namespace

DialogTalk::DialogTalk(FrontEnd& frontEnd, Send send)
    : m_frontEnd(frontEnd), m_send(std::move(send)) {}

DialogTalk::State DialogTalk::Receive(std::string_view bytes) {
    m_reader.Append(bytes);
    while (m_state == State::Going) {
        const std::optional<std::string> line = m_reader.Next();
        if (m_reader.IsTooLong()) m_state = State::GivenUp;
        if (!line) break;
        const auto message = platform::ParseCommand(*line);
        const bool known = message && (m_greeted || message->index() == 0);
        if (!known || !std::visit([this](const auto& each) { return Do(each); }, *message))
            m_state = State::GivenUp;
    }
    return m_state;
}

bool DialogTalk::Do(const platform::Greeting& greeting) {
    if (m_greeted) return false;
    m_greeted = true;
    m_send(LineOf(platform::DialogReport(platform::Greeting{})));
    return greeting.version == platform::kDialogProtocolVersion;
}

bool DialogTalk::Do(const command::Dialog& dialog) {
    if (m_dialog || m_asking) return false;
    m_dialog = platform::FindTemplate(dialog.id);
    if (!m_dialog) {
        m_send(LineOf(report::Unknown{}));
        m_state = State::Ended;
        return true;
    }
    const FrontEnd::Placement placement = m_frontEnd.Build(*m_dialog);
    std::string lines =
        LineOf(report::Ready{placement.bounds}) + LineOf(report::Area{placement.workArea});
    for (const report::Surface& surface : placement.surfaces) {
        m_contents.surfaces.insert_or_assign(surface.control, Size{surface.width, surface.height});
        lines += LineOf(surface);
    }
    m_known.surfaces = m_contents.surfaces;
    m_send(lines + LineOf(report::Built{}));
    return true;
}

bool DialogTalk::Do(const command::Row& row) {
    if (!Has(row.control, {ControlKind::List})) return false;
    ++m_made.rows[row.control];
    m_frontEnd.AppendRow(row.control, row.text);
    return true;
}

bool DialogTalk::Do(const command::Select& select) {
    if (!Has(select.control, {ControlKind::List})) return false;
    if (select.row < -1 || select.row >= m_made.rows[select.control]) return false;
    m_contents.rows[select.control] = m_known.rows[select.control] = select.row;
    m_frontEnd.SelectRow(select.control, select.row);
    return true;
}

bool DialogTalk::Do(const command::Text& text) {
    if (!Has(text.control, {ControlKind::Edit, ControlKind::Label, ControlKind::Surface}))
        return false;
    if (Has(text.control, {ControlKind::Edit}))
        m_contents.texts[text.control] = m_known.texts[text.control] = text.text;
    m_frontEnd.SetText(text.control, text.text);
    return true;
}

bool DialogTalk::Do(const command::Disabled& disabled) {
    if (!MayChange() || !platform::FindControl(*m_dialog, disabled.control)) return false;
    m_frontEnd.TellDisabled(disabled.control);
    return true;
}

bool DialogTalk::Do(const command::Node& node) {
    if (!Has(node.tree, {ControlKind::Tree})) return false;
    int& count = m_made.nodes[node.tree];
    if (node.parent < 0 || node.parent > count) return false;
    ++count;
    m_frontEnd.AppendNode(node.tree, node.parent, count, node.text);
    return true;
}

bool DialogTalk::Do(const command::Expand& expand) {
    if (!Has(expand.tree, {ControlKind::Tree})) return false;
    if (expand.node < 1 || expand.node > m_made.nodes[expand.tree]) return false;
    m_frontEnd.ExpandNode(expand.tree, expand.node);
    return true;
}

bool DialogTalk::Do(const command::Fill& fill) {
    if (!Has(fill.control, {ControlKind::Surface})) return false;
    m_frontEnd.Fill(fill.control, fill.colour);
    return true;
}

bool DialogTalk::Do(const command::Draw& draw) {
    if (!Has(draw.control, {ControlKind::Surface})) return false;
    m_frontEnd.Draw(draw.control, draw.picture, draw.place);
    return true;
}

bool DialogTalk::Do(const command::Move& move) {
    if (!MayChange()) return false;
    m_frontEnd.Move(move.left, move.top);
    return true;
}

bool DialogTalk::Do(const command::Show&) {
    if (!m_dialog || m_shown) return false;
    m_shown = true;
    m_frontEnd.Show();
    m_send(LineOf(report::Shown{}));
    return true;
}

bool DialogTalk::Do(const command::Done&) {
    if (!m_handling) return false;
    m_handling = false;
    m_frontEnd.EventHandled();
    ReportNext();
    return true;
}

bool DialogTalk::Do(const command::End&) {
    if (!m_dialog) return false;
    m_state = State::Ended;
    return true;
}

bool DialogTalk::Do(const command::Message& message) {
    if (m_dialog || m_asking) return false;
    m_asking = true;
    m_frontEnd.ShowMessage(message.style, message.caption, message.text);
    m_send(LineOf(report::Shown{}));
    return true;
}

// The dialog is being opened, or an event handled.
bool DialogTalk::MayChange() const { return m_dialog && (!m_shown || m_handling); }

bool DialogTalk::Has(int control, std::initializer_list<ControlKind> kinds) const {
    const auto* const found = MayChange() ? platform::FindControl(*m_dialog, control) : nullptr;
    return found && std::find(kinds.begin(), kinds.end(), found->kind) != kinds.end();
}

void DialogTalk::PickedRow(int list, int row) { m_contents.rows[list] = row; }

void DialogTalk::Typed(int control, const std::string& text) {
    const platform::TemplateControl* const field = platform::FindControl(*m_dialog, control);
    m_contents.texts[control] = platform::FrontWithin(text, field->capacity);
}

void DialogTalk::Resized(int control, int width, int height) {
    m_contents.surfaces.insert_or_assign(control, Size{width, height});
}

void DialogTalk::PickedNode(int tree, int node) {
    m_contents.nodes[tree] = node;
    Happened(report::Selected{tree});
}

void DialogTalk::Pressed(int button) { Happened(report::Button{button}); }

void DialogTalk::ClosedWindow() { Happened(report::Close{}); }

DialogTalk::State DialogTalk::Answered() {
    if (!m_asking || m_state != State::Going) return m_state;
    m_send(LineOf(report::Closed{}));
    return m_state = State::Ended;
}

void DialogTalk::Happened(platform::DialogReport what) {
    if (!m_shown || m_state != State::Going) return;
    m_events.push_back({m_contents, std::move(what)});
    if (!m_handling) ReportNext();
}

void DialogTalk::ReportNext() {
    if (m_events.empty()) return;
    const Event event = std::move(m_events.front());
    m_events.pop_front();
    m_handling = true;
    m_send(Changes(event.contents) + LineOf(event.report));
}

std::string DialogTalk::Changes(const Contents& contents) {
    std::string lines;
    TellChanges(contents.rows, m_known.rows, [&](int list, int row) {
        lines += LineOf(report::Row{list, row});
    });
    TellChanges(contents.texts, m_known.texts, [&](int control, const std::string& text) {
        lines += LineOf(report::Text{control, text});
    });
    TellChanges(contents.nodes, m_known.nodes, [&](int tree, int node) {
        lines += LineOf(report::Node{tree, node});
    });
    TellChanges(contents.surfaces, m_known.surfaces, [&](int control, const Size& size) {
        lines += LineOf(report::Surface{control, size.width, size.height});
    });
    return lines;
}

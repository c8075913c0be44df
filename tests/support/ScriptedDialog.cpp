#include "support/ScriptedDialog.h"

#include <algorithm>

namespace {

constexpr int kCancel = 2;

std::string UpToZero(const std::string& text) { return text.c_str(); }

}  // namespace

void ScriptedDialog::Open() { m_procedure.OnOpen(*this); }

void ScriptedDialog::PressButton(int button) {
    if (!m_ended) m_procedure.OnButton(*this, button);
}

void ScriptedDialog::CloseWindow() {
    if (!m_ended && !m_procedure.OnClose(*this)) PressButton(kCancel);
}

void ScriptedDialog::PickRow(int list, int row) {
    if (!m_ended) SelectRow(list, row);
}

void ScriptedDialog::Type(int control, const std::string& text) {
    if (m_ended) return;
    m_controls[control].text = text;
    m_controls[control].row = -1;
}

void ScriptedDialog::PickNode(int tree, platform::TreeNode node) {
    if (m_ended) return;
    m_controls[tree].node = node;
    m_procedure.OnNodeSelected(*this, tree);
}

bool ScriptedDialog::PickNode(int tree, const std::string& text) {
    const std::vector<Node>& nodes = m_controls[tree].nodes;
    const auto found = std::find_if(nodes.begin(), nodes.end(),
                                    [&](const Node& node) { return node.text == text; });
    if (found == nodes.end()) return false;
    PickNode(tree, static_cast<platform::TreeNode>(found - nodes.begin()) + 1);
    return true;
}

const ScriptedDialog::Control& ScriptedDialog::operator[](int control) const {
    return m_controls[control];
}

void ScriptedDialog::End(int value) {
    if (m_ended) return;
    m_ended = true;
    m_value = value;
}

void ScriptedDialog::AppendRow(int list, const std::string& text) {
    m_controls[list].rows.push_back(UpToZero(text));
}

void ScriptedDialog::SelectRow(int list, int row) {
    Control& control = m_controls[list];
    const bool exists = row >= 0 && static_cast<std::size_t>(row) < control.rows.size();
    control.row = exists ? row : -1;
    control.text = exists ? control.rows[static_cast<std::size_t>(row)] : "";
}

int ScriptedDialog::SelectedRow(int list) const { return m_controls[list].row; }

void ScriptedDialog::SetText(int control, const std::string& text) {
    m_controls[control].text = UpToZero(text);
}

std::string ScriptedDialog::Text(int control, std::size_t capacity) const {
    return m_controls[control].text.substr(0, capacity == 0 ? 0 : capacity - 1);
}

void ScriptedDialog::TellDisabled(int control) { m_controls[control].toldDisabled = true; }

platform::TreeNode ScriptedDialog::AppendNode(int tree, platform::TreeNode parent,
                                              const std::string& text, std::intptr_t data) {
    std::vector<Node>& nodes = m_controls[tree].nodes;
    nodes.push_back({parent, UpToZero(text), data, false});
    return nodes.size();
}

void ScriptedDialog::ExpandNode(int tree, platform::TreeNode node) {
    m_controls[tree].nodes.at(node - 1).expanded = true;
}

platform::TreeNode ScriptedDialog::SelectedNode(int tree) const { return m_controls[tree].node; }

std::intptr_t ScriptedDialog::NodeData(int tree, platform::TreeNode node) const {
    return m_controls[tree].nodes.at(node - 1).data;
}

void ScriptedDialog::Fill(int control, platform::Colour colour) {
    m_controls[control].fills.push_back(colour);
    m_controls[control].drawings.clear();
}

void ScriptedDialog::Draw(int control, const platform::Picture& picture,
                          const platform::Rectangle& place) {
    m_controls[control].drawings.push_back({picture, place});
}

std::optional<platform::Rectangle> ScriptedDialog::WorkArea(Nearest) const {
    return platform::Rectangle{0, 0, 1024, 728};
}

void ScriptedDialog::MoveTo(int left, int top) {
    m_bounds = {left, top, left + m_bounds.right - m_bounds.left,
                top + m_bounds.bottom - m_bounds.top};
}

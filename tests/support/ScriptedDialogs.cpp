#include "support/ScriptedDialogs.h"

#include <utility>

namespace {

ScriptedDialogs* g_scripted;

}  // namespace

ScriptedDialogs::ScriptedDialogs(User user) : m_user(std::move(user)) { g_scripted = this; }

ScriptedDialogs::~ScriptedDialogs() { g_scripted = nullptr; }

int platform::OpenDialog(const char* moduleStem, int templateId, DialogProcedure& procedure) {
    if (g_scripted == nullptr) return kDialogNotShown;
    g_scripted->m_asked.push_back(std::string(moduleStem) + " " + std::to_string(templateId));
    if (!g_scripted->m_user) return kDialogNotShown;
    ScriptedDialog dialog(procedure);
    dialog.Open();
    if (!dialog.HasEnded()) g_scripted->m_user(dialog);
    dialog.CloseWindow();
    return dialog.Value();
}

// ScriptedDialogs.h - stand-ins for the dialogs in a program over the library's own logic: it is
// linked with these in the place of the library's.
#pragma once

#include <functional>

#include "dialogs/CertSealTree.h"
#include "dialogs/PzmSealTree.h"

// What the user does in each dialog. A dialog that isn't expected has nothing here and throws.
struct ScriptedUser {
    std::function<DialogEnd(CertSealPick*)> certSealTree;
    std::function<DialogEnd(PzmSealPick*)> pzmSealTree;
    std::function<int()> certSelect;
};
extern ScriptedUser g_user;

// FlowUser.h - the user in front of the flows' dialogs. A program over the library's own logic is
// linked with the openers of this folder in the place of the library's.
#pragma once

#include <functional>

#include "dialogs/CertSealTree.h"
#include "dialogs/PzmSealTree.h"

// What the user does in each dialog. A dialog that isn't expected has nothing here and throws.
struct FlowUser {
    std::function<DialogEnd(CertSealPick*)> certSealTree;
    std::function<DialogEnd(PzmSealPick*)> pzmSealTree;
    std::function<int()> certSelect;
};
extern FlowUser g_user;

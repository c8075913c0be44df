// SealTree.h - what the two dialogs with a tree of seals have in common.
#pragma once

#include <cstdint>
#include <string>

#include "dialogs/DialogEnd.h"
#include "dialogs/DialogFrame.h"
#include "seal/SealRecord.h"

// OK confirms whatever is selected, or nothing at all.
class CSealTreeDialog : public CDialogFrame {
public:
    // Clears the preview and leaves the rest to ShowNode; nothing without a selected node.
    bool OnNodeSelected(platform::DialogWindow& window, int tree) final;

protected:
    void OnConfirm(platform::DialogWindow& window) final { window.End(kDialogConfirmed); }
    // A node with this data is now selected.
    virtual void ShowNode(platform::DialogWindow& window, std::intptr_t data) = 0;

    // The one node at the top, whose data is 0.
    static platform::TreeNode AppendRoot(platform::DialogWindow& window);
};

// Shows the template of the tree and blocks until the user has answered.
DialogEnd OpenSealTree(CSealTreeDialog& dialog);

// A copy of the seal's picture. Throws StringFailure::kInvalidArgument for a null one with a length
// other than 0, and for a negative length.
std::string PictureOf(const SealRecord& seal);

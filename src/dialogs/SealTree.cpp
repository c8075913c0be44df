#include "dialogs/SealTree.h"

#include "dialogs/Resource.h"
#include "dialogs/SealPreview.h"
#include "foundation/StringFailure.h"

bool CSealTreeDialog::OnNodeSelected(platform::DialogWindow& window, int tree) {
    const platform::TreeNode node = window.SelectedNode(tree);
    if (node == platform::kNoNode) return true;
    ClearPreview(window);
    ShowNode(window, window.NodeData(tree, node));
    return true;
}

platform::TreeNode CSealTreeDialog::AppendRoot(platform::DialogWindow& window) {
    return window.AppendNode(TESMARK_SEAL_TREE, platform::kNoNode, "请选择印章", 0);
}

DialogEnd OpenSealTree(CSealTreeDialog& dialog) {
    switch (platform::OpenDialog(kDialogModule, TESMARK_DIALOG_SEAL_TREE, dialog)) {
        case kDialogConfirmed: return DialogEnd::Confirmed;
        case kDialogCancelled: return DialogEnd::Closed;
        default: return DialogEnd::Failed;
    }
}

std::string PictureOf(const SealRecord& seal) {
    const std::size_t length = CheckedLength(seal.picLen);
    if (length == 0) return {};
    if (seal.picData == nullptr) throw StringFailure(StringFailure::kInvalidArgument);
    return {reinterpret_cast<const char*>(seal.picData), length};
}

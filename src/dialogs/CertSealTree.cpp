#include "dialogs/CertSealTree.h"

#include <climits>

#include "TesmarkOpt.h"
#include "bridge/TwoStep.h"
#include "dialogs/CenterDialog.h"
#include "dialogs/Resource.h"
#include "dialogs/SealPreview.h"
#include "dialogs/SealTree.h"
#include "dialogs/TreeItemData.h"
#include "foundation/Logger.h"
#include "host/ModuleState.h"
#include "platform/closed/SealPicture.h"
#include "seal/ShownSeals.h"

std::vector<std::unique_ptr<TreeItemData>> g_dialogSealItems;

namespace {

constexpr int kScanMode = 1;

bool LogConversionFailure(int code) {
    TESMARK_LOG(kLogError, "[TOVK_ReadESealPic]: 非gif图片，转换失败：%d]", code);
    return false;
}

// The second call is told the whole of its buffer, one byte more than was asked for.
bool ConvertToGif(std::string& picture) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(picture.data());
    const int length = static_cast<int>(picture.size());
    int size = 0;
    if (const int code = SealFormatConvert(bytes, length, nullptr, &size)) {
        return LogConversionFailure(code);
    }
    CBuffer gif = size < INT_MAX ? AllocateAnswer(size, 1) : CBuffer();
    if (!gif) return LogConversionFailure(TESMARK_NO_MEMORY);
    *gif.LengthPointer() = size + 1;
    if (const int code = SealFormatConvert(bytes, length, gif.Data(), gif.LengthPointer())) {
        return LogConversionFailure(code);
    }
    CutAnswer(gif, size, 1);
    picture = gif.View();
    return true;
}

// "GIF" anywhere counts, not at the start alone: hosts know pictures that are shown for it, and
// others that stay blank.
bool LooksLikeGif(const std::string& picture) { return picture.find("GIF") != std::string::npos; }

void SelectNothing() {
    g_dialogSealRow = -1;
    g_dialogSealCol = -1;
}

std::intptr_t KeepData(const TreeItemData& data) {
    g_dialogSealItems.push_back(std::make_unique<TreeItemData>(data));
    return reinterpret_cast<std::intptr_t>(g_dialogSealItems.back().get());
}

class CertSealTreeDlgProc final : public CSealTreeDialog {
public:
    void OnOpen(platform::DialogWindow& window) override;

private:
    void ShowNode(platform::DialogWindow& window, std::intptr_t data) override;

    CShownSeals m_shown;
};

void AppendCert(platform::DialogWindow& window, platform::TreeNode root, int index) {
    const CertRecord& cert = g_certEsealOpt.m_certs[static_cast<std::size_t>(index)];
    const int sealCount = static_cast<int>(cert.seals.size());
    const platform::TreeNode node =
        window.AppendNode(TESMARK_SEAL_TREE, root, "证书：" + cert.CertNameText(),
                          KeepData({index, sealCount, 1, cert.scanMode}));
    for (int seal = 0; seal < sealCount; ++seal) {
        window.AppendNode(TESMARK_SEAL_TREE, node, cert.seals[static_cast<std::size_t>(seal)].name,
                          KeepData({index, seal, 0, 0}));
    }
    window.ExpandNode(TESMARK_SEAL_TREE, node);
}

void CertSealTreeDlgProc::OnOpen(platform::DialogWindow& window) {
    CenterDialog(window);
    SelectNothing();
    m_shown = CShownSeals(g_certEsealOpt.m_certs);
    const int certCount = static_cast<int>(g_certEsealOpt.m_certs.size());
    if (certCount == 0) return;
    const platform::TreeNode root = AppendRoot(window);
    for (int cert = 0; cert < certCount; ++cert) AppendCert(window, root, cert);
    window.ExpandNode(TESMARK_SEAL_TREE, root);
}

void ShowCert(platform::DialogWindow& window, const TreeItemData& data) {
    SelectNothing();
    if (data.scanMode == kScanMode) {
        g_dialogSealRow = data.certIndex;
        window.SetText(TESMARK_SEAL_PREVIEW, "选定此证书将进行扫码签章！");
        return;
    }
    window.SetText(TESMARK_SEAL_PREVIEW,
                   "此证书包含印章 " + std::to_string(data.sealValue) + " 个！");
}

// Nothing changes where the conversion fails: OK then confirms what was picked before. A seal that
// isn't the one in the tree any more can't be picked.
void ShowSeal(platform::DialogWindow& window, const TreeItemData& data, const CShownSeals& shown) {
    const SealRecord* const seal =
        shown.FindSeal(g_certEsealOpt.m_certs, data.certIndex, data.sealValue);
    if (seal == nullptr) return SelectNothing();
    std::string picture = PictureOf(*seal);
    if (!LooksLikeGif(picture) && !ConvertToGif(picture)) return;
    g_dialogSealRow = data.certIndex;
    g_dialogSealCol = data.sealValue;
    DrawPreview(window, picture);
}

void CertSealTreeDlgProc::ShowNode(platform::DialogWindow& window, std::intptr_t data) {
    const auto* const item = reinterpret_cast<const TreeItemData*>(data);
    if (item == nullptr) return SelectNothing();
    if (item->isCert == 1) return ShowCert(window, *item);
    ShowSeal(window, *item, m_shown);
}

struct EndOfItems {
    ~EndOfItems() { g_dialogSealItems.clear(); }
};

}  // namespace

DialogEnd ShowCertSealTree(CertSealPick* pick) {
    const EndOfItems endOfItems;
    CertSealTreeDlgProc procedure;
    const DialogEnd end = OpenSealTree(procedure);
    if (end == DialogEnd::Confirmed) *pick = {g_dialogSealRow, g_dialogSealCol};
    return end;
}

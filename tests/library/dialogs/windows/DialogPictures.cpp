// Makes the pictures of the dialogs for the documentation: dialog_pictures FOLDER
//
// The library's own dialogs with certificates and seals that are made up here.
#include <cstdio>
#include <fstream>

#include "Controls.h"
#include "DialogLists.h"
#include "dialogs/CertSealTree.h"
#include "dialogs/CertSelect.h"
#include "dialogs/DialogFrame.h"
#include "dialogs/OnlineSealSelect.h"
#include "drawing/SealDrawing.h"
#include "platform/Module.h"
#include "support/TemporaryFolder.h"
#include "support/windows/DialogUser.h"

namespace {

class Unmade {};

// A copy of the pixels of the window with its frame.
Picture PixelsOf(HWND window) {
    RECT bounds{};
    GetWindowRect(window, &bounds);
    const int width = bounds.right - bounds.left, height = bounds.bottom - bounds.top;
    const HDC surface = GetWindowDC(window);
    Picture picture{width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const COLORREF pixel = GetPixel(surface, x, y);
            picture.rgba.insert(picture.rgba.end(),
                                {GetRValue(pixel), GetGValue(pixel), GetBValue(pixel), 255});
        }
    }
    ReleaseDC(window, surface);
    return picture;
}

void Save(const std::string& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    if (bytes.empty() || !file.flush()) throw Unmade();
}

// The user's step, then the picture, then Cancel.
DialogUser Photograph(const std::string& path, std::function<void(HWND)> step) {
    return DialogUser([=](HWND dialog) {
        Later(dialog, [=] {
            step(dialog);
            RedrawWindow(dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
            Save(path, EncodePng(PixelsOf(dialog)));
            Click(dialog, IDCANCEL);
        });
    });
}

std::string SealOf(const char8_t* name, const char8_t* purpose) {
    SealDesign design;
    design.name = reinterpret_cast<const char*>(name);
    design.purpose = reinterpret_cast<const char*>(purpose);
    design.dpi = 110;
    Picture picture;
    std::string problem;
    if (!DrawRoundSeal(design, picture, problem)) throw Unmade();
    return EncodeGif(picture);
}

// The address alone, as the library fills it in.
class AddressDialog : public CDialogFrame {
public:
    void OnOpen(platform::DialogWindow& window) override {
        window.SetText(TESMARK_URL_FIELD, "192.0.2.45/qelm42");
    }

private:
    void OnConfirm(platform::DialogWindow&) override {}
};

class Pictures : private DialogLists {
public:
    explicit Pictures(const std::string& folder) : m_folder(folder + "/") {
        if (platform::LoadModule(LIBRARY_FILE) == nullptr) throw Unmade();
    }
    void MakeCertificates() {
        g_dialogCertLabel = "示范公司||cert-1&&&示范公司财务部||cert-2&&&";
        const DialogUser user = Photograph(m_folder + "certificate.png", [](HWND dialog) {
            SendDlgItemMessageA(dialog, TESMARK_CERT_LIST, CB_SETCURSEL, 2, 0);
        });
        ShowCertSelect();
    }
    // Shown out of a library under the name without the suffix alone.
    void MakeOnlineSeals() {
        const TemporaryFolder folder;
        const std::string copy = folder.Below("TesmarkOpt.dll");
        CopyFileA(LIBRARY_FILE, copy.c_str(), TRUE);
        const platform::ModuleHandle module = platform::LoadModule(copy.c_str());
        if (module == nullptr) throw Unmade();
        g_onlineSealNames = {{"公章", "1"}, {"合同专用章", "2"}};
        {
            const DialogUser user = Photograph(m_folder + "online-seal.png", [](HWND) {});
            ShowOnlineSealSelect();
        }
        platform::FreeModule(module);
    }
    void MakeAddress() {
        AddressDialog dialog;
        const DialogUser user = Photograph(m_folder + "online-address.png", [](HWND) {});
        platform::OpenDialog(kDialogModule, TESMARK_DIALOG_ONLINE_URL, dialog);
    }
    void MakeTree() {
        CertRecord& cert = AddCert("示范公司");
        cert.seals.push_back(MakeSeal("公章(国办)", SealOf(u8"深圳市晨光示范科技有限公司", u8"")));
        cert.seals.push_back(
            MakeSeal("合同专用章(国密)", SealOf(u8"深圳市晨光示范科技有限公司", u8"合同专用章")));
        AddCert("扫码签章", 1);
        const DialogUser user = Photograph(m_folder + "seal-tree.png", [](HWND dialog) {
            const Tree tree(dialog);
            tree.Select(tree.Find("合同专用章(国密)"));
        });
        CertSealPick pick;
        ShowCertSealTree(&pick);
    }

private:
    std::string m_folder;
};

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("dialog_pictures FOLDER\n", stderr);
        return 2;
    }
    try {
        Pictures pictures(arguments[1]);
        pictures.MakeCertificates();
        pictures.MakeOnlineSeals();
        pictures.MakeAddress();
        pictures.MakeTree();
    } catch (const Unmade&) {
        std::fputs("a picture can't be made\n", stderr);
        return 1;
    }
}

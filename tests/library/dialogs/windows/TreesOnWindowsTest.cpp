// The dialogs with a tree of seals, in windows of the system's.
#include <gmock/gmock.h>

#include "Controls.h"
#include "DialogLists.h"
#include "OpenDialogTest.h"
#include "dialogs/CertSealTree.h"
#include "dialogs/CertSelect.h"
#include "dialogs/OnlineSealSelect.h"
#include "dialogs/PzmSealTree.h"
#include "foundation/StringFailure.h"

namespace {

using testing::ElementsAre;

constexpr unsigned kPaper = 0xF0F0F0;
constexpr unsigned kRed = 0xFF0000;
constexpr unsigned kBlue = 0x0000FF;

class TreesOnWindows : public OpenDialogOnWindowsTest, protected DialogLists {
protected:
    TreesOnWindows() {
        CertRecord& cert = AddCert("甲");
        cert.seals.push_back(MakeSeal("small", SolidGif(40, 20, kRed)));
        cert.seals.push_back(MakeSeal("large", SolidGif(900, 10, kBlue)));
        AddCert("扫码签章", 1);
        g_pzmSealItems.push_back(MakeSeal("first", SolidGif(40, 20, kRed)));
        g_pzmSealItems.push_back(MakeSeal("second", SolidGif(40, 20, kBlue)));
    }
    DialogEnd Show(std::function<void(HWND)> act) {
        const DialogUser user([act](HWND dialog) { Later(dialog, [=] { act(dialog); }); });
        return ShowCertSealTree(&m_pick);
    }
    DialogEnd ShowScan(std::function<void(HWND)> act) {
        const DialogUser user([act](HWND dialog) { Later(dialog, [=] { act(dialog); }); });
        return ShowPzmSealTree(&m_scanPick);
    }
    static void Pick(HWND dialog, const std::string& node) {
        const Tree tree(dialog);
        ASSERT_NE(tree.Find(node), 0) << node;
        tree.Select(tree.Find(node));
    }
    // The four corners of the place and what lies just outside of it.
    static std::vector<unsigned> CornersOf(HWND dialog, RECT place) {
        const int right = place.right - 1, bottom = place.bottom - 1;
        return {PreviewPixel(dialog, place.left, place.top),
                PreviewPixel(dialog, right, place.top),
                PreviewPixel(dialog, place.left, bottom),
                PreviewPixel(dialog, right, bottom),
                PreviewPixel(dialog, place.left - 1, place.top),
                PreviewPixel(dialog, right, bottom + 1)};
    }
    static RECT Centred(HWND dialog, int width, int height) {
        const SIZE size = PreviewSize(dialog);
        const LONG left = (size.cx - width) / 2, top = (size.cy - height) / 2;
        return {left, top, left + width, top + height};
    }

    CertSealPick m_pick{7, 8};
    PzmSealPick m_scanPick;
};

TEST_F(TreesOnWindows, ASmallSealIsPaintedInTheMiddleOfThePreviewAndPicked) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    std::vector<unsigned> corners;
    EXPECT_EQ(Show([&](HWND dialog) {
                  Pick(dialog, "small");
                  corners = CornersOf(dialog, Centred(dialog, 40, 20));
                  Click(dialog, IDOK);
              }),
              DialogEnd::Confirmed);
    EXPECT_THAT(corners, ElementsAre(kRed, kRed, kRed, kRed, kPaper, kPaper));
    EXPECT_EQ(m_pick.certIndex, 0);
    EXPECT_EQ(m_pick.sealIndex, 0);
}

TEST_F(TreesOnWindows, ALargeSealIsScaledToThePreview) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    std::vector<unsigned> corners;
    Show([&](HWND dialog) {
        Pick(dialog, "large");
        const SIZE size = PreviewSize(dialog);
        corners = {PreviewPixel(dialog, 0, 0), PreviewPixel(dialog, size.cx - 1, size.cy - 1)};
        Click(dialog, IDOK);
    });
    EXPECT_THAT(corners, ElementsAre(kBlue, kBlue));
    EXPECT_EQ(m_pick.sealIndex, 1);
}

TEST_F(TreesOnWindows, TheRootClearsThePreviewAndThePick) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    unsigned middle = 0;
    Show([&](HWND dialog) {
        Pick(dialog, "large");
        Pick(dialog, "请选择印章");
        const SIZE size = PreviewSize(dialog);
        middle = PreviewPixel(dialog, size.cx / 2, size.cy / 2);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(middle, kPaper);
    EXPECT_EQ(m_pick.certIndex, -1);
    EXPECT_EQ(m_pick.sealIndex, -1);
}

TEST_F(TreesOnWindows, ACertificateTellsTheNumberOfItsSealsInThePreview) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    char counted[64] = {}, scanned[64] = {};
    Show([&](HWND dialog) {
        Pick(dialog, "证书：甲");
        GetDlgItemTextA(dialog, TESMARK_SEAL_PREVIEW, counted, sizeof counted);
        Pick(dialog, "证书：扫码签章");
        GetDlgItemTextA(dialog, TESMARK_SEAL_PREVIEW, scanned, sizeof scanned);
        Click(dialog, IDOK);
    });
    EXPECT_STREQ(counted, "此证书包含印章 2 个！");
    EXPECT_STREQ(scanned, "选定此证书将进行扫码签章！");
    EXPECT_EQ(m_pick.certIndex, 1);
    EXPECT_EQ(m_pick.sealIndex, -1);
}

TEST_F(TreesOnWindows, OkWithNothingSelectedConfirmsNothing) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    EXPECT_EQ(Show([](HWND dialog) { Click(dialog, IDOK); }), DialogEnd::Confirmed);
    EXPECT_EQ(m_pick.certIndex, -1);
    EXPECT_EQ(m_pick.sealIndex, -1);
}

TEST_F(TreesOnWindows, CancelAndTheCloseBoxLeaveThePickAlone) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    const auto end = [](UINT message, WPARAM first) {
        return [=](HWND dialog) {
            Pick(dialog, "small");
            PostMessageA(dialog, message, first, 0);
        };
    };
    EXPECT_EQ(Show(end(WM_COMMAND, IDCANCEL)), DialogEnd::Closed);
    EXPECT_EQ(Show(end(WM_SYSCOMMAND, SC_CLOSE)), DialogEnd::Closed);
    EXPECT_EQ(g_dialogSealRow, 0);
    EXPECT_EQ(m_pick.certIndex, 7);
}

TEST_F(TreesOnWindows, TheDialogStandsInTheMiddleOfTheWorkArea) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    RECT bounds{}, area{};
    Show([&](HWND dialog) {
        GetWindowRect(dialog, &bounds);
        SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(bounds.left, (area.left + area.right) / 2 - (bounds.right - bounds.left) / 2);
    EXPECT_EQ(bounds.top, (area.top + area.bottom) / 2 - (bounds.bottom - bounds.top) / 2);
}

TEST_F(TreesOnWindows, AFailureAtAnEventReachesTheOpenerAndTheNextDialogIsShown) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    SealRecord& seal = g_certEsealOpt.m_certs[0].seals[0];
    const int length = std::exchange(seal.picLen, -1);
    EXPECT_THROW(Show([](HWND dialog) { Pick(dialog, "small"); }), StringFailure);
    seal.picLen = length;
    EXPECT_EQ(Show([](HWND dialog) { Click(dialog, IDOK); }), DialogEnd::Confirmed);
}

TEST_F(TreesOnWindows, ASealOfTheScanIsPickedAndPainted) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    std::vector<unsigned> corners;
    EXPECT_EQ(ShowScan([&](HWND dialog) {
                  Pick(dialog, "second");
                  corners = CornersOf(dialog, Centred(dialog, 40, 20));
                  Click(dialog, IDOK);
              }),
              DialogEnd::Confirmed);
    EXPECT_THAT(corners, ElementsAre(kBlue, kBlue, kBlue, kBlue, kPaper, kPaper));
    EXPECT_EQ(m_scanPick.seal.name, "second");
    EXPECT_EQ(m_scanPick.picture, SolidGif(40, 20, kBlue));
}

TEST_F(TreesOnWindows, TheRootOfTheScanPicksTheFirstSeal) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    ShowScan([&](HWND dialog) {
        Pick(dialog, "请选择印章");
        Click(dialog, IDOK);
    });
    EXPECT_EQ(m_scanPick.seal.name, "first");
}

TEST_F(TreesOnWindows, ALibraryUnderAnotherNameShowsNoDialogAndEachOpenerTellsSo) {
    LoadLibraryAs("TesmarkOpt_x64_2.dll");
    g_dialogCertLabel = "label||cert-1&&&";
    bool shown = false;
    const DialogUser user([&](HWND dialog) {
        shown = true;
        Click(dialog, IDOK);
    });
    EXPECT_EQ(ShowCertSelect(), platform::kDialogNotShown);
    EXPECT_EQ(ShowOnlineSealSelect(), platform::kDialogNotShown);
    EXPECT_EQ(ShowCertSealTree(&m_pick), DialogEnd::Failed);
    EXPECT_EQ(ShowPzmSealTree(&m_scanPick), DialogEnd::Failed);
    EXPECT_FALSE(shown);
    EXPECT_EQ(m_pick.certIndex, 7);
    EXPECT_EQ(m_scanPick.picture, "");
}

}  // namespace

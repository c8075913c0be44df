// A selection through the built library, with its dialog in a window of the system's.
#include <gmock/gmock.h>

#include "Controls.h"
#include "GifFile.h"
#include "fakes/LibraryTest.h"
#include "support/windows/DialogUser.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SelectionOnWindows : public LibraryTest {
protected:
    SelectionOnWindows() {
        fakes::AddCertificate("证书", "cert-1");
        fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal(m_red, "红章"));
        fakes::AddFile("cert-1", "ESEAL02", fakes::EsSeal("a picture", "other"));
        fakes::On("SealFormatConvert").Gives(m_blue);
    }
    // A size query whose dialog's user does this when it has been painted.
    int Query(std::function<void(HWND)> act) {
        const DialogUser user([act](HWND dialog) { Later(dialog, [=] { act(dialog); }); });
        m_length = -7;
        return GetSealInfo(nullptr, &m_length);
    }
    static void Pick(HWND dialog, const std::string& node) {
        const Tree tree(dialog);
        ASSERT_NE(tree.Find(node), 0) << node;
        tree.Select(tree.Find(node));
    }
    static unsigned MiddleOf(HWND dialog) {
        const SIZE size = PreviewSize(dialog);
        return PreviewPixel(dialog, size.cx / 2, size.cy / 2);
    }

    const std::string m_red = SolidGif(40, 20, 0xFF0000);
    const std::string m_blue = SolidGif(40, 20, 0x0000FF);
    int m_length = 0;
};

TEST_F(SelectionOnWindows, ThePickedSealIsSeenAndDelivered) {
    unsigned middle = 0;
    EXPECT_EQ(Query([&](HWND dialog) {
                  Pick(dialog, "红章");
                  middle = MiddleOf(dialog);
                  Click(dialog, IDOK);
              }),
              0);
    EXPECT_EQ(middle, 0xFF0000U);
    ASSERT_EQ(m_length, static_cast<int>(m_red.size()));
    std::string picture(m_red.size(), '?');
    EXPECT_EQ(GetSealInfo(reinterpret_cast<unsigned char*>(picture.data()), &m_length), 0);
    EXPECT_EQ(picture, m_red);
}

TEST_F(SelectionOnWindows, ASealOfAnotherFormatIsSeenConvertedAndDeliveredAsItStands) {
    unsigned middle = 0;
    EXPECT_EQ(Query([&](HWND dialog) {
                  Pick(dialog, "other");
                  middle = MiddleOf(dialog);
                  Click(dialog, IDOK);
              }),
              0);
    EXPECT_EQ(middle, 0x0000FFU);
    EXPECT_EQ(m_length, 9);
}

TEST_F(SelectionOnWindows, AQuestionOutOfTheDialogsLoopIsBusyAndTheDialogGoesOn) {
    int nested = 0, fetched = 0, length = 4;
    EXPECT_EQ(Query([&](HWND dialog) {
                  unsigned char buffer[4] = {};
                  nested = GetSealInfo(nullptr, &length);
                  fetched = GetSealInfo(buffer, &length);
                  Pick(dialog, "红章");
                  Click(dialog, IDOK);
              }),
              0);
    EXPECT_EQ(nested, TESMARK_BUSY);
    EXPECT_EQ(fetched, TESMARK_BUSY);
    EXPECT_EQ(length, 4);
    EXPECT_EQ(m_length, static_cast<int>(m_red.size()));
}

TEST_F(SelectionOnWindows, CancelAndTheCloseBoxAreACancelWithALine) {
    ForgetLog();
    EXPECT_EQ(Query([](HWND dialog) { Click(dialog, IDCANCEL); }), TESMARK_CANCELLED);
    EXPECT_EQ(Query([](HWND dialog) { PostMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); }),
              TESMARK_CANCELLED);
    EXPECT_THAT(Failures(), ElementsAre("user cancel dlg -3004", "user cancel dlg -3004"));
    EXPECT_EQ(m_length, -7);
}

TEST_F(SelectionOnWindows, OkWithNothingSelectedIsACancelWithoutALine) {
    ForgetLog();
    EXPECT_EQ(Query([](HWND dialog) { Click(dialog, IDOK); }), TESMARK_CANCELLED);
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(SelectionOnWindows, AFailedConversionIsLoggedAndTheEarlierPickConfirmed) {
    fakes::On("SealFormatConvert").Returns(17);
    ForgetLog();
    EXPECT_EQ(Query([](HWND dialog) {
                  Pick(dialog, "红章");
                  Pick(dialog, "other");
                  EXPECT_EQ(MiddleOf(dialog), 0xF0F0F0U);
                  Click(dialog, IDOK);
              }),
              0);
    EXPECT_EQ(m_length, static_cast<int>(m_red.size()));
    EXPECT_THAT(Failures(), ElementsAre("[TOVK_ReadESealPic]: 非gif图片，转换失败：17]"));
}

}  // namespace

#include "dialogs/PzmSealTree.h"

#include "SealDialogTest.h"
#include "foundation/StringFailure.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kRoot[] = "请选择印章";
constexpr platform::Colour kRed = 0xFF0000;
constexpr platform::Colour kBlue = 0x0000FF;

class PzmSealTreeTest : public SealDialogTest {
protected:
    PzmSealTreeTest() {
        g_pzmSealItems.push_back(MakeSeal("one", m_red));
        g_pzmSealItems.push_back(MakeSeal("two", m_blue));
        m_pick.picture = "untouched";
    }
    DialogEnd Show(ScriptedDialogs::User user) {
        const ScriptedDialogs dialogs(std::move(user));
        const DialogEnd end = ShowPzmSealTree(&m_pick);
        m_asked = dialogs.Asked();
        return end;
    }
    // Picks the node and confirms; what was drawn.
    std::string Confirm(const std::string& node) {
        std::string drawn;
        EXPECT_EQ(Show([&](ScriptedDialog& dialog) {
                      EXPECT_TRUE(dialog.PickNode(TESMARK_SEAL_TREE, node));
                      drawn = DrawnIn(dialog);
                      dialog.PressButton(TESMARK_BUTTON_OK);
                  }),
                  DialogEnd::Confirmed);
        return drawn;
    }

    const std::string m_red = SolidGif(40, 20, kRed);
    const std::string m_blue = SolidGif(300, 20, kBlue);
    PzmSealPick m_pick;
    std::vector<std::string> m_asked;
};

TEST_F(PzmSealTreeTest, TheTreeShowsTheSealsOfTheScanInTheirOrder) {
    Show([](ScriptedDialog& dialog) {
        EXPECT_THAT(TreeOf(dialog), ElementsAre("+请选择印章", " one", " two"));
        EXPECT_EQ(dialog.Bounds(), (platform::Rectangle{262, 214, 762, 514}));
        EXPECT_THAT(PreviewOf(dialog).fills, IsEmpty());
    });
    EXPECT_THAT(m_asked, ElementsAre("TesmarkOpt_x64 104"));
}

TEST_F(PzmSealTreeTest, ThePickedSealIsHandedOverWithItsPictureAndRecord) {
    g_pzmSealItems[1].type = SealTypeGM;
    g_pzmSealItems[1].picWidth = 40;
    EXPECT_EQ(Confirm("two"), "200x100 at 0,0 0000FF");
    EXPECT_EQ(m_pick.picture, m_blue);
    EXPECT_EQ(m_pick.seal.name, "two");
    EXPECT_EQ(m_pick.seal.type, SealTypeGM);
    EXPECT_EQ(m_pick.seal.picWidth, 40);
    EXPECT_EQ(m_pick.seal.picData, g_pzmSealItems[1].picData);
}

TEST_F(PzmSealTreeTest, AClickOnTheRootPicksTheFirstSealWithItsPreview) {
    EXPECT_EQ(Confirm(kRoot), "40x20 at 80,40 FF0000");
    EXPECT_EQ(m_pick.picture, m_red);
    EXPECT_EQ(m_pick.seal.name, "one");
}

TEST_F(PzmSealTreeTest, SoDoesAClickOnTheFirstSeal) {
    EXPECT_EQ(Confirm("one"), "40x20 at 80,40 FF0000");
    EXPECT_EQ(m_pick.picture, m_red);
}

TEST_F(PzmSealTreeTest, TheLastClickCountsAndClearsThePreviewFirst) {
    Show([](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "two");
        dialog.PickNode(TESMARK_SEAL_TREE, "one");
        EXPECT_THAT(PreviewOf(dialog).fills, ElementsAre(0xF0F0F0U, 0xF0F0F0U));
        EXPECT_EQ(PreviewOf(dialog).drawings.size(), 1U);
        dialog.PressButton(TESMARK_BUTTON_OK);
    });
    EXPECT_EQ(m_pick.seal.name, "one");
}

TEST_F(PzmSealTreeTest, OkWithoutAClickHandsOverWhatStoodThere) {
    g_pzmDialogPick.clear();
    g_pzmDialogSeal.name = "earlier";
    EXPECT_EQ(Show([](ScriptedDialog& dialog) { dialog.PressButton(TESMARK_BUTTON_OK); }),
              DialogEnd::Confirmed);
    EXPECT_EQ(m_pick.picture, "");
    EXPECT_EQ(m_pick.seal.name, "earlier");
}

TEST_F(PzmSealTreeTest, ClosingHandsNothingOver) {
    for (const bool byButton : {true, false}) {
        EXPECT_EQ(Show([&](ScriptedDialog& dialog) {
                      dialog.PickNode(TESMARK_SEAL_TREE, "two");
                      byButton ? dialog.PressButton(TESMARK_BUTTON_CANCEL) : dialog.CloseWindow();
                  }),
                  DialogEnd::Closed);
        EXPECT_EQ(m_pick.picture, "untouched");
        EXPECT_EQ(g_pzmDialogPick, m_blue);
    }
}

TEST_F(PzmSealTreeTest, ADialogThatCannotBeShownHandsNothingOver) {
    EXPECT_EQ(Show(nullptr), DialogEnd::Failed);
    EXPECT_EQ(m_pick.picture, "untouched");
}

TEST_F(PzmSealTreeTest, AnEmptyListGivesAnEmptyTree) {
    ReleasePzmSealPick(&m_pick);
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  EXPECT_THAT(TreeOf(dialog), IsEmpty());
                  EXPECT_EQ(dialog.Bounds().left, 262);
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              DialogEnd::Confirmed);
    EXPECT_EQ(m_pick.picture, "");
}

TEST_F(PzmSealTreeTest, APictureThatIsNoGifIsNotConvertedAndIsPickedAsItStands) {
    g_pzmSealItems.push_back(MakeSeal("three", "a picture"));
    EXPECT_EQ(Confirm("three"), "nothing");
    EXPECT_EQ(m_pick.picture, "a picture");
    EXPECT_EQ(fakes::CountCalls("SealFormatConvert"), 0);
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(PzmSealTreeTest, ANullPictureWithoutALengthIsAnEmptyPick) {
    g_pzmSealItems.push_back(SealRecord{});
    g_pzmSealItems.back().name = "three";
    EXPECT_EQ(Confirm("three"), "nothing");
    EXPECT_EQ(m_pick.picture, "");
    EXPECT_EQ(m_pick.seal.name, "three");
}

TEST_F(PzmSealTreeTest, ANullPictureWithALengthIsAStringFailure) {
    g_pzmSealItems.push_back(SealRecord{});
    g_pzmSealItems.back().name = "three";
    for (const int length : {1, -1}) {
        g_pzmSealItems.back().picLen = length;
        try {
            Show([](ScriptedDialog& dialog) { dialog.PickNode(TESMARK_SEAL_TREE, "three"); });
            ADD_FAILURE() << "nothing thrown";
        } catch (const StringFailure& failure) {
            EXPECT_EQ(failure.Value(), 0x80070057U);
        }
    }
    EXPECT_EQ(g_pzmDialogPick, "");
}

TEST_F(PzmSealTreeTest, ReleasingFreesTheListsBuffersAndDropsThePick) {
    g_pzmSealItems[0].sealData = OnHeap("seal");
    Confirm("two");
    ReleasePzmSealPick(&m_pick);
    EXPECT_THAT(g_pzmSealItems, IsEmpty());
    EXPECT_EQ(m_pick.picture, "");
    EXPECT_EQ(m_pick.seal.name, "");
    EXPECT_EQ(m_pick.seal.picData, nullptr);
}

}  // namespace

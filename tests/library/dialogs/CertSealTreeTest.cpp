#include "dialogs/CertSealTree.h"

#include "SealDialogTest.h"
#include "foundation/StringFailure.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Pick = std::pair<int, int>;

constexpr char kRoot[] = "请选择印章";
constexpr platform::Colour kPaper = 0xF0F0F0;
constexpr platform::Colour kRed = 0xFF0000;
constexpr platform::Colour kBlue = 0x0000FF;

class CertSealTreeTest : public SealDialogTest {
protected:
    DialogEnd Show(ScriptedDialogs::User user) {
        const ScriptedDialogs dialogs(std::move(user));
        const DialogEnd end = ShowCertSealTree(&m_pick);
        m_asked = dialogs.Asked();
        return end;
    }
    // A certificate with seals that show one colour each, 40 by 20.
    static void AddCertWithSeals(const std::string& label) {
        CertRecord& cert = AddCert(label);
        cert.seals.push_back(MakeSeal("red seal", SolidGif(40, 20, kRed)));
        cert.seals.push_back(MakeSeal("blue seal", SolidGif(40, 20, kBlue)));
    }
    static Pick Selected() { return {g_dialogSealRow, g_dialogSealCol}; }
    Pick Picked() const { return {m_pick.certIndex, m_pick.sealIndex}; }
    static std::string TextOf(const ScriptedDialog& dialog) { return PreviewOf(dialog).text; }

    // Two seals, the first sound and the second with this picture, picked one after the other. What
    // stands selected then is confirmed.
    void PickSoundThen(const std::string& picture) {
        CertRecord& cert = AddCert("one");
        cert.seals.push_back(MakeSeal("sound", SolidGif(40, 20, kRed)));
        cert.seals.push_back(MakeSeal("other", picture));
        EXPECT_EQ(Show([this](ScriptedDialog& dialog) {
                      dialog.PickNode(TESMARK_SEAL_TREE, "sound");
                      dialog.PickNode(TESMARK_SEAL_TREE, "other");
                      m_drawn = DrawnIn(dialog);
                      m_fills = PreviewOf(dialog).fills.size();
                      dialog.PressButton(TESMARK_BUTTON_OK);
                  }),
                  DialogEnd::Confirmed);
    }

    CertSealPick m_pick{7, 8};
    std::vector<std::string> m_asked;
    std::string m_drawn;
    std::size_t m_fills = 0;
};

TEST_F(CertSealTreeTest, TheTreeShowsCertificatesWithTheirSealsInTheOrderOfTheList) {
    AddCertWithSeals("二");
    AddCert("one").seals.push_back(MakeSeal("a seal", ""));
    Show([](ScriptedDialog& dialog) {
        EXPECT_THAT(TreeOf(dialog), ElementsAre("+请选择印章", " +证书：二", "  red seal",
                                                "  blue seal", " +证书：one", "  a seal"));
        EXPECT_EQ(dialog.SelectedNode(TESMARK_SEAL_TREE), platform::kNoNode);
        EXPECT_THAT(PreviewOf(dialog).fills, IsEmpty());
    });
    EXPECT_THAT(m_asked, ElementsAre("TesmarkOpt_x64 104"));
}

TEST_F(CertSealTreeTest, TheDataOfANodeTellsItsPlaceAndItsKind) {
    AddCert("扫码签章", 1);
    AddCertWithSeals("one");
    Show([](ScriptedDialog& dialog) {
        std::vector<std::vector<int>> data;
        for (const auto& node : dialog[TESMARK_SEAL_TREE].nodes) {
            const auto* const item = reinterpret_cast<const TreeItemData*>(node.data);
            if (item == nullptr) {
                data.push_back({});
            } else {
                data.push_back({item->certIndex, item->sealValue, item->isCert, item->scanMode});
            }
        }
        EXPECT_THAT(data, ElementsAre(IsEmpty(), ElementsAre(0, 0, 1, 1), ElementsAre(1, 2, 1, 0),
                                      ElementsAre(1, 0, 0, 0), ElementsAre(1, 1, 0, 0)));
        EXPECT_EQ(g_dialogSealItems.size(), 4U);
    });
}

TEST_F(CertSealTreeTest, TheDialogStandsInTheMiddleOfTheWorkArea) {
    Show([](ScriptedDialog& dialog) {
        EXPECT_EQ(dialog.Bounds(), (platform::Rectangle{262, 214, 762, 514}));
    });
}

TEST_F(CertSealTreeTest, AnEmptyListGivesAnEmptyTreeAndOkGivesNothingPicked) {
    g_dialogSealRow = 3;
    g_dialogSealCol = 4;
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  EXPECT_THAT(TreeOf(dialog), IsEmpty());
                  EXPECT_EQ(dialog.Bounds().left, 262);
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              DialogEnd::Confirmed);
    EXPECT_EQ(Picked(), Pick(-1, -1));
}

TEST_F(CertSealTreeTest, OkWithoutASelectionGivesNothingPicked) {
    AddCertWithSeals("one");
    EXPECT_EQ(Show([](ScriptedDialog& dialog) { dialog.PressButton(TESMARK_BUTTON_OK); }),
              DialogEnd::Confirmed);
    EXPECT_EQ(Picked(), Pick(-1, -1));
}

TEST_F(CertSealTreeTest, ASealIsPickedWithItsPictureInTheMiddleOfThePreview) {
    AddCertWithSeals("one");
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PickNode(TESMARK_SEAL_TREE, "blue seal");
                  EXPECT_THAT(PreviewOf(dialog).fills, ElementsAre(kPaper));
                  EXPECT_EQ(DrawnIn(dialog), "40x20 at 80,40 0000FF");
                  EXPECT_EQ(Selected(), Pick(0, 1));
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              DialogEnd::Confirmed);
    EXPECT_EQ(Picked(), Pick(0, 1));
    EXPECT_EQ(fakes::CountCalls("SealFormatConvert"), 0);
}

TEST_F(CertSealTreeTest, APictureThatIsTooLargeIsScaledToThePreview) {
    AddCert("one").seals.push_back(MakeSeal("seal", SolidGif(20, 100, kRed)));
    Show([](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "seal");
        EXPECT_EQ(DrawnIn(dialog), "200x100 at 0,0 FF0000");
    });
}

TEST_F(CertSealTreeTest, TheBackgroundOfThePreviewShowsThroughATransparentPicture) {
    const GifFile file{2, 1, {kRed, kBlue}, {{0, 0, 2, 1, "01", {}, '0'}}};
    AddCert("one").seals.push_back(MakeSeal("seal", file.Bytes()));
    Show([](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "seal");
        ASSERT_EQ(PreviewOf(dialog).drawings.size(), 1U);
        EXPECT_THAT(PreviewOf(dialog).drawings[0].picture.pixels, ElementsAre(kPaper, kBlue));
    });
}

TEST_F(CertSealTreeTest, TheRootUndoesThePickAndClearsThePreview) {
    AddCertWithSeals("one");
    Show([](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "red seal");
        dialog.PickNode(TESMARK_SEAL_TREE, kRoot);
        EXPECT_EQ(DrawnIn(dialog), "nothing");
        EXPECT_THAT(PreviewOf(dialog).fills, ElementsAre(kPaper, kPaper));
        EXPECT_EQ(Selected(), Pick(-1, -1));
        EXPECT_EQ(TextOf(dialog), "");
    });
}

TEST_F(CertSealTreeTest, ACertificateUndoesThePickAndTellsTheNumberOfItsSeals) {
    AddCertWithSeals("one");
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PickNode(TESMARK_SEAL_TREE, "red seal");
                  dialog.PickNode(TESMARK_SEAL_TREE, "证书：one");
                  EXPECT_EQ(TextOf(dialog), "此证书包含印章 2 个！");
                  EXPECT_EQ(DrawnIn(dialog), "nothing");
                  EXPECT_EQ(Selected(), Pick(-1, -1));
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              DialogEnd::Confirmed);
    EXPECT_EQ(Picked(), Pick(-1, -1));
}

TEST_F(CertSealTreeTest, ACertificateWithoutSealsTellsTheNumberZero) {
    AddCert("one");
    Show([](ScriptedDialog& dialog) {
        EXPECT_THAT(TreeOf(dialog), ElementsAre("+请选择印章", " +证书：one"));
        dialog.PickNode(TESMARK_SEAL_TREE, "证书：one");
        EXPECT_EQ(TextOf(dialog), "此证书包含印章 0 个！");
    });
}

TEST_F(CertSealTreeTest, TheCertificateOfTheScanIsPickedByItself) {
    AddCertWithSeals("one");
    AddCert("扫码签章", 1);
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  dialog.PickNode(TESMARK_SEAL_TREE, "red seal");
                  dialog.PickNode(TESMARK_SEAL_TREE, "证书：扫码签章");
                  EXPECT_EQ(TextOf(dialog), "选定此证书将进行扫码签章！");
                  EXPECT_EQ(Selected(), Pick(1, -1));
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              DialogEnd::Confirmed);
    EXPECT_EQ(Picked(), Pick(1, -1));
}

TEST_F(CertSealTreeTest, AScanModeOtherThanOneIsNone) {
    AddCert("one", 2);
    Show([](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "证书：one");
        EXPECT_EQ(TextOf(dialog), "此证书包含印章 0 个！");
        EXPECT_EQ(Selected(), Pick(-1, -1));
    });
}

TEST_F(CertSealTreeTest, TwoCertificatesOfOneLabelAreToldApartByTheirNodes) {
    AddCertWithSeals("one");
    AddCertWithSeals("one");
    EXPECT_EQ(Show([](ScriptedDialog& dialog) {
                  const auto tree = TreeOf(dialog);
                  ASSERT_EQ(tree.size(), 7U);
                  EXPECT_EQ(tree[1], tree[4]);
                  dialog.PickNode(TESMARK_SEAL_TREE, platform::TreeNode{6});
                  dialog.PressButton(TESMARK_BUTTON_OK);
              }),
              DialogEnd::Confirmed);
    EXPECT_EQ(Picked(), Pick(1, 0));
}

TEST_F(CertSealTreeTest, ALabelWithoutAnEndIsShownAsItLiesInMemory) {
    CertRecord& cert = AddCert("", 1);
    std::fill(std::begin(cert.certName), std::end(cert.certName), 'n');
    Show([](ScriptedDialog& dialog) {
        EXPECT_EQ(TreeOf(dialog).at(1), " +证书：" + std::string(32, 'n') + '\1');
    });
}

TEST_F(CertSealTreeTest, TheNamesOfNationalSealsHaveTheirSuffixes) {
    fakes::AddCertificate("one", "cert-1");
    fakes::AddFile("cert-1", "GBESEAL01", "national seal");
    fakes::AddFile("cert-1", "SEAL01", "national seal");
    fakes::AddNationalSeal("national seal", "name", "picture");
    ASSERT_EQ(g_certEsealOpt.GetCertAndPic(), 0);
    Show([](ScriptedDialog& dialog) {
        EXPECT_THAT(TreeOf(dialog),
                    ElementsAre("+请选择印章", " +证书：one", "  name(国办)", "  name(国密)"));
    });
    KVLUnInitialize(g_appOpt);
}

TEST_F(CertSealTreeTest, AnotherPictureIsConverted) {
    AddCert("one").seals.push_back(MakeSeal("seal", "a picture"));
    const std::string gif = SolidGif(40, 20, kBlue);
    fakes::On("SealFormatConvert").Gives(gif);
    Show([](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "seal");
        EXPECT_EQ(DrawnIn(dialog), "40x20 at 80,40 0000FF");
        EXPECT_EQ(Selected(), Pick(0, 0));
    });
    EXPECT_THAT(fakes::CallTexts("SealFormatConvert"),
                ElementsAre("SealFormatConvert(9 \"a picture\", size?)",
                            "SealFormatConvert(9 \"a picture\", out[" +
                                std::to_string(gif.size() + 1) + "])"));
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(CertSealTreeTest, TheLengthOfTheConvertedPictureIsThatOfTheSecondCall) {
    AddCert("one").seals.push_back(MakeSeal("seal", "a picture"));
    const std::string gif = SolidGif(40, 20, kBlue);
    fakes::On("SealFormatConvert").Gives(gif);
    fakes::On("SealFormatConvert").ReportsSizeAt(2, 10);
    Show([](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "seal");
        EXPECT_EQ(DrawnIn(dialog), "nothing");
        EXPECT_EQ(Selected(), Pick(0, 0));
    });
}

TEST_F(CertSealTreeTest, AConvertedPictureThatClaimsMoreThanItsMemoryIsCut) {
    AddCert("one").seals.push_back(MakeSeal("seal", "a picture"));
    fakes::On("SealFormatConvert").Gives(SolidGif(40, 20, kBlue));
    for (const int size : {1 << 30, -1}) {
        fakes::ClearCalls();
        fakes::On("SealFormatConvert").ReportsSizeAt(2, size);
        Show([&](ScriptedDialog& dialog) {
            dialog.PickNode(TESMARK_SEAL_TREE, "seal");
            EXPECT_EQ(DrawnIn(dialog), size > 0 ? "40x20 at 80,40 0000FF" : "nothing");
            EXPECT_EQ(Selected(), Pick(0, 0));
        });
    }
}

TEST_F(CertSealTreeTest, AConversionThatFailsForItsSizeLeavesTheEarlierPickAndABlankPreview) {
    fakes::On("SealFormatConvert").ReturnsAt(1, 1234);
    PickSoundThen("a picture");
    EXPECT_EQ(Picked(), Pick(0, 0));
    EXPECT_EQ(m_drawn, "nothing");
    EXPECT_EQ(m_fills, 2U);
    EXPECT_EQ(fakes::CountCalls("SealFormatConvert"), 1);
    EXPECT_THAT(Failures(), ElementsAre("[TOVK_ReadESealPic]: 非gif图片，转换失败：1234]"));
}

TEST_F(CertSealTreeTest, AConversionThatFailsForItsBytesDoesTheSame) {
    fakes::On("SealFormatConvert").ReturnsAt(2, -5);
    PickSoundThen("a picture");
    EXPECT_EQ(Picked(), Pick(0, 0));
    EXPECT_EQ(m_drawn, "nothing");
    EXPECT_THAT(Failures(), ElementsAre("[TOVK_ReadESealPic]: 非gif图片，转换失败：-5]"));
}

TEST_F(CertSealTreeTest, AConversionToASizeThatCannotBeHadDoesTheSame) {
    for (const int size : {-1, 0x7FFFFFFF}) {
        fakes::ClearCalls();
        fakes::On("SealFormatConvert").ReportsSizeAt(1, size);
        g_certEsealOpt.ClearCertList();
        PickSoundThen("a picture");
        EXPECT_EQ(Picked(), Pick(0, 0));
        EXPECT_EQ(fakes::CountCalls("SealFormatConvert"), 1);
    }
    EXPECT_EQ(Failures().size(), 2U);
}

TEST_F(CertSealTreeTest, AfterAFailedConversionTheScanCertificateStaysPicked) {
    AddCert("扫码签章", 1);
    AddCert("one").seals.push_back(MakeSeal("seal", "a picture"));
    fakes::On("SealFormatConvert").Returns(1);
    Show([](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "证书：扫码签章");
        dialog.PickNode(TESMARK_SEAL_TREE, "seal");
        EXPECT_EQ(Selected(), Pick(0, -1));
    });
}

TEST_F(CertSealTreeTest, GifInTheMiddleOfAPictureSkipsTheConversionAndTheSealIsPicked) {
    PickSoundThen("a picture with GIF in its middle");
    EXPECT_EQ(Picked(), Pick(0, 1));
    EXPECT_EQ(m_drawn, "nothing");
    EXPECT_EQ(m_fills, 2U);
    EXPECT_EQ(fakes::CountCalls("SealFormatConvert"), 0);
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(CertSealTreeTest, AConvertedPictureThatIsNoGifLeavesThePreviewBlankAndTheSealIsPicked) {
    fakes::On("SealFormatConvert").Gives("no picture");
    PickSoundThen("a picture");
    EXPECT_EQ(Picked(), Pick(0, 1));
    EXPECT_EQ(m_drawn, "nothing");
    EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(CertSealTreeTest, AnEmptyPictureGoesThroughTheConversionToo) {
    PickSoundThen("");
    EXPECT_EQ(Picked(), Pick(0, 1));
    EXPECT_THAT(
        fakes::CallTexts("SealFormatConvert"),
        ElementsAre("SealFormatConvert(0 \"\", size?)", "SealFormatConvert(0 \"\", out[1])"));
}

TEST_F(CertSealTreeTest, ANullPictureWithALengthIsAStringFailureThatFreesTheNodesData) {
    SealRecord seal = MakeSeal("seal", "");
    seal.picLen = 5;
    std::free(seal.picData);
    seal.picData = nullptr;
    AddCert("one").seals.push_back(seal);
    try {
        Show([](ScriptedDialog& dialog) { dialog.PickNode(TESMARK_SEAL_TREE, "seal"); });
        ADD_FAILURE() << "nothing thrown";
    } catch (const StringFailure& failure) {
        EXPECT_EQ(failure.Value(), 0x80070057U);
    }
    EXPECT_THAT(g_dialogSealItems, IsEmpty());
    EXPECT_EQ(Picked(), Pick(7, 8));
}

TEST_F(CertSealTreeTest, ASelectionOfNothingChangesNothing) {
    AddCertWithSeals("one");
    Show([](ScriptedDialog& dialog) {
        dialog.PickNode(TESMARK_SEAL_TREE, "red seal");
        dialog.PickNode(TESMARK_SEAL_TREE, platform::kNoNode);
        EXPECT_EQ(DrawnIn(dialog), "40x20 at 80,40 FF0000");
        EXPECT_EQ(Selected(), Pick(0, 0));
    });
}

TEST_F(CertSealTreeTest, ClosingKeepsThePositionsAndDoesNotPassThemOn) {
    AddCertWithSeals("one");
    for (const bool byButton : {true, false}) {
        EXPECT_EQ(Show([&](ScriptedDialog& dialog) {
                      dialog.PickNode(TESMARK_SEAL_TREE, "blue seal");
                      byButton ? dialog.PressButton(TESMARK_BUTTON_CANCEL) : dialog.CloseWindow();
                  }),
                  DialogEnd::Closed);
        EXPECT_EQ(Selected(), Pick(0, 1));
        EXPECT_EQ(Picked(), Pick(7, 8));
    }
}

TEST_F(CertSealTreeTest, ADialogThatCannotBeShownLeavesThePickAlone) {
    EXPECT_EQ(Show(nullptr), DialogEnd::Failed);
    EXPECT_EQ(Picked(), Pick(7, 8));
}

TEST_F(CertSealTreeTest, TheNodesDataIsFreedWhateverTheEnd) {
    AddCertWithSeals("one");
    const std::pair<DialogEnd, std::function<void(ScriptedDialog&)>> ends[] = {
        {DialogEnd::Confirmed, [](auto& dialog) { dialog.PressButton(TESMARK_BUTTON_OK); }},
        {DialogEnd::Closed, [](auto& dialog) { dialog.PressButton(TESMARK_BUTTON_CANCEL); }},
        {DialogEnd::Closed, [](auto& dialog) { dialog.CloseWindow(); }},
        // Filled, and then not shown after all.
        {DialogEnd::Failed, [](auto& dialog) { dialog.End(platform::kDialogNotShown); }},
    };
    for (const auto& [expected, user] : ends) {
        const DialogEnd end = Show([&user = user](ScriptedDialog& dialog) {
            EXPECT_EQ(g_dialogSealItems.size(), 3U);
            user(dialog);
        });
        EXPECT_EQ(end, expected);
        EXPECT_THAT(g_dialogSealItems, IsEmpty());
    }
}

TEST_F(CertSealTreeTest, TheListIsAsItWas) {
    AddCertWithSeals("one");
    const SealRecord& seal = g_certEsealOpt.m_certs[0].seals[0];
    const std::string before(reinterpret_cast<char*>(seal.picData),
                             static_cast<std::size_t>(seal.picLen));
    Show([](ScriptedDialog& dialog) { dialog.PickNode(TESMARK_SEAL_TREE, "red seal"); });
    EXPECT_EQ(before, SolidGif(40, 20, kRed));
    EXPECT_EQ(
        std::string(reinterpret_cast<char*>(seal.picData), static_cast<std::size_t>(seal.picLen)),
        before);
    EXPECT_EQ(g_certEsealOpt.m_certs[0].seals.size(), 2U);
}

}  // namespace

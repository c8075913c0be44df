// Certificates and seals that nobody has named, chosen in the library's dialogs.

#include <filesystem>

#include "support/linux/DialogUser.h"
#include "tools/cli/PhoneFixture.h"

namespace {

class DialogOnLinux : public PhoneFixture {
protected:
    DialogOnLinux() {
        WriteFile(m_file, "f");
        // The tree shows pictures of this kind as they are.
        constexpr char kGif[] =
            "GIF89a\x01\x00\x01\x00\x80\x00\x00\xFF\x00\x00\x00\x00\x00\x21\xF9\x04\x01\x00\x00\x00"
            "\x00\x2C\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02\x44\x01\x00\x3B";
        WriteFile(m_picture, std::string(kGif, sizeof kGif - 1));
    }
    void LetUser(int dialog, const std::string& acts) const {
        LetUserAct(InPrefix("user"), dialog, acts);
    }
    bool WasShown() const { return std::filesystem::exists(InPrefix("user.shown")); }
    void MakeGifSeal(const std::string& cert, const std::string& form,
                     const std::string& name) const {
        const auto outcome = Tesmark({"seal", "new", "--cert", cert, "--form", form, "--name", name,
                                      "--picture", m_picture, "--width", "40"});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    }

    std::string m_file = InPrefix("f");
    std::string m_picture = InPrefix("seal.gif");
};

// The nodes: 1 the root, 2 alice, 3 and 4 her seals, 5 bob, 6 his seal.
class TreeOnLinux : public DialogOnLinux {
protected:
    TreeOnLinux() {
        MakeKey("alice", "sm2");
        MakeKey("bob", "sm2");
        MakeGifSeal("alice", "gb2020", "first");
        MakeGifSeal("alice", "gm2014", "second");
        MakeGifSeal("bob", "gb2020", "third");
    }
};

TEST_F(TreeOnLinux, TheSealThatIsPickedIsStampedAndItsKeyOpenedWithThePin) {
    LetUser(104, PicksNode(4) + PressesOk());
    const Json::Value stamped = Json({"stamp", kContract, m_out, "--pin", "123456"});
    EXPECT_TRUE(WasShown());
    EXPECT_EQ(stamped["certId"].asString(), "DevKeys/alice");
    EXPECT_EQ(stamped["mode"].asInt(), 1);
    EXPECT_EQ(Tesmark({"verify", m_out}).exitCode, 0);
}

TEST_F(TreeOnLinux, AWrongPinIsTriedOnThePickedKeyAlone) {
    LetUser(104, PicksNode(6) + PressesOk());
    EXPECT_EQ(Stamp({"--pin", "000000"}).exitCode, 6);
    EXPECT_TRUE(NothingWritten());
    const Json::Value keys = Json({"key", "list"})["keys"];
    EXPECT_EQ(keys[0]["triesLeft"].asInt(), 6);
    EXPECT_EQ(keys[1]["triesLeft"].asInt(), 5);
}

TEST_F(TreeOnLinux, ACancelledDialogEndsWithTheListOfWhatIsThere) {
    LetUser(104, PressesCancel());
    const auto outcome = Stamp({"--pin", "123456"});
    EXPECT_TRUE(WasShown());
    EXPECT_EQ(outcome.exitCode, 5);
    EXPECT_NE(outcome.error.find("the dialog was left"), std::string::npos) << outcome.error;
    EXPECT_NE(outcome.error.find("third"), std::string::npos) << outcome.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(TreeOnLinux, NobodyIsAskedWhereCertificateAndSealAreNamed) {
    LetUser(104, PressesCancel());
    const auto outcome = Stamp({"--cert", "bob", "--seal", "third", "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_FALSE(WasShown());
}

TEST_F(DialogOnLinux, ThePhoneThatIsPickedIsScannedWithAndThePinLeftAlone) {
    MakeKey("alice", "sm2");
    MakeGifSeal("alice", "gb2020", "key");
    MakePhone("zhang");
    MakeGifSeal(kPhoneCertId, "gm2014", "phone");
    // The root, alice, her seal, the phone.
    LetUser(104, PicksNode(4) + PressesOk());
    const Json::Value stamped = Json({"stamp", kContract, m_out, "--pin", "000000"});
    EXPECT_EQ(stamped["certId"].asString(), kPhoneCertId);
    EXPECT_EQ(Json({"key", "list"})["keys"][0]["triesLeft"].asInt(), 6);
}

TEST_F(DialogOnLinux, OfTwoSealsOfAPhoneThePickedOneIsStamped) {
    MakePhone("zhang");
    MakeGifSeal(kPhoneCertId, "gm2014", "national");
    MakeGifSeal(kPhoneCertId, "es", "old");
    LetUser(104, PicksNode(2) + PressesOk());
    EXPECT_EQ(Json({"stamp", kContract, m_out})["mode"].asInt(), 0);
    LetUser(104, PressesOk());
    EXPECT_EQ(Stamp({}).exitCode, 5) << "confirmed without a pick";
}

TEST_F(DialogOnLinux, TheCertificateThatIsPickedSigns) {
    MakeKey("alice", "sm2");
    MakeKey("bob", "sm2");
    LetUser(101, PicksRow(2) + PressesOk());
    const Json::Value made = Json({"sign", m_file, "--pin", "123456"});
    EXPECT_TRUE(WasShown());
    EXPECT_EQ(made["certId"].asString(), "DevKeys/bob");
    EXPECT_EQ(Tesmark({"verify", "--detached", m_file + ".p7s", m_file}).exitCode, 0);
    LetUser(101, PressesCancel());
    const auto cancelled = Tesmark({"sign", m_file, "--pin", "123456", "-o", InPrefix("other")});
    EXPECT_EQ(cancelled.exitCode, 5);
    EXPECT_NE(cancelled.error.find("--cert"), std::string::npos) << cancelled.error;
}

}  // namespace

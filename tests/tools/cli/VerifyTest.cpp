// `tesmark verify` and `tesmark timestamp` of PDFs.

#include <filesystem>

#include "StampFixture.h"
#include "components/certservice/ServiceCodes.h"
#include "components/seallibrary/SealCodes.h"
#include "tools/PdfsigSigner.h"

namespace {

class VerifyTest : public StampFixture<CliTest> {
protected:
    void StampByRsa() const {
        MakeKey("rsa", "rsa2048");
        MakeSeal("rsa", "es", "rsa");
        ASSERT_EQ(Stamp({"--pin", "123456", "--reason", "Approved"}).exitCode, 0);
    }
    void StampBySeal(const std::string& form = "gb2020") const {
        MakeKey("sm2", "sm2");
        MakeSeal("sm2", form, "sm2");
        ASSERT_EQ(Stamp({"--pin", "123456"}).exitCode, 0);
    }

    ProgramOutcome Verify() const { return Tesmark({"verify", m_out}); }
    // The first signature's row.
    Json::Value Signature() const { return Json({"verify", m_out})["signatures"][0]; }
    static Json::Value Step(const Json::Value& signature, const std::string& name) {
        for (const auto& step : signature["steps"]) {
            if (step["name"].asString() == name) return step;
        }
        return {};
    }
    // Flips a bit in the picture of the seal, in front of the signature.
    void ChangePicture() const {
        std::string bytes = FileContent(m_out);
        const auto at = bytes.find("stream\n", bytes.rfind("/Image"));
        ASSERT_NE(at, std::string::npos);
        bytes[at + 60] = static_cast<char>(bytes[at + 60] ^ 1);
        WriteFile(m_out, bytes);
    }
    // Flips a bit at `offset` bytes behind the start of the last `text`.
    void Change(const std::string& text, std::size_t offset) const {
        std::string bytes = FileContent(m_out);
        const auto at = bytes.rfind(text);
        ASSERT_NE(at, std::string::npos) << text;
        bytes[at + offset] = static_cast<char>(bytes[at + offset] ^ 1);
        WriteFile(m_out, bytes);
    }
    void ExpectDigestMismatch(int code) const {
        EXPECT_EQ(Verify().exitCode, 7);
        const Json::Value signature = Signature();
        EXPECT_EQ(signature["verdict"].asString(), "bad");
        const Json::Value step = Step(signature, "signature");
        EXPECT_EQ(step["failed"].asString(), "digest") << signature;
        EXPECT_EQ(step["code"].asInt(), code);
    }
};

TEST_F(VerifyTest, AnRsaStampIsGoodAndToldWithItsSigner) {
    StampByRsa();
    const auto outcome = Verify();
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out << outcome.error;
    EXPECT_EQ(outcome.out.rfind("good ", 0), 0u) << outcome.out;
    EXPECT_NE(outcome.out.find("covers  the whole document"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(", claimed by the signer\n"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("revocation not checked"), std::string::npos) << outcome.out;
    const Json::Value all = Json({"verify", m_out});
    EXPECT_EQ(all["verdict"].asString(), "good");
    const Json::Value signature = all["signatures"][0];
    EXPECT_EQ(signature["kind"].asString(), "PKCS#7");
    EXPECT_EQ(signature["field"].asString(), "Signature1");
    EXPECT_EQ(signature["reason"].asString(), "Approved");
    EXPECT_EQ(signature["page"].asInt(), 2);
    EXPECT_EQ(signature["signer"]["name"].asString(), "rsa");
    EXPECT_NE(signature["signer"]["issuer"].asString().find("Development CA"), std::string::npos);
    EXPECT_EQ(signature["signer"]["serial"].asString(),
              Json({"list"})["certificates"][0]["serial"].asString());
    EXPECT_EQ(signature["signingTime"].asString().size(), 19u);
    EXPECT_FALSE(signature["revocationChecked"].asBool());
    EXPECT_TRUE(signature["revocationChecked"].isBool());
    EXPECT_TRUE(signature["covers"]["whole"].asBool());
    EXPECT_TRUE(Step(signature, "signature")["good"].asBool());
    EXPECT_TRUE(Step(signature, "certificate")["good"].asBool());
    EXPECT_TRUE(Step(signature, "signing time")["good"].asBool());
    EXPECT_TRUE(Step(signature, "time stamp").isNull());
}

TEST_F(VerifyTest, ASealSignatureIsGoodAndItsSealIsTold) {
    StampBySeal();
    EXPECT_EQ(Verify().exitCode, 0);
    const Json::Value signature = Signature();
    EXPECT_EQ(signature["kind"].asString(), "seal signature");
    EXPECT_EQ(signature["seal"]["name"].asString(), "sm2");
    EXPECT_EQ(signature["seal"]["form"].asString(), "GB/T 38540");
    EXPECT_EQ(signature["seal"]["number"].asString().rfind("VELMORA", 0), 0u);
    EXPECT_EQ(signature["seal"]["widthMm"].asInt(), 42);
    EXPECT_TRUE(Step(signature, "picture")["good"].asBool());
}

TEST_F(VerifyTest, WhoMadeTheSealIsTold) {
    StampBySeal();
    const Json::Value seal = Signature()["seal"];
    EXPECT_NE(seal["maker"].asString().find("CN="), std::string::npos) << seal;
    EXPECT_EQ(seal["madeBySigner"].asBool(), seal["maker"] == Signature()["signer"]["subject"]);
    const std::string told = Verify().out;
    EXPECT_NE(told.find("seal made by " + seal["maker"].asString()), std::string::npos) << told;
    EXPECT_EQ(told.find("its maker and the signer are the same certificate") != std::string::npos,
              seal["madeBySigner"].asBool());
}

TEST_F(VerifyTest, ASealSignatureOfTheOlderFormIsGoodToo) {
    StampBySeal("gm2014");
    EXPECT_EQ(Verify().exitCode, 0);
    EXPECT_EQ(Signature()["seal"]["form"].asString(), "GM/T 0031");
}

TEST_F(VerifyTest, TheSealsPictureIsSavedIntoAFileOrAFolder) {
    StampBySeal();
    const std::string file = InPrefix("seal.png");
    ASSERT_EQ(Tesmark({"verify", m_out, "--save-seal-picture", file}).exitCode, 0);
    EXPECT_EQ(FileContent(file).substr(1, 3), "PNG");
    std::filesystem::create_directory(InPrefix("pictures"));
    const Json::Value told = Json({"verify", m_out, "--save-seal-picture", InPrefix("pictures")});
    EXPECT_EQ(FileContent(InPrefix("pictures/1-Signature1.png")), FileContent(file));
    EXPECT_NE(told["signatures"][0]["seal"]["savedAs"].asString().find("1-Signature1.png"),
              std::string::npos);
}

TEST_F(VerifyTest, ThePictureOfTheSealNeverReplacesTheDocument) {
    StampBySeal();
    const std::string before = FileContent(m_out);
    std::filesystem::create_directory(InPrefix("pictures"));
    std::filesystem::create_hard_link(m_out, InPrefix("pictures/1-Signature1.png"));
    for (const std::string& picture : {m_out, InPrefix("./out.pdf"), InPrefix("pictures")}) {
        const auto outcome = Tesmark({"verify", m_out, "--save-seal-picture", picture});
        EXPECT_EQ(outcome.exitCode, 4) << picture;
        EXPECT_NE(outcome.error.find("must be another file than the input"), std::string::npos)
            << outcome.error;
    }
    EXPECT_TRUE(FileContent(m_out) == before);
    EXPECT_TRUE(FileContent(InPrefix("pictures/1-Signature1.png")) == before);
}

TEST_F(VerifyTest, WithoutASealThereIsNoPictureToSave) {
    StampByRsa();
    const auto outcome = Tesmark({"verify", m_out, "--save-seal-picture", InPrefix("seal.png")});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_NE(outcome.out.find("good "), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("there is no seal"), std::string::npos) << outcome.out;
    const Json::Value told = Json({"verify", m_out, "--save-seal-picture", InPrefix("seal.png")});
    EXPECT_EQ(told["verdict"].asString(), "good");
    EXPECT_FALSE(told["note"].asString().empty());
}

TEST_F(VerifyTest, APictureThatCannotBeWrittenHidesNoVerdict) {
    StampBySeal();
    const std::string picture = InPrefix("missing/seal.png");
    auto outcome = Tesmark({"verify", m_out, "--save-seal-picture", picture});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.out.find("good "), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.error.find("can't be written"), std::string::npos) << outcome.error;
    const Json::Value told = Json({"verify", m_out, "--save-seal-picture", picture});
    EXPECT_EQ(told["verdict"].asString(), "good");
    EXPECT_EQ(told["error"]["exit"].asInt(), 4);
    ChangePicture();
    outcome = Tesmark({"verify", m_out, "--save-seal-picture", picture});
    EXPECT_EQ(outcome.exitCode, 7) << "that it is bad is the worse news";
}

TEST_F(VerifyTest, AByteChangedInFrontOfTheSignatureIsADigestThatDiffers) {
    StampByRsa();
    ChangePicture();
    ExpectDigestMismatch(kServiceDigestMismatch);
    EXPECT_NE(PdfSig().find("Digest Mismatch"), std::string::npos);
}

TEST_F(VerifyTest, AByteChangedBehindTheSignatureIsADigestThatDiffers) {
    StampByRsa();
    Change("%%EOF", 4);
    ExpectDigestMismatch(kServiceDigestMismatch);
}

TEST_F(VerifyTest, AByteChangedUnderASealIsADigestThatDiffers) {
    StampBySeal();
    ChangePicture();
    ExpectDigestMismatch(kSealDigestMismatch);
}

TEST_F(VerifyTest, AValueThatWasChangedIsBad) {
    StampByRsa();
    Change("/Contents <", 2'000);
    EXPECT_EQ(Verify().exitCode, 7);
    EXPECT_EQ(Signature()["verdict"].asString(), "bad");
}

TEST_F(VerifyTest, AFurtherStampLeavesTheFirstOneGood) {
    StampByRsa();
    const std::string both = InPrefix("both.pdf");
    ASSERT_EQ(Tesmark({"stamp", m_out, both, "--page", "1", "--pin", "123456"}).exitCode, 0);
    const auto outcome = Tesmark({"verify", both});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
    const Json::Value signatures = Json({"verify", both})["signatures"];
    ASSERT_EQ(signatures.size(), 2u);
    EXPECT_FALSE(signatures[0]["covers"]["whole"].asBool());
    EXPECT_TRUE(signatures[0]["covers"]["signatureAfter"].asBool());
    EXPECT_EQ(signatures[0]["covers"]["altered"].size(), 0u);
    EXPECT_TRUE(signatures[1]["covers"]["whole"].asBool());
}

TEST_F(VerifyTest, AFurtherSignatureThatIsBadVouchesForNothingBeforeIt) {
    StampByRsa();
    const std::string first = m_out;
    m_out = InPrefix("both.pdf");
    ASSERT_EQ(Tesmark({"stamp", first, m_out, "--page", "1", "--pin", "123456"}).exitCode, 0);
    Change("/Contents <", 2'000);
    EXPECT_EQ(Verify().exitCode, 7);
    const Json::Value signatures = Json({"verify", m_out})["signatures"];
    ASSERT_EQ(signatures.size(), 2u);
    EXPECT_EQ(signatures[0]["verdict"].asString(), "changed") << signatures;
    EXPECT_EQ(signatures[1]["verdict"].asString(), "bad") << signatures;
}

TEST_F(VerifyTest, WhatWasAddedBehindTheLastSignatureIsAVerdictOfItsOwn) {
    StampByRsa();
    WriteFile(m_out, FileContent(m_out) + "\n");
    const auto outcome = Verify();
    EXPECT_EQ(outcome.exitCode, 8) << outcome.out;
    EXPECT_NE(outcome.out.find("1 byte added since"), std::string::npos) << outcome.out;
    EXPECT_EQ(Signature()["verdict"].asString(), "changed");
    EXPECT_TRUE(Step(Signature(), "signature")["good"].asBool());
}

TEST_F(VerifyTest, AShortenedRangeIsBad) {
    StampByRsa();
    std::string bytes = FileContent(m_out);
    const auto end = bytes.find(']', bytes.rfind("/ByteRange ["));
    const auto digit = bytes.find_last_of("0123456789", end);
    bytes[digit] = bytes[digit] == '0' ? '1' : static_cast<char>(bytes[digit] - 1);
    WriteFile(m_out, bytes);
    EXPECT_EQ(Verify().exitCode, 7);
}

TEST_F(VerifyTest, ASignatureWhoseRangeIsRefusedReachesNoComponent) {
    StampByRsa();
    const auto calls = [&] {
        const std::string path = m_prefix.LogFolder() + "Fenmoor.log";
        WriteFile(path, "");
        Verify();
        const std::string log = FileContent(path);
        return log.find("GetInfoFromSignedDataEx") != std::string::npos;
    };
    EXPECT_TRUE(calls());
    std::string bytes = FileContent(m_out);
    bytes[bytes.rfind("/ByteRange [0") + 12] = '1';
    WriteFile(m_out, bytes);
    EXPECT_FALSE(calls());
    EXPECT_EQ(Signature()["steps"][0]["failed"].asString(), "coverage");
}

TEST_F(VerifyTest, ASignerWhoseAuthorityIsNotTrustedIsBad) {
    StampByRsa();
    std::filesystem::remove(InTrust("velmora-development-rsa.pem"));
    EXPECT_EQ(Verify().exitCode, 7);
    const Json::Value signature = Signature();
    EXPECT_TRUE(Step(signature, "signature")["good"].asBool()) << signature;
    EXPECT_EQ(Step(signature, "certificate")["failed"].asString(), "chain");
}

TEST_F(VerifyTest, TheSignatureOfAnotherProgramIsVerifiedAndItsStrangerTold) {
    MakeKey("rsa", "rsa2048");
    WriteFile(InPrefix("plain.pdf"), FileContent(kContract));
    SignByPdfsig(m_prefix.Path(), "plain.pdf");
    const Json::Value told = Json({"verify", InPrefix("other.pdf")});
    const Json::Value signature = told["signatures"][0];
    EXPECT_EQ(signature["signer"]["name"].asString(), "Other Signer") << told;
    EXPECT_TRUE(Step(signature, "signature")["good"].asBool()) << signature;
    EXPECT_EQ(Step(signature, "certificate")["failed"].asString(), "chain");
    EXPECT_TRUE(signature["covers"]["whole"].asBool());
}

TEST_F(VerifyTest, APdfWithoutASignatureIsNotGood) {
    const auto outcome = Tesmark({"verify", kContract});
    EXPECT_EQ(outcome.exitCode, 7);
    EXPECT_NE(outcome.out.find("no signature"), std::string::npos) << outcome.out;
    EXPECT_EQ(Json({"verify", kContract})["verdict"].asString(), "unsigned");
}

TEST_F(VerifyTest, WhatIsNoPdfCannotBeRead) {
    WriteFile(InPrefix("text.txt"), "a text");
    EXPECT_EQ(Tesmark({"verify", InPrefix("text.txt")}).exitCode, 4);
    EXPECT_EQ(Tesmark({"verify", InPrefix("absent.pdf")}).exitCode, 4);
    EXPECT_EQ(Tesmark({"verify"}).exitCode, 2);
}

TEST_F(VerifyTest, ASignatureWithoutATimeStampIsToldAsSuch) {
    StampByRsa();
    const auto outcome = Tesmark({"timestamp", m_out});
    EXPECT_EQ(outcome.exitCode, 7);
    EXPECT_EQ(outcome.out, "none  Signature1\n") << outcome.error;
    EXPECT_EQ(Json({"timestamp", m_out})["timeStamps"][0]["verdict"].asString(), "none");
}

}  // namespace

#include "foundation/Text.h"
#include "library/bridge/ExportCalls.h"
#include "platform/closed/CertService.h"
#include "platform/closed/SealLibrary.h"
#include "road/RoadTest.h"

namespace {

constexpr char kData[] = "the bytes of the document";

int VerifySealSignature(const std::string& signature, const std::string& data) {
    const std::string text = Base64Encode(data);
    return TVK_Verify_SES_Sign(AsBytes(signature), AsLength(signature), AsBytes(text),
                               AsLength(text));
}

int VerifySealSignatureOfFile(const std::string& signature, const std::string& path) {
    return TVK_Verify_SES_Sign_BigFile(AsBytes(signature), AsLength(signature), path.c_str());
}

struct Stamp {
    const char* name;
    SealForm form;
    int mode;
    KeyKind kind;
};

// A key with one certificate and one seal of a national form, logged in.
class SealRoadTest : public RoadTest, public testing::WithParamInterface<Stamp> {
protected:
    SealRoadTest() {
        m_certId = MakeKey(GetParam().kind, "stamp");
        AddSeal(m_certId, GetParam().form);
        EXPECT_EQ(Login(m_certId), 0);
    }

    std::string m_certId;
};

TEST_P(SealRoadTest, ThePictureModeAndSizeAreTheSeals) {
    const Handed picture = Picture();
    ASSERT_EQ(picture.code, 0);
    EXPECT_EQ(picture.bytes, SealPicture());
    EXPECT_EQ(GetEsealMode(), GetParam().mode);
    int width = 0;
    int height = 0;
    EXPECT_EQ(GetSealPicSize(&width, &height), 0);
    EXPECT_EQ(width, 40);
    EXPECT_EQ(height, 30);
}

TEST_P(SealRoadTest, TheSealSignatureOverDataIsAcceptedAndOverOtherDataIsNot) {
    ASSERT_EQ(Picture().code, 0);
    const Handed signature = SignP7(kData);
    ASSERT_EQ(signature.code, 0);
    EXPECT_EQ(VerifySealSignature(signature.bytes, kData), 0);
    std::string changed = kData;
    changed.back() ^= 1;
    EXPECT_EQ(VerifySealSignature(signature.bytes, changed), 0x0C000042);
}

TEST_P(SealRoadTest, TheSealSignatureOfAFileIsAcceptedAndWithOneByteChangedIsNot) {
    ASSERT_EQ(Picture().code, 0);
    std::string content(300'000, 'x');
    const std::string path = WriteFile("document.pdf", content);
    const Handed signature = SignP7File(path);
    ASSERT_EQ(signature.code, 0);
    EXPECT_EQ(VerifySealSignatureOfFile(signature.bytes, path), 0);
    EXPECT_EQ(VerifySealSignature(signature.bytes, content), 0);
    content[150'000] ^= 1;
    WriteFile("document.pdf", content);
    EXPECT_EQ(VerifySealSignatureOfFile(signature.bytes, path), 0x0C000042);
}

TEST_P(SealRoadTest, ASealSignatureWithOneByteChangedIsRefused) {
    ASSERT_EQ(Picture().code, 0);
    const Handed signature = SignP7(kData);
    ASSERT_EQ(signature.code, 0);
    std::string changed = signature.bytes;
    changed.back() ^= 1;
    EXPECT_NE(VerifySealSignature(changed, kData), 0);
}

TEST_P(SealRoadTest, AfterTheSelectionIsClearedNothingIsSigned) {
    ASSERT_EQ(Picture().code, 0);
    ClearSelectKeyID();
    OutPair out;
    EXPECT_EQ(P7Sign(kData, "", out.buffer, &out.length), 0);
    EXPECT_TRUE(out.Untouched());
}

INSTANTIATE_TEST_SUITE_P(Forms, SealRoadTest,
                         testing::Values(Stamp{"Gb2020Sm2", SealForm::kGb2020, 2, KeyKind::kSm2},
                                         Stamp{"Gm2014Sm2", SealForm::kGm2014, 1, KeyKind::kSm2},
                                         Stamp{"Gm2025Sm2", SealForm::kGm2025, 2, KeyKind::kSm2},
                                         Stamp{"Gb2020Rsa", SealForm::kGb2020, 2, KeyKind::kRsa}),
                         [](const auto& stamp) { return std::string(stamp.param.name); });

// A message of the national standard has no other program here to judge it but the service.
TEST_F(RoadTest, AnSm2MessageIsAcceptedByTheServiceAndOverOtherDataIsNot) {
    const std::string certId = MakeKey(KeyKind::kSm2, "sm2");
    AddEsSeal(certId);
    ASSERT_EQ(Login(certId), 0);
    ASSERT_EQ(Picture().bytes, SealPicture());
    ASSERT_EQ(GetEsealMode(), 0);
    const Handed fromData = SignP7(kData);
    ASSERT_EQ(fromData.code, 0);
    const Handed fromFile = SignP7File(WriteFile("document.pdf", kData));
    ASSERT_EQ(fromFile.code, 0);

    void* context = nullptr;
    ASSERT_EQ(SOF_Initialize(&context), 0);
    for (const std::string& message : {fromData.bytes, fromFile.bytes}) {
        EXPECT_EQ(SOF_VerifySignedMessage(context, AsBytes(message), AsLength(message),
                                          AsBytes(kData), sizeof kData - 1),
                  0);
        EXPECT_NE(SOF_VerifySignedMessage(context, AsBytes(message), AsLength(message),
                                          AsBytes(kData), sizeof kData - 2),
                  0);
    }
    EXPECT_EQ(SOF_Finalize(context), 0);
}

}  // namespace

#include "library/bridge/ExportCalls.h"
#include "road/RoadTest.h"

namespace {

constexpr char kData[] = "the bytes of the document";

// An RSA key with an "ES" seal, logged in and selected.
class RsaRoadTest : public RoadTest {
protected:
    RsaRoadTest() {
        m_certId = MakeKey(KeyKind::kRsa, "rsa");
        AddEsSeal(m_certId);
        EXPECT_EQ(Login(m_certId), 0);
        EXPECT_EQ(Picture().bytes, SealPicture());
        m_path = WriteFile("document.pdf", kData);
    }

    std::string m_certId;
    std::string m_path;
};

TEST_F(RsaRoadTest, AnEsSealMeansAMessageAndTellsNoSize) {
    EXPECT_EQ(GetEsealMode(), 0);
    int width = 0;
    int height = 0;
    EXPECT_EQ(GetSealPicSize(&width, &height), 0);
    EXPECT_EQ(width, -1);
    EXPECT_EQ(height, -1);
}

TEST_F(RsaRoadTest, OpenSslAcceptsTheMessageOverDataAndRefusesItOverOthers) {
    const Handed message = SignP7(kData);
    ASSERT_EQ(message.code, 0);
    EXPECT_TRUE(CmsAccepts(message.bytes, m_path));
    EXPECT_FALSE(CmsAccepts(message.bytes, WriteFile("other.pdf", "other bytes")));
}

TEST_F(RsaRoadTest, OpenSslAcceptsTheMessageOfAFileWithoutTheSpareBytes) {
    OutPair size;
    ASSERT_EQ(P7SignFile(m_path, "", nullptr, &size.length), 0);
    std::string message(static_cast<std::size_t>(size.length), '\x7F');
    int length = size.length;
    ASSERT_EQ(P7SignFile(m_path, "", reinterpret_cast<unsigned char*>(message.data()), &length), 0);
    EXPECT_EQ(length, size.length);
    const std::string written = message.substr(0, message.size() - 128);
    EXPECT_TRUE(CmsAccepts(written, m_path));
    EXPECT_FALSE(CmsAccepts(written, WriteFile("other.pdf", "other bytes")));
    // One terminator stands behind the message; the rest of the spare room isn't touched.
    EXPECT_EQ(message.substr(written.size() + 1), std::string(127, '\x7F'));
}

TEST_F(RsaRoadTest, OpenSslAcceptsThePlainSignatureAndRefusesItOverOthers) {
    const Handed signature = SignP1(kData);
    ASSERT_EQ(signature.code, 0);
    std::string certificate;
    ASSERT_EQ(m_keys.ExportCertificate(m_certId, certificate), 0);
    EXPECT_TRUE(DigestAccepts(signature.bytes, m_path, certificate));
    EXPECT_FALSE(
        DigestAccepts(signature.bytes, WriteFile("other.pdf", "other bytes"), certificate));
}

TEST_F(RsaRoadTest, TheDraggedPictureIsTheSamePicture) {
    char* base64 = nullptr;
    ASSERT_EQ(GetDragSealPic(&base64), 0);
    ASSERT_NE(base64, nullptr);
    EXPECT_GT(std::string(base64).size(), SealPicture().size());
    std::free(base64);
}

}  // namespace

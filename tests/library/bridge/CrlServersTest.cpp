// What becomes of the operations that want a revocation list, by what its server does: a signature
// goes on with a warning, a verification ends.
#include <gmock/gmock.h>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"
#include "foundation/Text.h"
#include "support/LoopbackServer.h"
#include "support/ShownBoxes.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CrlServersTest : public LibraryTest {
protected:
    CrlServersTest() {
        fakes::AddCertificate("label", "A");
        SetCurrentCertID("A");
        m_prefix.SetNumber("bVerifyCRL", 1);
        fakes::On("SOF_VerifySignedMessage").Returns(91);
        // Base64 of "DER of A".
        fakes::On("TVK_Get_Sign_Cert_From_SIG").Gives("REVSIG9mIEE=");
        InitKVLLib();
    }

    // A signature, with the check of GetKeyType ahead of it.
    int Sign(const std::string& url) {
        OutPair out(512);
        return Run(url, [&] { return P7Sign("data", "", out.buffer, &out.length); });
    }
    int VerifyCert(const std::string& url) {
        return Run(url, [] { return VerifySignCert(AsBytes("DER of A"), 8, "time"); });
    }
    int VerifyData(const std::string& url) {
        return Run(url, [] { return P7VerifyData(AsBytes("data"), 4, AsBytes("signature"), 9); });
    }
    // The three of them, each with a list of its own: none can be had, and `code` tells why.
    void NoneCanBeHad(const std::function<std::string(const std::string&)>& url,
                      const std::vector<std::string>& errors) {
        EXPECT_EQ(Sign(url("/sign.crl")), 0);
        EXPECT_THAT(m_box, HasSubstr(AnsiToUtf8("获取CRL失败！")));
        EXPECT_EQ(Errors(), errors);
        EXPECT_EQ(fakes::CountCalls("SetUserConfig"), 0);
        EXPECT_EQ(fakes::CountCalls("SOF_SignMessageEx"), 1);

        EXPECT_EQ(VerifyCert(url("/cert.crl")), TESMARK_CRL_FAILED);
        EXPECT_EQ(m_box, "");
        EXPECT_EQ(Errors(), errors);
        EXPECT_EQ(fakes::CountCalls("SetUserConfig"), 0);
        EXPECT_EQ(fakes::CountCalls("SOF_ValidateCert"), 0);

        EXPECT_EQ(VerifyData(url("/data.crl")), TESMARK_CRL_FAILED);
        EXPECT_EQ(m_box, "");
        EXPECT_EQ(ErrorsBehindTheService(), errors);
        EXPECT_EQ(fakes::CountCalls("TVK_SetConfigEx"), 0);
        EXPECT_EQ(fakes::CountCalls("TVK_Verify_SES_Sign"), 0);
    }
    // The three of them hand on what came, whatever it is.
    void EachHandsOn(const LoopbackServer& server, const std::string& list) {
        const std::string size = std::to_string(list.size());
        EXPECT_EQ(Sign(server.Url("/sign.crl")), 0);
        EXPECT_EQ(m_box, "");
        EXPECT_THAT(HandedToTheService(), ElementsAre(Base64Encode(list)));

        EXPECT_EQ(VerifyCert(server.Url("/cert.crl")), 0);
        EXPECT_THAT(HandedToTheService(), ElementsAre(Base64Encode(list)));

        EXPECT_EQ(VerifyData(server.Url("/data.crl")), 0);
        EXPECT_THAT(fakes::CallTexts("TVK_SetConfigEx"),
                    ElementsAre("TVK_SetConfigEx(3, " + size + " \"" + list + "\")"));
        EXPECT_EQ(fakes::CalledFunctions().back(), "TVK_Verify_SES_Sign");
        EXPECT_EQ(m_box, "");
    }
    static std::vector<std::string> HandedToTheService() {
        std::vector<std::string> texts;
        for (const fakes::Call& call : fakes::Calls()) {
            if (call.function == "SetUserConfig") texts.push_back(call.arguments[1]);
        }
        return texts;
    }
    // Without the record of the service's refusal, which stands first.
    std::vector<std::string> ErrorsBehindTheService() const {
        const std::vector<std::string> errors = Errors();
        return {errors.begin() + (errors.empty() ? 0 : 1), errors.end()};
    }

    // The user's message, in UTF-8.
    std::string m_box;

private:
    int Run(const std::string& url, const std::function<int()>& operation) {
        fakes::On("SOF_GetCertInfoByOid").Gives("URI:" + url);
        fakes::ClearCalls();
        ForgetLog();
        ShownBoxes boxes;
        const int result = operation();
        m_box = boxes.Take();
        return result;
    }
};

TEST_F(CrlServersTest, AServerThatIsDownIsTold) {
    NoneCanBeHad(&LoopbackServer::DeadUrl,
                 {"curl_easy_perform failed, 7", "GetCrlDataFromCert error:7"});
}

TEST_F(CrlServersTest, AServerThatBreaksOffIsTold) {
    const LoopbackServer server(
        [](const std::string&) { return "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\na li"; });
    NoneCanBeHad([&](const std::string& path) { return server.Url(path); },
                 {"curl_easy_perform failed, 18", "GetCrlDataFromCert error:18"});
}

TEST_F(CrlServersTest, AServerThatSpeaksNoHttpIsTold) {
    const LoopbackServer server([](const std::string&) { return "\x01\x02 rubbish"; });
    NoneCanBeHad([&](const std::string& path) { return server.Url(path); },
                 {"curl_easy_perform failed, 1", "GetCrlDataFromCert error:1"});
}

TEST_F(CrlServersTest, AnEmptyAnswerIsAFailureWithTheValueZero) {
    const LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("200 OK", ""); });
    NoneCanBeHad([&](const std::string& path) { return server.Url(path); },
                 {"GetCrlDataFromCert error:0"});
}

TEST_F(CrlServersTest, ThePageOfAnErrorIsTakenForTheList) {
    const LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("404 Not Found", "no such list"); });
    EachHandsOn(server, "no such list");
}

TEST_F(CrlServersTest, ARedirectIsFollowed) {
    const LoopbackServer server([](const std::string& path) {
        return path == "/moved" ? LoopbackServer::Page("200 OK", "moved list")
                                : LoopbackServer::Page("302 Found", "gone", "Location: /moved\r\n");
    });
    EachHandsOn(server, "moved list");
}

TEST_F(CrlServersTest, RubbishIsHandedOn) {
    const LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("200 OK", "not a list"); });
    EachHandsOn(server, "not a list");
}

TEST_F(CrlServersTest, RubbishThatIsNotAcceptedWarnsASignerAndEndsAVerification) {
    const LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("200 OK", "not a list"); });
    fakes::On("SetUserConfig").Returns(113);
    fakes::On("TVK_SetConfigEx").Returns(114);
    EXPECT_EQ(Sign(server.Url("/sign.crl")), 0);
    EXPECT_THAT(m_box, HasSubstr(AnsiToUtf8("设置CRL失败！")));
    EXPECT_THAT(Errors(), ElementsAre("[SetCRL]call SetUserConfig error:113"));

    EXPECT_EQ(VerifyCert(server.Url("/cert.crl")), TESMARK_CRL_NOT_ACCEPTED);
    EXPECT_EQ(m_box, "");
    EXPECT_THAT(Errors(), ElementsAre("[SetCRL]call SetUserConfig error:113"));

    EXPECT_EQ(VerifyData(server.Url("/data.crl")), TESMARK_CRL_NOT_ACCEPTED);
    EXPECT_EQ(m_box, "");
    EXPECT_THAT(ErrorsBehindTheService(), ElementsAre("TVK_SetConfigEx error:114"));
    EXPECT_EQ(fakes::CountCalls("TVK_Verify_SES_Sign"), 0);
}

TEST_F(CrlServersTest, ASecondFailureOfTheSameListHasTheCodeOfARefresh) {
    const std::string url = LoopbackServer::DeadUrl("/ca1.crl");
    EXPECT_EQ(VerifyCert(url), TESMARK_CRL_FAILED);
    EXPECT_EQ(VerifyCert(url), TESMARK_CRL_FAILED);
    EXPECT_THAT(Errors(),
                ElementsAre("curl_easy_perform failed, 7", "GetCrlDataFromCert error:-1"));
    EXPECT_EQ(Sign(url), 0);
    EXPECT_THAT(Errors(),
                ElementsAre("curl_easy_perform failed, 7", "GetCrlDataFromCert error:-1"));
}

TEST_F(CrlServersTest, TheThreeShareOneDownloadOfADay) {
    const LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("200 OK", "a list"); });
    EXPECT_EQ(VerifyData(server.Url("/ca1.crl")), 0);
    EXPECT_EQ(Sign(server.Url("/ca1.crl")), 0);
    EXPECT_EQ(VerifyCert(server.Url("/ca1.crl")), 0);
    EXPECT_EQ(server.Requests().size(), 1u);
}

// --- the seal library's way alone ---

TEST_F(CrlServersTest, TheSealLibraryGetsTheListOfTheSignerAheadOfTheSignature) {
    const LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("200 OK", "a list"); });
    const std::string url = "URI:" + server.Url("/ca1.crl");
    EXPECT_EQ(VerifyData(server.Url("/ca1.crl")), 0);
    EXPECT_THAT(fakes::CallTexts(),
                ElementsAre("SOF_VerifySignedMessage(ctx, 9 \"signature\", 4 \"data\")",
                            "TVK_Get_Sign_Cert_From_SIG(12 \"c2lnbmF0dXJl\", size?)",
                            "TVK_Get_Sign_Cert_From_SIG(12 \"c2lnbmF0dXJl\", out[12])",
                            "SOF_GetCertInfoByOid(ctx, 8 \"DER of A\", \"2.5.29.31\", size?)",
                            "SOF_GetCertInfoByOid(ctx, 8 \"DER of A\", \"2.5.29.31\", out[" +
                                std::to_string(url.size()) + "])",
                            "TVK_SetConfigEx(3, 6 \"a list\")",
                            "TVK_Verify_SES_Sign(9 \"signature\", 8 \"ZGF0YQ==\")"));
}

TEST_F(CrlServersTest, AnUnreachableListRefusesEvenAGoodSealSignature) {
    fakes::On("TVK_Verify_SES_Sign").Returns(0);
    EXPECT_EQ(VerifyData(LoopbackServer::DeadUrl("/ca1.crl")), TESMARK_CRL_FAILED);
    EXPECT_EQ(TESMARK_CRL_FAILED, -3048);
    m_prefix.SetNumber("bVerifyCRL", 0);
    UnInitKVLLib();
    EXPECT_EQ(VerifyData(LoopbackServer::DeadUrl("/ca1.crl")), 0);
}

TEST_F(CrlServersTest, APkcs7ThatTheServiceAcceptsNeedsNoList) {
    fakes::On("SOF_VerifySignedMessage").Returns(0);
    EXPECT_EQ(VerifyData(LoopbackServer::DeadUrl("/ca1.crl")), 0);
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAre("SOF_VerifySignedMessage"));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CrlServersTest, ASignerThatTheSealLibraryDoesNotFindIsItsResultAtEitherStep) {
    fakes::On("TVK_Get_Sign_Cert_From_SIG").ReturnsAt(1, 98);
    EXPECT_EQ(VerifyData("http://192.0.2.7/ca1.crl"), 98);
    EXPECT_THAT(ErrorsBehindTheService(), ElementsAre("TVK_Get_Sign_Cert_From_SIG error:98"));
    fakes::On("TVK_Get_Sign_Cert_From_SIG").ReturnsAt(1, 0).ReturnsAt(2, -7);
    EXPECT_EQ(VerifyData("http://192.0.2.7/ca1.crl"), -7);
    EXPECT_THAT(ErrorsBehindTheService(), ElementsAre("TVK_Get_Sign_Cert_From_SIG error:-7"));
    EXPECT_EQ(fakes::CountCalls("TVK_Verify_SES_Sign"), 0);
}

TEST_F(CrlServersTest, ASignerThatNoMemoryHoldsIsToldAsSuch) {
    fakes::On("TVK_Get_Sign_Cert_From_SIG").ReportsSize(-2);
    EXPECT_EQ(VerifyData("http://192.0.2.7/ca1.crl"), TESMARK_NO_MEMORY);
    EXPECT_THAT(ErrorsBehindTheService(), ElementsAre("TVK_Get_Sign_Cert_From_SIG error:-3015"));
}

}  // namespace

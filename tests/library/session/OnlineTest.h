// OnlineTest.h - what tests of seals from the online service share.
#pragma once

#include <string>
#include <vector>

#include "SessionTest.h"
#include "fakes/CertServiceAnswers.h"
#include "support/ShownBoxes.h"

// Each test begins with the address set, a key of one certificate "cert-1", and a service whose
// list has one seal "7001", which is an old one with the picture "picture". Answers are UTF-8.
class OnlineTest : public SessionTest {
protected:
    static constexpr int kFailure = 77;
    static constexpr char kUrl[] = "http://seals.example/QelmServlet";

    OnlineTest() {
        m_prefix.SetNumber("bSealPosition", 1);
        m_prefix.SetText("sWSURL", kUrl);
        fakes::AddCertificate("label", "cert-1");
        fakes::On("dwnt_http_response_data_get").Does([this](const fakes::Call&) {
            fakes::Answer answer;
            const bool list = Sent().back().find("GetSealList") != std::string::npos;
            answer.output = list ? m_listAnswer : m_sealAnswer;
            return answer;
        });
    }

    static std::string Utf8(const char8_t* text) { return reinterpret_cast<const char*>(text); }
    static std::string Document(const std::string& elements) {
        return "<ROOT>" + elements + "</ROOT>";
    }
    static std::string Success(const std::string& elements) {
        return Document("<STATUSCODE>200</STATUSCODE>" + elements);
    }
    static std::string SealInfo(const std::string& number, const std::string& name) {
        return "<SEALINFO><SEALNUM>" + number + "</SEALNUM><SEALNAME>" + name +
               "</SEALNAME></SEALINFO>";
    }
    static std::string SealList(int count, const std::string& entries) {
        return Success("<COUNT>" + std::to_string(count) + "</COUNT>" + entries);
    }
    static std::string Seal(const std::string& base64) {
        return Success("<SEAL>" + base64 + "</SEAL>");
    }
    static std::string Base64Of(const std::string& bytes) {
        fakes::Call call;
        call.arguments.push_back(bytes);
        return fakes::Base64Text(call).output;
    }

    // The seal that the service hands over.
    void ServiceHas(const std::string& file) { m_sealAnswer = Seal(Base64Of(file)); }
    // The same, of a format that the seal library reads, with the picture "national picture".
    fakes::NationalSeal& ServiceHasNationalSeal() {
        ServiceHas("national seal");
        return fakes::AddNationalSeal("national seal", "name", "national picture");
    }

    // The bodies of the exchanges so far.
    static std::vector<std::string> Sent() {
        std::vector<std::string> bodies;
        for (const fakes::Call& call : fakes::Calls()) {
            if (call.function == "dwnt_http_body_set") bodies.push_back(call.arguments[1]);
        }
        return bodies;
    }
    static std::string ListRequest() {
        return "<ROOT>\r\n<REQUESTTYPE>GetSealList</REQUESTTYPE>\r\n<SN>serial of cert-1</SN>\r\n"
               "<DN>field 33 of cert-1</DN>\r\n</ROOT>\r\n";
    }
    static std::string SealRequest(const std::string& number) {
        const std::string element =
            number.empty() ? "<SEALNUM/>" : "<SEALNUM>" + number + "</SEALNUM>";
        return "<ROOT>\r\n<REQUESTTYPE>GetAppointedSeal</REQUESTTYPE>\r\n"
               "<SN>serial of cert-1</SN>\r\n<DN>field 33 of cert-1</DN>\r\n" +
               element + "\r\n</ROOT>\r\n";
    }

    // A size query that leaves the length alone.
    void ExpectQueryFails(int code) {
        m_length = -7;
        EXPECT_EQ(GetSealInfo(nullptr, &m_length), code);
        EXPECT_EQ(m_length, -7);
    }
    static std::string Size() {
        int width = -7, height = -7;
        GetSealPicSize(&width, &height);
        return std::to_string(width) + " by " + std::to_string(height);
    }
    static bool IsSelected() {
        int length = 0;
        GetSelectedCertId(nullptr, &length);
        return length != 0;
    }
    // Nothing selected, no seal, no mode, no size, and no picture cached.
    static void ExpectCleared() {
        EXPECT_FALSE(IsSelected());
        EXPECT_EQ(SelectedSeal(), "");
        EXPECT_EQ(GetEsealMode(), 0);
        ExpectNothingCached();
    }
    static void ExpectNothingCached() {
        SetGetStampPictureMode(0);
        EXPECT_EQ(Fetch(3), std::string(3, '\0'));
        SetGetStampPictureMode(1);
    }

    std::string m_listAnswer = SealList(1, SealInfo("7001", Utf8(u8"财务专用章")));
    std::string m_sealAnswer = Seal(Base64Of(fakes::EsSeal("picture")));
    int m_length = 0;
};

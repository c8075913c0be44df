// What a host's call that arrives while the service is being asked does to the list of seals.
#include "FlowTest.h"
#include "foundation/Text.h"
#include "session/Selection.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

int Search(const std::string& serial, const std::string& sealBase64) {
    const auto bytes = [](const std::string& text) {
        return reinterpret_cast<const unsigned char*>(text.data());
    };
    return session::SetCertSeal(bytes(serial), static_cast<int>(serial.size()), bytes(sealBase64),
                                static_cast<int>(sealBase64.size()), 1);
}

// Reads the list anew and selects nothing.
void SearchInVain() { Search("none", "bm9uZQ=="); }

void AddSeal(const std::string& certId, const std::string& picture) {
    fakes::AddFile(certId, "ESEAL01", fakes::EsSeal(picture));
}

// A list without an entry.
void PullAllKeys() {
    fakes::ResetWorld();
    fakes::AddCertificate("翠枫证书", "cert-1");
}

class NestedSearchTest : public FlowTest {
protected:
    NestedSearchTest() {
        fakes::AddCertificate("one", "cert-1");
        AddSeal("cert-1", "first");
        fakes::AddCertificate("two", "cert-2");
        AddSeal("cert-2", "second");
    }
    // While the service is asked for the second certificate, this happens and is searched.
    static void DuringTheSecondSerial(std::function<void()> event) {
        fakes::On("SOF_GetCertInfo").Gives("02CD");
        fakes::On("SOF_ExportUserCert").Does([event](const fakes::Call& call) {
            if (call.number == 3) {
                event();
                SearchInVain();
            }
            fakes::Answer answer;
            answer.output = "certificate";
            return answer;
        });
    }
    // The same at the first call of this function, which goes on to answer with `output`.
    static void DuringTheFirst(const char* function, const std::string& output,
                               std::function<void()> event) {
        fakes::On(function).Does([=](const fakes::Call& call) {
            if (call.number == 1) {
                event();
                SearchInVain();
            }
            fakes::Answer answer;
            answer.output = output;
            return answer;
        });
    }
    // The pictures in the list, one text for each certificate.
    static std::vector<std::string> Pictures() {
        std::vector<std::string> pictures;
        for (const CertRecord& cert : g_certEsealOpt.m_certs) {
            std::string& text = pictures.emplace_back(cert.CertIdText() + ":");
            for (const SealRecord& seal : cert.seals) {
                text.append(" ").append(reinterpret_cast<char*>(seal.picData));
            }
        }
        return pictures;
    }
};

TEST_F(NestedSearchTest, AListThatWasEmptiedHasTheCertificateButNoSealOfIt) {
    DuringTheSecondSerial(PullAllKeys);
    EXPECT_EQ(Search("02CD", Base64Encode(fakes::EsSeal("second"))), TESMARK_NO_SEAL_MATCHES);
    EXPECT_EQ(g_currentCertId.Text(), "cert-2");
    EXPECT_TRUE(g_selectedSeal.Empty());
    EXPECT_THAT(Pictures(), IsEmpty());
}

TEST_F(NestedSearchTest, TheSealOfAnotherCertificateInTheSamePlaceIsNotTaken) {
    DuringTheSecondSerial([] {
        fakes::ResetWorld();
        fakes::AddCertificate("one", "cert-1");
        fakes::AddCertificate("nine", "cert-9");
        AddSeal("cert-9", "second");
    });
    EXPECT_EQ(Search("02CD", Base64Encode(fakes::EsSeal("second"))), TESMARK_NO_SEAL_MATCHES);
    EXPECT_EQ(g_currentCertId.Text(), "cert-2");
    EXPECT_TRUE(g_selectedSeal.Empty());
}

TEST_F(NestedSearchTest, TheSealIsFoundInAListThatWasRebuiltAsItWas) {
    DuringTheSecondSerial([] {});
    EXPECT_EQ(Search("02CD", Base64Encode(fakes::EsSeal("second"))), 0);
    EXPECT_EQ(g_currentCertId.Text(), "cert-2");
    EXPECT_EQ(g_selectedSeal.View(), fakes::EsSeal("second"));
}

TEST_F(NestedSearchTest, AnEnumerationDuringAnotherLeavesEachSealOnce) {
    for (const char* function : {"EnumFilesInDevice", "SOF_ReadFile"}) {
        const bool isList = std::string(function) == "EnumFilesInDevice";
        fakes::ClearCalls();
        DuringTheFirst(function, isList ? "ESEAL01&&&" : fakes::EsSeal("any"), [] {});
        SearchInVain();
        fakes::On(function) = {};
        const std::string picture = isList ? "first" : "any";
        EXPECT_THAT(Pictures(),
                    ElementsAre("cert-1: " + picture, isList ? "cert-2: second" : "cert-2: any"))
            << function;
    }
}

TEST_F(NestedSearchTest, AnEnumerationThatEmptiesTheListDuringAnotherIsTheOneThatCounts) {
    for (const char* function : {"EnumFilesInDevice", "SOF_ReadFile"}) {
        fakes::ResetWorld();
        fakes::AddCertificate("one", "cert-1");
        AddSeal("cert-1", "first");
        fakes::ClearCalls();
        DuringTheFirst(function, function[0] == 'E' ? "ESEAL01&&&" : fakes::EsSeal("any"),
                       PullAllKeys);
        SearchInVain();
        fakes::On(function) = {};
        EXPECT_THAT(Pictures(), IsEmpty()) << function;
    }
}

TEST_F(NestedSearchTest, AnEnumerationThatFailsDuringAnotherLeavesThatOneToItsEnd) {
    DuringTheFirst("SOF_ReadFile", fakes::EsSeal("any"),
                   [] { fakes::On("GetDeviceCountEx").Returns(3); });
    SearchInVain();
    EXPECT_THAT(Pictures(), ElementsAre("cert-1: any", "cert-2: any"));
}

}  // namespace

// What becomes of a list of certificates without its separators.
#include "library/MadeList.h"

#include "FlowTest.h"
#include "session/CertificateChoice.h"
#include "session/CertificatePresence.h"
#include "session/Login.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class MadeListTest : public FlowTest {
protected:
    MadeListTest() {
        g_currentCertId.Assign("cert-1");
        EXPECT_EQ(EnsureServiceReady(), 0);
        fakes::ClearCalls();
        ForgetLog();
    }
    static int Check(const std::string& text) {
        return session::CheckIsCertExist(reinterpret_cast<const unsigned char*>(text.data()),
                                         static_cast<int>(text.size()));
    }
};

TEST_F(MadeListTest, ALogoutWithoutBarsInTheListIsMinusOneAndKeepsTheSelection) {
    g_selectedSeal.Assign("seal");
    for (const char* const list : {"no bars&&&", "one bar|cert-1&&&", ""}) {
        g_madeList = list;
        EXPECT_EQ(session::Logout(), TESMARK_FAILED) << list;
    }
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
    EXPECT_EQ(g_selectedSeal.View(), "seal");
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(MadeListTest, ALogoutWithoutAWholeEntryInTheListIsZeroAndEndsTheSelection) {
    g_madeList = "label||cert-1";
    EXPECT_EQ(session::Logout(), 0);
    EXPECT_TRUE(g_currentCertId.Empty());
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(MadeListTest, ALogoutEndsTheLoginsOfTheWholeEntriesAlone) {
    g_madeList = "one||cert-1&&&two||cert-2";
    EXPECT_EQ(session::Logout(), 0);
    EXPECT_THAT(fakes::CallTexts(), ElementsAre("SOF_Logout(ctx, \"cert-1\")"));
}

TEST_F(MadeListTest, AChoiceWithoutBarsInTheListIsMinusOneAndForgetsNothing) {
    g_pickedCertLabel = "of an earlier choice";
    std::string certId = "as it was";
    g_madeList = "no bars&&&";
    EXPECT_EQ(ChooseCertificate(certId), TESMARK_FAILED);
    EXPECT_EQ(certId, "as it was");
    EXPECT_EQ(g_pickedCertLabel, "of an earlier choice");
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(MadeListTest, AChoiceWithoutAWholeEntryInTheListIsZeroAndChoosesNothing) {
    g_pickedCertLabel = "of an earlier choice";
    std::string certId = "as it was";
    g_madeList = "label||cert-2";
    EXPECT_EQ(ChooseCertificate(certId), 0);
    EXPECT_EQ(certId, "as it was");
    EXPECT_EQ(g_pickedCertLabel, "");
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(MadeListTest, ACheckWithoutAWholeEntryInTheListIsZero) {
    for (const char* const list : {"no bars&&&", "label||cert-1", ""}) {
        g_madeList = list;
        EXPECT_EQ(Check("text"), 0) << list;
    }
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

}  // namespace

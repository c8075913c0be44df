#include "EnumerationTest.h"
#include "library/MadeList.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ListFormatTest : public EnumerationTest {
protected:
    ListFormatTest() {
        g_madeList = "old||cert-1&&&";
        EXPECT_EQ(m_list.GetCertAndPic(), 0);
        ForgetLog();
    }
};

TEST_F(ListFormatTest, AListWithoutBarsIsRefusedAndLeavesTheOldList) {
    for (const char* list : {"no bars&&&", "one bar|cert-2&&&", ""}) {
        g_madeList = list;
        ForgetLog();
        EXPECT_EQ(m_list.GetUserList(), TESMARK_CERT_LIST_FORMAT) << list;
        EXPECT_THAT(Errors(), ElementsAre("Cert error:ERROR_TESMARK_CERT_FORMAT"));
        EXPECT_THAT(Labels(), ElementsAre("old"));
    }
}

TEST_F(ListFormatTest, AListWithoutBarsEndsTheEnumerationWithItsCode) {
    g_madeList = "no bars&&&";
    fakes::ClearCalls();
    EXPECT_EQ(m_list.GetCertAndPic(), TESMARK_CERT_LIST_FORMAT);
    EXPECT_THAT(Errors(),
                ElementsAre("Cert error:ERROR_TESMARK_CERT_FORMAT", "GetUserList error:-3002"));
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(ListFormatTest, AListWithBarsAndNoEndClearsTheOldListAndSucceeds) {
    g_madeList = "label||cert-2";
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_THAT(Labels(), IsEmpty());
    EXPECT_THAT(Errors(), IsEmpty());
}

}  // namespace

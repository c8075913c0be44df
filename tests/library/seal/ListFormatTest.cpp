#include "EnumerationTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// What the bridge gives in place of the list that it makes of the service's.
std::string g_list;

}  // namespace

// Stands in for CAppOpt::GetUserList: the linker sends the enumeration's calls here. The bridge's
// own lists always have their separators.
extern "C" int BridgesList(CAppOpt*,
                           CBuffer& list) asm("__wrap__ZN7CAppOpt11GetUserListER7CBuffer");
int BridgesList(CAppOpt*, CBuffer& list) {
    list = CBuffer(g_list.size() + 1);
    g_list.copy(list.Text(), g_list.size());
    *list.LengthPointer() = static_cast<int>(g_list.size());
    return 0;
}

namespace {

class ListFormatTest : public EnumerationTest {
protected:
    ListFormatTest() {
        g_list = "old||cert-1&&&";
        EXPECT_EQ(m_list.GetCertAndPic(), 0);
        ForgetLog();
    }
};

TEST_F(ListFormatTest, AListWithoutBarsIsRefusedAndLeavesTheOldList) {
    for (const char* list : {"no bars&&&", "one bar|cert-2&&&", ""}) {
        g_list = list;
        ForgetLog();
        EXPECT_EQ(m_list.GetUserList(), TESMARK_CERT_LIST_FORMAT) << list;
        EXPECT_THAT(Errors(), ElementsAre("Cert error:ERROR_TESMARK_CERT_FORMAT"));
        EXPECT_THAT(Labels(), ElementsAre("old"));
    }
}

TEST_F(ListFormatTest, AListWithoutBarsEndsTheEnumerationWithItsCode) {
    g_list = "no bars&&&";
    fakes::ClearCalls();
    EXPECT_EQ(m_list.GetCertAndPic(), TESMARK_CERT_LIST_FORMAT);
    EXPECT_THAT(Errors(),
                ElementsAre("Cert error:ERROR_TESMARK_CERT_FORMAT", "GetUserList error:-3002"));
    EXPECT_THAT(fakes::CallTexts(), IsEmpty());
}

TEST_F(ListFormatTest, AListWithBarsAndNoEndClearsTheOldListAndSucceeds) {
    g_list = "label||cert-2";
    EXPECT_EQ(m_list.GetUserList(), 0);
    EXPECT_THAT(Labels(), IsEmpty());
    EXPECT_THAT(Errors(), IsEmpty());
}

}  // namespace

#include "RenamedLibraryTest.h"
#include "library/dialogs/windows/Controls.h"
#include "support/windows/DialogUser.h"

using testing::ElementsAre;

namespace {

class RenamedLibraryOnWindows : public RenamedLibraryTest {
protected:
    void SetUp() override {
        const std::string path = m_prefix.Below("TesmarkOpt.dll");
        ASSERT_NE(CopyFileA(LIBRARY_FILE, path.c_str(), TRUE), 0);
        Load(path);
    }
    static void SelectRow(HWND dialog, WPARAM row) {
        SendDlgItemMessageA(dialog, TESMARK_ONLINE_SEAL_LIST, CB_SETCURSEL, row, 0);
    }
};

TEST_F(RenamedLibraryOnWindows, TheUserPicksAmongTheServicesSealsByName) {
    std::vector<std::string> rows;
    const DialogUser user([&](HWND dialog) {
        rows = RowsOf(dialog, TESMARK_ONLINE_SEAL_LIST);
        SelectRow(dialog, 2);
        Click(dialog, IDOK);
    });
    EXPECT_EQ(QueryCopy(), 0);
    EXPECT_THAT(rows, ElementsAre("-----请选择-----", "财务专用章", "合同专用章"));
    EXPECT_THAT(Sent(), ElementsAre(ListRequest(), SealRequest("7002")));
    EXPECT_EQ(FetchFromCopy(), "picture");
}

TEST_F(RenamedLibraryOnWindows, ACancelIsMinus20AndEndsTheSelection) {
    const DialogUser user([](HWND dialog) {
        SelectRow(dialog, 1);
        Click(dialog, IDCANCEL);
    });
    EXPECT_EQ(QueryCopy(), TESMARK_ONLINE_CANCELLED);
    EXPECT_THAT(Sent(), ElementsAre(ListRequest()));
    EXPECT_FALSE(CopyHasSelection());
}

}  // namespace

// The field of the address takes more than an address has room for.
#include <cstdlib>
#include <string>

#include "OpenDialogTest.h"
#include "dialogs/OnlineUrl.h"
#include "foundation/Registry.h"
#include "host/ModuleState.h"

namespace {

constexpr int kMostHost = 511 - 7 - 12;

int g_failures;

void CountFailure(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, uintptr_t) {
    ++g_failures;
}

class LongAddressOnWindows : public OpenDialogOnWindowsTest {
protected:
    LongAddressOnWindows() {
        m_prefix.SetNumber("bSealPosition", 1);
        m_prefix.SetText("sWSURL", "before");
    }
    ~LongAddressOnWindows() override { g_sealPositionMode = 0; }
};

// The user types so many bytes, presses the button, and cancels if the dialog is still there.
int TypeAndPress(int length, int button) {
    const DialogUser user([=](HWND dialog) {
        SetDlgItemTextA(dialog, TESMARK_URL_FIELD, std::string(length, 'h').c_str());
        Click(dialog, button);
        Later(dialog, [dialog] { Click(dialog, IDCANCEL); });
    });
    return ShowOnlineUrl();
}

TEST_F(LongAddressOnWindows, TheLongestIsStored) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    EXPECT_EQ(TypeAndPress(kMostHost, IDOK), kDialogConfirmed);
    char stored[600] = {};
    std::size_t size = sizeof stored;
    ASSERT_TRUE(platform::QueryRegistryValue(OpenSettings().key, "sWSURL", stored, &size));
    EXPECT_EQ(size, 512u);
}

TEST_F(LongAddressOnWindows, GoesToTheHandlerOfTheHostAndTheDialogStaysOpen) {
    LoadLibraryAs("TesmarkOpt_x64.dll");
    g_failures = 0;
    const auto before = _set_invalid_parameter_handler(CountFailure);
    for (const int length : {kMostHost + 1, 511, 512, 5000}) {
        for (const int button : {IDOK, TESMARK_URL_TEST}) {
            EXPECT_EQ(TypeAndPress(length, button), kDialogCancelled);
        }
    }
    _set_invalid_parameter_handler(before);
    EXPECT_EQ(g_failures, 8);
    EXPECT_EQ(ReadTextSetting("sWSURL"), "before");
}

TEST(LongAddressOfAHostOnWindows, EndsTheProcessOfAHostWithoutAHandler) {
    constexpr auto kInvalidRunTimeParameter = static_cast<int>(0xC0000417);
    EXPECT_EXIT(
        {
            _set_invalid_parameter_handler(nullptr);
            platform::LoadModule(LIBRARY_FILE);
            g_sealPositionMode = 1;
            TypeAndPress(kMostHost + 1, IDOK);
        },
        testing::ExitedWithCode(kInvalidRunTimeParameter), "");
}

}  // namespace

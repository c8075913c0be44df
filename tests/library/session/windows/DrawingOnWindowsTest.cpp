// What only COM has of the personal seal control.
#include "DrawingTest.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <objbase.h>

namespace {

class DrawingOnWindows : public DrawingTest {
protected:
    DrawingOnWindows() { SetCurrentCertID("cert-1"); }

    int Draw() {
        m_length = -7;
        return GetPicByContentInfo(1, "one", "two", nullptr, &m_length);
    }

    int m_length = 0;
};

TEST_F(DrawingOnWindows, AClassThatIsNoControlIsNoneAndLetGo) {
    fakes::On(fakes::kIsControl).Returns(1);
    EXPECT_EQ(Draw(), TESMARK_FAILED);
    EXPECT_EQ(m_length, 0);
    EXPECT_FALSE(DrawingControl::IsHeld());
    EXPECT_FALSE(Called("GetPicByContent"));
    fakes::On(fakes::kIsControl).Returns(0);
    SetCurrentCertID("cert-1");
    EXPECT_EQ(Draw(), 0);
}

TEST_F(DrawingOnWindows, AThreadThatHasNotEnteredComHasNoControl) {
    CoUninitialize();
    EXPECT_EQ(Draw(), TESMARK_FAILED);
    CoInitialize(nullptr);
}

TEST_F(DrawingOnWindows, DrawingsNeitherEnterComNorLeaveIt) {
    EXPECT_EQ(Draw(), 0);
    fakes::On("GetPicByContent").Returns(-7);
    EXPECT_EQ(Draw(), TESMARK_DRAWING_FAILED);
    EXPECT_EQ(StampEngine::LeaveCom(), 1);
    CoInitialize(nullptr);
}

}  // namespace

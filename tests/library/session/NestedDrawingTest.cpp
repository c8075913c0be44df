// Drawings that a host asks for while the control of another one is being made.
#include <functional>
#include <utility>

#include "DrawingControl.h"
#include "SessionTest.h"
#include "host/ModuleState.h"
#include "session/PersonalSeal.h"

using testing::ElementsAre;

namespace {

struct Making {
    std::function<void()> meanwhile;  // once, from within the first
    bool fails = false;
    std::vector<std::string> steps;
};

Making g_making;

}  // namespace

// The linker sends the session's calls of the platform's two operations to the first of each, and
// the second leads on.
extern "C" {
platform::AutomationObject MakeControl(const platform::AutomationId& classId) asm(
    "__wrap__ZN8platform23CreateAutomationControlERKNS_12AutomationIdE");
platform::AutomationObject PlatformsControl(const platform::AutomationId& classId) asm(
    "__real__ZN8platform23CreateAutomationControlERKNS_12AutomationIdE");
void LetGo(platform::AutomationObject object) asm(
    "__wrap__ZN8platform23ReleaseAutomationObjectEPNS_21AutomationObjectStateE");
void PlatformsLetGo(platform::AutomationObject object) asm(
    "__real__ZN8platform23ReleaseAutomationObjectEPNS_21AutomationObjectStateE");
}

platform::AutomationObject MakeControl(const platform::AutomationId& classId) {
    g_making.steps.push_back("make");
    const bool fails = std::exchange(g_making.fails, false);
    if (const auto meanwhile = std::exchange(g_making.meanwhile, nullptr)) meanwhile();
    return fails ? nullptr : PlatformsControl(classId);
}

void LetGo(platform::AutomationObject object) {
    g_making.steps.push_back("let go");
    PlatformsLetGo(object);
}

namespace {

class NestedDrawingTest : public SessionTest {
protected:
    NestedDrawingTest() {
        g_making = {};
        DrawingControl::Register();
    }
    ~NestedDrawingTest() override {
        EXPECT_EQ(g_personalSealEngine, nullptr);
        EXPECT_FALSE(DrawingControl::IsHeld());
    }

    static int Draw(std::string& picture) { return BuildContentPicture(1, "one", "two", picture); }
    // Ends with its control held.
    static int DrawOutOfRange() {
        std::string picture;
        return BuildPersonalSeal("text", PersonalSealMode::Styled, picture,
                                 {0, 1, "font", 0, 3, 9, 0, 1});
    }

    DrawingControl m_control;
    std::string m_picture;
};

TEST_F(NestedDrawingTest, AControlIsMadeForADrawingAndLetGoBehindIt) {
    fakes::On("GetPicByContent").Does([](const fakes::Call&) {
        g_making.steps.push_back("draw");
        fakes::Answer answer;
        answer.output = "QUJD";
        return answer;
    });
    EXPECT_EQ(Draw(m_picture), 0);
    EXPECT_EQ(m_picture, "ABC");
    EXPECT_THAT(g_making.steps, ElementsAre("make", "draw", "let go"));
}

TEST_F(NestedDrawingTest, AControlLeftWhileTheDrawingsOwnIsMadeIsLetGoAheadOfIt) {
    int nested = 0;
    g_making.meanwhile = [&nested] { nested = DrawOutOfRange(); };
    EXPECT_EQ(Draw(m_picture), 0);
    EXPECT_EQ(nested, TESMARK_STYLE_OUT_OF_RANGE);
    EXPECT_EQ(m_picture, "drawing 1");
    EXPECT_THAT(g_making.steps, ElementsAre("make", "make", "let go", "let go"));
}

TEST_F(NestedDrawingTest, OneLeftWhileTheDrawingsOwnCannotBeMadeIsTheNextDrawings) {
    g_making.fails = true;
    g_making.meanwhile = [] { DrawOutOfRange(); };
    EXPECT_EQ(Draw(m_picture), TESMARK_FAILED);
    EXPECT_NE(g_personalSealEngine, nullptr);
    EXPECT_FALSE(Called("GetPicByContent"));
    EXPECT_EQ(Draw(m_picture), 0);
    EXPECT_THAT(g_making.steps, ElementsAre("make", "make", "let go"));
}

TEST_F(NestedDrawingTest, ADrawingWithinTheMakingHasAControlOfItsOwn) {
    std::string nested;
    g_making.meanwhile = [&nested] { EXPECT_EQ(Draw(nested), 0); };
    EXPECT_EQ(Draw(m_picture), 0);
    EXPECT_EQ(nested, "drawing 1");
    EXPECT_EQ(m_picture, "drawing 2");
    EXPECT_THAT(g_making.steps, ElementsAre("make", "make", "let go", "let go"));
}

}  // namespace

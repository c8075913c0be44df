// A drawing whose texts no automation string can be made of.
#include "DrawingControl.h"
#include "SessionTest.h"
#include "host/ModuleState.h"
#include "session/PersonalSeal.h"
#include "support/windows/NoStringMemory.h"

namespace {

class DrawingWithoutMemoryOnWindows : public SessionTest {
protected:
    DrawingWithoutMemoryOnWindows() { DrawingControl::Register(); }

    DrawingControl m_control;
};

TEST_F(DrawingWithoutMemoryOnWindows, ItIsTheStringTypesFailureAndTheControlStaysForTheNext) {
    std::string picture = "as it was";
    {
        const NoStringMemory none;
        EXPECT_EQ(StringFailureOf([&] { BuildContentPicture(1, "one", "two", picture); }),
                  StringFailure::kOutOfMemory);
    }
    EXPECT_NE(g_personalSealEngine, nullptr);
    EXPECT_EQ(picture, "as it was");
    EXPECT_FALSE(Called("GetPicByContent"));
    EXPECT_EQ(BuildContentPicture(1, "one", "two", picture), 0);
    EXPECT_EQ(picture, "drawing 1");
    EXPECT_EQ(g_personalSealEngine, nullptr);
    EXPECT_FALSE(DrawingControl::IsHeld());
}

}  // namespace

// A drawing whose texts no automation string can be made of.
#include "DrawingControl.h"
#include "SessionTest.h"
#include "host/ModuleState.h"
#include "session/PersonalSeal.h"
// After the library's own headers.
#include <windows.h>
// After the system's own header.
#include <oleauto.h>

namespace {

bool g_noMemory = false;

using Allocation = BSTR(WINAPI*)(const OLECHAR*);

BSTR WINAPI Allocate(const OLECHAR* text) {
    static const auto allocate = reinterpret_cast<Allocation>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleA("oleaut32.dll"), "SysAllocString")));
    return g_noMemory ? nullptr : allocate(text);
}

}  // namespace

// The pointer through which the program calls the system: defined here, it isn't the loader's.
extern "C" {
Allocation __imp_SysAllocString = Allocate;
}

namespace {

class DrawingWithoutMemoryOnWindows : public SessionTest {
protected:
    DrawingWithoutMemoryOnWindows() {
        DrawingControl::Register();
        g_noMemory = true;
    }
    ~DrawingWithoutMemoryOnWindows() override { g_noMemory = false; }

    DrawingControl m_control;
};

TEST_F(DrawingWithoutMemoryOnWindows, ItIsTheStringTypesFailureAndTheControlStaysForTheNext) {
    std::string picture = "as it was";
    EXPECT_EQ(StringFailureOf([&] { BuildContentPicture(1, "one", "two", picture); }),
              StringFailure::kOutOfMemory);
    EXPECT_NE(g_personalSealEngine, nullptr);
    EXPECT_EQ(picture, "as it was");
    EXPECT_FALSE(Called("GetPicByContent"));
    g_noMemory = false;
    EXPECT_EQ(BuildContentPicture(1, "one", "two", picture), 0);
    EXPECT_EQ(picture, "drawing 1");
    EXPECT_EQ(g_personalSealEngine, nullptr);
    EXPECT_FALSE(DrawingControl::IsHeld());
}

}  // namespace

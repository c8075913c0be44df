#include "platform/windows/Painting.h"

#include <gmock/gmock.h>

namespace {

using platform::PaintColour;
using platform::PaintPicture;
using platform::Picture;
using platform::Rectangle;

// A surface of 8 by 4 pixels in memory, black at first.
class PaintingOnWindows : public testing::Test {
protected:
    PaintingOnWindows() : m_surface(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof info.bmiHeader, 8, -4, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* pixels = nullptr;
        m_bitmap = CreateDIBSection(m_surface, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
        m_before = SelectObject(m_surface, m_bitmap);
    }
    ~PaintingOnWindows() override {
        SelectObject(m_surface, m_before);
        DeleteObject(m_bitmap);
        DeleteDC(m_surface);
    }
    // Row by row; "." black, "r" red, "g" green, "b" blue, "w" the preview's background.
    std::string Seen() const {
        std::string seen;
        for (int y = 0; y < 4; ++y) {
            for (int x = 0; x < 8; ++x) seen += Letter(GetPixel(m_surface, x, y));
            seen += '\n';
        }
        return seen;
    }

    HDC m_surface;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_before = nullptr;

private:
    static char Letter(COLORREF colour) {
        if (colour == RGB(0, 0, 0)) return '.';
        if (colour == RGB(255, 0, 0)) return 'r';
        if (colour == RGB(0, 255, 0)) return 'g';
        if (colour == RGB(0, 0, 255)) return 'b';
        return colour == RGB(240, 240, 240) ? 'w' : '?';
    }
};

// Red and green above, blue and black below.
Picture FourPixels() { return {2, 2, {0xFF0000, 0x00FF00, 0x0000FF, 0x000000}}; }

TEST_F(PaintingOnWindows, AColourFillsItsPlaceAndNothingElse) {
    PaintColour(m_surface, 0xF0F0F0, {1, 1, 4, 3});
    EXPECT_EQ(Seen(),
              "........\n"
              ".www....\n"
              ".www....\n"
              "........\n");
}

TEST_F(PaintingOnWindows, RedAndBlueStandWhereTheyAreMeant) {
    PaintColour(m_surface, 0xFF0000, {0, 0, 2, 4});
    PaintColour(m_surface, 0x0000FF, {6, 0, 8, 4});
    EXPECT_EQ(Seen().substr(0, 9), "rr....bb\n");
}

TEST_F(PaintingOnWindows, APictureStandsAtItsOwnSizeWithItsFirstRowOnTop) {
    PaintPicture(m_surface, FourPixels(), {3, 1, 5, 3});
    EXPECT_EQ(Seen(),
              "........\n"
              "...rg...\n"
              "...b....\n"
              "........\n");
}

TEST_F(PaintingOnWindows, APictureIsStretchedToItsPlace) {
    PaintPicture(m_surface, FourPixels(), {0, 0, 8, 4});
    EXPECT_EQ(Seen(),
              "rrrrgggg\n"
              "rrrrgggg\n"
              "bbbb....\n"
              "bbbb....\n");
}

TEST_F(PaintingOnWindows, APictureWithFewerPixelsThanItClaimsPaintsNothing) {
    PaintPicture(m_surface, {2, 2, {0xFF0000, 0xFF0000, 0xFF0000}}, {0, 0, 8, 4});
    PaintPicture(m_surface, {0, 0, {}}, {0, 0, 8, 4});
    PaintPicture(m_surface, {-1, -1, {0xFF0000}}, {0, 0, 8, 4});
    EXPECT_EQ(Seen().find_first_not_of(".\n"), std::string::npos);
}

}  // namespace

#include "dialogs/CenterDialog.h"

#include <gmock/gmock.h>

#include <utility>
#include <vector>

namespace {

using platform::Rectangle;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// A screen with a task bar at its bottom and a second one to its left, higher by 200.
constexpr Rectangle kPrimary{0, 0, 1024, 728};
constexpr Rectangle kSecond{-800, -200, 0, 400};

class Placed : public platform::WindowPlacement {
public:
    Rectangle Bounds() const override { return m_bounds; }
    std::optional<Rectangle> ParentArea() const override { return m_parent; }
    std::optional<Owner> OwnerWindow() const override { return m_owner; }
    std::optional<Rectangle> WorkArea(Nearest nearest) const override {
        return nearest == Nearest::ToOwner ? m_ownerArea : m_area;
    }
    void MoveTo(int left, int top) override { m_moves.emplace_back(left, top); }

    Rectangle m_bounds;
    std::optional<Rectangle> m_parent;
    std::optional<Owner> m_owner;
    std::optional<Rectangle> m_area = kPrimary;
    std::optional<Rectangle> m_ownerArea;
    std::vector<std::pair<int, int>> m_moves;
};

class CenterDialogTest : public testing::Test {
protected:
    // A window of that size, which stands somewhere.
    void Center(int width, int height) {
        m_window.m_bounds = {100, 50, 100 + width, 50 + height};
        CenterDialog(m_window);
    }

    Placed m_window;
};

TEST_F(CenterDialogTest, AWindowWithoutAnOwnerStandsInTheMiddleOfItsMonitorsWorkArea) {
    Center(400, 300);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(312, 214)));
}

TEST_F(CenterDialogTest, AWindowTallerThanTheWorkAreaHasItsTopEdgeOnTheAreas) {
    m_window.m_area = {0, 30, 1024, 728};
    Center(400, 900);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(312, 30)));
}

TEST_F(CenterDialogTest, AWindowWiderThanTheWorkAreaHasItsLeftEdgeOnTheAreas) {
    m_window.m_area = {60, 0, 1024, 728};
    Center(1200, 300);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(60, 214)));
}

TEST_F(CenterDialogTest, AWindowOfTheWorkAreasSizeCoversIt) {
    Center(1024, 728);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(0, 0)));
}

TEST_F(CenterDialogTest, TheHalfOfTheAreaAndTheHalfOfTheWindowAreRoundedEachForItself) {
    m_window.m_area = {0, 0, 1001, 701};
    Center(401, 301);  // 500 - 200, 350 - 150; halves of the differences would give the same
    Center(400, 300);  // 500 - 200, 350 - 150
    m_window.m_area = {0, 0, 1000, 700};
    Center(401, 301);  // 500 - 200, not 299
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(300, 200), Pair(300, 200), Pair(300, 200)));
}

TEST_F(CenterDialogTest, HalvesOfNegativeCoordinatesAreRoundedTowardZero) {
    m_window.m_area = {-801, -200, 0, -99};
    Center(100, 50);  // -400 - 50, -149 - 25; rounded down they were a pixel less
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(-450, -174)));
}

TEST_F(CenterDialogTest, ASecondMonitorIsAsGoodAsTheFirst) {
    m_window.m_area = kSecond;
    Center(400, 300);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(-600, -50)));
}

TEST_F(CenterDialogTest, AWindowTooLargeForASecondMonitorStandsAtItsUpperLeftCorner) {
    m_window.m_area = kSecond;
    Center(900, 700);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(-800, -200)));
}

TEST_F(CenterDialogTest, NothingMovesWithoutAMonitor) {
    m_window.m_area.reset();
    Center(400, 300);
    EXPECT_THAT(m_window.m_moves, IsEmpty());
}

TEST_F(CenterDialogTest, AVisibleOwnerIsTheCentreAndItsMonitorTheLimit) {
    m_window.m_owner = {{-500, -100, -299, 101}, true, false};
    m_window.m_ownerArea = kSecond;
    Center(100, 50);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(-449, -25)));
}

TEST_F(CenterDialogTest, AWindowIsKeptWithinTheMonitorWhereItsOwnerStandsAtTheEdge) {
    m_window.m_ownerArea = kPrimary;
    m_window.m_owner = {{900, 650, 1024, 728}, true, false};
    Center(400, 300);
    m_window.m_owner = {{0, 0, 100, 80}, true, false};
    Center(400, 300);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(624, 428), Pair(0, 0)));
}

TEST_F(CenterDialogTest, AnOwnerThatIsHiddenOrMinimisedCountsAsNone) {
    m_window.m_owner = {{-500, -100, -300, 100}, false, false};
    Center(400, 300);
    m_window.m_owner = {{-500, -100, -300, 100}, true, true};
    Center(400, 300);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(312, 214), Pair(312, 214)));
}

TEST_F(CenterDialogTest, NothingMovesWithoutTheOwnersMonitor) {
    m_window.m_owner = {{0, 0, 200, 100}, true, false};
    Center(100, 50);
    EXPECT_THAT(m_window.m_moves, IsEmpty());
}

TEST_F(CenterDialogTest, AChildStandsInTheMiddleOfItsParentsClientArea) {
    m_window.m_parent = {0, 0, 301, 201};
    m_window.m_owner = {{500, 500, 600, 600}, true, false};
    m_window.m_area.reset();
    Center(101, 50);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(100, 75)));
}

TEST_F(CenterDialogTest, AChildLargerThanItsParentBeginsAtItsCorner) {
    m_window.m_parent = {0, 0, 300, 200};
    Center(500, 400);
    EXPECT_THAT(m_window.m_moves, ElementsAre(Pair(0, 0)));
}

}  // namespace

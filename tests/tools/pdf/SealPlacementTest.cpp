#include "pdf/SealPlacement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "pdf/PdfFailure.h"

namespace {

constexpr double kInch = 25.4;

// 4 by 8 inches, cut out of a larger page.
PageGeometry Page(int rotate, double userUnit = 1) {
    return {100, 200, 100 + 288, 200 + 576, rotate, userUnit};
}

// A seal of 2 by 1 inches, an inch to the right and half an inch down.
SealPlacement Place(const PageGeometry& page) {
    return PlaceSeal(page, kInch, kInch / 2, 2 * kInch, kInch);
}

void ExpectRect(const SealPlacement& place, double left, double bottom, double right, double top) {
    EXPECT_NEAR(place.left, left, 1e-9);
    EXPECT_NEAR(place.bottom, bottom, 1e-9);
    EXPECT_NEAR(place.right, right, 1e-9);
    EXPECT_NEAR(place.top, top, 1e-9);
}

TEST(SealPlacementTest, AnUprightPageCountsFromItsUpperLeftCorner) {
    ExpectRect(Place(Page(0)), 172, 668, 316, 740);
}

TEST(SealPlacementTest, ATurnedPageCountsFromTheCornerThatTheReaderSees) {
    ExpectRect(Place(Page(90)), 136, 272, 208, 416);
    ExpectRect(Place(Page(180)), 172, 236, 316, 308);
    ExpectRect(Place(Page(270)), 280, 560, 352, 704);
}

TEST(SealPlacementTest, TheAppearanceHasTheSealsOwnSidesWhateverTheTurn) {
    for (const int rotate : {0, 90, 180, 270}) {
        EXPECT_NEAR(Place(Page(rotate)).width, 144, 1e-9);
        EXPECT_NEAR(Place(Page(rotate)).height, 72, 1e-9);
    }
}

TEST(SealPlacementTest, AUserUnitMakesTheSameLengthFewerUnits) {
    ExpectRect(Place(Page(0, 2)), 136, 722, 208, 758);
}

TEST(SealPlacementTest, TheVisibleSidesSwapOnATurnedPage) {
    EXPECT_NEAR(VisibleWidthMm(Page(0)), 4 * kInch, 1e-9);
    EXPECT_NEAR(VisibleWidthMm(Page(90)), 8 * kInch, 1e-9);
    EXPECT_NEAR(VisibleHeightMm(Page(270)), 4 * kInch, 1e-9);
    EXPECT_NEAR(VisibleHeightMm(Page(180, 3)), 24 * kInch, 1e-9);
}

TEST(SealPlacementTest, ASealMayHangOverTheEdgeButNotLieBeyondIt) {
    EXPECT_NO_THROW(PlaceSeal(Page(0), -9, -9, 10, 10));
    EXPECT_NO_THROW(PlaceSeal(Page(0), 101, 203, 10, 10));
    EXPECT_THROW(PlaceSeal(Page(0), -10, 0, 10, 10), CPdfFailure);
    EXPECT_THROW(PlaceSeal(Page(0), 0, 8 * kInch, 10, 10), CPdfFailure);
}

TEST(SealPlacementTest, WhatIsNoLengthIsRefused) {
    const double nan = std::nan("");
    const double infinite = std::numeric_limits<double>::infinity();
    for (const double value : {nan, infinite, -infinite, 0.0, -1.0, 1e9}) {
        EXPECT_THROW(PlaceSeal(Page(0), 0, 0, value, 10), CPdfFailure);
        EXPECT_THROW(PlaceSeal(Page(0), 0, 0, 10, value), CPdfFailure);
    }
    EXPECT_THROW(PlaceSeal(Page(0), nan, 0, 10, 10), CPdfFailure);
    EXPECT_THROW(PlaceSeal(Page(0), 0, infinite, 10, 10), CPdfFailure);
}

}  // namespace

#include "pdf/PdfPages.h"

#include "tools/pdf/PdfFixture.h"

namespace {

class PdfPagesTest : public PdfFixture {
protected:
    PdfPageSize Measure(const std::string& pdf, int page = 1) const {
        WriteFile(Path("in.pdf"), pdf);
        PdfPageSize size;
        std::string message;
        EXPECT_EQ(MeasurePdfPage(Path("in.pdf"), page, size, message), StampError::kNone)
            << message;
        return size;
    }
};

// Two branches and a leaf: pages of 100, 200, 300 and 400 points.
std::string Tree() {
    return PdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                  "<< /Type /Pages /Kids [3 0 R 6 0 R 7 0 R] /Count 4 /MediaBox [0 0 100 72] >>",
                  "<< /Type /Pages /Parent 2 0 R /Kids [4 0 R 5 0 R] /Count 2 /Rotate 90 >>",
                  "<< /Type /Page /Parent 3 0 R >>",
                  "<< /Type /Page /Parent 3 0 R /MediaBox [0 0 200 72] /Rotate 0 >>",
                  "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 300 72] >>",
                  "<< /Type /Pages /Parent 2 0 R /Kids [8 0 R] /Count 1 >>",
                  "<< /Type /Page /Parent 7 0 R /MediaBox [0 0 400 72] >>"});
}

TEST_F(PdfPagesTest, APageOfA4IsToldInMillimetres) {
    const auto size = Measure(SimplePdf());
    EXPECT_EQ(size.page, 1);
    EXPECT_EQ(size.pageCount, 1);
    EXPECT_NEAR(size.widthMm, 210, 0.2);
    EXPECT_NEAR(size.heightMm, 297, 0.2);
}

TEST_F(PdfPagesTest, PagesAreFoundAnywhereInTheTreeAndFromBothEnds) {
    const double point = 25.4 / 72;
    for (const int page : {2, -3}) {
        EXPECT_NEAR(Measure(Tree(), page).widthMm, 200 * point, 1e-9);
        EXPECT_EQ(Measure(Tree(), page).page, 2);
    }
    EXPECT_NEAR(Measure(Tree(), 3).widthMm, 300 * point, 1e-9);
    EXPECT_NEAR(Measure(Tree(), -1).widthMm, 400 * point, 1e-9);
    EXPECT_EQ(Measure(Tree(), -1).pageCount, 4);
}

TEST_F(PdfPagesTest, WhatAPageDoesNotTellItInherits) {
    const auto first = Measure(Tree(), 1);
    EXPECT_NEAR(first.widthMm, 25.4, 1e-9);
    EXPECT_NEAR(first.heightMm, 100 * 25.4 / 72, 1e-9);
}

TEST_F(PdfPagesTest, AFlatListWhoseCountFitsByChanceIsStillFollowedByCounts) {
    const auto size =
        Measure(PdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                       "<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2 /MediaBox [0 0 72 72] >>",
                       "<< /Type /Pages /Parent 2 0 R /Kids [] /Count 0 >>",
                       "<< /Type /Pages /Parent 2 0 R /Kids [5 0 R 6 0 R] /Count 2 >>",
                       "<< /Type /Page /Parent 4 0 R >>",
                       "<< /Type /Page /Parent 4 0 R /MediaBox [0 0 144 72] >>"}),
                2);
    EXPECT_NEAR(size.widthMm, 50.8, 1e-9);
}

TEST_F(PdfPagesTest, TheVisiblePageIsTheCropBoxWithinTheMediaBox) {
    const auto size = Measure(SimplePdf("/CropBox [72 72 9000 144]"));
    EXPECT_NEAR(size.widthMm, (595 - 72) * 25.4 / 72, 1e-9);
    EXPECT_NEAR(size.heightMm, 25.4, 1e-9);
    EXPECT_NEAR(Measure(SimplePdf("/CropBox [900 900 999 999]")).heightMm, 842 * 25.4 / 72, 1e-9);
}

TEST_F(PdfPagesTest, CornersMayComeInAnyOrder) {
    EXPECT_NEAR(Measure(SimplePdf("/MediaBox [72 144 0 0]")).heightMm, 50.8, 1e-9);
}

TEST_F(PdfPagesTest, AUserUnitScalesThePage) {
    EXPECT_NEAR(Measure(SimplePdf("/UserUnit 10")).heightMm, 8'420 * 25.4 / 72, 1e-6);
    EXPECT_NEAR(Measure(SimplePdf("/UserUnit -1")).heightMm, 842 * 25.4 / 72, 1e-6);
}

TEST_F(PdfPagesTest, APageThatIsNotThereTellsHowManyThereAre) {
    WriteFile(Path("in.pdf"), Tree());
    PdfPageSize size;
    std::string message;
    EXPECT_EQ(MeasurePdfPage(Path("in.pdf"), 5, size, message), StampError::kNoSuchPage);
    EXPECT_EQ(size.pageCount, 4);
    EXPECT_EQ(message, "There is no page 5: the PDF has 4 pages.");
}

TEST_F(PdfPagesTest, WhatIsNoPdfIsTold) {
    WriteFile(Path("in.pdf"), "nothing");
    PdfPageSize size;
    std::string message;
    EXPECT_EQ(MeasurePdfPage(Path("in.pdf"), 1, size, message), StampError::kNotPdf);
    EXPECT_EQ(message, "The input is not a PDF.");
}

}  // namespace

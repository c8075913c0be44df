#include "pdf/PdfUpdate.h"

#include "tools/pdf/PdfFixture.h"

namespace {

class PdfUpdateTest : public PdfFixture {
protected:
    // Appends an update that replaces object 4 and adds one, with a hole for two bytes.
    std::string Updated(const std::string& pdf) const {
        WriteFile(Path("in.pdf"), pdf);
        CPdfBase base(Path("in.pdf"));
        CPdfUpdate update(base);
        update.SetStream(QPDFObjGen(4, 0), "/Kind /New", "BT ET");
        const auto added = update.Reserve();
        update.Set(added, "(added)");
        const auto signature = update.Reserve();
        EXPECT_EQ(Reference(signature), std::to_string(added.getObj() + 1) + " 0 R");
        update.SetSignature(signature, "/Type /Sig");
        const auto bytes = update.Build(2);
        return pdf + bytes.before + "<0000>" + bytes.after;
    }
};

TEST_F(PdfUpdateTest, NumbersBeginBehindTheSizeThatTheTrailerTells) {
    std::string pdf = SimplePdf();
    const auto size = pdf.find("/Size 6");
    pdf.replace(size, 7, "/Size 90");
    EXPECT_NE(Updated(pdf).find("\n90 0 obj\n(added)"), std::string::npos);
}

TEST_F(PdfUpdateTest, TheByteRangeLeavesOutTheHoleAndNothingElse) {
    const std::string pdf = Updated(SimplePdf());
    const auto at = pdf.find("/ByteRange [0 ");
    ASSERT_NE(at, std::string::npos);
    std::size_t first = 0;
    std::size_t second = 0;
    std::size_t length = 0;
    ASSERT_EQ(std::sscanf(pdf.c_str() + at, "/ByteRange [0 %zu %zu %zu ", &first, &second, &length),
              3);
    EXPECT_EQ(pdf.substr(first, second - first), "<0000>");
    EXPECT_EQ(second + length, pdf.size());
}

TEST_F(PdfUpdateTest, TheTablesEntriesAreTwentyBytesAndPointAtTheirObjects) {
    const std::string pdf = Updated(SimplePdf());
    const auto xref = std::stoul(pdf.substr(pdf.rfind("startxref\n") + 10));
    ASSERT_EQ(pdf.substr(xref, 11), "xref\n4 1\n00");
    EXPECT_EQ(pdf.substr(std::stoul(pdf.substr(xref + 9, 10)), 7), "4 0 obj");
    EXPECT_EQ(pdf.substr(xref + 29, 4), "6 2\n");
    EXPECT_EQ(pdf.substr(std::stoul(pdf.substr(xref + 33, 10)), 7), "6 0 obj");
    EXPECT_EQ(pdf.substr(std::stoul(pdf.substr(xref + 53, 10)), 7), "7 0 obj");
}

TEST_F(PdfUpdateTest, EntriesOfTheTrailerThatTellOfTheDocumentAreKept) {
    const std::string pdf = PdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                                   "<< /Type /Pages /Kids [] /Count 0 >>", "<< >>", "null"},
                                  "/Info 3 0 R /Own#20Key (x)");
    const std::string update = Updated(pdf).substr(pdf.size());
    EXPECT_EQ(Count(update, "/Info 3 0 R"), 1);
    EXPECT_EQ(Count(update, "/Own#20Key (x)"), 1);
    EXPECT_EQ(Count(update, "/Root 1 0 R"), 1);
    EXPECT_EQ(Count(update, "/Prev "), 1);
    EXPECT_EQ(Count(update, "/Size 7"), 1);
}

TEST_F(PdfUpdateTest, AnObjectKeepsItsGeneration) {
    std::string pdf = SimplePdf();
    pdf.replace(pdf.find("3 0 obj"), 7, "3 2 obj");
    pdf.replace(pdf.find("[3 0 R]"), 7, "[3 2 R]");
    const auto entry = pdf.find("xref\n0 6\n") + 9 + 3 * 20;
    pdf.replace(entry + 11, 5, "00002");
    const auto request = RequestFor(pdf);
    Stamp(request);
    ExpectSound(request);
    EXPECT_EQ(Count(ReadFile(request.outputPath), "3 2 obj"), 2);
    EXPECT_EQ(Count(ReadFile(request.outputPath), "/P 3 2 R"), 1);
}

}  // namespace

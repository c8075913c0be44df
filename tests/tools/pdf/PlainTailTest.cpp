// The end of a PDF that every reader finds, and what is stamped no other way.
#include "pdf/PlainTail.h"

#include <functional>

#include "tools/pdf/PdfFixture.h"

namespace {

TEST(PlainTailTest, TheNumberBehindTheWordIsTaken) {
    for (const char* tail : {"\nstartxref\n470\n%%EOF\n", "\nstartxref\r\n470\r\n%%EOF",
                             "\rstartxref\r470\r%%EOF\r", "\nstartxref 470 %%EOF\n\n",
                             ">>startxref\n00470\n%%EOF\n", "\nstartxref\n470 \n%%EOF\n"}) {
        EXPECT_EQ(PlainStartXref(tail), 470u) << tail;
    }
}

TEST(PlainTailTest, TheLastWordCounts) {
    EXPECT_EQ(PlainStartXref("\nstartxref\n1\n%%EOF\n\nstartxref\n2\n%%EOF\n"), 2u);
}

TEST(PlainTailTest, AFewOtherBytesAtTheEndDoNoHarm) {
    const std::string tail = "\nstartxref\n470\n%%EOF\n";
    EXPECT_EQ(PlainStartXref(tail + std::string(200, '\0')), 470u);
    EXPECT_EQ(PlainStartXref(tail + "</html>"), 470u);
    EXPECT_EQ(PlainStartXref(tail + std::string(900, 'x')), 470u);
}

TEST(PlainTailTest, ATailThatReadersTakeInDifferentWaysIsNone) {
    for (const char* tail :
         {"", "startxref\n470\n%%EOF\n", "\nstartxref470\n%%EOF\n", "\nstartxref\n470x\n%%EOF\n",
          "\nstartxref\n470.\n%%EOF\n", "\nstartxref\n%x\n470\n%%EOF\n", "\nstartxref\n+470\n%%EOF",
          "\nstartxref\n-470\n%%EOF\n", "\nstartxref\n470\n", "\nstartxref\n470", "\nstartxref\n",
          "\nstartxref", "\nstartxref\n470%%EOF\n", "\nstartxref\n470\n%x\n%%EOF\n",
          "\nxstartxref\n470\n%%EOF\n", "\n%startxref\n470\n%%EOF\n",
          "\nstartxref\n99999999999999999999999\n%%EOF\n"}) {
        EXPECT_EQ(PlainStartXref(tail), std::nullopt) << tail;
    }
}

TEST(PlainTailTest, AnUnplainLastTailIsNotPassedOver) {
    const std::string tail = "\nstartxref\n470\n%%EOF\n";
    EXPECT_EQ(PlainStartXref(tail + "startxref480\n%%EOF\n"), std::nullopt);
    EXPECT_EQ(PlainStartXref(tail + "%startxref"), std::nullopt);
}

TEST(PlainTailTest, ATailThatIsNotAtTheEndIsNone) {
    const std::string tail = "\nstartxref\n470\n%%EOF\n";
    EXPECT_EQ(PlainStartXref(tail + std::string(1'003, ' ')), 470u);
    EXPECT_EQ(PlainStartXref(tail + std::string(1'004, ' ')), std::nullopt);
}

class StampTailTest : public PdfFixture {
protected:
    // A second section, in front of the last "startxref", that has another object 4: which one is
    // read depends on the tail.
    static std::string WithTwoSections(const std::string& begin, const std::string& end) {
        std::string pdf = SimplePdf();
        const std::string first = pdf.substr(pdf.rfind("startxref\n") + 10);
        const std::string previous = first.substr(0, first.find('\n'));
        const std::string other = "BT /F1 24 Tf 72 700 Td (Another) Tj ET";
        char entry[32];
        std::snprintf(entry, sizeof entry, "%010zu 00000 n\r\n", pdf.size());
        pdf += "4 0 obj\n<< /Length " + std::to_string(other.size()) + " >>\nstream\n" + other +
               "\nendstream\nendobj\n";
        const std::string xref = std::to_string(pdf.size());
        return pdf + "xref\n4 1\n" + entry + "trailer\n<< /Size 6 /Root 1 0 R /Prev " + previous +
               " >>\nstartxref\n" + xref + "\n%%EOF\n" + begin + previous + end + "\n%%EOF\n";
    }

    void ExpectRefused(const std::string& pdf) const {
        const auto request = RequestFor(pdf);
        const auto result = StampPdf(request, SignByCms);
        EXPECT_EQ(result.error, StampError::kDamaged) << pdf.substr(pdf.size() - 60);
        EXPECT_TRUE(result.message.ends_with('.')) << result.message;
        EXPECT_EQ(Listing(), std::vector<std::string>{"in.pdf"});
    }
};

TEST_F(StampTailTest, ATailThatReadersTakeInDifferentWaysIsNotStamped) {
    ExpectRefused(WithTwoSections("startxref", ""));
    ExpectRefused(WithTwoSections("startxref\n", "x"));
    ExpectRefused(WithTwoSections("startxref\n", "."));
    ExpectRefused(WithTwoSections("startxref\n%x\n", ""));
}

TEST_F(StampTailTest, ATableThatQpdfHasToMendIsNotStamped) {
    std::string pdf = SimplePdf();
    pdf.replace(pdf.rfind("/Root 1 0 R"), 11, "/Root 1 0 R /Root 1 0 R");
    ExpectRefused(pdf);
}

TEST_F(StampTailTest, AnEarlierTailAndBytesOfAnotherProgramDoNoHarm) {
    auto request = RequestFor(WithTwoSections("startxref\n", ""));
    Stamp(request);
    ExpectSound(request);
    request = RequestFor(SimplePdf() + "\r\n\r\n" + std::string(40, '\0'));
    Stamp(request);
    ExpectSound(request);
}

TEST_F(StampTailTest, AWrongSizeDoesNoHarm) {
    std::string pdf = SimplePdf();
    pdf.replace(pdf.rfind("/Size 6"), 7, "/Size 9");
    Stamp(RequestFor(pdf));
}

// Its first object says to be linearized and tells of a length that `tell` makes from the true one.
std::string Linearized(const std::function<std::size_t(std::size_t)>& tell) {
    std::string pdf = PdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                             "<< /Type /Pages /Kids [3 0 R] /Count 1 /MediaBox [0 0 595 842] >>",
                             "<< /Type /Page /Parent 2 0 R >>"},
                            "", "%PDF-1.7\n9 0 obj\n<< /Linearized 1 /L 00000000 >>\nendobj\n");
    char digits[16];
    std::snprintf(digits, sizeof digits, "%08zu", tell(pdf.size()));
    return pdf.replace(pdf.find("00000000"), 8, digits);
}

TEST_F(StampTailTest, AFileThatIsOrWillBeReadFromItsStartIsNotStampedByItsEnd) {
    ExpectRefused(Linearized([](std::size_t size) { return size; }));
    ExpectRefused(Linearized([](std::size_t size) { return size + 20'000; }));
    Stamp(RequestFor(Linearized([](std::size_t size) { return size - 1; })));
}

TEST_F(StampTailTest, ALinearizedFileIsStamped) {
    WriteFile(Path("plain.pdf"), SimplePdf());
    RunCommand({"qpdf", "--linearize", Path("plain.pdf"), Path("linear.pdf")});
    for (const std::string& behind : {std::string(), std::string("\n")}) {
        const auto request = RequestFor(ReadFile(Path("linear.pdf")) + behind);
        Stamp(request);
        ExpectSound(request);
    }
}

}  // namespace

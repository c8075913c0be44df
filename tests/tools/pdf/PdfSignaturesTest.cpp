// Which signatures stand in a PDF and what of it each covers; hostile files too.
#include "pdf/PdfSignatures.h"

#include "pdf/DocumentBytes.h"
#include "tools/PdfsigSigner.h"
#include "tools/pdf/PdfFixture.h"

namespace {

class PdfSignaturesTest : public PdfFixture {
protected:
    // A document with `count` stamps, one behind the other; its bytes.
    std::string Stamped(int count = 1, const std::string& input = SimplePdf()) const {
        std::string bytes = input;
        for (int i = 0; i < count; ++i) {
            StampRequest request = RequestFor(bytes);
            request.reason = "Approved";
            request.name = "Velmora";
            request.signingTime = 1'795'248'000;
            request.utcOffsetMinutes = 480;
            Stamp(request);
            bytes = ReadFile(request.outputPath);
        }
        return bytes;
    }

    StampError Refusal(std::string_view bytes, std::string* told = nullptr) const {
        WriteFile(Path("read.pdf"), bytes);
        PdfSignatures found;
        std::string message;
        const StampError error = ReadPdfSignatures(Path("read.pdf"), found, message);
        EXPECT_TRUE(found.list.empty());
        EXPECT_EQ(message.empty(), error == StampError::kNone);
        if (told) *told = message;
        return error;
    }

    // The first signature's byte range set to another one of the same length in the file.
    std::string WithRange(const std::string& pdf, const std::string& range) const {
        const auto at = pdf.find("/ByteRange [") + 12;
        const auto end = pdf.find(']', at);
        EXPECT_LE(range.size(), end - at);
        std::string changed = pdf;
        return changed.replace(at, end - at, range + std::string(end - at - range.size(), ' '));
    }

    RangeProblem ProblemOf(std::string_view pdf) const {
        const auto found = Read(pdf);
        EXPECT_EQ(found.list.size(), 1u);
        return found.list.empty() ? RangeProblem::kNone : found.list.front().problem;
    }

    // An update that writes `body` as object `number`.
    static std::string Updated(const std::string& pdf, int number, const std::string& body,
                               int size = 90) {
        const auto previous = pdf.substr(pdf.rfind("startxref\n") + 10);
        std::string update = pdf;
        const std::size_t offset = update.size();
        update += std::to_string(number) + " 0 obj\n" + body + "\nendobj\n";
        const std::size_t xref = update.size();
        char line[32];
        std::snprintf(line, sizeof line, "%010zu 00000 n\r\n", offset);
        return update + "xref\n" + std::to_string(number) + " 1\n" + line + "trailer\n<< /Size " +
               std::to_string(size) + " /Root 1 0 R /Prev " +
               previous.substr(0, previous.find('\n')) + " >>\nstartxref\n" + std::to_string(xref) +
               "\n%%EOF\n";
    }

    // A file whose one field's value is `dictionary`.
    static std::string WithValue(const std::string& dictionary) {
        return SimplePdf("/Annots [6 0 R]", "/AcroForm << /Fields [6 0 R] /SigFlags 3 >>",
                         {"<< /Type /Annot /Subtype /Widget /FT /Sig /T (S) /P 3 0 R "
                          "/Rect [0 0 9 9] /V 7 0 R >>",
                          dictionary});
    }
};

TEST_F(PdfSignaturesTest, AStampIsReadWithAllThatItsDictionaryTells) {
    const std::string pdf = Stamped();
    const auto found = Read(pdf);
    ASSERT_EQ(found.list.size(), 1u);
    const PdfSignature& signature = found.list.front();
    EXPECT_EQ(signature.fieldName, "Signature1");
    EXPECT_EQ(signature.filter, "Adobe.PPKLite");
    EXPECT_EQ(signature.subFilter, "adbe.pkcs7.detached");
    EXPECT_EQ(signature.name, "Velmora");
    EXPECT_EQ(signature.reason, "Approved");
    EXPECT_EQ(signature.time, "D:20261121160000+08'00'");
    EXPECT_EQ(signature.page, 1);
    EXPECT_NEAR(signature.rectangle[2] - signature.rectangle[0], 42 / 25.4 * 72, 0.01);
    EXPECT_EQ(signature.certifies, 0);
    EXPECT_EQ(signature.problem, RangeProblem::kNone) << RangeProblemText(signature.problem);
    EXPECT_EQ(signature.end, pdf.size());
    EXPECT_EQ(signature.after.bytes, 0u);
    EXPECT_EQ(found.emptyFields, 0);
}

TEST_F(PdfSignaturesTest, TheSignedBytesAreAllButTheValueAndItsBrackets) {
    const std::string pdf = Stamped();
    const auto found = Read(pdf);
    ASSERT_EQ(found.list.size(), 1u);
    const PdfSignature& signature = found.list.front();
    EXPECT_EQ(pdf[signature.gapStart], '<');
    EXPECT_EQ(pdf[signature.gapEnd - 1], '>');
    CDocumentBytes document(Path("read.pdf"));
    std::string_view bytes;
    ASSERT_TRUE(document.Signed(signature, bytes));
    EXPECT_TRUE(bytes == pdf.substr(0, signature.gapStart) + pdf.substr(signature.gapEnd));
    // The DER alone, which openssl takes with the bytes.
    WriteFile(Path("signature"), signature.contents);
    WriteFile(Path("bytes"), bytes);
    int status = -1;
    const auto told =
        RunCommand({"openssl", "cms", "-verify", "-binary", "-inform", "DER", "-in",
                    Path("signature"), "-content", Path("bytes"), "-noverify", "-out", "/dev/null"},
                   &status);
    EXPECT_EQ(status, 0) << told;
}

TEST_F(PdfSignaturesTest, AFileThatBecameShorterGivesNoBytes) {
    const std::string pdf = Stamped();
    const auto found = Read(pdf);
    WriteFile(Path("read.pdf"), pdf.substr(0, pdf.size() - 1));
    CDocumentBytes document(Path("read.pdf"));
    std::string_view bytes;
    EXPECT_FALSE(document.Signed(found.list.at(0), bytes));
}

TEST_F(PdfSignaturesTest, ASecondStampIsAllThatWasAddedBehindTheFirst) {
    const auto found = Read(Stamped(2));
    ASSERT_EQ(found.list.size(), 2u);
    EXPECT_EQ(found.list[0].fieldName, "Signature1");
    EXPECT_EQ(found.list[1].fieldName, "Signature2");
    EXPECT_EQ(found.list[1].after.bytes, 0u);
    const PdfAddition& after = found.list[0].after;
    EXPECT_EQ(after.bytes, found.fileSize - found.list[0].end);
    EXPECT_TRUE(after.signature);
    EXPECT_TRUE(after.compared);
    // The page's annotations, and the catalog's form or the form itself.
    EXPECT_FALSE(after.changed.empty());
    EXPECT_FALSE(after.added.empty());
    EXPECT_TRUE(after.removed.empty());
    EXPECT_TRUE(after.altered.empty()) << after.altered.front();
}

TEST_F(PdfSignaturesTest, AChangedObjectBehindASignatureIsNamed) {
    const std::string pdf = Stamped();
    const auto found =
        Read(Updated(pdf, 4,
                     "<< /Length 43 >>\nstream\nBT /F1 24 Tf 72 700 Td (Another one) Tj ET\n"
                     "endstream"));
    ASSERT_EQ(found.list.size(), 1u);
    const PdfAddition& after = found.list[0].after;
    EXPECT_EQ(found.list[0].problem, RangeProblem::kNone);
    EXPECT_GT(after.bytes, 100u);
    EXPECT_FALSE(after.signature);
    ASSERT_TRUE(after.compared);
    EXPECT_EQ(after.changed, std::vector<int>{4});
    EXPECT_EQ(after.altered, std::vector<int>{4});
    EXPECT_TRUE(after.added.empty());
}

TEST_F(PdfSignaturesTest, AChangeBetweenTwoSignaturesIsNoPartOfTheSecondOne) {
    const std::string changed =
        Updated(Stamped(), 4,
                "<< /Length 43 >>\nstream\nBT /F1 24 Tf 72 700 Td (Another one) Tj ET\n"
                "endstream");
    const auto found = Read(Stamped(1, changed));
    ASSERT_EQ(found.list.size(), 2u);
    EXPECT_TRUE(found.list[0].after.signature);
    EXPECT_EQ(found.list[0].after.altered, std::vector<int>{4});
    EXPECT_EQ(found.list[1].after.bytes, 0u);
}

TEST_F(PdfSignaturesTest, AnAnnotationThatIsNoSignatureIsNoPartOfOne) {
    const std::string pdf = Stamped();
    // The page again, with a note behind the stamp.
    const auto at = pdf.rfind("\n3 0 obj\n") + 9;
    std::string page = pdf.substr(at, pdf.find("\nendobj", at) - at);
    page.insert(page.find(']', page.find("/Annots")), " << /Type /Annot /Subtype /Text >>");
    const auto found = Read(Updated(pdf, 3, page));
    ASSERT_EQ(found.list.size(), 1u);
    EXPECT_EQ(found.list[0].after.altered, std::vector<int>{3});
}

TEST_F(PdfSignaturesTest, AnotherCatalogIsAnotherDocumentEvenIfAllObjectsStandAsTheyStood) {
    std::string pdf = Updated(Stamped(), 70, "<< /Type /Catalog /Pages 2 0 R >>");
    pdf.replace(pdf.rfind("/Root 1 0 R"), 11, "/Root 70 0 R");
    // No form of the new catalog: the signature is not even found by a reader. With the old one's
    // form it is.
    EXPECT_TRUE(Read(pdf).list.empty());
    const std::string stamped = Stamped();
    const auto form = stamped.find("/AcroForm <<", stamped.rfind("\n1 0 obj"));
    ASSERT_NE(form, std::string::npos);
    const auto end = stamped.find(">>", form) + 2;
    std::string other = Updated(
        stamped, 70, "<< /Type /Catalog /Pages 2 0 R " + stamped.substr(form, end - form) + " >>");
    other.replace(other.rfind("/Root 1 0 R"), 11, "/Root 70 0 R");
    const auto found = Read(other);
    ASSERT_EQ(found.list.size(), 1u);
    EXPECT_TRUE(found.list[0].after.changed.empty());
    EXPECT_EQ(found.list[0].after.altered, std::vector<int>{1});
}

TEST_F(PdfSignaturesTest, AnObjectThatIsWrittenAgainAsItWasIsNotChanged) {
    const std::string pdf = Stamped();
    const auto found =
        Read(Updated(pdf, 5, "<< /Subtype /Type1 /Type /Font /BaseFont /Helvetica >>"));
    ASSERT_EQ(found.list.size(), 1u);
    EXPECT_TRUE(found.list[0].after.compared);
    EXPECT_TRUE(found.list[0].after.changed.empty());
}

TEST_F(PdfSignaturesTest, ALineEndBehindTheSignatureIsToldToo) {
    const auto found = Read(Stamped() + "\n");
    ASSERT_EQ(found.list.size(), 1u);
    EXPECT_EQ(found.list[0].after.bytes, 1u);
    EXPECT_TRUE(found.list[0].after.compared);
    EXPECT_TRUE(found.list[0].after.altered.empty());
}

TEST_F(PdfSignaturesTest, ObjectsInStreamsAreComparedToo) {
    WriteFile(Path("plain.pdf"), SimplePdf());
    RunCommand({"qpdf", "--object-streams=generate", Path("plain.pdf"), Path("packed.pdf")});
    const auto found = Read(Stamped(2, ReadFile(Path("packed.pdf"))));
    ASSERT_EQ(found.list.size(), 2u);
    EXPECT_TRUE(found.list[0].after.compared);
    EXPECT_TRUE(found.list[0].after.altered.empty());
    EXPECT_FALSE(found.list[0].after.changed.empty());
}

TEST_F(PdfSignaturesTest, ARangeThatDoesNotBeginWithTheFile) {
    const std::string pdf = Stamped();
    const auto found = Read(pdf);
    const auto& signature = found.list.at(0);
    const std::string tail =
        std::to_string(signature.gapEnd) + " " + std::to_string(signature.end - signature.gapEnd);
    const std::string start = std::to_string(signature.gapStart);
    EXPECT_EQ(ProblemOf(WithRange(pdf, "1 " + start + " " + tail)), RangeProblem::kNotFromStart);
    EXPECT_EQ(ProblemOf(WithRange(pdf, "-1 " + start + " " + tail)), RangeProblem::kMalformed);
    EXPECT_EQ(ProblemOf(WithRange(pdf, "0 " + start + " " + tail)), RangeProblem::kNone);
}

TEST_F(PdfSignaturesTest, AGapThatIsNotTheValueItself) {
    const std::string pdf = Stamped();
    const auto found = Read(pdf);
    const auto& s = found.list.at(0);
    const auto with = [&](std::uint64_t gapStart, std::uint64_t gapEnd) {
        return ProblemOf(WithRange(pdf, "0 " + std::to_string(gapStart) + " " +
                                            std::to_string(gapEnd) + " " +
                                            std::to_string(s.end - gapEnd)));
    };
    EXPECT_EQ(with(s.gapStart, s.gapEnd), RangeProblem::kNone);
    EXPECT_EQ(with(s.gapStart - 1, s.gapEnd), RangeProblem::kGapNotContents);
    EXPECT_EQ(with(s.gapStart + 1, s.gapEnd), RangeProblem::kGapNotContents);
    EXPECT_EQ(with(s.gapStart, s.gapEnd + 1), RangeProblem::kGapNotContents);
    EXPECT_EQ(with(s.gapStart, s.gapEnd - 1), RangeProblem::kGapNotContents);
    EXPECT_EQ(with(s.gapStart + 1, s.gapEnd - 1), RangeProblem::kGapNotContents);
    EXPECT_EQ(with(s.gapStart, s.gapStart), RangeProblem::kGapNotContents);
}

TEST_F(PdfSignaturesTest, TheSameDigitsElsewhereAreNotTheValue) {
    // The gap is a string that says what /Contents says, but it is another string.
    std::string pdf = WithValue(
        "<< /Type /Sig /ByteRange [0 AAAAAAAA BBBBBBBB CCCCCCCC] "
        "/Contents <3000> /Elsewhere <3000> >>");
    const auto set = [&](const char* word, std::size_t number) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "%08zu", number);
        pdf.replace(pdf.find(word), 8, digits);
    };
    const auto gap = pdf.find("<3000>", pdf.find("/Elsewhere"));
    const auto contents = pdf.find("<3000>", pdf.find("/Contents <"));
    std::string sound = pdf;
    set("AAAAAAAA", gap);
    set("BBBBBBBB", gap + 6);
    set("CCCCCCCC", pdf.size() - gap - 6);
    EXPECT_EQ(ProblemOf(pdf), RangeProblem::kGapNotContents);
    std::swap(pdf, sound);
    set("AAAAAAAA", contents);
    set("BBBBBBBB", contents + 6);
    set("CCCCCCCC", pdf.size() - contents - 6);
    EXPECT_EQ(ProblemOf(pdf), RangeProblem::kNone);
}

TEST_F(PdfSignaturesTest, RangesThatOverlapOrLeaveTheFile) {
    const std::string pdf = Stamped();
    for (const char* range : {"0 100 99 1", "0 500 0 100"}) {
        EXPECT_EQ(ProblemOf(WithRange(pdf, range)), RangeProblem::kOverlapping) << range;
    }
    for (const char* range : {"0 100 200 9223372036854775807", "0 9223372036854775807 1 1",
                              "0 1 99999999 1", "0 100 200 99999999"}) {
        EXPECT_EQ(ProblemOf(WithRange(pdf, range)), RangeProblem::kBeyondFile) << range;
    }
}

TEST_F(PdfSignaturesTest, RangesThatAreNotFourWholeNumbers) {
    const std::string pdf = Stamped();
    for (const char* range : {"", "0 1 2", "0 1 2 3 4 5", "0 1 -2 3", "0 1.5 2 3", "0 (1) 2 3",
                              "0 1 2 99 0 R", "/a /b /c /d"}) {
        EXPECT_EQ(ProblemOf(WithRange(pdf, range)), RangeProblem::kMalformed) << range;
    }
}

TEST_F(PdfSignaturesTest, AShortenedRangeCoversARevisionThatIsNone) {
    const std::string pdf = Stamped();
    const auto found = Read(pdf);
    const auto& s = found.list.at(0);
    const auto shortened = Read(
        WithRange(pdf, "0 " + std::to_string(s.gapStart) + " " + std::to_string(s.gapEnd) + " 40"));
    ASSERT_EQ(shortened.list.size(), 1u);
    EXPECT_EQ(shortened.list[0].problem, RangeProblem::kNone);
    EXPECT_EQ(shortened.list[0].after.bytes, pdf.size() - s.gapEnd - 40);
    EXPECT_FALSE(shortened.list[0].after.compared);
    EXPECT_FALSE(shortened.list[0].after.signature);
}

TEST_F(PdfSignaturesTest, AValueThatIsNotPlainHexadecimal) {
    const std::string pdf = Stamped();
    const auto found = Read(pdf);
    const auto& s = found.list.at(0);
    std::string blank = pdf;
    blank[s.gapEnd - 2] = ' ';
    EXPECT_EQ(ProblemOf(blank), RangeProblem::kGapNotContents);
}

TEST_F(PdfSignaturesTest, BytesBehindTheSignatureInItsRoomAreSignedByNobody) {
    const std::string pdf = Stamped();
    const auto found = Read(pdf);
    std::string padded = pdf;
    padded[found.list.at(0).gapEnd - 2] = '1';
    EXPECT_EQ(ProblemOf(padded), RangeProblem::kBehindSignature);
    std::string empty = pdf;
    const auto& s = found.list.at(0);
    empty.replace(s.gapStart + 1, s.gapEnd - s.gapStart - 2,
                  std::string(s.gapEnd - s.gapStart - 2, '0'));
    EXPECT_EQ(ProblemOf(empty), RangeProblem::kEmptyContents);
}

TEST_F(PdfSignaturesTest, AValueThatIsMissingOrSomethingElse) {
    EXPECT_EQ(ProblemOf(WithValue("<< /Type /Sig /Contents <3000> >>")), RangeProblem::kMissing);
    EXPECT_EQ(ProblemOf(WithValue("<< /Type /Sig /ByteRange [0 1 2 3] >>")),
              RangeProblem::kMissing);
    EXPECT_EQ(ProblemOf(WithValue("<< /Type /Sig /ByteRange [0 1 2 3] /Contents 5 0 R >>")),
              RangeProblem::kMissing);
    EXPECT_EQ(ProblemOf(WithValue("<< /Type /Sig /ByteRange 5 0 R /Contents <3000> >>")),
              RangeProblem::kMissing);
}

TEST_F(PdfSignaturesTest, AnUnsignedFieldIsCountedAndAPdfWithoutAFormHasNone) {
    EXPECT_EQ(Read(WithValue("null")).emptyFields, 1);
    EXPECT_TRUE(Read(WithValue("null")).list.empty());
    EXPECT_TRUE(Read(SimplePdf()).list.empty());
    EXPECT_TRUE(Read(SimplePdf("", "/AcroForm << >>")).list.empty());
    EXPECT_TRUE(Read(SimplePdf("", "/AcroForm << /Fields [(x) 3 null] >>")).list.empty());
}

TEST_F(PdfSignaturesTest, AFieldBelowOthersHasTheirNamesAndWhatTheyTell) {
    const auto found = Read(SimplePdf(
        "", "/AcroForm << /Fields [6 0 R] >>",
        {"<< /T (party) /FT /Sig /Kids [7 0 R] >>", "<< /T (first) /Parent 6 0 R /Kids [8 0 R] >>",
         "<< /Subtype /Widget /Parent 7 0 R /P 3 0 R /Rect [10 20 5 9] >>"}));
    EXPECT_TRUE(found.list.empty());
    EXPECT_EQ(found.emptyFields, 1);
    const auto signedOne =
        Read(SimplePdf("/Annots [8 0 R]", "/AcroForm << /Fields [6 0 R] >>",
                       {"<< /T (party) /FT /Sig /Kids [7 0 R] >>",
                        "<< /T (first) /Parent 6 0 R /Kids [8 0 R] /V << /SubFilter /x >> >>",
                        "<< /Subtype /Widget /Parent 7 0 R /P 3 0 R /Rect [10 20 5 9] >>"}));
    ASSERT_EQ(signedOne.list.size(), 1u);
    EXPECT_EQ(signedOne.list[0].fieldName, "party.first");
    EXPECT_EQ(signedOne.list[0].page, 1);
    EXPECT_EQ(signedOne.list[0].rectangle, (std::array<double, 4>{5, 9, 10, 20}));
}

TEST_F(PdfSignaturesTest, FieldsThatHoldThemselvesAreReadOnce) {
    const auto found = Read(SimplePdf(
        "", "/AcroForm << /Fields [6 0 R 6 0 R 7 0 R] >>",
        {"<< /T (a) /FT /Sig /Kids [6 0 R 7 0 R] >>", "<< /T (b) /Parent 6 0 R /V << >> >>"}));
    ASSERT_EQ(found.list.size(), 1u);
    EXPECT_EQ(found.list[0].fieldName, "a.b");
}

TEST_F(PdfSignaturesTest, ATreeOfFieldsWithoutEndIsRefused) {
    std::vector<std::string> fields;
    for (int i = 6; i < 90; ++i) {
        fields.push_back("<< /T (x) /Kids [" + std::to_string(i + 1) + " 0 R] >>");
    }
    fields.push_back("<< /T (x) /FT /Sig >>");
    EXPECT_EQ(Refusal(SimplePdf("", "/AcroForm << /Fields [6 0 R] >>", fields)),
              StampError::kDamaged);
}

TEST_F(PdfSignaturesTest, ACertifyingSignatureTellsWhatItAllows) {
    const auto with = [&](const std::string& parameters) {
        return Read(WithValue("<< /Type /Sig /Reference [<< /TransformMethod /DocMDP " +
                              parameters + " >>] >>"))
            .list.at(0)
            .certifies;
    };
    EXPECT_EQ(with("/TransformParams << /P 1 >>"), 1);
    EXPECT_EQ(with("/TransformParams << /P 3 >>"), 3);
    EXPECT_EQ(with("/TransformParams << /P 99999999999 >>"), 2);
    EXPECT_EQ(with(""), 2);
}

TEST_F(PdfSignaturesTest, TheNumberOfThePageComesFromTheTree) {
    WriteFile(Path("nested.pdf"), "");
    const auto page = [](const char* parent) {
        return std::string("<< /Type /Page /Parent ") + parent + " 0 R >>";
    };
    const auto found = Read(
        PdfOf({"<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [9 0 R 10 0 R] >> >>",
               "<< /Type /Pages /Kids [3 0 R 4 0 R 5 0 R] /Count 4 /MediaBox [0 0 9 9] >>",
               page("2"), "<< /Type /Pages /Parent 2 0 R /Kids [6 0 R 7 0 R] /Count 2 >>",
               page("2"), page("4"), page("4"), "null", "<< /FT /Sig /T (a) /P 7 0 R /V << >> >>",
               "<< /FT /Sig /T (b) /P 8 0 R /V << >> >>"}));
    ASSERT_EQ(found.list.size(), 2u);
    EXPECT_EQ(found.list[0].page, 3);
    EXPECT_EQ(found.list[1].page, 0);
}

TEST_F(PdfSignaturesTest, PagesHaveTheirNumbersInWhateverOrderTheyAreAskedFor) {
    const auto page = [](int parent) {
        return "<< /Type /Page /Parent " + std::to_string(parent) + " 0 R >>";
    };
    const auto field = [](int page) {
        return "<< /FT /Sig /T (f) /V << >> /P " + std::to_string(page) + " 0 R >>";
    };
    const auto found =
        Read(PdfOf({"<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [10 0 R "
                    "11 0 R 12 0 R 13 0 R 14 0 R 15 0 R] >> >>",
                    "<< /Type /Pages /Kids [3 0 R 4 0 R 5 0 R 6 0 R] /Count 6 >>", page(2),
                    "<< /Type /Pages /Parent 2 0 R /Kids [7 0 R 8 0 R 9 0 R] "
                    "/Count 3 >>",
                    page(2), page(2), page(4), page(4), page(4), field(6), field(3), field(9),
                    field(7), field(5), field(8)}));
    std::vector<int> numbers;
    for (const PdfSignature& signature : found.list) numbers.push_back(signature.page);
    EXPECT_EQ(numbers, (std::vector<int>{6, 1, 4, 2, 5, 3}));
}

TEST_F(PdfSignaturesTest, APageIsToldWhereItListsTheWidgetOrNothingIsShown) {
    const auto page = [&](const std::string& annotations, const std::string& rectangle) {
        return Read(SimplePdf("/Annots " + annotations, "/AcroForm << /Fields [6 0 R] >>",
                              {"<< /Subtype /Widget /FT /Sig /T (S) /P 3 0 R /V << >> /Rect " +
                                   rectangle + " >>",
                               "[6 0 R]"}))
            .list.at(0)
            .page;
    };
    EXPECT_EQ(page("[6 0 R]", "[0 0 9 9]"), 1);
    EXPECT_EQ(page("7 0 R", "[0 0 9 9]"), 1);
    EXPECT_EQ(page("[7 0 R]", "[0 0 9 9]"), 0);
    EXPECT_EQ(page("null", "[0 0 9 9]"), 0);
    EXPECT_EQ(page("null", "[0 0 0 0]"), 1);
}

// 200 signatures, on the page that `page` tells the number of.
std::string WithManySignatures(int page, const std::vector<std::string>& nodes) {
    std::vector<std::string> bodies = {"", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                                       "<< /Type /Page /Parent 2 0 R >>"};
    bodies.insert(bodies.end(), nodes.begin(), nodes.end());
    std::string fields;
    for (int i = 0; i < 200; ++i) {
        bodies.push_back("<< /FT /Sig /T (f) /V << >> /P " + std::to_string(page) + " 0 R >>");
        fields += std::to_string(bodies.size()) + " 0 R ";
    }
    bodies[0] = "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [" + fields + "] >> >>";
    return PdfOf(bodies);
}

std::string Times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

// Each of these two would take minutes and more.
TEST_F(PdfSignaturesTest, ANodeOfThePageTreeThatIsItsOwnParentIsGoneThroughOnce) {
    constexpr int kPages = 100'000;
    const auto found =
        Read(WithManySignatures(4, {"<< /Parent 4 0 R /Count " + std::to_string(kPages + 1) +
                                    " /Kids [" + Times(kPages, "3 0 R ") + "4 0 R] >>"}));
    ASSERT_EQ(found.list.size(), 200u);
    EXPECT_EQ(found.list.front().page, 0);
    EXPECT_EQ(found.list.back().page, 0);
}

TEST_F(PdfSignaturesTest, NodesThatShareAListOfManyKidsAreNotAllGoneThrough) {
    // 4 is the list, 5 the first of the nodes, each the parent of the one before.
    constexpr int kNodes = 90;
    std::vector<std::string> nodes = {"[" + Times(100'000, "3 0 R ")};
    for (int node = 5; node < 5 + kNodes; ++node) {
        nodes[0] += std::to_string(node) + " 0 R ";
        const int parent = node + 1 < 5 + kNodes ? node + 1 : 5;
        nodes.push_back("<< /Kids 4 0 R /Count " + std::to_string(100'000 + kNodes) + " /Parent " +
                        std::to_string(parent) + " 0 R >>");
    }
    nodes[0] += "]";
    const auto found = Read(WithManySignatures(5, nodes));
    ASSERT_EQ(found.list.size(), 200u);
    EXPECT_EQ(found.list.back().page, 0);
}

TEST_F(PdfSignaturesTest, FilesThatCannotBeReadAreRefusedWithASentence) {
    PdfSignatures found;
    std::string message;
    EXPECT_EQ(ReadPdfSignatures(Path("none.pdf"), found, message), StampError::kInputUnreadable);
    EXPECT_NE(message.find("none.pdf"), std::string::npos);
    EXPECT_EQ(Refusal("no PDF"), StampError::kNotPdf);
    EXPECT_EQ(Refusal(SimplePdf().substr(0, 300)), StampError::kDamaged);
    EXPECT_EQ(Refusal(SimplePdf("", "/AcroForm << /Fields 3 >>")), StampError::kDamaged);
}

TEST_F(PdfSignaturesTest, AnEncryptedPdfIsReadUnlessItWantsAPassword) {
    WriteFile(Path("plain.pdf"), WithValue("<< /Type /Sig /Reason (Seen) /ByteRange [0 1 2 3] "
                                           "/Contents <3000> >>"));
    // RC4 of 40 and 128 bits, AES of 128 and 256, and the digest of Acrobat 9.
    const std::vector<std::vector<std::string>> ciphers = {
        {"40"}, {"128"}, {"128", "--use-aes=y"}, {"256"}, {"256", "--force-R5"}};
    for (const auto& cipher : ciphers) {
        const auto encrypted = [&](const std::string& password) {
            std::vector<std::string> command = {"qpdf", "--allow-weak-crypto", "--encrypt",
                                                password, "owner"};
            command.insert(command.end(), cipher.begin(), cipher.end());
            command.insert(command.end(), {"--", Path("plain.pdf"), Path("locked.pdf")});
            RunCommand(command);
            return ReadFile(Path("locked.pdf"));
        };
        const auto found = Read(encrypted(""));
        ASSERT_EQ(found.list.size(), 1u) << cipher.back();
        EXPECT_EQ(found.list[0].reason, "Seen") << cipher.back();
        EXPECT_NE(found.list[0].problem, RangeProblem::kNone);
        std::string message;
        EXPECT_EQ(Refusal(encrypted("secret"), &message), StampError::kEncrypted) << cipher.back();
        EXPECT_EQ(message, "The PDF is encrypted and can't be read.");
    }
}

TEST_F(PdfSignaturesTest, ASignatureOfPdfsigIsReadAndStaysWholeBelowOurs) {
    WriteFile(Path("plain.pdf"), SimplePdf());
    SignByPdfsig(m_folder, "plain.pdf");
    const std::string theirs = ReadFile(Path("other.pdf"));
    const auto alone = Read(theirs);
    ASSERT_EQ(alone.list.size(), 1u);
    EXPECT_EQ(alone.list[0].problem, RangeProblem::kNone)
        << RangeProblemText(alone.list[0].problem);
    EXPECT_EQ(alone.list[0].fieldName, "Other");
    EXPECT_EQ(alone.list[0].reason, "Seen");
    EXPECT_EQ(alone.list[0].after.bytes, 0u);
    // They write BER, whose end is zeros too.
    ASSERT_GT(alone.list[0].contents.size(), 1'000u);
    EXPECT_EQ(alone.list[0].contents.substr(0, 2), "\x30\x80");
    EXPECT_TRUE(alone.list[0].contents.ends_with(std::string(6, '\0')));
    const auto both = Read(Stamped(1, theirs));
    ASSERT_EQ(both.list.size(), 2u);
    EXPECT_EQ(both.list[0].fieldName, "Other");
    EXPECT_TRUE(both.list[0].after.signature);
    EXPECT_TRUE(both.list[0].after.compared);
    EXPECT_TRUE(both.list[0].after.altered.empty());
    EXPECT_EQ(both.list[1].after.bytes, 0u);
}

TEST_F(PdfSignaturesTest, EveryProblemHasASentence) {
    for (int i = 1; i <= static_cast<int>(RangeProblem::kNotInSignedBytes); ++i) {
        EXPECT_TRUE(RangeProblemText(static_cast<RangeProblem>(i)).ends_with('.')) << i;
    }
    EXPECT_EQ(RangeProblemText(RangeProblem::kNone), "");
}

}  // namespace

#include "platform/Files.h"
#include "tools/pdf/PdfFixture.h"

namespace {

class PdfStampTest : public PdfFixture {
protected:
    // Lets qpdf rewrite the simple PDF, or another, with `options`.
    StampRequest RequestForRewritten(const std::vector<std::string>& options,
                                     const std::string& pdf = SimplePdf()) const {
        WriteFile(Path("plain.pdf"), pdf);
        int status = -1;
        std::vector<std::string> words = {"qpdf"};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), {Path("plain.pdf"), Path("in.pdf")});
        const std::string output = RunCommand(words, &status);
        EXPECT_EQ(status, 0) << output;
        return RequestForFile(Path("in.pdf"));
    }

    std::string LastXref(const std::string& pdf) const {
        const auto at = pdf.rfind("startxref\n");
        return pdf.substr(std::stoul(pdf.substr(at + 10)), 16);
    }

    int ByteAtPoint(const std::string& path, int x, int y) const {
        RunCommand({"pdftoppm", "-r", "72", "-singlefile", "-f", "1", "-x", std::to_string(x), "-y",
                    std::to_string(y), "-W", "1", "-H", "1", path, Path("dot")});
        const std::string ppm = ReadFile(Path("dot.ppm"));
        return static_cast<unsigned char>(ppm[ppm.size() - 2]);
    }
};

TEST_F(PdfStampTest, ABaseWithAnXrefTableGetsATableAndAValidSignature) {
    const auto request = RequestFor(SimplePdf());
    EXPECT_EQ(Stamp(request).fieldName, "Signature1");
    ExpectSound(request);
    EXPECT_TRUE(LastXref(ReadFile(request.outputPath)).starts_with("xref"));
}

TEST_F(PdfStampTest, ABaseWithAnXrefStreamGetsAStreamAndAValidSignature) {
    const auto request = RequestForRewritten({"--object-streams=generate"});
    Stamp(request);
    ExpectSound(request);
    EXPECT_FALSE(LastXref(ReadFile(request.outputPath)).starts_with("xref"));
}

TEST_F(PdfStampTest, TheContractOfTheExamplesIsStampedOnItsLastPage) {
    auto request = RequestForFile(std::string(TESMARK_EXAMPLES) + "/contract.pdf");
    request.page = -1;
    const auto result = Stamp(request);
    EXPECT_EQ(result.page, 2);
    EXPECT_EQ(result.pageCount, 2);
    ExpectSound(request);
}

TEST_F(PdfStampTest, ALinearizedBaseIsSignedWhole) {
    const auto request = RequestForRewritten({"--linearize"});
    Stamp(request);
    ExpectSound(request);
    const auto streamed = RequestForRewritten({"--linearize", "--object-streams=generate"});
    Stamp(streamed);
    ExpectSound(streamed);
}

TEST_F(PdfStampTest, OldAndNewVersionsOfTheFormatAreSigned) {
    for (const char* version : {"1.4", "2.0"}) {
        const auto request = RequestForRewritten({std::string("--force-version=") + version});
        Stamp(request);
        ExpectSound(request);
    }
}

TEST_F(PdfStampTest, ASecondSignatureLeavesTheFirstValid) {
    for (const char* streams : {"disable", "generate"}) {
        const auto first = RequestForRewritten({std::string("--object-streams=") + streams});
        Stamp(first);
        auto second = first;
        second.inputPath = first.outputPath;
        second.outputPath = Path("second.pdf");
        second.yMm = 150;
        EXPECT_EQ(Stamp(second).fieldName, "Signature2");
        ExpectSound(second);
        const std::string verdict = PdfSig(second.outputPath);
        EXPECT_EQ(Count(verdict, "Signature is Valid"), 2) << verdict;
        EXPECT_EQ(Count(verdict, "Total document signed"), 1) << verdict;
    }
}

TEST_F(PdfStampTest, AByteThatChangesAfterwardsIsFoundOut) {
    const auto request = RequestFor(SimplePdf());
    Stamp(request);
    std::string output = ReadFile(request.outputPath);
    output[output.find("A contract")] = 'B';
    WriteFile(request.outputPath, output);
    EXPECT_EQ(Count(PdfSig(request.outputPath), "Digest Mismatch"), 1);
}

TEST_F(PdfStampTest, AFileWithoutAFinalNewlineIsContinuedOnANewLine) {
    std::string pdf = SimplePdf();
    pdf.pop_back();
    const auto request = RequestFor(pdf);
    Stamp(request);
    ExpectSound(request);
}

TEST_F(PdfStampTest, BytesBehindTheEndOfFileStayWhereTheyAre) {
    const auto request = RequestFor(SimplePdf() + "left by a mail program\r\n\r\n");
    Stamp(request);
    ExpectSound(request);
}

TEST_F(PdfStampTest, BytesInFrontOfTheHeaderShiftOffsetsButNotTheByteRange) {
    for (const char* streams : {"disable", "generate"}) {
        const auto rewritten = RequestForRewritten({std::string("--object-streams=") + streams});
        const auto request =
            RequestFor("Content-Type: application/pdf\n\n" + ReadFile(rewritten.inputPath));
        Stamp(request);
        ExpectSound(request);
        EXPECT_EQ(Count(RunCommand({"pdftotext", request.outputPath, "-"}), "A contract"), 1);
    }
}

TEST_F(PdfStampTest, AnIndirectListOfAnnotationsIsExtendedAndItsPageUntouched) {
    const auto request = RequestFor(SimplePdf(
        "/Annots 6 0 R", "",
        {"[7 0 R]", "<< /Type /Annot /Subtype /Link /Rect [0 0 9 9] /Border [0 0 0] >>"}));
    Stamp(request);
    ExpectSound(request);
    const std::string update =
        ReadFile(request.outputPath).substr(ReadFile(request.inputPath).size());
    EXPECT_EQ(Count(update, "6 0 obj\n[7 0 R "), 1);
    EXPECT_EQ(Count(update, "3 0 obj"), 0);
}

TEST_F(PdfStampTest, AnnotationsInThePageStay) {
    const auto request = RequestFor(
        SimplePdf("/Annots [6 0 R]", "",
                  {"<< /Type /Annot /Subtype /Link /Rect [0 0 9 9] /Border [0 0 0] >>"}));
    Stamp(request);
    ExpectSound(request);
    EXPECT_EQ(
        Count(RunCommand({"qpdf", "--show-object=3", request.outputPath}), "/Annots [ 6 0 R "), 1);
}

TEST_F(PdfStampTest, AFormThatExistsKeepsItsFieldsAndItsEntries) {
    const std::vector<std::string> field = {
        "<< /Type /Annot /Subtype /Widget /FT /Tx /T (Signature1) /Rect [0 0 90 9] /P 3 0 R >>"};
    const auto direct = RequestFor(
        SimplePdf("/Annots [6 0 R]", "/AcroForm << /Fields [6 0 R] /DA (/F1 0 Tf) >>", field));
    EXPECT_EQ(Stamp(direct).fieldName, "Signature2");
    ExpectSound(direct);
    const std::string catalog = RunCommand({"qpdf", "--show-object=1", direct.outputPath});
    EXPECT_EQ(Count(catalog, "/Fields [ 6 0 R "), 1) << catalog;
    EXPECT_EQ(Count(catalog, "/DA (/F1 0 Tf)"), 1) << catalog;
    EXPECT_EQ(Count(catalog, "/SigFlags 3"), 1) << catalog;
}

TEST_F(PdfStampTest, AnIndirectFormWithAnIndirectListIsExtendedWhereItStands) {
    const auto request = RequestFor(
        SimplePdf("/Annots [6 0 R]", "/AcroForm 7 0 R",
                  {"<< /Type /Annot /Subtype /Widget /FT /Tx /T (a) /Rect [0 0 90 9] /P 3 0 R >>",
                   "<< /Fields 8 0 R /SigFlags 1 >>", "[6 0 R]"}));
    Stamp(request);
    ExpectSound(request);
    const std::string update =
        ReadFile(request.outputPath).substr(ReadFile(request.inputPath).size());
    EXPECT_EQ(Count(update, "8 0 obj\n[6 0 R "), 1);
    EXPECT_EQ(Count(update, "/Fields 8 0 R"), 1);
    EXPECT_EQ(Count(update, "/SigFlags 3"), 1);
    EXPECT_EQ(Count(update, "\n1 0 obj"), 0);
}

TEST_F(PdfStampTest, TheFirstHalfOfTheIdentifierStaysAndTheSecondChanges) {
    const auto request = RequestForRewritten({"--static-id"});
    Stamp(request);
    const std::string before = RunCommand({"qpdf", "--show-object=trailer", request.inputPath});
    const std::string after = RunCommand({"qpdf", "--show-object=trailer", request.outputPath});
    const auto half = [](const std::string& trailer, int index) {
        auto at = trailer.find("/ID [ <") + 7;
        if (index == 1) at = trailer.find('<', at) + 1;
        return trailer.substr(at, 32);
    };
    EXPECT_EQ(half(after, 0), half(before, 0));
    EXPECT_NE(half(after, 1), half(before, 1));
}

TEST_F(PdfStampTest, ASealStandsWhereTheReaderSeesItHoweverThePageIsTurned) {
    for (const int rotate : {0, 90, 180, 270, -90, 450}) {
        auto request = RequestFor(SimplePdf("/Rotate " + std::to_string(rotate)));
        request.xMm = 100;
        request.yMm = 100;
        Stamp(request);
        ExpectSound(request);
        // The middle is red, the corner of the seal's square is paper: 121 mm and 101 mm.
        EXPECT_LT(ByteAtPoint(request.outputPath, 343, 343), 60) << rotate;
        EXPECT_EQ(ByteAtPoint(request.outputPath, 286, 286), 255) << rotate;
        EXPECT_LT(ByteAtPoint(request.outputPath, 290, 343), 200) << rotate;
        EXPECT_EQ(ByteAtPoint(request.outputPath, 280, 343), 255) << rotate;
    }
}

TEST_F(PdfStampTest, LikeInkTheSealLeavesDarkTextLegible) {
    auto request = RequestFor(SimplePdf());
    request.xMm = 72 / 72.0 * 25.4;
    request.yMm = 40;
    request.widthMm = request.heightMm = 20;
    const auto darkest = [&] {
        RunCommand({"pdftoppm", "-r", "72", "-singlefile", "-x", "86", "-y", "128", "-W", "28",
                    "-H", "16", request.outputPath, Path("part")});
        const std::string ppm = ReadFile(Path("part.ppm"));
        int least = 255;
        for (std::size_t i = ppm.size() - 3 * 28 * 16; i < ppm.size(); i += 3) {
            least = std::min(least, int(static_cast<unsigned char>(ppm[i])));
        }
        return least;
    };
    Stamp(request);
    EXPECT_LT(darkest(), 100);
    request.likeInk = false;
    Stamp(request);
    EXPECT_GT(darkest(), 100);
}

TEST_F(PdfStampTest, TheTextsOfTheSignatureAreUnicodeAndItsTimeIsLocal) {
    auto request = RequestFor(SimplePdf());
    request.reason = reinterpret_cast<const char*>(u8"同意 (agreed)");
    request.location = "Shenzhen";
    request.name = "Stamp Test";
    request.contactInfo = "seal@example.com";
    request.signingTime = 1'767'225'600;
    request.utcOffsetMinutes = 8 * 60;
    Stamp(request);
    ExpectSound(request);
    const std::string output = ReadFile(request.outputPath);
    EXPECT_EQ(Count(output, "/M (D:20260101080000+08'00')"), 1);
    EXPECT_EQ(Count(output, "/Location (Shenzhen)"), 1);
    EXPECT_EQ(Count(output, "/ContactInfo (seal@example.com)"), 1);
    EXPECT_EQ(Count(PdfSig(request.outputPath), "Reason"), 0);
    EXPECT_EQ(Count(RunCommand({"qpdf", "--json", "--json-key=qpdf", request.outputPath}),
                    reinterpret_cast<const char*>(u8"同意 (agreed)")),
              1);
}

TEST_F(PdfStampTest, TheCallerNamesTheFormOfTheSignature) {
    auto request = RequestFor(SimplePdf());
    request.filter = "Fenmoor.Seal";
    request.subFilter = "seal-sig_2";
    const auto result = StampPdf(request, [](const SignedRanges&, std::string& contents) {
        contents = "\x30\x01";
        return 0;
    });
    ASSERT_EQ(result.error, StampError::kNone) << result.message;
    const std::string output = ReadFile(request.outputPath);
    EXPECT_EQ(Count(output, "/Filter /Fenmoor.Seal /SubFilter /seal-sig_2"), 1);
    EXPECT_EQ(Count(output, "/Contents <3001" + std::string(2 * 4'096 - 4, '0') + ">"), 1);
}

TEST_F(PdfStampTest, WhatIsSignedIsTheOutputWithoutTheValueOfContents) {
    auto request = RequestFor(SimplePdf());
    std::string seen;
    const auto result = StampPdf(request, [&](const SignedRanges& ranges, std::string& contents) {
        EXPECT_TRUE(ranges.path.empty());
        seen = ranges.data;
        contents = "x";
        return 0;
    });
    ASSERT_EQ(result.error, StampError::kNone) << result.message;
    EXPECT_TRUE(seen == WithoutContents(ReadFile(request.outputPath)));
}

TEST_F(PdfStampTest, ASignatureThatOutgrowsItsRoomIsMadeAnewWithRoomForIt) {
    const auto stamp = [&](std::size_t size) {
        auto request =
            RequestFor(SimplePdf("", "",
                                 {"<< /Length " + std::to_string(size) + " >>\nstream\n" +
                                  std::string(size, 'x') + "\nendstream"}));
        request.contentsSize = 100;
        Stamp(request);
        ExpectSound(request);
        const std::string output = ReadFile(request.outputPath);
        return std::stoul(output.substr(output.rfind("startxref\n") + 10));
    };
    const std::size_t place = stamp(1000);
    EXPECT_LT(place, 20'000u);
    // The room that it takes pushes this one beyond five digits.
    EXPECT_NEAR(static_cast<double>(stamp(1000 + 101'000 - place)), 101'000, 100);
}

TEST_F(PdfStampTest, ASignatureOverAFileThatOutgrowsItsRoomIsMadeAnewAsWell) {
    auto request = RequestForLarge(kSignedDataInMemory);
    request.contentsSize = 100;
    Stamp(request);
    ExpectSound(request);
}

TEST_F(PdfStampTest, AnOutputThatIsThereIsReplaced) {
    const auto request = RequestFor(SimplePdf());
    WriteFile(request.outputPath, "old");
    Stamp(request);
    ExpectSound(request);
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in.pdf", "out.pdf"}));
}

TEST_F(PdfStampTest, ChineseNamesOfInputAndOutputAreTheirPaths) {
    auto request = RequestFor(SimplePdf());
    const std::string name = reinterpret_cast<const char*>(u8"合同");
    request.inputPath = Path(platform::PathFromUtf8(name + ".pdf"));
    request.outputPath = Path(platform::PathFromUtf8(name + " 2.pdf"));
    WriteFile(request.inputPath, SimplePdf());
    const auto refused = [&] {
        auto wrong = request;
        wrong.inputPath = Path(platform::PathFromUtf8(name + " 3.pdf"));
        return StampPdf(wrong, SignByCms);
    }();
    EXPECT_EQ(refused.error, StampError::kInputUnreadable);
    EXPECT_NE(refused.message.find(name + " 3.pdf"), std::string::npos) << refused.message;
    Stamp(request);
    // The programs that judge are told a name that every shell can carry.
    WriteFile(Path("out.pdf"), ReadFile(request.outputPath));
    request.outputPath = Path("out.pdf");
    ExpectSound(request);
}

TEST_F(PdfStampTest, AHybridBaseGetsATableOnTopOfItsTable) {
    // A catalog, a page tree and a page in the open, the font hidden in a cross-reference stream.
    std::string pdf = "%PDF-1.5\n";
    std::map<int, std::size_t> offsets;
    const auto add = [&](int number, const std::string& body) {
        offsets[number] = pdf.size();
        pdf += std::to_string(number) + " 0 obj\n" + body + "\nendobj\n";
    };
    add(1, "<< /Type /Catalog /Pages 2 0 R >>");
    add(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 /MediaBox [0 0 595 842] >>");
    add(3, "<< /Type /Page /Parent 2 0 R /Annots 5 0 R >>");
    const std::string packed = "5 0 [ ]";
    add(4, "<< /Type /ObjStm /N 1 /First 4 /Length " + std::to_string(packed.size()) +
               " >>\nstream\n" + packed + "\nendstream");
    const std::size_t hidden = pdf.size();
    const std::string entry = {2, 0, 4, 0};
    add(6, "<< /Type /XRef /Size 7 /W [1 2 1] /Index [5 1] /Length 4 /Root 1 0 R >>\nstream\n" +
               entry + "\nendstream");
    const std::size_t xref = pdf.size();
    pdf += "xref\n0 5\n0000000000 65535 f\r\n";
    for (int i = 1; i <= 4; ++i) {
        char line[32];
        std::snprintf(line, sizeof line, "%010zu 00000 n\r\n", offsets[i]);
        pdf += line;
    }
    pdf += "trailer\n<< /Size 7 /Root 1 0 R /XRefStm " + std::to_string(hidden) +
           " >>\nstartxref\n" + std::to_string(xref) + "\n%%EOF\n";
    const auto request = RequestFor(pdf);
    Stamp(request);
    ExpectSound(request);
    const std::string update = ReadFile(request.outputPath).substr(pdf.size());
    EXPECT_EQ(Count(update, "5 0 obj\n["), 1);
    EXPECT_EQ(Count(update, "XRefStm"), 0);
}

}  // namespace

#include <filesystem>

#include "tools/pdf/PdfFixture.h"

namespace {

class PdfRefusalTest : public PdfFixture {
protected:
    // Stamps, expects `error` with a sentence, an input as it was, no output and nothing beside.
    std::string ExpectRefusal(const StampRequest& request, StampError error) const {
        const std::string before = ReadFile(request.inputPath);
        const auto listing = Listing();
        bool asked = false;
        const auto result = StampPdf(request, [&](const SignedRanges&, std::string&) {
            asked = true;
            return 0;
        });
        EXPECT_EQ(result.error, error) << result.message;
        EXPECT_TRUE(result.message.ends_with('.')) << result.message;
        EXPECT_FALSE(asked) << "a signature was made for nothing";
        EXPECT_TRUE(ReadFile(request.inputPath) == before);
        EXPECT_EQ(Listing(), listing);
        return result.message;
    }

    StampRequest Encrypted(const std::string& userPassword) const {
        WriteFile(Path("plain.pdf"), SimplePdf());
        RunCommand({"qpdf", "--encrypt", userPassword, "owner", "256", "--", Path("plain.pdf"),
                    Path("in.pdf")});
        return RequestForFile(Path("in.pdf"));
    }
};

TEST_F(PdfRefusalTest, AnInputThatIsNotThereOrIsAFolder) {
    EXPECT_NE(ExpectRefusal(RequestForFile(Path("none.pdf")), StampError::kInputUnreadable)
                  .find("none.pdf"),
              std::string::npos);
    ExpectRefusal(RequestForFile(m_folder), StampError::kInputUnreadable);
}

TEST_F(PdfRefusalTest, AnEmptyFile) {
    EXPECT_EQ(ExpectRefusal(RequestFor(""), StampError::kNotPdf), "The input is empty.");
}

TEST_F(PdfRefusalTest, AFileThatIsNoPdf) {
    ExpectRefusal(RequestFor("PK\x03\x04 a letter of another program"), StampError::kNotPdf);
    ExpectRefusal(RequestFor("%PDF-"), StampError::kNotPdf);
    ExpectRefusal(RequestFor(std::string(2'000, ' ') + SimplePdf()), StampError::kNotPdf);
}

TEST_F(PdfRefusalTest, AnEncryptedPdfWithAndWithoutAPasswordToOpenIt) {
    ExpectRefusal(Encrypted("secret"), StampError::kEncrypted);
    ExpectRefusal(Encrypted(""), StampError::kEncrypted);
}

TEST_F(PdfRefusalTest, APdfThatIsCutOffAnywhere) {
    const std::string pdf = SimplePdf();
    for (const std::size_t size : {pdf.size() - 20, pdf.size() / 2, std::size_t{40}}) {
        ExpectRefusal(RequestFor(pdf.substr(0, size)), StampError::kDamaged);
    }
    const std::string contract = ReadFile(std::string(TESMARK_EXAMPLES) + "/contract.pdf");
    ExpectRefusal(RequestFor(contract.substr(0, contract.size() - 3'000)), StampError::kDamaged);
    ExpectRefusal(RequestFor(contract.substr(9'000)), StampError::kNotPdf);
}

TEST_F(PdfRefusalTest, AnXrefThatPointsBesideItsObjects) {
    std::string pdf = SimplePdf();
    pdf.insert(pdf.find("2 0 obj"), "%moved\n");
    ExpectRefusal(RequestFor(pdf), StampError::kDamaged);
    std::string wrongStart = SimplePdf();
    const auto number = wrongStart.rfind("startxref\n") + 10;
    wrongStart.replace(number, wrongStart.find('\n', number) - number, "11");
    ExpectRefusal(RequestFor(wrongStart), StampError::kDamaged);
}

TEST_F(PdfRefusalTest, AListOfAnnotationsThatCannotBeReadIsNotTakenForNone) {
    std::string pdf = SimplePdf("/Annots 6 0 R", "", {"[7 0 R]", "<< /Type /Annot >>"});
    pdf.replace(pdf.find("6 0 obj"), 7, "6 0 xxx");
    ExpectRefusal(RequestFor(pdf), StampError::kDamaged);
}

TEST_F(PdfRefusalTest, AListThatIsNone) {
    ExpectRefusal(RequestFor(SimplePdf("/Annots (none)")), StampError::kDamaged);
    ExpectRefusal(RequestFor(SimplePdf("", "/AcroForm << /Fields 17 >>")), StampError::kDamaged);
}

TEST_F(PdfRefusalTest, APageTreeThatRunsInACircleOrLacksAPage) {
    ExpectRefusal(RequestFor(PdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                                    "<< /Type /Pages /Kids [2 0 R] /Count 3 >>"})),
                  StampError::kDamaged);
    ExpectRefusal(RequestFor(PdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                                    "<< /Type /Pages /Kids [] /Count 3 >>"})),
                  StampError::kDamaged);
    ExpectRefusal(RequestFor(PdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                                    "<< /Type /Pages /Kids [9 0 R] /Count 1 >>"})),
                  StampError::kDamaged);
    ExpectRefusal(RequestFor(PdfOf({"<< /Type /Catalog >>"})), StampError::kDamaged);
}

TEST_F(PdfRefusalTest, APageWithoutASize) {
    ExpectRefusal(RequestFor(PdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                                    "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                                    "<< /Type /Page /Parent 2 0 R >>"})),
                  StampError::kDamaged);
}

TEST_F(PdfRefusalTest, APageThatIsNotThere) {
    auto request = RequestFor(SimplePdf());
    for (const int page : {0, 2, -2, 1'000'000'000, -2'147'483'647 - 1}) {
        request.page = page;
        EXPECT_NE(ExpectRefusal(request, StampError::kNoSuchPage).find("has 1 page."),
                  std::string::npos);
    }
}

TEST_F(PdfRefusalTest, APdfWithoutPages) {
    const auto request = RequestFor(
        PdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [] /Count 0 >>"}));
    EXPECT_NE(ExpectRefusal(request, StampError::kNoSuchPage).find("has 0 pages."),
              std::string::npos);
}

TEST_F(PdfRefusalTest, ACertificationThatForbidsChangesButNoneThatAllowsThem) {
    const auto certified = [](const std::string& parameters) {
        return SimplePdf("", "/Perms << /DocMDP 6 0 R >>",
                         {"<< /Type /Sig /Reference [<< /Type /SigRef /TransformMethod /DocMDP "
                          "/TransformParams << /Type /TransformParams " +
                          parameters + " >> >>] >>"});
    };
    ExpectRefusal(RequestFor(certified("/P 1")), StampError::kChangesForbidden);
    Stamp(RequestFor(certified("/P 2")));
    Stamp(RequestFor(certified("")));
}

TEST_F(PdfRefusalTest, ASealWithoutSizeOrBeyondThePage) {
    auto request = RequestFor(SimplePdf());
    request.widthMm = 0;
    ExpectRefusal(request, StampError::kBadPlace);
    request.widthMm = 42;
    request.xMm = 210;
    ExpectRefusal(request, StampError::kBadPlace);
    request.xMm = -42;
    ExpectRefusal(request, StampError::kBadPlace);
    request.xMm = 10;
    request.yMm = 297.1;
    ExpectRefusal(request, StampError::kBadPlace);
}

TEST_F(PdfRefusalTest, APictureThatIsNone) {
    auto request = RequestFor(SimplePdf());
    request.picture = "not a picture";
    ExpectRefusal(request, StampError::kBadPicture);
    request.picture = RequestFor(SimplePdf()).picture.substr(0, 60);
    ExpectRefusal(request, StampError::kBadPicture);
}

TEST_F(PdfRefusalTest, ARequestThatCannotBeWritten) {
    auto request = RequestFor(SimplePdf());
    request.contentsSize = 0;
    ExpectRefusal(request, StampError::kBadRequest);
    request.contentsSize = 8 * 1024 * 1024 + 1;
    ExpectRefusal(request, StampError::kBadRequest);
    request.contentsSize = 100;
    for (const char* name : {"", "a b", "a#20", "/a", "a/V"}) {
        request.subFilter = name;
        ExpectRefusal(request, StampError::kBadRequest);
    }
    request.subFilter = "fine";
    request.utcOffsetMinutes = 24 * 60;
    ExpectRefusal(request, StampError::kBadRequest);
}

TEST_F(PdfRefusalTest, AnOutputThatIsTheInputByAnyName) {
    auto request = RequestFor(SimplePdf());
    request.outputPath = Path("./in.pdf");
    ExpectRefusal(request, StampError::kOutputIsInput);
    std::filesystem::create_hard_link(request.inputPath, Path("hard.pdf"));
    request.outputPath = Path("hard.pdf");
    ExpectRefusal(request, StampError::kOutputIsInput);
}

TEST_F(PdfRefusalTest, AnOutputThatCannotBeWritten) {
    auto request = RequestFor(SimplePdf());
    request.outputPath = Path("in.pdf/out.pdf");
    ExpectRefusal(request, StampError::kOutputUnwritable);
    request.outputPath = Path("nowhere/out.pdf");
    EXPECT_NE(ExpectRefusal(request, StampError::kOutputUnwritable).find(request.outputPath),
              std::string::npos);
    request.outputPath = m_folder;
    ExpectRefusal(request, StampError::kOutputUnwritable);
    request.outputPath = DevicePath();
    ExpectRefusal(request, StampError::kOutputUnwritable);
}

TEST_F(PdfRefusalTest, ASignerThatFailsLeavesTheOldOutputAndHandsItsCodeThrough) {
    const auto request = RequestFor(SimplePdf());
    WriteFile(request.outputPath, "old");
    const auto result = StampPdf(request, [](const SignedRanges&, std::string& contents) {
        contents = "half a signature";
        return -3050;
    });
    EXPECT_EQ(result.error, StampError::kSignerFailed);
    EXPECT_EQ(result.signerCode, -3050);
    EXPECT_EQ(ReadFile(request.outputPath), "old");
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in.pdf", "out.pdf"}));
}

TEST_F(PdfRefusalTest, ASignerThatThrowsLeavesNothingBehind) {
    const auto request = RequestFor(SimplePdf());
    EXPECT_THROW(StampPdf(request, [](const SignedRanges&, std::string&) -> int { throw 17; }),
                 int);
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in.pdf"}));
}

TEST_F(PdfRefusalTest, ASignatureThatOutgrowsItsRoomTwiceTellsItsLastSize) {
    auto request = RequestFor(SimplePdf());
    request.contentsSize = 100;
    std::size_t size = 0;
    const auto result = StampPdf(request, [&](const SignedRanges&, std::string& contents) {
        contents.assign(size += 2000, '0');
        return 0;
    });
    EXPECT_EQ(result.error, StampError::kContentsTooSmall);
    EXPECT_EQ(result.neededContentsSize, 4000u);
    EXPECT_EQ(size, 4000u) << "the signer was called twice";
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in.pdf"}));
}

TEST_F(PdfRefusalTest, ASignatureLargerThanAnyRoomIsNotMadeAnew) {
    int calls = 0;
    const auto result =
        StampPdf(RequestFor(SimplePdf()), [&](const SignedRanges&, std::string& contents) {
            ++calls;
            contents.assign(8 * 1024 * 1024, '0');
            return 0;
        });
    EXPECT_EQ(result.error, StampError::kContentsTooSmall);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in.pdf"}));
}

TEST_F(PdfRefusalTest, ASignerThatFailsTheSecondTimeHandsItsCodeThrough) {
    auto request = RequestFor(SimplePdf());
    request.contentsSize = 100;
    int calls = 0;
    const auto result = StampPdf(request, [&](const SignedRanges&, std::string& contents) {
        EXPECT_EQ(contents, "");
        contents.assign(2000, '0');
        return ++calls == 1 ? 0 : -3050;
    });
    EXPECT_EQ(result.error, StampError::kSignerFailed);
    EXPECT_EQ(result.signerCode, -3050);
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in.pdf"}));
}

TEST_F(PdfRefusalTest, ASignatureWithoutBytesIsAFailure) {
    const auto request = RequestFor(SimplePdf());
    const auto result = StampPdf(request, [](const SignedRanges&, std::string&) { return 0; });
    EXPECT_EQ(result.error, StampError::kSignerFailed);
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in.pdf"}));
}

}  // namespace

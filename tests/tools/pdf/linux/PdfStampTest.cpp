#include <filesystem>

#include "tools/pdf/PdfFixture.h"

namespace {

class PdfStampOnLinux : public PdfFixture {};

TEST_F(PdfStampOnLinux, AnOutputThatIsThereIsReplacedWithItsRightsKept) {
    const auto request = RequestFor(SimplePdf());
    WriteFile(request.outputPath, "old");
    RunCommand({"chmod", "640", request.outputPath});
    Stamp(request);
    ExpectSound(request);
    EXPECT_EQ(RunCommand({"stat", "-c", "%a", request.outputPath}), "640\n");
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in.pdf", "out.pdf"}));
}

TEST_F(PdfStampOnLinux, AnOutputBehindALinkIsWrittenThroughIt) {
    auto request = RequestFor(SimplePdf());
    WriteFile(Path("target.pdf"), "old");
    RunCommand({"ln", "-s", "target.pdf", Path("link.pdf")});
    request.outputPath = Path("link.pdf");
    Stamp(request);
    EXPECT_EQ(RunCommand({"readlink", Path("link.pdf")}), "target.pdf\n");
    EXPECT_EQ(Count(PdfSig(Path("target.pdf")), "Signature is Valid"), 1);
}

TEST_F(PdfStampOnLinux, AnOutputThatIsALinkToTheInputIsRefused) {
    auto request = RequestFor(SimplePdf());
    std::filesystem::create_symlink("in.pdf", Path("soft.pdf"));
    request.outputPath = Path("soft.pdf");
    EXPECT_EQ(StampPdf(request, SignByCms).error, StampError::kOutputIsInput);
    EXPECT_EQ(ReadFile(request.inputPath), SimplePdf());
}

}  // namespace

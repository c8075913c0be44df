#include "pdf/InputCopy.h"

#include <filesystem>
#include <fstream>
#include <thread>

#include "pdf/PdfFailure.h"
#include "tools/pdf/InputCopyFixture.h"

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;
using InputCopyTest = InputCopyFixture;

TEST_F(InputCopyTest, AnInputIsLargeFromEightMebibytesOn) {
    for (const auto size : {kLargeInput - 1, kLargeInput}) {
        WriteFile(Path("in"), "");
        fs::resize_file(Path("in"), size);
        EXPECT_EQ(CInputCopy(Path("in"), Path("out")).IsLarge(), size == kLargeInput);
    }
    EXPECT_FALSE(CInputCopy(Path("none"), Path("out")).IsLarge());
}

TEST_F(InputCopyTest, WithoutABeginNothingIsWrittenUntilTheEnd) {
    WriteFile(Path("in"), "content");
    CInputCopy copy(Path("in"), Path("out"));
    EXPECT_EQ(Listing(), Names{"in"});
    EXPECT_EQ(ReadFile(copy.Finish().Path()), "content");
    EXPECT_EQ(Listing().size(), 2u);
}

TEST_F(InputCopyTest, OnceBegunItIsMadeThoughNobodyWaitsForIt) {
    const auto request = LargeRequest();
    const auto size = fs::file_size(request.inputPath);
    CInputCopy copy(request.inputPath, request.outputPath);
    copy.Begin();
    const std::string beside = AwaitFileBeside(request);
    ASSERT_FALSE(beside.empty());
    for (int i = 0; i < 1'000'000 && fs::file_size(beside) < size; ++i) std::this_thread::yield();
    EXPECT_EQ(fs::file_size(beside), size);
    EXPECT_EQ(copy.Finish().Path(), beside);
    EXPECT_TRUE(ReadFile(beside) == ReadFile(request.inputPath));
}

TEST_F(InputCopyTest, AStampOnACopyThatWasBegunIsSound) {
    const auto request = LargeRequest();
    CInputCopy copy(request.inputPath, request.outputPath);
    copy.Begin();
    const auto result = StampPdf(request, SignByCms, copy);
    ASSERT_EQ(result.error, StampError::kNone) << result.message;
    ExpectSound(request);
    EXPECT_EQ(Listing(), (Names{"in.pdf", "out.pdf"}));
}

TEST_F(InputCopyTest, ACopyThatNobodyFinishesIsRemoved) {
    const auto request = LargeRequest();
    WriteFile(request.outputPath, "old");
    {
        CInputCopy copy(request.inputPath, request.outputPath);
        copy.Begin();
        EXPECT_FALSE(AwaitFileBeside(request).empty());
    }
    EXPECT_EQ(Listing(), (Names{"in.pdf", "out.pdf"}));
    {
        // At once, whether its thread has begun or not.
        CInputCopy copy(request.inputPath, request.outputPath);
        copy.Begin();
    }
    EXPECT_EQ(Listing(), (Names{"in.pdf", "out.pdf"}));
    EXPECT_EQ(ReadFile(request.outputPath), "old");
}

TEST_F(InputCopyTest, AFailureOfTheSignerRemovesTheCopyWithTheObject) {
    const auto request = LargeRequest();
    {
        CInputCopy copy(request.inputPath, request.outputPath);
        copy.Begin();
        const auto result = StampPdf(
            request, [](const SignedRanges&, std::string&) { return 7; }, copy);
        EXPECT_EQ(result.signerCode, 7);
    }
    EXPECT_EQ(Listing(), Names{"in.pdf"});
}

TEST_F(InputCopyTest, ADocumentThatIsRefusedIsRefusedAlike) {
    auto request = LargeRequest();
    request.page = 2;
    {
        CInputCopy copy(request.inputPath, request.outputPath);
        copy.Begin();
        EXPECT_EQ(ExpectFailure(request, copy, StampError::kNoSuchPage),
                  "There is no page 2: the PDF has 1 page.");
    }
    EXPECT_EQ(Listing(), Names{"in.pdf"});
}

// What may happen to an input between its copy and its end, or between the look at it and both.
class ChangedInputTest : public InputCopyTest, public testing::WithParamInterface<bool> {
protected:
    template <typename Change>
    void ExpectChangeIsNoticed(const Change& change) {
        const auto request = LargeRequest();
        WriteFile(request.outputPath, "old");
        {
            CInputCopy copy(request.inputPath, request.outputPath);
            if (GetParam()) copy.Begin();
            change(request.inputPath);
            EXPECT_EQ(ExpectFailure(request, copy, StampError::kInputChanged),
                      "The input was changed while it was stamped.");
        }
        EXPECT_EQ(ReadFile(request.outputPath), "old");
        EXPECT_EQ(Listing(), (Names{"in.pdf", "out.pdf"}));
    }
};

TEST_P(ChangedInputTest, BytesThatWereAppended) {
    ExpectChangeIsNoticed([](const std::string& path) {
        std::ofstream(path, std::ios::binary | std::ios::app) << "\n";
    });
}

TEST_P(ChangedInputTest, BytesThatWereReplacedInPlace) {
    ExpectChangeIsNoticed([](const std::string& path) {
        std::fstream(path, std::ios::binary | std::ios::in | std::ios::out).seekp(5'000) << "x";
        fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(1));
    });
}

TEST_P(ChangedInputTest, AnotherFileOfThatName) {
    ExpectChangeIsNoticed([](const std::string& path) {
        fs::copy_file(path, path + ".new");
        fs::last_write_time(path + ".new", fs::last_write_time(path));
        // On Windows it fails as long as the copy's thread reads the file.
        std::error_code error;
        do fs::rename(path + ".new", path, error);
        while (error);
    });
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutABegin, ChangedInputTest, testing::Bool());

TEST_F(InputCopyTest, AnInputThatIsGoneIsUnreadable) {
    const auto request = LargeRequest();
    {
        CInputCopy copy(request.inputPath, request.outputPath);
        copy.Begin();
        // On Windows it fails, or the file stays for a while, as long as the copy's thread reads
        // it.
        std::error_code error;
        do fs::remove(request.inputPath, error);
        while (error || fs::exists(request.inputPath));
        ExpectFailure(request, copy, StampError::kInputUnreadable);
    }
    EXPECT_TRUE(Listing().empty());
}

TEST_F(InputCopyTest, AnInputThatAppearsAfterTheLookAtItCountsAsChanged) {
    CInputCopy copy(Path("in.pdf"), Path("out.pdf"));
    ExpectFailure(LargeRequest(), copy, StampError::kInputChanged);
    EXPECT_EQ(Listing(), Names{"in.pdf"});
}

TEST_F(InputCopyTest, AnOutputThatCannotBeWrittenIsToldInTheSameWordsAsWithoutABegin) {
    auto request = LargeRequest();
    for (const std::string& output : {Path("none/out.pdf"), m_folder, DevicePath()}) {
        request.outputPath = output;
        const auto plain = StampPdf(request, SignByCms);
        EXPECT_EQ(plain.error, StampError::kOutputUnwritable);
        CInputCopy copy(request.inputPath, output);
        copy.Begin();
        EXPECT_EQ(ExpectFailure(request, copy, StampError::kOutputUnwritable), plain.message);
    }
    EXPECT_EQ(Listing(), Names{"in.pdf"});
}

TEST_F(InputCopyTest, AnOutputThatIsTheInputUnderAnyNameIsNeverWritten) {
    auto request = LargeRequest();
    fs::create_hard_link(request.inputPath, Path("hard.pdf"));
    for (const char* name : {"in.pdf", "hard.pdf"}) ExpectIsInput(request, name);
}

}  // namespace

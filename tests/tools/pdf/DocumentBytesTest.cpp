// Which bytes of a document a signature signs, one range after the other from one reading.
#include "pdf/DocumentBytes.h"

#include "tools/pdf/PdfFixture.h"

namespace {

constexpr std::uint64_t kNoLimit = std::uint64_t{1} << 40;

class DocumentBytesTest : public PdfFixture {
protected:
    // Its bytes differ from their neighbours for as far as a range of the tests goes.
    std::string Document(std::size_t size) const {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i % 251);
        WriteFile(Path("document"), bytes);
        return bytes;
    }

    static PdfSignature Range(std::uint64_t gapStart, std::uint64_t gapEnd, std::uint64_t end) {
        PdfSignature signature;
        signature.gapStart = gapStart;
        signature.gapEnd = gapEnd;
        signature.end = end;
        return signature;
    }

    static std::string Expected(const std::string& document, const PdfSignature& signature) {
        return document.substr(0, signature.gapStart) +
               document.substr(signature.gapEnd, signature.end - signature.gapEnd);
    }
};

TEST_F(DocumentBytesTest, EveryRangeIsToldAfterAnyOther) {
    const std::string document = Document(3'000'000);
    CDocumentBytes bytes(Path("document"), kNoLimit);
    const PdfSignature nearEnd = Range(2'900'000, 2'950'000, 3'000'000);
    const PdfSignature nearStart = Range(1'000, 70'000, 2'900'000);
    const PdfSignature wideGap = Range(10, 2'000'000, 2'000'007);
    const PdfSignature noGap = Range(500, 500, 1'000);
    for (const auto& signature :
         {nearEnd, nearStart, nearEnd, wideGap, nearStart, noGap, wideGap, nearEnd}) {
        std::string_view told;
        ASSERT_TRUE(bytes.Signed(signature, told));
        EXPECT_TRUE(told == Expected(document, signature)) << signature.gapStart;
    }
}

TEST_F(DocumentBytesTest, ARangeBehindTheEndGivesNoBytesAndOthersStillDo) {
    const std::string document = Document(1'000);
    CDocumentBytes bytes(Path("document"), kNoLimit);
    std::string_view told;
    EXPECT_FALSE(bytes.Signed(Range(10, 20, 1'001), told));
    const PdfSignature whole = Range(10, 20, 1'000);
    ASSERT_TRUE(bytes.Signed(whole, told));
    EXPECT_EQ(told, Expected(document, whole));
    EXPECT_FALSE(bytes.Signed(Range(10, 20, 1'001), told));
    ASSERT_TRUE(bytes.Signed(whole, told));
    EXPECT_EQ(told, Expected(document, whole));
}

TEST_F(DocumentBytesTest, ADocumentAtTheLimitIsReadAndOneAboveItIsNot) {
    Document(1'000);
    std::string_view told;
    CDocumentBytes read(Path("document"), 1'000);
    EXPECT_TRUE(read.Signed(Range(10, 20, 30), told));
    CDocumentBytes unread(Path("document"), 999);
    EXPECT_FALSE(unread.Signed(Range(10, 20, 30), told));
}

TEST_F(DocumentBytesTest, WhatIsNoFileHasNoBytes) {
    std::string_view told;
    CDocumentBytes missing(Path("missing"), kNoLimit);
    EXPECT_FALSE(missing.Signed(Range(1, 2, 3), told));
    CDocumentBytes folder(m_folder, kNoLimit);
    EXPECT_FALSE(folder.Signed(Range(1, 2, 3), told));
}

TEST_F(DocumentBytesTest, AReadingThatNobodyWaitsForIsBrokenOff) {
    Document(64'000'000);
    const CDocumentBytes bytes(Path("document"), kNoLimit);
}

}  // namespace

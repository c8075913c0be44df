// Which bytes of a document a signature signs, one range after the other from one opening.
#include "pdf/DocumentBytes.h"

#include "tools/pdf/PdfFixture.h"

namespace {

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
    CDocumentBytes bytes(Path("document"));
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
    CDocumentBytes bytes(Path("document"));
    std::string_view told;
    EXPECT_FALSE(bytes.Signed(Range(10, 20, 1'001), told));
    const PdfSignature whole = Range(10, 20, 1'000);
    ASSERT_TRUE(bytes.Signed(whole, told));
    EXPECT_EQ(told, Expected(document, whole));
    EXPECT_FALSE(bytes.Signed(Range(10, 20, 1'001), told));
    ASSERT_TRUE(bytes.Signed(whole, told));
    EXPECT_EQ(told, Expected(document, whole));
}

TEST_F(DocumentBytesTest, TheWholeDocumentIsToldAsItIsAfterEveryRange) {
    const std::string document = Document(100'000);
    CDocumentBytes bytes(Path("document"));
    EXPECT_TRUE(bytes.Whole() == document);
    std::string_view told;
    for (const auto& signature : {Range(10, 50'000, 99'000), Range(90'000, 91'000, 100'000)}) {
        ASSERT_TRUE(bytes.Signed(signature, told));
        EXPECT_TRUE(bytes.Whole() == document) << signature.gapStart;
    }
}

TEST_F(DocumentBytesTest, TheFileStaysAsItIsWhereAGapIsClosed) {
    const std::string document = Document(100'000);
    CDocumentBytes bytes(Path("document"));
    std::string_view told;
    ASSERT_TRUE(bytes.Signed(Range(10, 50'000, 99'000), told));
    EXPECT_TRUE(ReadFile(Path("document")) == document);
}

TEST_F(DocumentBytesTest, AnEmptyFileIsOpenAndHasNoBytes) {
    Document(0);
    CDocumentBytes bytes(Path("document"));
    EXPECT_TRUE(bytes.IsOpen());
    EXPECT_TRUE(bytes.Whole().empty());
    std::string_view told;
    EXPECT_FALSE(bytes.Signed(Range(1, 2, 3), told));
}

TEST_F(DocumentBytesTest, WhatIsNoFileIsNotOpenAndHasNoBytes) {
    std::string_view told;
    CDocumentBytes missing(Path("missing"));
    EXPECT_FALSE(missing.IsOpen());
    EXPECT_FALSE(missing.Signed(Range(1, 2, 3), told));
    CDocumentBytes folder(m_folder);
    EXPECT_FALSE(folder.IsOpen());
    EXPECT_TRUE(folder.Whole().empty());
    EXPECT_FALSE(folder.Signed(Range(1, 2, 3), told));
}

}  // namespace

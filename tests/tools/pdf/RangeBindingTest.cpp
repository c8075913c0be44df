// That a signature's value stands at the one place for which the signed bytes were made: files
// prepared so that it would fit elsewhere too, shared values, and dictionaries without a place.
#include <cstdio>

#include "pdf/DocumentBytes.h"
#include "pdf/PdfSignatures.h"
#include "tools/pdf/PdfFixture.h"

namespace {

constexpr char kValue[] = "<3000>";
constexpr char kRange[] = "/ByteRange [0 AAAAAAAA BBBBBBBB CCCCCCCC] ";

std::string EightDigits(std::size_t number) {
    char digits[24];
    std::snprintf(digits, sizeof digits, "%08zu", number);
    return digits;
}

std::string Replaced(std::string text, const std::string& word, const std::string& by) {
    const auto at = text.find(word);
    EXPECT_NE(at, std::string::npos) << word;
    return text.replace(at, word.size(), by);
}

// Fills in a range of the file that leaves out the bytes from `gap` on.
std::string WithNumbers(std::string pdf, std::size_t gap, std::size_t length) {
    pdf = Replaced(pdf, "AAAAAAAA", EightDigits(gap));
    pdf = Replaced(pdf, "BBBBBBBB", EightDigits(gap + length));
    return Replaced(pdf, "CCCCCCCC", EightDigits(pdf.size() - gap - length));
}

// The value's own place.
std::string Sealed(const std::string& pdf) {
    return WithNumbers(pdf, pdf.find(kValue), sizeof kValue - 1);
}

std::string FieldWith(const std::string& value) {
    return "<< /Type /Annot /Subtype /Widget /FT /Sig /T (S) /P 3 0 R /Rect [0 0 9 9] /V " + value +
           " >>";
}

// A page and a field, object 6, whose value is object 7; objects from 8 on are `more`.
std::string WithValue(const std::string& dictionary, const std::vector<std::string>& more = {}) {
    std::vector<std::string> bodies = {FieldWith("7 0 R"), dictionary};
    bodies.insert(bodies.end(), more.begin(), more.end());
    return SimplePdf("/Annots [6 0 R]", "/AcroForm << /Fields [6 0 R] /SigFlags 3 >>", bodies);
}

std::string SignatureWith(const std::string& range = kRange) {
    return "<< /Type /Sig " + range + "/Contents " + kValue + " >>";
}

class RangeBindingTest : public PdfFixture {
protected:
    PdfSignatures Read(const std::string& pdf, StampError expected = StampError::kNone) const {
        WriteFile(Path("read.pdf"), pdf);
        PdfSignatures found;
        std::string message;
        EXPECT_EQ(ReadPdfSignatures(Path("read.pdf"), found, message), expected) << message;
        return found;
    }

    // Of the file that was read last.
    std::string SignedBy(const PdfSignature& signature) const {
        CDocumentBytes document(Path("read.pdf"));
        std::string_view bytes;
        EXPECT_TRUE(document.Signed(signature, bytes));
        return std::string(bytes);
    }

    RangeProblem ProblemOf(const std::string& pdf) const {
        const auto found = Read(pdf);
        EXPECT_EQ(found.list.size(), 1u);
        return found.list.empty() ? RangeProblem::kMissing : found.list.front().problem;
    }
};

std::string SignatureAt(int number, const std::string& range) {
    return std::to_string(number) + " 0 obj\n<< /Type /Sig /ByteRange [" + range + "] /Contents ";
}

std::string SignedField(const std::string& name, int value) {
    return "6 0 obj\n<< /Type /Annot /Subtype /Widget /FT /Sig /T (" + name + ") /V " +
           std::to_string(value) + " 0 R /Rect [0 0 9 9] /P 3 0 R >>\nendobj\n";
}

// Two files of the same signed bytes. In the one the value stands in object 7, in the other, with
// all that follows moved back by its length, in object 8; and another field begins at the place
// that the table tells.
class Prepared {
public:
    explicit Prepared(const std::string& decoy = "")
        : m_value("<3000" + std::string(400, '0') + ">") {
        const std::vector<std::string> bodies = {
            "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [6 0 R] /SigFlags 3 >> >>",
            "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
            "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Annots [6 0 R] >>"};
        m_front = "%PDF-1.7\n";
        for (int i = 0; i < 3; ++i) {
            Place(i + 1, m_front.size());
            m_front += std::to_string(i + 1) + " 0 obj\n" + bodies[std::size_t(i)] + "\nendobj\n";
        }
        Place(8, m_front.size());
        m_front += SignatureAt(8, "0 DDDDDDDD EEEEEEEE FFFFFFFF");
        m_between = decoy + kTail;
        const auto other = m_between.size();
        m_between += SignedField("other", 8);
        m_between += std::string(other + m_value.size() - m_between.size(), ' ');
        Place(6, m_front.size() + m_between.size());
        m_between += SignedField("shown", 7);
        Place(7, m_front.size() + m_between.size());
        m_between += SignatureAt(7, "0 AAAAAAAA BBBBBBBB CCCCCCCC");
        Finish();
    }

    std::string InSeven() const { return m_front + m_between + m_value + m_behind; }
    std::string InEight() const { return m_front + m_value + m_between + m_behind; }
    std::string SignedBytes() const { return m_front + m_between + m_behind; }

    // The file without the range of the other dictionary, for the proof that it is what matters.
    static std::string WithoutRange(std::string pdf, const std::string& object) {
        const auto at = pdf.find("/ByteRange", pdf.find("\n" + object + " 0 obj"));
        return pdf.replace(at, 10, "/Otherwise");
    }

private:
    static constexpr char kTail[] = " >>\nendobj\n";

    void Place(int number, std::size_t offset) {
        char line[48];
        std::snprintf(line, sizeof line, "%d 1\n%010zu 00000 n\r\n", number, offset);
        m_table += line;
    }

    void Finish() {
        const auto table = m_front.size() + m_between.size() + m_value.size() + sizeof kTail - 1;
        m_behind = kTail + ("xref\n0 1\n0000000000 65535 f\r\n" + m_table) +
                   "trailer\n<< /Size 60 /Root 1 0 R >>\nstartxref\n" + std::to_string(table) +
                   "\n%%EOF\n";
        const auto size = InSeven().size();
        const auto fill = [&](std::string& text, const std::string& letters, std::size_t gap) {
            const std::size_t numbers[] = {gap, gap + m_value.size(), size - gap - m_value.size()};
            for (std::size_t i = 0; i < 3; ++i) {
                text = Replaced(text, std::string(8, letters[i]), EightDigits(numbers[i]));
            }
        };
        fill(m_between, "ABC", m_front.size() + m_between.size());
        fill(m_front, "DEF", m_front.size());
    }

    std::string m_value;
    std::string m_front;
    std::string m_between;
    std::string m_behind;
    std::string m_table;
};

TEST_F(RangeBindingTest, AValueThatWouldFitIntoASecondDictionaryIsSoundInNeither) {
    const Prepared files;
    const auto shown = Read(files.InSeven());
    const auto moved = Read(files.InEight());
    ASSERT_EQ(shown.list.size(), 1u);
    ASSERT_EQ(moved.list.size(), 1u);
    EXPECT_EQ(shown.list[0].fieldName, "shown");
    EXPECT_EQ(moved.list[0].fieldName, "other");
    EXPECT_EQ(shown.list[0].problem, RangeProblem::kTwoGaps);
    EXPECT_EQ(moved.list[0].problem, RangeProblem::kTwoGaps);
    EXPECT_EQ(shown.list[0].end, 0u);
    EXPECT_TRUE(shown.list[0].contents.empty());
}

TEST_F(RangeBindingTest, WithoutTheSecondRangeEachOfTheTwoFilesWouldBeSound) {
    const Prepared files;
    const auto shown = Read(Prepared::WithoutRange(files.InSeven(), "8"));
    ASSERT_EQ(shown.list.size(), 1u);
    EXPECT_EQ(shown.list[0].problem, RangeProblem::kNone);
    EXPECT_EQ(SignedBy(shown.list[0]), Prepared::WithoutRange(files.SignedBytes(), "8"));
    const auto moved = Read(Prepared::WithoutRange(files.InEight(), "7"));
    ASSERT_EQ(moved.list.size(), 1u);
    EXPECT_EQ(moved.list[0].problem, RangeProblem::kNone);
    EXPECT_EQ(SignedBy(moved.list[0]), Prepared::WithoutRange(files.SignedBytes(), "7"));
}

TEST_F(RangeBindingTest, AStringThatStandsWhereTheValueWouldFitDoesNotExcuseTheSecondRange) {
    const Prepared files("<3000" + std::string(400, '0') + ">");
    EXPECT_EQ(ProblemOf(files.InSeven()), RangeProblem::kTwoGaps);
}

// Sealed, and a second range of as many bytes filled in, with its gap `shift` bytes further behind.
std::string WithSecond(std::string pdf, std::size_t shift = 1) {
    const auto gap = pdf.find(kValue) + shift;
    const auto length = sizeof kValue - 1;
    pdf = Replaced(pdf, "DDDDDDDD", EightDigits(gap));
    pdf = Replaced(pdf, "EEEEEEEE", EightDigits(gap + length));
    pdf = Replaced(pdf, "FFFFFFFF", EightDigits(pdf.size() - gap - length));
    return Sealed(pdf);
}

// The second one stands in an object of the file that nothing reaches.
std::string Beside(const std::string& text, std::size_t shift = 1) {
    return WithSecond(WithValue(SignatureWith(), {text}), shift);
}

TEST_F(RangeBindingTest, ASecondRangeIsFoundInEveryWayOfWritingIt) {
    for (const char* text : {
             "<< /ByteRange [0 DDDDDDDD EEEEEEEE FFFFFFFF] >>",
             "<</ByteRange[0 DDDDDDDD EEEEEEEE FFFFFFFF]>>",
             "<< /ByteRange\r\n\t[ 0\f\nDDDDDDDD  EEEEEEEE\rFFFFFFFF\n] >>",
             "<< /ByteRange % [1 2 3 4]\n[%%\r0 DDDDDDDD%x\nEEEEEEEE FFFFFFFF % ]\n] >>",
             "<< /#42yte#52ange [0 DDDDDDDD EEEEEEEE FFFFFFFF] >>",
             "<< /Byte#52#61nge [0 DDDDDDDD EEEEEEEE FFFFFFFF] >>",
             "[(/ByteRange [0 DDDDDDDD EEEEEEEE FFFFFFFF])]",
             "<< /X /ByteRange [0 DDDDDDDD EEEEEEEE FFFFFFFF] >>",
         }) {
        EXPECT_EQ(ProblemOf(Beside(text)), RangeProblem::kTwoGaps) << text;
    }
}

TEST_F(RangeBindingTest, WhatIsNoSecondRangeOfThatSizeDoesNoHarm) {
    for (const char* text : {
             "<< /ByteRanges [0 DDDDDDDD EEEEEEEE FFFFFFFF] >>",
             "<< /ByteRang [0 DDDDDDDD EEEEEEEE FFFFFFFF] >>",
             "<< /Byte#5zange [0 DDDDDDDD EEEEEEEE FFFFFFFF] >>",
             "<< /ByteRange [0 DDDDDDDD EEEEEEEE FFFFFFFF 1] >>",
             "<< /ByteRange [0 DDDDDDDD EEEEEEEE 1FFFFFFFF] >>",
             "<< /ByteRange 0 DDDDDDDD EEEEEEEE FFFFFFFF >>",
         }) {
        EXPECT_EQ(ProblemOf(Beside(text)), RangeProblem::kNone) << text;
    }
    // The very same range, once more.
    EXPECT_EQ(ProblemOf(Beside("<< /ByteRange [0 DDDDDDDD EEEEEEEE FFFFFFFF] >>", 0)),
              RangeProblem::kNone);
}

TEST_F(RangeBindingTest, ASecondRangeIsFoundWhereItsPartsMeetAcrossTheGap) {
    // Two strings around the value; without it a comment in an array.
    const std::string front = std::string("<< /Type /Sig ") + kRange;
    EXPECT_EQ(
        ProblemOf(WithSecond(WithValue(front + "/X (/ByteRange [0 DDDDDDDD EEEEEEEE %) /Contents " +
                                       kValue + "/Y (\nFFFFFFFF]) >>"))),
        RangeProblem::kTwoGaps);
    EXPECT_EQ(
        ProblemOf(WithSecond(WithValue(front + "/X (/ByteRange [0 DDDDDDDD EEEEEEEE %) /Contents " +
                                       kValue + "/Y (FFFFFFFF]) >>"))),
        RangeProblem::kNone);
}

TEST_F(RangeBindingTest, ASecondRangeIsFoundWhereverItStandsInALargeFile) {
    constexpr std::size_t kPart = 1024 * 1024;
    const std::string array = "/ByteRange [0 DDDDDDDD EEEEEEEE FFFFFFFF]";
    const auto start = WithValue(SignatureWith(), {"[("}).find("[(") + 2;
    for (const std::size_t at : {kPart - 60, kPart - 20, kPart - 1, kPart, 3 * kPart - 20}) {
        const std::string blanks(at - start, ' ');
        EXPECT_EQ(ProblemOf(Beside("[(" + blanks + array + ")]")), RangeProblem::kTwoGaps) << at;
    }
}

TEST_F(RangeBindingTest, RangesOfEarlierSignaturesStandInTheBytesOfLaterOnes) {
    std::string bytes = SimplePdf();
    for (int i = 0; i < 3; ++i) {
        const StampRequest request = RequestFor(bytes);
        Stamp(request);
        bytes = ReadFile(request.outputPath);
    }
    const auto found = Read(bytes);
    ASSERT_EQ(found.list.size(), 3u);
    for (const auto& signature : found.list) EXPECT_EQ(signature.problem, RangeProblem::kNone);
}

TEST_F(RangeBindingTest, ARangeThatIsNotAmongTheSignedBytesIsNotSound) {
    EXPECT_EQ(ProblemOf(Sealed(WithValue(SignatureWith()))), RangeProblem::kNone);
    const std::string far =
        "/ByteRange %" + std::string(300, '-') + "\n[0 AAAAAAAA BBBBBBBB CCCCCCCC] ";
    EXPECT_EQ(ProblemOf(Sealed(WithValue(SignatureWith(far)))), RangeProblem::kNotInSignedBytes);
    const std::string sealed =
        Sealed(WithValue(std::string("<< /Type /Sig /Contents ") + kValue + " " + kRange + " >>"));
    EXPECT_EQ(ProblemOf(sealed), RangeProblem::kNone);
    const auto last = sealed.find(']', sealed.find("/ByteRange")) - 8;
    std::string cut = sealed;
    cut.replace(last, 8, EightDigits(5));
    EXPECT_EQ(ProblemOf(cut), RangeProblem::kNotInSignedBytes);
}

TEST_F(RangeBindingTest, ARangeThatStandsInAnotherObjectIsMalformed) {
    const std::string array = "[0 AAAAAAAA BBBBBBBB CCCCCCCC]";
    EXPECT_EQ(ProblemOf(Sealed(WithValue(SignatureWith("/ByteRange 8 0 R "), {array}))),
              RangeProblem::kMalformed);
    const std::string pdf =
        Sealed(WithValue(SignatureWith("/ByteRange [0 AAAAAAAA BBBBBBBB 8 0 R] "), {"CCCCCCCC"}));
    EXPECT_EQ(ProblemOf(pdf), RangeProblem::kMalformed);
}

TEST_F(RangeBindingTest, AValueThatTwoFieldsShareIsSoundInNeither) {
    const std::string pdf =
        Sealed(SimplePdf("", "/AcroForm << /Fields [6 0 R 8 0 R] >>",
                         {FieldWith("7 0 R"), SignatureWith(), FieldWith("7 0 R")}));
    const auto found = Read(pdf);
    ASSERT_EQ(found.list.size(), 2u);
    EXPECT_EQ(found.list[0].problem, RangeProblem::kShared);
    EXPECT_EQ(found.list[1].problem, RangeProblem::kShared);
}

TEST_F(RangeBindingTest, AValueInTheFieldItselfHasThePlaceOfTheField) {
    EXPECT_EQ(ProblemOf(Sealed(
                  SimplePdf("", "/AcroForm << /Fields [6 0 R] >>", {FieldWith(SignatureWith())}))),
              RangeProblem::kNone);
}

TEST_F(RangeBindingTest, TwoHundredSignaturesAreReadAndNoMore) {
    const auto with = [](int count) {
        std::string fields;
        std::vector<std::string> bodies;
        for (int i = 0; i < count; ++i) {
            fields += std::to_string(6 + i) + " 0 R ";
            bodies.push_back(FieldWith("<< /Type /Sig >>"));
        }
        return SimplePdf("", "/AcroForm << /Fields [" + fields + "] >>", bodies);
    };
    EXPECT_EQ(Read(with(200)).list.size(), 200u);
    EXPECT_TRUE(Read(with(201), StampError::kDamaged).list.empty());
}

TEST_F(RangeBindingTest, AFileFullOfRangesIsRefused) {
    const auto with = [&](int count, const std::string& behindEach = "") {
        std::string text = "[(";
        for (int i = 0; i < count; ++i) text += "/ByteRange[0 DDDDDDDD 0 FFFFFFFF]" + behindEach;
        std::string pdf = WithValue(SignatureWith(), {text + ")]"});
        const auto signedSize = pdf.size() - (sizeof kValue - 1);
        for (auto at = pdf.find("DDDDDDDD"); at != std::string::npos;
             at = pdf.find("DDDDDDDD", at)) {
            pdf.replace(at, 8, EightDigits(0));
            pdf.replace(pdf.find("FFFFFFFF", at), 8, EightDigits(signedSize));
        }
        return Sealed(pdf);
    };
    EXPECT_EQ(ProblemOf(with(100)), RangeProblem::kTwoGaps);
    EXPECT_TRUE(Read(with(10'001), StampError::kDamaged).list.empty());
    // In several mebibytes, none of which holds too many.
    const std::string blanks(300, ' ');
    EXPECT_EQ(ProblemOf(with(9'999, blanks)), RangeProblem::kTwoGaps);
    EXPECT_TRUE(Read(with(10'001, blanks), StampError::kDamaged).list.empty());
}

// A file whose signature is written to a stream of objects, at the place in the decoded stream
// that the gap has in the file, where another string of the same digits stands.
std::string InObjectStream() {
    std::string pdf = "%PDF-1.7\n";
    std::vector<std::size_t> offsets(9);
    const auto add = [&](std::size_t number, const std::string& body) {
        offsets[number] = pdf.size();
        pdf += std::to_string(number) + " 0 obj\n" + body + "\nendobj\n";
    };
    add(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [6 0 R] >> >>");
    add(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>");
    add(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>");
    add(6, FieldWith("7 0 R"));
    pdf += std::string(200, '\n');
    add(4, SignatureWith());
    const auto gap = pdf.find(kValue);
    const std::string pairs = "7 0 ";
    std::string object = std::string("<< /Type /Sig /Reason (Other) ") + kRange + "/Contents ";
    object += std::string(gap - pairs.size() - object.size(), ' ') + kValue + " >>";
    add(5, "<< /Type /ObjStm /N 1 /First 4 /Length " + std::to_string(4 + object.size()) +
               " >>\nstream\n" + pairs + object + "\nendstream");
    offsets[8] = pdf.size();
    const auto number = [](std::size_t value) {
        return std::string{static_cast<char>(value >> 8), static_cast<char>(value)};
    };
    std::string entries(5, '\0');
    for (std::size_t i = 1; i <= 8; ++i) {
        entries += i == 7 ? "\2" + number(5) + number(0) : "\1" + number(offsets[i]) + number(0);
    }
    pdf += "8 0 obj\n<< /Type /XRef /Size 9 /Root 1 0 R /W [1 2 2] /Length " +
           std::to_string(entries.size()) + " >>\nstream\n" + entries +
           "\nendstream\nendobj\nstartxref\n" + std::to_string(offsets[8]) + "\n%%EOF\n";
    for (int i = 0; i < 2; ++i) pdf = WithNumbers(pdf, gap, sizeof kValue - 1);
    return pdf;
}

TEST_F(RangeBindingTest, ASignatureInAStreamOfObjectsHasNoPlaceInTheFile) {
    const auto found = Read(InObjectStream());
    ASSERT_EQ(found.list.size(), 1u);
    EXPECT_EQ(found.list[0].reason, "Other");
    EXPECT_EQ(found.list[0].problem, RangeProblem::kGapNotContents);
    // The same file, with the dictionary that does stand there, is sound.
    EXPECT_EQ(ProblemOf(Replaced(InObjectStream(), "/V 7 0 R", "/V 4 0 R")), RangeProblem::kNone);
}

}  // namespace

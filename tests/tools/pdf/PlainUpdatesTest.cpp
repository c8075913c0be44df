// Updates behind a signature in which readers may find other objects than were compared.
#include "pdf/PlainUpdates.h"

#include "pdf/PdfSignatures.h"
#include "tools/pdf/PdfFixture.h"

namespace {

std::string Place(std::size_t place, const std::string& end = " 00000 n\r\n") {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%010zu", place);
    return digits + end;
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
    const auto at = text.rfind(what);
    EXPECT_NE(at, std::string::npos) << what;
    return at == std::string::npos ? text : text.replace(at, what.size(), by);
}

std::string BigEndian(std::size_t value, int count) {
    std::string bytes;
    for (int i = count - 1; i >= 0; --i) bytes.push_back(static_cast<char>(value >> (8 * i)));
    return bytes;
}

// Bytes that are appended to a document, with its last section's place.
class CAppended {
public:
    explicit CAppended(const std::string& pdf)
        : bytes(pdf), previous(std::stoul(pdf.substr(pdf.rfind("startxref\n") + 10))) {}

    std::size_t Object(int number, const std::string& body) {
        const std::size_t place = bytes.size();
        bytes += std::to_string(number) + " 0 obj\n" + body + "\nendobj\n";
        return place;
    }

    // `rows` are subsections as they stand in the file.
    std::size_t Section(const std::string& rows, const std::string& trailer = "/Size 90") {
        const std::size_t place = bytes.size();
        bytes += "xref\n" + rows + "trailer\n<< " + trailer + " /Root 1 0 R /Prev " +
                 std::to_string(previous) + " >>\n";
        previous = place;
        return place;
    }

    // Object 60. Rows of 1 + 4 + 1 bytes.
    std::size_t StreamSection(const std::string& index, const std::string& rows,
                              const std::string& widths = "1 4 1") {
        const std::size_t place = bytes.size();
        Object(60, "<< /Type /XRef /Size 90 /Root 1 0 R /W [" + widths + "] /Index [" + index +
                       "] /Prev " + std::to_string(previous) + " /Length " +
                       std::to_string(rows.size()) + " >>\nstream\n" + rows + "\nendstream");
        previous = place;
        return place;
    }

    std::string Ended() const {
        return bytes + "startxref\n" + std::to_string(previous) + "\n%%EOF\n";
    }

    std::string bytes;
    std::size_t previous;
};

std::string Row(int type, std::size_t place, int last = 0) {
    return BigEndian(static_cast<std::size_t>(type), 1) + BigEndian(place, 4) +
           BigEndian(static_cast<std::size_t>(last), 1);
}

class PlainUpdatesTest : public PdfFixture {
protected:
    // Object 4 is the page's content.
    std::string Stamped(const std::string& input = SimplePdf(), int count = 1) const {
        std::string pdf = input;
        for (int i = 0; i < count; ++i) {
            const auto request = RequestFor(pdf);
            Stamp(request);
            pdf = ReadFile(request.outputPath);
        }
        return pdf;
    }

    // An update with a new object 50.
    std::string Honest() const {
        CAppended update(Stamped());
        const auto place = update.Object(50, "(new)");
        update.Section("50 1\n" + Place(place));
        return update.Ended();
    }

    // What stands behind the first signature.
    bool IsCompared(const std::string& pdf) const {
        const auto found = Read(pdf);
        if (found.list.empty()) {
            ADD_FAILURE() << "no signature was found";
            return false;
        }
        EXPECT_GT(found.list[0].after.bytes, 0u);
        return found.list[0].after.compared;
    }
};

constexpr char kOther[] = "<< /Length 5 >>\nstream\nBT ET\nendstream";

TEST_F(PlainUpdatesTest, AnHonestUpdateIsCompared) {
    EXPECT_TRUE(IsCompared(Honest()));
    EXPECT_TRUE(IsCompared(Honest() + "\n\n"));
    EXPECT_TRUE(IsCompared(Replaced(Honest(), "startxref", "%Made by a program\nstartxref")));
    EXPECT_TRUE(IsCompared(Replaced(Honest(), "trailer\n<<", "trailer<<")));
    EXPECT_TRUE(IsCompared(Replaced(Honest(), "00000 n\r\n", "00000 n \n")));
}

TEST_F(PlainUpdatesTest, SignaturesInARowRewriteTheSameObjects) {
    WriteFile(Path("plain.pdf"), SimplePdf());
    RunCommand({"qpdf", "--object-streams=generate", Path("plain.pdf"), Path("packed.pdf")});
    RunCommand({"qpdf", "--linearize", Path("plain.pdf"), Path("linear.pdf")});
    for (const char* name : {"plain.pdf", "packed.pdf", "linear.pdf"}) {
        const auto found = Read(Stamped(ReadFile(Path(name)), 4));
        ASSERT_EQ(found.list.size(), 4u);
        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(found.list[i].after.compared) << name << i;
            EXPECT_TRUE(found.list[i].after.altered.empty()) << name << i;
        }
    }
}

TEST_F(PlainUpdatesTest, ADocumentThatDoesNotBeginWithItsHeaderIsComparedToo) {
    EXPECT_TRUE(IsCompared(Stamped("Some bytes\n" + SimplePdf(), 2)));
}

TEST_F(PlainUpdatesTest, AnUpdateMayTellOfObjectsThatItLeavesAlone) {
    const std::string pdf = Stamped();
    CAppended update(pdf);
    const auto place = update.Object(50, "(new)");
    update.Section("0 1\n0000000000 65535 f\r\n5 1\n" + Place(pdf.find("5 0 obj")) + "50 1\n" +
                   Place(place));
    EXPECT_TRUE(IsCompared(update.Ended()));
}

TEST_F(PlainUpdatesTest, SeveralUpdatesAreFollowedToTheSignature) {
    CAppended update(Honest());
    const auto place = update.Object(50, "(newer)");
    update.Section("50 1\n" + Place(place));
    EXPECT_TRUE(IsCompared(update.Ended()));
}

// Which of two tables is read depends on the reader: one of them has another object 4.
TEST_F(PlainUpdatesTest, ATailThatReadersTakeInDifferentWays) {
    const std::string pdf = Stamped();
    CAppended update(pdf);
    const auto added = update.Object(50, "(new)");
    const auto other = update.Object(4, kOther);
    CAppended hidden = update;
    const auto evil = hidden.Section("4 1\n" + Place(other));
    hidden.previous = update.previous;
    hidden.Section("50 1\n" + Place(added));
    const std::string number = std::to_string(evil);
    for (const std::string& tail :
         {"startxref" + number, "startxref\n" + number + ".", "startxref\n" + number + "x"}) {
        EXPECT_FALSE(IsCompared(hidden.Ended() + tail + "\n%%EOF\n")) << tail;
    }
    EXPECT_FALSE(IsCompared(Replaced(Honest(), "startxref\n", "startxref\n%x\n")));
    EXPECT_FALSE(IsCompared(Replaced(Honest(), "\n%%EOF", "")));
}

TEST_F(PlainUpdatesTest, EntriesOfAnotherLengthOrForm) {
    for (const char* entry : {" 00000 n x\n", " 00000 n\n", "  00000 n\n", " 0000 n \r\n",
                              " 00000 n  \n", " 00000  n\n"}) {
        CAppended update(Stamped());
        const auto place = update.Object(50, "(new)");
        update.Section("50 1\n" + Place(place, entry));
        const std::string pdf = update.Ended();
        WriteFile(Path("read.pdf"), pdf);
        PdfSignatures found;
        std::string message;
        if (ReadPdfSignatures(Path("read.pdf"), found, message) != StampError::kNone) continue;
        ASSERT_EQ(found.list.size(), 1u);
        EXPECT_FALSE(found.list[0].after.compared) << entry;
    }
}

TEST_F(PlainUpdatesTest, ATrailerWithAKeyTwice) {
    const std::string pdf = Honest();
    EXPECT_FALSE(IsCompared(Replaced(pdf, "/Prev ", "/Prev 17 /Prev ")));
    EXPECT_FALSE(IsCompared(Replaced(pdf, "/Prev ", "/Pr#65v 17 /Prev ")));
    EXPECT_FALSE(IsCompared(Replaced(pdf, "/Root 1 0 R", "/Root 1 0 R /Root 1 0 R")));
}

TEST_F(PlainUpdatesTest, ASizeThatHidesObjectsOrThatNobodyCanHold) {
    const std::string pdf = Honest();
    EXPECT_FALSE(IsCompared(Replaced(pdf, "/Size 90", "/Size 50")));
    EXPECT_TRUE(IsCompared(Replaced(pdf, "/Size 90", "/Size 51")));
    EXPECT_FALSE(IsCompared(Replaced(pdf, "/Size 90", "/Size 99999999999")));
    EXPECT_FALSE(IsCompared(Replaced(pdf, "/Size 90", "/Size +90")));
    // Objects of the signed part are hidden too.
    CAppended update(Stamped());
    const auto place = update.Object(4, kOther);
    update.Section("4 1\n" + Place(place), "/Size 5");
    EXPECT_FALSE(IsCompared(update.Ended()));
}

TEST_F(PlainUpdatesTest, TwoEntriesForOneObject) {
    const std::string pdf = Stamped();
    CAppended update(pdf);
    const auto place = update.Object(4, kOther);
    update.Section("4 1\n" + Place(pdf.find("4 0 obj")) + "4 1\n" + Place(place));
    EXPECT_FALSE(IsCompared(update.Ended()));
}

TEST_F(PlainUpdatesTest, AnEntryThatPointsBesideItsObject) {
    for (const int beside : {-1, 1, 3}) {
        CAppended update(Stamped());
        const auto place = update.Object(150, "(new)");
        update.Section("50 1\n" + Place(place + 1) + "51 1\n" +
                       Place(place + static_cast<std::size_t>(beside)));
        EXPECT_FALSE(IsCompared(update.Ended())) << beside;
    }
}

TEST_F(PlainUpdatesTest, AChainThatDoesNotEndAtTheSignedSection) {
    const std::string stamped = Stamped();
    CAppended update(stamped);
    const auto place = update.Object(50, "(new)");
    // The section in front of the stamp's: the stamp's own objects are told here again.
    const std::string own = stamped.substr(update.previous);
    const auto rows = own.substr(5, own.find("trailer") - 5);
    const auto last = stamped.rfind("/Prev ") + 6;
    update.previous = std::stoul(stamped.substr(last));
    update.Section(rows + "50 1\n" + Place(place));
    EXPECT_FALSE(IsCompared(update.Ended()));
}

TEST_F(PlainUpdatesTest, AHybridUpdate) {
    CAppended update(Stamped());
    const auto place = update.Object(50, "(new)");
    const std::size_t previous = update.previous;
    const auto stream = update.StreamSection("50 1", Row(1, place));
    update.previous = previous;
    update.Section("50 1\n" + Place(place), "/Size 90 /XRefStm " + std::to_string(stream));
    EXPECT_FALSE(IsCompared(update.Ended()));
}

TEST_F(PlainUpdatesTest, AnObjectThatNoSectionNames) {
    CAppended update(Stamped());
    update.Object(4, kOther);
    const auto place = update.Object(50, "(new)");
    update.Section("50 1\n" + Place(place));
    EXPECT_FALSE(IsCompared(update.Ended()));
    EXPECT_FALSE(IsCompared(Honest() + "4 0 obj\nnull\nendobj\n"));
    EXPECT_FALSE(IsCompared(Stamped() + "4 0 obj\nnull\nendobj\n"));
    EXPECT_FALSE(IsCompared(Stamped() + "4\r0%\nobj\nnull\nendobj\n"));
    EXPECT_FALSE(IsCompared(Stamped() + "4 %x\n0 obj\nnull\nendobj\n"));
    EXPECT_TRUE(IsCompared(Stamped() + "The 4 objects\n"));
}

TEST_F(PlainUpdatesTest, ObjectsThatLieInOneAnother) {
    CAppended update(Stamped());
    std::string rows;
    for (int number = 50; number < 80; ++number) {
        rows += std::to_string(number) + " 1\n" + Place(update.bytes.size());
        update.bytes += std::to_string(number) + " 0 obj ( ";
    }
    update.bytes += std::string(30, ')') + "\nendobj\n";
    update.Section(rows);
    EXPECT_FALSE(IsCompared(update.Ended()));
}

TEST_F(PlainUpdatesTest, SectionsThatLieInOneAnother) {
    CAppended update(Stamped());
    const auto trailer = [](std::size_t previous) {
        return "xref\n0 0\ntrailer\n<< /Size 90 /Root 1 0 R /Prev " + std::to_string(previous);
    };
    const std::size_t outer = update.bytes.size();
    update.bytes += trailer(update.previous) + " /ID (\n";
    update.previous = update.bytes.size();
    update.bytes += trailer(outer) + " >>\n) >>\n";
    EXPECT_FALSE(IsCompared(update.Ended()));
}

TEST_F(PlainUpdatesTest, ATrailerThatBelongsToNoSection) {
    EXPECT_FALSE(IsCompared(Honest() + "trailer\n<< /Root 4 0 R >>\n"));
    EXPECT_FALSE(IsCompared(Honest() + "trailer%x\n<< /Root 4 0 R >>\n"));
    EXPECT_TRUE(IsCompared(Honest() + "a trailer of a film\n"));
}

TEST_F(PlainUpdatesTest, AnObjectThatAnEarlierUpdateLeftUnnamed) {
    CAppended update(Stamped());
    const auto stray = update.Object(4, kOther);
    const auto place = update.Object(50, "(new)");
    update.Section("50 1\n" + Place(place));
    CAppended later(update.Ended());
    later.Section("4 1\n" + Place(stray));
    EXPECT_FALSE(IsCompared(later.Ended()));
}

TEST_F(PlainUpdatesTest, ASectionThatIsAStreamIsReadToo) {
    CAppended update(Stamped());
    const auto place = update.Object(50, "(new)");
    const CAppended honest = update;
    update.StreamSection("50 1 60 1", Row(1, place) + Row(1, update.bytes.size()));
    EXPECT_TRUE(IsCompared(update.Ended()));
    update = honest;
    update.StreamSection("50 1", Row(1, place));
    EXPECT_TRUE(IsCompared(update.Ended()));
    const std::string sound = update.Ended();
    EXPECT_FALSE(IsCompared(Replaced(sound, "/Index ", "/Index [4 1] /Index ")));
    update = honest;
    update.StreamSection("50 1", Row(1, place) + Row(1, place));
    EXPECT_FALSE(IsCompared(update.Ended())) << "more data than the index tells of";
    update = honest;
    update.StreamSection("50 1 50 1", Row(1, place) + Row(1, place));
    EXPECT_FALSE(IsCompared(update.Ended())) << "one number twice";
    update = honest;
    update.StreamSection("90 1", Row(1, place));
    EXPECT_FALSE(IsCompared(update.Ended())) << "a number beyond /Size";
    update = honest;
    update.StreamSection("50 1", Row(1, place) + "xx");
    EXPECT_FALSE(IsCompared(update.Ended())) << "half a row";
}

// Object 51 is a stream that holds `numbers`, and the section's rows tell of 50 in it.
std::string WithObjectStream(const std::string& pdf, const std::vector<int>& numbers, int index) {
    CAppended update(pdf);
    std::string head;
    std::string data;
    for (const int number : numbers) {
        head += std::to_string(number) + " " + std::to_string(data.size()) + " ";
        data += "(x) ";
    }
    const auto place =
        update.Object(51, "<< /Type /ObjStm /N " + std::to_string(numbers.size()) + " /First " +
                              std::to_string(head.size()) + " /Length " +
                              std::to_string(head.size() + data.size()) + " >>\nstream\n" + head +
                              data + "\nendstream");
    update.StreamSection("50 2", Row(2, 51, index) + Row(1, place));
    return update.Ended();
}

TEST_F(PlainUpdatesTest, AStreamOfObjectsHoldsWhatItsSectionNames) {
    const std::string pdf = Stamped();
    EXPECT_TRUE(IsCompared(WithObjectStream(pdf, {50}, 0)));
    EXPECT_FALSE(IsCompared(WithObjectStream(pdf, {50, 4}, 0)));
    EXPECT_FALSE(IsCompared(WithObjectStream(pdf, {50, 50}, 0)));
    EXPECT_FALSE(IsCompared(WithObjectStream(pdf, {50}, 1)));
    EXPECT_FALSE(IsCompared(WithObjectStream(pdf, {4}, 0)));
}

TEST_F(PlainUpdatesTest, AStreamThatPosesAsASection) {
    CAppended update(Stamped());
    const auto place = update.Object(
        50, "<< /Type /XR#65f /Root 4 0 R /W [1 4 1] /Size 1 /Length 0 >>\nstream\n\nendstream");
    update.Section("50 1\n" + Place(place));
    EXPECT_FALSE(IsCompared(update.Ended()));
}

// Its first object can be made to tell of any length.
const std::string kLinearized =
    PdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
           "<< /Type /Pages /Kids [3 0 R] /Count 1 /MediaBox [0 0 595 842] >>",
           "<< /Type /Page /Parent 2 0 R >>"},
          "", "%PDF-1.7\n9 0 obj\n<< /Linearized 1 /L 00000000 >>\nendobj\n");

TEST_F(PlainUpdatesTest, AFileThatIsLinearizedWithItsUpdateIsReadFromItsStart) {
    CAppended update(Stamped(kLinearized));
    const auto place = update.Object(50, "(new)");
    update.Section("50 1\n" + Place(place));
    const std::string pdf = update.Ended();
    EXPECT_TRUE(IsCompared(pdf));
    const std::string length = std::to_string(pdf.size());
    EXPECT_FALSE(IsCompared(
        Replaced(pdf, "/L 00000000", "/L " + std::string(8 - length.size(), '0') + length)));
}

}  // namespace

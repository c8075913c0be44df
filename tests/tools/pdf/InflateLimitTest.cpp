// What compressed streams may become, and that those that writers make are decoded as ever.
#include "pdf/InflateLimit.h"

#include <qpdf/Pl_Buffer.hh>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/QPDF.hh>

#include "pdf/PdfSignatures.h"
#include "tools/pdf/PdfFixture.h"

namespace {

constexpr std::size_t kMebibyte = 1024 * 1024;

std::string Deflated(const std::string& data) {
    Pl_Buffer buffer("buffer");
    Pl_Flate deflate("deflate", &buffer, Pl_Flate::a_deflate);
    deflate.write(reinterpret_cast<const unsigned char*>(data.data()), data.size());
    deflate.finish();
    const auto bytes = buffer.getBufferSharedPointer();
    return {reinterpret_cast<const char*>(bytes->getBuffer()), bytes->getSize()};
}

// The decoded stream, or what qpdf says of it.
std::string Decoded(const std::string& data, const std::string& dictionary) {
    QPDF pdf;
    pdf.emptyPDF();
    pdf.setSuppressWarnings(true);
    auto stream = QPDFObjectHandle::newStream(&pdf, data);
    stream.replaceDict(QPDFObjectHandle::parse(dictionary));
    try {
        const auto bytes = stream.getStreamData(qpdf_dl_specialized);
        return {reinterpret_cast<const char*>(bytes->getBuffer()), bytes->getSize()};
    } catch (const std::exception&) {
        return "refused";
    }
}

// A PDF whose form is in a stream of objects with that stream's bytes and filters.
std::string WithObjects(const std::string& data, const std::string& filter) {
    std::string pdf = "%PDF-1.7\n2 0 obj\n<< /Type /ObjStm /N 1 /First 4 /Filter " + filter +
                      " /Length " + std::to_string(data.size()) + " >>\nstream\n" + data +
                      "\nendstream\nendobj\n";
    const std::size_t xref = pdf.size();
    const std::string entries("\2\0\0\2\0\0\1\0\0\11\0\0", 12);
    return pdf +
           "3 0 obj\n<< /Type /XRef /Size 4 /Root 1 0 R /W [1 3 2] /Index [1 2] /Length 12 "
           ">>\nstream\n" +
           entries + "\nendstream\nendobj\nstartxref\n" + std::to_string(xref) + "\n%%EOF\n";
}

// A page beside which a stream of objects stands that becomes `size` bytes. Nothing refers to the
// object in it: it is decoded where a revision's objects are compared, and not to stamp the page.
std::string WithPacked(std::size_t size) {
    const std::string packed = Deflated("4 0 null" + std::string(size - 8, ' '));
    const std::vector<std::string> bodies = {
        "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] >>", "",
        "<< /Type /ObjStm /N 1 /First 4 /Filter /FlateDecode /Length " +
            std::to_string(packed.size()) + " >>\nstream\n" + packed + "\nendstream"};
    std::string pdf = "%PDF-1.7\n";
    std::string entries("\0\0\0\0\0", 5);
    const auto entry = [&](char type, std::size_t place) {
        entries += {type, static_cast<char>(place >> 16), static_cast<char>(place >> 8),
                    static_cast<char>(place), '\0'};
    };
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        if (bodies[i].empty()) {
            entry(2, bodies.size());
            continue;
        }
        entry(1, pdf.size());
        pdf += std::to_string(i + 1) + " 0 obj\n" + bodies[i] + "\nendobj\n";
    }
    const std::size_t xref = pdf.size();
    entry(1, xref);
    return pdf + "6 0 obj\n<< /Type /XRef /Size 7 /Root 1 0 R /W [1 3 1] /Length " +
           std::to_string(entries.size()) + " >>\nstream\n" + entries +
           "\nendstream\nendobj\nstartxref\n" + std::to_string(xref) + "\n%%EOF\n";
}

class InflateLimitTest : public PdfFixture {
protected:
    // The signatures of `pdf` stamped that often.
    std::vector<PdfSignature> Stamped(std::string pdf, int times) {
        for (int i = 0; i < times; ++i) {
            const StampRequest request = RequestFor(pdf);
            Stamp(request);
            pdf = ReadFile(request.outputPath);
        }
        EXPECT_LT(pdf.size(), kMebibyte / 2) << "more is allowed from there on";
        EXPECT_EQ(ErrorOf(pdf), StampError::kNone);
        PdfSignatures found;
        std::string message;
        EXPECT_EQ(ReadPdfSignatures(Path("read.pdf"), found, message), StampError::kNone)
            << message;
        return found.list;
    }
    StampError ErrorOf(const std::string& pdf) const {
        WriteFile(Path("read.pdf"), pdf);
        PdfSignatures found;
        std::string message;
        return ReadPdfSignatures(Path("read.pdf"), found, message);
    }
};

constexpr char kFlate[] = "<< /Filter /FlateDecode >>";

TEST_F(InflateLimitTest, AStreamMayBecomeWhatIsAllowedAndNotAByteMore) {
    LimitInflation(0);
    EXPECT_EQ(Decoded(Deflated(std::string(16 * kMebibyte, 'x')), kFlate).size(), 16 * kMebibyte);
    EXPECT_EQ(Decoded(Deflated("x"), kFlate), "refused");
    LimitInflation(0);
    EXPECT_EQ(Decoded(Deflated(std::string(16 * kMebibyte + 1, 'x')), kFlate), "refused");
}

TEST_F(InflateLimitTest, ALargerFileMayHoldMore) {
    const std::string data = Deflated(std::string(17 * kMebibyte, 'x'));
    LimitInflation(kMebibyte);
    EXPECT_EQ(Decoded(data, kFlate).size(), 17 * kMebibyte);
    LimitInflation(kMebibyte / 2);
    EXPECT_EQ(Decoded(data, kFlate), "refused");
}

TEST_F(InflateLimitTest, WhatStandsBetweenTwoFiltersCountsToo) {
    const std::string once = Deflated(std::string(17 * kMebibyte, 'x'));
    LimitInflation(0);
    EXPECT_EQ(Decoded(Deflated(once), "<< /Filter [/FlateDecode /FlateDecode] >>"), "refused");
}

TEST_F(InflateLimitTest, EveryFilterOfPngIsUndone) {
    LimitInflation(0);
    const std::string rows(
        "\0\1\2\3"
        "\1\1\1\1"
        "\2\1\1\1"
        "\3\1\1\1"
        "\4\1\1\1",
        20);
    EXPECT_EQ(Decoded(Deflated(rows),
                      "<< /Filter /FlateDecode /DecodeParms << /Predictor 12 /Columns 3 >> >>"),
              std::string("\1\2\3"
                          "\1\2\3"
                          "\2\3\4"
                          "\2\3\4"
                          "\3\4\5",
                          15));
}

TEST_F(InflateLimitTest, FiltersThatNoWriterUsesThereAreRefused) {
    LimitInflation(0);
    EXPECT_EQ(Decoded("\x80\x0B\x60\x50\x22\x0C\x0C\x85\x01", "<< /Filter /LZWDecode >>"),
              "refused");
    EXPECT_EQ(Decoded("\x80", "<< /Filter /RunLengthDecode >>"), "refused");
    for (const char* parameters :
         {"/Predictor 2", "/Predictor 12 /Colors 3", "/Predictor 12 /Columns 0",
          "/Predictor 12 /Columns 9999999", "/Predictor 12 /BitsPerComponent 1", "/Predictor /x"}) {
        EXPECT_EQ(Decoded(Deflated("x"), std::string("<< /Filter /FlateDecode /DecodeParms << ") +
                                             parameters + " >> >>"),
                  "refused")
            << parameters;
    }
    EXPECT_EQ(Decoded("3132>", "<< /Filter /ASCIIHexDecode >>"), "12");
}

TEST_F(InflateLimitTest, ASmallPdfThatBecomesALargeOneIsCalledDamaged) {
    const std::string sound = "1 0 << /Type /Catalog /Pages << /Kids [] /Count 0 >> >>";
    EXPECT_EQ(ErrorOf(WithObjects(Deflated(sound), "/FlateDecode")), StampError::kNone);
    EXPECT_EQ(ErrorOf(WithObjects(Deflated(Deflated(sound)), "[/FlateDecode /FlateDecode]")),
              StampError::kNone);
    const std::string bomb = Deflated(Deflated(sound + std::string(64 * kMebibyte, ' ')));
    EXPECT_LT(bomb.size(), 2'000u);
    EXPECT_EQ(ErrorOf(WithObjects(bomb, "[/FlateDecode /FlateDecode]")), StampError::kDamaged);
}

TEST_F(InflateLimitTest, EachRevisionMayBecomeAsMuchAsTheDocument) {
    // The two that are compared become 20 MiB.
    const auto signatures = Stamped(WithPacked(10 * kMebibyte), 3);
    ASSERT_EQ(signatures.size(), 3u);
    for (const auto& signature : {signatures[0], signatures[1]}) {
        EXPECT_TRUE(signature.after.compared);
        EXPECT_TRUE(signature.after.altered.empty());
    }
}

TEST_F(InflateLimitTest, ARevisionThatBecomesMoreIsNotCompared) {
    const auto signatures = Stamped(WithPacked(16 * kMebibyte + 1), 2);
    ASSERT_EQ(signatures.size(), 2u);
    EXPECT_EQ(signatures[0].problem, RangeProblem::kNone);
    EXPECT_GT(signatures[0].after.bytes, 0u);
    EXPECT_FALSE(signatures[0].after.compared);
}

}  // namespace

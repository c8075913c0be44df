#include "tools/pdf/PdfFixture.h"

#include <openssl/cms.h>
#include <openssl/evp.h>
#include <openssl/x509.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "components/drawing/Picture.h"
#include "support/Program.h"

namespace {

struct OpenSslFree {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(BIO* bio) const { BIO_free(bio); }
    void operator()(CMS_ContentInfo* cms) const { CMS_ContentInfo_free(cms); }
};
template <typename T>
using Owned = std::unique_ptr<T, OpenSslFree>;

struct Signer {
    Owned<EVP_PKEY> key;
    Owned<X509> certificate;
};

const Signer& TestSigner() {
    static const Signer signer = [] {
        Signer made{Owned<EVP_PKEY>(EVP_RSA_gen(2048)), Owned<X509>(X509_new())};
        X509* const certificate = made.certificate.get();
        X509_set_version(certificate, 2);
        ASN1_INTEGER_set(X509_get_serialNumber(certificate), 17);
        X509_gmtime_adj(X509_getm_notBefore(certificate), -86'400);
        X509_gmtime_adj(X509_getm_notAfter(certificate), 86'400);
        X509_set_pubkey(certificate, made.key.get());
        X509_NAME* const name = X509_get_subject_name(certificate);
        X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                                   reinterpret_cast<const unsigned char*>("Stamp Test"), -1, -1, 0);
        X509_set_issuer_name(certificate, name);
        X509_sign(certificate, made.key.get(), EVP_sha256());
        return made;
    }();
    return signer;
}

// A red disc on nothing, with a soft edge.
std::string SealPng() {
    constexpr int kSide = 96;
    Picture picture{kSide, kSide, {}};
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            const int distance =
                (2 * x - kSide) * (2 * x - kSide) + (2 * y - kSide) * (2 * y - kSide);
            const int alpha = distance < 7'000 ? 255 : distance < 9'000 ? 128 : 0;
            picture.rgba.insert(picture.rgba.end(), {215, 0, 15, static_cast<std::uint8_t>(alpha)});
        }
    }
    return EncodePng(picture);
}

}  // namespace

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

void WriteFile(const std::string& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string RunCommand(const std::vector<std::string>& words, int* status) {
    std::vector<std::string> arguments = words;
    arguments.front() = "/usr/bin/" + words.front();
    ProgramOptions options;
    options.environment = {{"LC_ALL", "C.UTF-8"}};
    const ProgramOutcome outcome = RunProgram(arguments, options);
    if (status) *status = outcome.exitCode;
    return outcome.out + outcome.error;
}

std::string PdfOf(const std::vector<std::string>& bodies, const std::string& trailer,
                  const std::string& header) {
    std::string pdf = header;
    std::string table = "0000000000 65535 f\r\n";
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        char line[32];
        std::snprintf(line, sizeof line, "%010zu 00000 n\r\n", pdf.size());
        table += line;
        pdf += std::to_string(i + 1) + " 0 obj\n" + bodies[i] + "\nendobj\n";
    }
    const std::string size = std::to_string(bodies.size() + 1);
    const std::string xref = std::to_string(pdf.size());
    return pdf + "xref\n0 " + size + "\n" + table + "trailer\n<< /Size " + size + " /Root 1 0 R " +
           trailer + " >>\nstartxref\n" + xref + "\n%%EOF\n";
}

std::string SimplePdf(const std::string& page, const std::string& catalog,
                      const std::vector<std::string>& more) {
    const std::string content = "BT /F1 24 Tf 72 700 Td (A contract) Tj ET";
    std::vector<std::string> bodies = {
        "<< /Type /Catalog /Pages 2 0 R " + catalog + " >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 /MediaBox [0 0 595 842] >>",
        "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources << /Font << /F1 5 0 R >> >> " +
            page + " >>",
        "<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content + "\nendstream",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"};
    bodies.insert(bodies.end(), more.begin(), more.end());
    return PdfOf(bodies);
}

int SignByCms(const SignedRanges& ranges, std::string& contents) {
    const Owned<BIO> data(ranges.path.empty()
                              ? BIO_new_mem_buf(ranges.data.data(), int(ranges.data.size()))
                              : BIO_new_file(ranges.path.c_str(), "rb"));
    const Owned<CMS_ContentInfo> cms(CMS_sign(TestSigner().certificate.get(),
                                              TestSigner().key.get(), nullptr, data.get(),
                                              CMS_DETACHED | CMS_BINARY));
    unsigned char* der = nullptr;
    const int size = cms ? i2d_CMS_ContentInfo(cms.get(), &der) : 0;
    if (size <= 0) return -1;
    contents.assign(reinterpret_cast<char*>(der), static_cast<std::size_t>(size));
    OPENSSL_free(der);
    return 0;
}

StampRequest PdfFixture::RequestFor(std::string_view bytes) const {
    WriteFile(Path("in.pdf"), bytes);
    return RequestForFile(Path("in.pdf"));
}

StampRequest PdfFixture::RequestForFile(const std::string& path) const {
    static const std::string seal = SealPng();
    StampRequest request;
    request.inputPath = path;
    request.outputPath = Path("out.pdf");
    request.xMm = 120;
    request.yMm = 30;
    request.widthMm = request.heightMm = 42;
    request.picture = seal;
    request.contentsSize = 4'096;
    return request;
}

StampRequest PdfFixture::RequestForLarge(std::size_t size) const {
    std::string head = "%PDF-1.7\n6 0 obj\n<< /Length " + std::to_string(size) + " >>\nstream\n";
    const std::size_t body = head.size() + size;
    std::string tail = "\nendstream\nendobj\n";
    std::string table = "xref\n0 7\n0000000000 65535 f\r\n";
    const std::vector<std::string> bodies = {
        "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] >>", "null", "null"};
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        char line[32];
        std::snprintf(line, sizeof line, "%010zu 00000 n\r\n", body + tail.size());
        table += line;
        tail += std::to_string(i + 1) + " 0 obj\n" + bodies[i] + "\nendobj\n";
    }
    table += "0000000009 00000 n\r\n";
    const std::string xref = std::to_string(body + tail.size());
    tail += table + "trailer\n<< /Size 7 /Root 1 0 R >>\nstartxref\n" + xref + "\n%%EOF\n";
    WriteFile(Path("in.pdf"), head);
    std::filesystem::resize_file(Path("in.pdf"), body);
    std::ofstream(Path("in.pdf"), std::ios::binary | std::ios::app) << tail;
    return RequestForFile(Path("in.pdf"));
}

StampResult PdfFixture::Stamp(const StampRequest& request) const {
    const StampResult result = StampPdf(request, SignByCms);
    EXPECT_EQ(result.error, StampError::kNone) << result.message;
    return result;
}

PdfSignatures PdfFixture::Read(std::string_view bytes) const {
    WriteFile(Path("read.pdf"), bytes);
    PdfSignatures found;
    std::string message;
    EXPECT_EQ(ReadPdfSignatures(Path("read.pdf"), found, message), StampError::kNone) << message;
    return found;
}

std::string PdfFixture::PdfSig(const std::string& path) const {
    return RunCommand({"pdfsig", path});
}

void PdfFixture::ExpectSound(const StampRequest& request) const {
    const std::string input = ReadFile(request.inputPath);
    const std::string output = ReadFile(request.outputPath);
    ASSERT_GT(output.size(), input.size());
    EXPECT_EQ(output.compare(0, input.size(), input), 0) << "an earlier byte was changed";
    int status = -1;
    const std::string check = RunCommand({"qpdf", "--check", request.outputPath}, &status);
    EXPECT_EQ(status, 0) << check;
    const std::string verdict = PdfSig(request.outputPath);
    const auto last = verdict.rfind("Signature #");
    ASSERT_NE(last, std::string::npos) << verdict;
    EXPECT_NE(verdict.find("Signature is Valid", last), std::string::npos) << verdict;
    EXPECT_NE(verdict.find("Total document signed", last), std::string::npos) << verdict;
    EXPECT_EQ(verdict.find("Digest Mismatch"), std::string::npos) << verdict;
}

std::vector<std::string> PdfFixture::Listing() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string WithoutContents(std::string pdf) {
    const auto hole = pdf.find("/Contents <") + 10;
    return pdf.erase(hole, pdf.find('>', hole) + 1 - hole);
}

int Count(std::string_view text, std::string_view part) {
    int count = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

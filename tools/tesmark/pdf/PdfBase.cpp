#include "pdf/PdfBase.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <qpdf/QPDFExc.hh>
#include <string_view>

#include "pdf/InflateLimit.h"
#include "pdf/LinearizedStart.h"
#include "pdf/PdfFailure.h"
#include "pdf/PlainTail.h"
#include "platform/Files.h"

namespace {

// The same bounds as qpdf's, so that both find the same header and the same "startxref".
constexpr std::uint64_t kHeaderSearch = 1'024;
constexpr std::uint64_t kTailSearch = 1'054;
// Room behind the last place where a header may begin.
constexpr std::uint64_t kHeaderLength = 16;
constexpr int kHighestNumber = 8'388'607;  // what readers must be able to hold

// Without the file's name in front.
std::string DamageSentence(const std::exception& error) {
    if (const auto* told = dynamic_cast<const QPDFExc*>(&error)) return told->getMessageDetail();
    return error.what();
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) {
    return std::string_view("\0\t\n\f\r ", 6).find(c) != std::string_view::npos;
}

std::string ReadPart(std::ifstream& file, std::uint64_t offset, std::uint64_t length) {
    std::string part(length, '\0');
    file.clear();
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(part.data(), static_cast<std::streamsize>(length));
    part.resize(static_cast<std::size_t>(file.gcount()));
    return part;
}

// "%PDF-1.7", as qpdf wants it: digits, a point, digits.
bool IsHeader(std::string_view text) {
    std::size_t at = 5;
    while (at < text.size() && IsDigit(text[at])) ++at;
    return at > 5 && at + 1 < text.size() && text[at] == '.' && IsDigit(text[at + 1]);
}

std::uint64_t FindHeader(std::string_view head) {
    for (auto at = head.find("%PDF-"); at < kHeaderSearch; at = head.find("%PDF-", at + 1)) {
        if (IsHeader(head.substr(at))) return at;
    }
    throw CPdfFailure(StampError::kNotPdf, "The input is not a PDF.");
}

// The number after the last "startxref".
std::uint64_t FindStartXref(std::string_view tail) {
    for (auto at = tail.rfind("startxref"); at != std::string_view::npos;
         at = at ? tail.rfind("startxref", at - 1) : std::string_view::npos) {
        auto digits = at + 9;
        while (digits < tail.size() && IsBlank(tail[digits])) ++digits;
        std::uint64_t value = 0;
        const auto result = std::from_chars(tail.data() + digits, tail.data() + tail.size(), value);
        if (result.ec == std::errc()) return value;
    }
    throw CPdfFailure(StampError::kDamaged,
                      "The PDF is damaged: its end doesn't tell where its objects are.");
}

bool StandsXrefTable(std::string_view text) {
    const auto first = std::find_if_not(text.begin(), text.end(), IsBlank);
    return text.substr(static_cast<std::size_t>(first - text.begin())).starts_with("xref");
}

constexpr char kDecryptFirst[] = "The PDF is encrypted; decrypt it before it is stamped.";
constexpr char kCannotBeRead[] = "The PDF is encrypted and can't be read.";

CPdfFailure CannotBeOpened(const std::string& path) {
    return {StampError::kInputUnreadable, WhyUnreadable(path)};
}

bool IsFile(const std::string& path) {
    std::error_code error;
    const std::string text = platform::Utf8FromPath(path);
    const std::filesystem::path file(std::u8string(text.begin(), text.end()));
    return std::filesystem::is_regular_file(file, error);
}

[[noreturn]] void ThrowFor(const QPDFExc& error, const char* ifEncrypted) {
    if (error.getErrorCode() == qpdf_e_password || error.getErrorCode() == qpdf_e_unsupported) {
        throw CPdfFailure(StampError::kEncrypted, ifEncrypted);
    }
    throw CPdfFailure(StampError::kDamaged, "The PDF is damaged: " + DamageSentence(error) + ".");
}

}  // namespace

CPdfBase::CPdfBase(const std::string& path) : m_ifEncrypted(kDecryptFirst) {
    if (!IsFile(path)) throw CannotBeOpened(path);
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) throw CannotBeOpened(path);
    ReadEnds(
        static_cast<std::uint64_t>(file.tellg()),
        [&](std::uint64_t offset, std::uint64_t length) { return ReadPart(file, offset, length); });
    // Opened here: by itself qpdf takes paths in UTF-8 on Windows.
    std::FILE* const opened = std::fopen(path.c_str(), "rb");
    if (opened == nullptr) throw CannotBeOpened(path);
    Process([&] { m_pdf.processFile(path.c_str(), opened, true); });
    if (m_pdf.isEncrypted()) throw CPdfFailure(StampError::kEncrypted, kDecryptFirst);
    const std::string head = ReadPart(file, m_headerOffset, kLinearizedSearch);
    if (!ReadsPlainly() || !BeginsAtItsEnd(ReadLinearizedStart(head))) {
        throw CPdfFailure(StampError::kDamaged,
                          "The PDF is damaged: readers may find different objects in it.");
    }
}

CPdfBase::CPdfBase(std::string_view file) : m_ifEncrypted(kCannotBeRead), m_file(file) {
    ReadEnds(file.size(), [&](std::uint64_t offset, std::uint64_t length) {
        return std::string(file.substr(offset, length));
    });
    Process([&] { m_pdf.processMemoryFile("document", file.data(), file.size()); });
}

void CPdfBase::ReadEnds(std::uint64_t fileSize, const PartReader& read) {
    m_fileSize = fileSize;
    if (m_fileSize == 0) throw CPdfFailure(StampError::kNotPdf, "The input is empty.");
    m_headerOffset = FindHeader(read(0, kHeaderSearch + kHeaderLength));
    const auto tailSize = std::min(m_fileSize, kTailSearch);
    const std::string tail = read(m_fileSize - tailSize, tailSize);
    m_startXref = FindStartXref(tail);
    m_readsPlainly = PlainStartXref(tail) == m_startXref;
    m_endsInNewline = tail.ends_with('\n') || tail.ends_with('\r');
    if (m_startXref >= m_fileSize - m_headerOffset) {
        throw CPdfFailure(StampError::kDamaged, "The PDF is damaged: it has been cut off.");
    }
    m_hasXrefStream = !StandsXrefTable(read(m_headerOffset + m_startXref, 32));
}

void CPdfBase::Process(const std::function<void()>& open) {
    m_pdf.setSuppressWarnings(true);
    m_pdf.setAttemptRecovery(false);
    LimitInflation(m_fileSize);
    try {
        open();
    } catch (const QPDFExc& error) {
        ThrowFor(error, m_ifEncrypted);
    } catch (const std::exception& error) {
        throw UnreadablePdf(error);
    }
    const auto warnings = m_pdf.getWarnings();
    m_readsPlainly =
        m_readsPlainly && std::all_of(warnings.begin(), warnings.end(), IsHarmlessOnOpening);
}

// Of a linearized file readers take the section at its start. It has to be the one that the end
// tells, and no update may give the file the length that makes it linearized.
bool CPdfBase::BeginsAtItsEnd(const LinearizedStart& start) const {
    const std::uint64_t length = m_fileSize - m_headerOffset;
    if (start.length == m_fileSize || start.length == length) return start.section == m_startXref;
    return start.length < length;
}

void CPdfBase::CheckWhatWasRead() {
    const auto warnings = m_pdf.getWarnings();
    if (!warnings.empty()) ThrowFor(warnings.front(), m_ifEncrypted);
}

int CPdfBase::NextNumber() {
    const auto table = m_pdf.getXRefTable();
    const int highest = table.empty() ? 0 : table.rbegin()->first.getObj();
    auto size = Trailer().getKey("/Size");
    const long long told = size.isInteger() ? size.getIntValue() : 0;
    const long long next = std::max<long long>(told, highest + 1LL);
    if (next > kHighestNumber) {
        throw CPdfFailure(StampError::kDamaged, "The PDF has too many objects.");
    }
    return static_cast<int>(next);
}

std::string WhyUnreadable(const std::string& path) {
    const std::string text = platform::Utf8FromPath(path);
    if (platform::IsDirectory(path.c_str())) return "\"" + text + "\" is a folder.";
    return IsFile(path) ? "\"" + text + "\" can't be opened."
                        : "There is no file \"" + text + "\".";
}

bool IsHarmlessOnOpening(const QPDFExc& warning) {
    const std::string& told = warning.getMessageDetail();
    return told.starts_with("reported number of objects") ||
           told == "extraneous whitespace seen before xref";
}

CPdfFailure UnreadablePdf(const std::exception& error) {
    return {StampError::kDamaged, "The PDF can't be read: " + DamageSentence(error) + "."};
}

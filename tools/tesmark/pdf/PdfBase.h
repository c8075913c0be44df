// PdfBase.h - the PDF that an incremental update is appended to.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFXRefEntry.hh>
#include <string>
#include <string_view>

struct LinearizedStart;

// Opened for reading, as it stands: qpdf never repairs it, because an update on top of a guess
// would be read differently by every reader.
class CPdfBase {
public:
    // To be stamped: an encrypted file is refused, as an update would have to be encrypted too.
    // Throws CPdfFailure: kInputUnreadable, kNotPdf, kDamaged (also where !ReadsPlainly()),
    // kEncrypted. Reads the ends of the file and its cross-reference sections, not its streams.
    explicit CPdfBase(const std::string& path);
    // To be read only, from the bytes of the whole file, which must outlive it: what is encrypted
    // is refused if it asks for a password.
    explicit CPdfBase(std::string_view file);

    QPDFObjectHandle Trailer() { return m_pdf.getTrailer(); }
    QPDFObjectHandle Catalog() { return m_pdf.getRoot(); }
    QPDFObjectHandle Object(QPDFObjGen number) { return m_pdf.getObjectByObjGen(number); }
    // Where each object stands.
    std::map<QPDFObjGen, QPDFXRefEntry> Objects() { return m_pdf.getXRefTable(); }
    // Throws kDamaged if an object that was asked for since the start could not be read: qpdf
    // gives null for it, and an update would then lose what it holds.
    void CheckWhatWasRead();

    std::uint64_t FileSize() const { return m_fileSize; }
    // Where "%PDF-" stands: every offset in the file, but not those of a /ByteRange, counts from
    // there.
    std::uint64_t HeaderOffset() const { return m_headerOffset; }
    // The value after the last "startxref".
    std::uint64_t StartXref() const { return m_startXref; }
    // All readers find the same end in it, and qpdf had to overlook nothing when it opened it.
    bool ReadsPlainly() const { return m_readsPlainly; }
    // The bytes, of one that was opened from them.
    std::string_view File() const { return m_file; }
    // The last cross-reference section is a stream; a hybrid file's is a table.
    bool HasXrefStream() const { return m_hasXrefStream; }
    bool EndsInNewline() const { return m_endsInNewline; }
    // The first object number that nothing uses.
    int NextNumber();

private:
    using PartReader = std::function<std::string(std::uint64_t offset, std::uint64_t length)>;

    void ReadEnds(std::uint64_t fileSize, const PartReader& read);
    bool BeginsAtItsEnd(const LinearizedStart& start) const;
    void Process(const std::function<void()>& open);

    QPDF m_pdf;
    const char* m_ifEncrypted;  // what is said then
    std::string_view m_file;
    bool m_readsPlainly = false;
    std::uint64_t m_fileSize = 0;
    std::uint64_t m_headerOffset = 0;
    std::uint64_t m_startXref = 0;
    bool m_hasXrefStream = false;
    bool m_endsInNewline = false;
};

// The warning tells of something that all readers understand alike: a /Size that is too large or
// too small, or blanks in front of a table.
bool IsHarmlessOnOpening(const QPDFExc& warning);

// Why the file of that path can't be read, as a sentence.
std::string WhyUnreadable(const std::string& path);

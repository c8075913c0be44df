// PdfUpdate.h - an incremental update (ISO 32000-2, 7.5.6) with room for one signature.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "pdf/PdfBase.h"

// What is appended to the base: `before`, then '<', two hexadecimal digits for each byte that
// was reserved, '>', then `after`.
struct PdfUpdateBytes {
    std::string before;
    std::string after;
};

// Gathers new and changed objects. Bodies are written as they are given.
class CPdfUpdate {
public:
    // `base` must outlive it.
    explicit CPdfUpdate(CPdfBase& base);

    // A number that neither the base nor this update uses; its generation is 0.
    QPDFObjGen Reserve();
    void Set(QPDFObjGen object, const std::string& body);
    // `dictionary` without its brackets and its /Length.
    void SetStream(QPDFObjGen object, const std::string& dictionary, std::string_view data);
    // The signature dictionary, `entries` without its brackets, /ByteRange and /Contents.
    void SetSignature(QPDFObjGen object, const std::string& entries);

    // The whole update for a signature of `contentsSize` bytes, in the base's kind of
    // cross-reference section. Throws CPdfFailure kBadRequest if the output grows beyond ten
    // digits of bytes, which neither kind of file can hold.
    PdfUpdateBytes Build(std::size_t contentsSize);

private:
    std::string Trailer(bool stream) const;
    std::string XrefTable() const;
    std::string XrefStream(std::uint64_t offset);
    void NoteOffset(QPDFObjGen object, std::uint64_t offset);

    CPdfBase& m_base;
    int m_nextNumber;
    std::map<QPDFObjGen, std::string> m_bodies;
    QPDFObjGen m_signature;
    std::string m_signatureEntries;
    std::map<QPDFObjGen, std::uint64_t> m_offsets;  // counted from the base's header
};

// "12 0 R"
std::string Reference(QPDFObjGen object);

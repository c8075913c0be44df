// PdfSignatures.h - reading the signatures of a PDF.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "pdf/DocumentBytes.h"
#include "pdf/PdfSignature.h"
#include "pdf/PdfStamp.h"

struct PdfSignatures {
    std::vector<PdfSignature> list;  // as they follow one another in the file
    int emptyFields = 0;             // signature fields that nobody has signed
    std::uint64_t fileSize = 0;
};

// Reads the signatures of all fields of the form in two steps, between which there is time for
// other things: another core looks through a large document meanwhile. The file is taken as it
// stands and never repaired; more than 200 signatures are kDamaged. Nothing that the file says
// makes this run long or take memory beyond a small multiple of its size; its streams aren't read,
// unless something was added behind a signature.
class CPdfSignatureReading {
public:
    // `document` was opened by `path` and must outlive this; until Finish is called nobody asks it
    // for signed bytes.
    CPdfSignatureReading(std::string path, CDocumentBytes& document);
    ~CPdfSignatureReading();

    // kNone, or kInputUnreadable, kNotPdf, kDamaged, kEncrypted (it wants a password) with one
    // sentence in `message`. First of all.
    StampError Begin(std::string& message);
    // What Begin has read, in the order of the form: that a range is sound isn't certain yet. From
    // a Begin that gave kNone until Finish.
    const PdfSignatures& Found() const;
    // The same codes. After a Begin that gave kNone, once.
    StampError Finish(PdfSignatures& signatures, std::string& message);

private:
    class CState;

    std::string m_path;
    CDocumentBytes& m_document;
    std::unique_ptr<CState> m_state;
};

// Both steps at once, of the file of that path. No signatures with another code than kNone.
StampError ReadPdfSignatures(const std::string& path, PdfSignatures& signatures,
                             std::string& message);

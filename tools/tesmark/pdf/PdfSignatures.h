// PdfSignatures.h - reading the signatures of a PDF.
#pragma once

#include <cstdint>
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

// Reads the signatures of all fields of the form. kNone, or kInputUnreadable, kNotPdf, kDamaged,
// kEncrypted (it wants a password) with one sentence in `message`. The file is taken as it stands
// and never repaired; more than 200 signatures are kDamaged. Nothing that the file says makes this
// run long or take memory beyond a small multiple of its size; its streams aren't read, unless
// something was added behind a signature.
StampError ReadPdfSignatures(const std::string& path, PdfSignatures& signatures,
                             std::string& message);
// The same of a document that was opened by `path`, so that what was signed can be had from the
// same bytes.
StampError ReadPdfSignatures(const std::string& path, CDocumentBytes& document,
                             PdfSignatures& signatures, std::string& message);

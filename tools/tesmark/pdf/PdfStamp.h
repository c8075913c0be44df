// PdfStamp.h - puts a seal and a signature on a page of a PDF, as an incremental update: every
// byte of the input stands unchanged at its place in the output, and earlier signatures stay
// valid.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

class CInputCopy;

// Texts are UTF-8; paths are the file system's bytes and are never converted. Lengths are
// millimetres on the page as a reader sees it: turned by its /Rotate, cut to its crop box, scaled
// by its UserUnit.
struct StampRequest {
    std::string inputPath;
    // Made or replaced by a rename, so it is either whole or untouched. It must not be the input.
    std::string outputPath;

    int page = 1;  // from 1; -1 is the last page, -2 the one before
    // The upper left corner of the seal, to the right and down from the page's visible upper
    // left corner. Parts of the seal may lie beyond the page's edge, but not all of it.
    double xMm = 0;
    double yMm = 0;
    double widthMm = 0;
    double heightMm = 0;
    std::string picture;  // GIF, PNG, JPEG or BMP
    // Darken what lies below, as the ink of a stamp does, in place of covering it: text under the
    // seal stays legible, and a white background vanishes.
    bool likeInk = true;

    // The signature dictionary's names, without a slash: letters, digits, '.', '_', '-'.
    std::string filter = "Adobe.PPKLite";
    std::string subFilter = "adbe.pkcs7.detached";
    // Texts of the signature dictionary; an empty one is left out.
    std::string name;
    std::string reason;
    std::string location;
    std::string contactInfo;
    // Seconds since 1970, and minutes east of Greenwich in which it is written. 0: no time.
    std::int64_t signingTime = 0;
    int utcOffsetMinutes = 0;
    // Room for the signature's bytes, 1 to 8 MiB; /Contents takes twice as many in the file, and
    // what the signature leaves is filled with zeros. For a signature that needs more the signer is
    // called once more, with more room.
    std::size_t contentsSize = 0;
};

// What is to be signed: the whole output but for the value of /Contents. Exactly one of the two
// is set: up to kSignedDataInMemory bytes the data, above that the path of a file that holds
// those bytes and nothing else. Both are gone when the signer has returned.
struct SignedRanges {
    std::string_view data;
    std::string path;
};
inline constexpr std::uint64_t kSignedDataInMemory = 8 * 1024 * 1024;

// Puts the DER of the signature into `contents`, which is empty. 0 for success; any other value is
// handed through in StampResult::signerCode. It must not change the file.
using StampSigner = std::function<int(const SignedRanges& ranges, std::string& contents)>;

enum class StampError {
    kNone,
    kInputUnreadable,   // it can't be opened or read, or is a folder
    kNotPdf,            // empty, or no PDF at all
    kDamaged,           // a PDF that can't be read without guessing
    kEncrypted,         // with or without a password to open it
    kChangesForbidden,  // a certifying signature allows none
    kNoSuchPage,
    kBadPlace,      // size not positive, or the seal lies wholly beyond the page's edge
    kBadPicture,    // not a picture, damaged, or too large
    kBadRequest,    // a name, a text or a size that can't be written into a PDF
    kInputChanged,  // by somebody else, while it was stamped
    kOutputIsInput,
    kOutputUnwritable,
    kSignerFailed,      // signerCode tells
    kContentsTooSmall,  // the second signature was larger still; neededContentsSize tells its size
};

struct StampResult {
    StampError error = StampError::kNone;
    std::string message;  // one English sentence; empty for kNone
    int signerCode = 0;
    std::size_t neededContentsSize = 0;
    std::string fieldName;  // of the new signature field: "Signature1", "Signature2", ...
    int page = 0;           // counted from 1
    int pageCount = 0;
};

// Stamps. On any failure the output is what it was before, nothing stays beside it, and the input
// is never opened for writing. While it works a file beside the output, whose name begins with
// the output's, takes as much space as the output. Memory doesn't grow with the size of the
// input's streams. Blocks until the output is on the disk.
StampResult StampPdf(const StampRequest& request, const StampSigner& signer);
// The same with a copy of the request's input beside the request's output, which may have begun.
StampResult StampPdf(const StampRequest& request, const StampSigner& signer, CInputCopy& copy);

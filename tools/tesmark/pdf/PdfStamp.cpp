#include "pdf/PdfStamp.h"

#include <future>

#include "pdf/InputCopy.h"
#include "pdf/PdfFailure.h"
#include "pdf/PdfPage.h"
#include "pdf/SealAppearance.h"
#include "pdf/SignatureField.h"

namespace {

constexpr std::size_t kLargestContents = 8 * 1024 * 1024;

void Require(bool holds, StampError error, const std::string& sentence) {
    if (!holds) throw CPdfFailure(error, sentence);
}

// Such names need no escapes.
bool IsName(std::string_view text) {
    return !text.empty() && text.find_first_not_of(
                                "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                "0123456789._-") == std::string_view::npos;
}

void CheckRequest(const StampRequest& request, const CInputCopy& copy) {
    Require(IsName(request.filter) && IsName(request.subFilter), StampError::kBadRequest,
            "A signature needs plain names for its filter and its form.");
    Require(request.contentsSize > 0 && request.contentsSize <= kLargestContents,
            StampError::kBadRequest, "The room for the signature is not between 1 byte and 8 MiB.");
    Require(request.utcOffsetMinutes > -24 * 60 && request.utcOffsetMinutes < 24 * 60,
            StampError::kBadRequest, "The time zone is not within a day of Greenwich.");
    Require(!copy.OutputIsInput(), StampError::kOutputIsInput,
            "The output must be another file than the input.");
}

Picture SealPicture(const StampRequest& request) {
    Picture picture;
    std::string problem;
    Require(DecodePicture(request.picture, picture, problem), StampError::kBadPicture, problem);
    return picture;
}

struct BuiltUpdate {
    PdfUpdateBytes bytes;
    std::uint64_t baseSize = 0;
};

BuiltUpdate BuildUpdate(const StampRequest& request, StampResult& result) {
    CPdfBase base(request.inputPath);
    result.pageCount = PdfPageCount(base);
    const PdfPage page = FindPdfPage(base, request.page);
    result.page = page.number;
    CheckChangesAllowed(base);
    const SealPlacement place =
        PlaceSeal(page.geometry, request.xMm, request.yMm, request.widthMm, request.heightMm);
    CPdfUpdate update(base);
    const QPDFObjGen form = AddSealAppearance(update, SealPicture(request), place, request.likeInk);
    const QPDFObjGen signature = update.Reserve();
    result.fieldName = AddSignatureField(update, base, page, place, form, signature);
    update.SetSignature(signature, SignatureEntries(request));
    BuiltUpdate built{update.Build(request.contentsSize), base.FileSize()};
    base.CheckWhatWasRead();
    return built;
}

std::string Sign(CWorkFile& file, std::uint64_t signedSize, const StampSigner& signer,
                 StampResult& result) {
    SignedRanges ranges;
    std::string data;
    std::future<void> writing;
    if (signedSize > kSignedDataInMemory) {
        ranges.path = file.Path();
        // Even to ask for it takes a while then.
        writing = std::async([&file] { file.BeginWriting(); });
    } else {
        file.BeginWriting();
        Require(file.ReadAll(data), StampError::kOutputUnwritable, file.Problem());
        ranges.data = data;
    }
    std::string contents;
    result.signerCode = signer(ranges, contents);
    Require(result.signerCode == 0, StampError::kSignerFailed,
            "The signature failed with " + std::to_string(result.signerCode) + ".");
    return contents;
}

std::string HexValue(const std::string& contents, std::size_t reserved) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "<";
    text.reserve(2 * reserved + 2);
    for (const char c : contents) {
        text += kDigits[static_cast<unsigned char>(c) >> 4];
        text += kDigits[c & 15];
    }
    text.resize(2 * reserved + 1, '0');
    return text + ">";
}

// The file first holds the signed ranges alone, so that a signer can read them as one file; then
// the value of /Contents pushes the tail to its place.
void Write(const StampRequest& request, const BuiltUpdate& update, const StampSigner& signer,
           CInputCopy& copy, StampResult& result) {
    CWorkFile& file = copy.Finish();
    const std::uint64_t hole = update.baseSize + update.bytes.before.size();
    const bool made = file.Append(update.bytes.before) && file.Append(update.bytes.after);
    Require(made, StampError::kOutputUnwritable, file.Problem());
    const std::string contents = Sign(file, hole + update.bytes.after.size(), signer, result);
    if (contents.empty() || contents.size() > request.contentsSize) {
        result.neededContentsSize = contents.size();
        throw CPdfFailure(
            contents.empty() ? StampError::kSignerFailed : StampError::kContentsTooSmall,
            "The signature has " + std::to_string(contents.size()) +
                " bytes, the room reserved for it " + std::to_string(request.contentsSize) + ".");
    }
    const std::string tail = HexValue(contents, request.contentsSize) + update.bytes.after;
    Require(file.WriteAt(hole, tail) && file.BecomeOutput(), StampError::kOutputUnwritable,
            file.Problem());
}

}  // namespace

StampResult StampPdf(const StampRequest& request, const StampSigner& signer) {
    CInputCopy copy(request.inputPath, request.outputPath);
    return StampPdf(request, signer, copy);
}

StampResult StampPdf(const StampRequest& request, const StampSigner& signer, CInputCopy& copy) {
    StampResult result;
    try {
        CheckRequest(request, copy);
        BuiltUpdate update;
        try {
            update = BuildUpdate(request, result);
        } catch (const CPdfFailure&) {
            throw;
        } catch (const std::exception& error) {
            throw CPdfFailure(StampError::kDamaged,
                              "The PDF can't be read: " + DamageSentence(error) + ".");
        }
        Write(request, update, signer, copy, result);
    } catch (const CPdfFailure& failure) {
        result.error = failure.Error();
        result.message = failure.what();
    }
    return result;
}

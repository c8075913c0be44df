#include "pdf/PdfStamp.h"

#include <future>
#include <memory>

#include "pdf/InputCopy.h"
#include "pdf/PdfFailure.h"
#include "pdf/PdfPage.h"
#include "pdf/SealAppearance.h"
#include "pdf/SignatureField.h"

namespace {

constexpr std::size_t kLargestContents = 8 * 1024 * 1024;
constexpr std::size_t kMayGrow = 1024;

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

// The document and what is added to it, whose room for the signature is still open.
class CStamp {
public:
    CStamp(const StampRequest& request, StampResult& result)
        : m_base(request.inputPath), m_update(m_base) {
        result.pageCount = PdfPageCount(m_base);
        const PdfPage page = FindPdfPage(m_base, request.page);
        result.page = page.number;
        CheckChangesAllowed(m_base);
        const SealPlacement place =
            PlaceSeal(page.geometry, request.xMm, request.yMm, request.widthMm, request.heightMm);
        const QPDFObjGen form =
            AddSealAppearance(m_update, SealPicture(request), place, request.likeInk);
        const QPDFObjGen signature = m_update.Reserve();
        result.fieldName = AddSignatureField(m_update, m_base, page, place, form, signature);
        m_update.SetSignature(signature, SignatureEntries(request));
        m_bytes = m_update.Build(request.contentsSize);
        m_base.CheckWhatWasRead();
    }

    std::uint64_t BaseSize() const { return m_base.FileSize(); }
    const PdfUpdateBytes& Bytes() const { return m_bytes; }
    // Reads nothing of the input.
    void MakeRoom(std::size_t contentsSize) { m_bytes = m_update.Build(contentsSize); }

private:
    CPdfBase m_base;
    CPdfUpdate m_update;
    PdfUpdateBytes m_bytes;
};

std::unique_ptr<CStamp> ReadInput(const StampRequest& request, StampResult& result) {
    try {
        return std::make_unique<CStamp>(request, result);
    } catch (const CPdfFailure&) {
        throw;
    } catch (const std::exception& error) {
        throw UnreadablePdf(error);
    }
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

// The file first holds the signed ranges alone, so that a signer can read them as one file.
std::string SignRanges(const CStamp& stamp, CWorkFile& file, const StampSigner& signer,
                       StampResult& result) {
    const std::string ranges = stamp.Bytes().before + stamp.Bytes().after;
    Require(file.WriteAt(stamp.BaseSize(), ranges), StampError::kOutputUnwritable, file.Problem());
    std::string contents = Sign(file, stamp.BaseSize() + ranges.size(), signer, result);
    Require(!contents.empty(), StampError::kSignerFailed, "The signature has no bytes.");
    return contents;
}

// The bytes that are signed tell how much room the signature has, so one that needs more is made
// anew. Some are a few bytes larger the next time.
std::string MakeContents(CStamp& stamp, CWorkFile& file, const StampSigner& signer,
                         std::size_t& room, StampResult& result) {
    std::string contents = SignRanges(stamp, file, signer, result);
    if (contents.size() > room && contents.size() <= kLargestContents - kMayGrow) {
        room = contents.size() + kMayGrow;
        stamp.MakeRoom(room);
        contents = SignRanges(stamp, file, signer, result);
    }
    if (contents.size() > room) {
        result.neededContentsSize = contents.size();
        throw CPdfFailure(StampError::kContentsTooSmall,
                          "The signature has " + std::to_string(contents.size()) +
                              " bytes, the room reserved for it " + std::to_string(room) + ".");
    }
    return contents;
}

// The value of /Contents pushes the tail to its place.
void Write(const StampRequest& request, CStamp& stamp, const StampSigner& signer, CInputCopy& copy,
           StampResult& result) {
    CWorkFile& file = copy.Finish();
    std::size_t room = request.contentsSize;
    const std::string contents = MakeContents(stamp, file, signer, room, result);
    const std::uint64_t hole = stamp.BaseSize() + stamp.Bytes().before.size();
    const std::string tail = HexValue(contents, room) + stamp.Bytes().after;
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
        const auto stamp = ReadInput(request, result);
        Write(request, *stamp, signer, copy, result);
    } catch (const CPdfFailure& failure) {
        result.error = failure.Error();
        result.message = failure.what();
    }
    return result;
}

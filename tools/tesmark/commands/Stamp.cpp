#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string>

#include "Declare.h"
#include "FileAccess.h"
#include "Library.h"
#include "ResultText.h"
#include "StampPicture.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "TimeStampWish.h"
#include "commands/StampSubFilter.h"
#include "include/TesmarkOpt.h"
#include "pdf/InputCopy.h"
#include "pdf/PdfPages.h"
#include "pdf/PdfStamp.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace {

// From the page's lower right corner, where nobody says where the seal goes.
constexpr double kMarginMm = 25;

// A file that is read, hashed and copied in more than a moment.
constexpr std::uint64_t kLongWork = 32 * 1024 * 1024;
// The interface counts lengths in 32 bits.
constexpr std::uint64_t kLargestStamped = 1024 * 1024 * 1024;

// No result of the library or a component; the signer ends with it when the user interrupts.
constexpr int kInterruptedCode = -100'000;
constexpr int kNothingSignedCode = -100'001;

struct Options {
    std::string input;
    std::string output;
    int page = -1;
    std::string at;
    std::string size;
    std::string reason;
    std::string location;
    bool timeStamp = false;
    bool beyondEdge = false;
    ContentPictureOptions content;
    SelectionOptions selection;
};

struct Pair {
    double first;
    double second;
};

// Two lengths in millimetres with `separator` between them.
Pair ParsePair(const std::string& text, char separator, const char* option, const char* form) {
    Pair pair{};
    const char* const end = text.data() + text.size();
    const auto first = std::from_chars(text.data(), end, pair.first);
    if (first.ec == std::errc() && first.ptr != end && *first.ptr == separator) {
        const auto second = std::from_chars(first.ptr + 1, end, pair.second);
        const bool finite = std::isfinite(pair.first) && std::isfinite(pair.second);
        if (second.ec == std::errc() && second.ptr == end && finite) return pair;
    }
    throw Failure{ExitCode::kUsage, std::string(option) + " is " + form + " in millimetres: \"" +
                                        text + "\" is none."};
}

std::string Millimetres(double length) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", length);
    std::string shown = text.data();
    if (shown.ends_with(".0")) shown.resize(shown.size() - 2);
    return shown;
}

ExitCode ExitCodeOf(StampError error) {
    switch (error) {
        case StampError::kNone: return ExitCode::kOk;
        case StampError::kInputUnreadable:
        case StampError::kNotPdf:
        case StampError::kDamaged:
        case StampError::kEncrypted:
        case StampError::kChangesForbidden:
        case StampError::kNoSuchPage:
        case StampError::kInputChanged:
        case StampError::kOutputIsInput:
        case StampError::kOutputUnwritable: return ExitCode::kFile;
        case StampError::kBadPlace:
        case StampError::kBadRequest: return ExitCode::kUsage;
        case StampError::kBadPicture:
        case StampError::kSignerFailed:
        case StampError::kContentsTooSmall: return ExitCode::kFailed;
    }
    return ExitCode::kFailed;
}

PdfPageSize Measure(const Options& options) {
    PdfPageSize size;
    std::string message;
    const StampError error =
        MeasurePdfPage(platform::PathFromUtf8(options.input), options.page, size, message);
    if (error != StampError::kNone) throw Failure{ExitCodeOf(error), message};
    return size;
}

Pair ParseSize(const std::string& text) {
    // What a seal on a page may have at least.
    constexpr double kSmallest = 0.1;
    const Pair size = ParsePair(text, 'x', "--size", "WIDTHxHEIGHT");
    if (size.first >= kSmallest && size.second >= kSmallest) return size;
    throw Failure{ExitCode::kUsage, "--size is WIDTHxHEIGHT, each of them 0.1 mm at least: \"" +
                                        text + "\" is none."};
}

Pair ParsePlace(const std::string& text) { return ParsePair(text, ',', "--at", "X,Y"); }

// Where the seal is to go, as far as that is said.
struct Wish {
    std::optional<Pair> size;
    std::optional<Pair> at;
};

// Before anything else: what is wrong with the numbers shall cost no dialog and no try of a key.
Wish ReadWish(const Options& options) {
    if (options.page == 0) {
        throw Failure{ExitCode::kUsage,
                      "--page is a page's number from 1, or one from the end, from -1: 0 is none."};
    }
    Wish wish;
    if (!options.size.empty()) wish.size = ParseSize(options.size);
    if (!options.at.empty()) wish.at = ParsePlace(options.at);
    return wish;
}

void Place(const Wish& wish, const PdfPageSize& page, StampRequest& request) {
    request.page = page.page;
    if (wish.size) {
        request.widthMm = wish.size->first;
        request.heightMm = wish.size->second;
    }
    if (wish.at) {
        request.xMm = wish.at->first;
        request.yMm = wish.at->second;
        return;
    }
    request.xMm = std::max(0.0, page.widthMm - request.widthMm - kMarginMm);
    request.yMm = std::max(0.0, page.heightMm - request.heightMm - kMarginMm);
}

// A seal that nobody sees, or sees in part, is no seal to whoever gets the document.
void CheckLiesOnPage(const Options& options, const PdfPageSize& page, const StampRequest& request) {
    // Less than what the numbers are told with.
    constexpr double kTolerance = 0.05;
    const bool within = request.xMm >= -kTolerance && request.yMm >= -kTolerance &&
                        request.xMm + request.widthMm <= page.widthMm + kTolerance &&
                        request.yMm + request.heightMm <= page.heightMm + kTolerance;
    if (within || options.beyondEdge) return;
    throw Failure{ExitCode::kUsage,
                  "The seal doesn't lie on the page as a whole: " + Millimetres(request.widthMm) +
                      " x " + Millimetres(request.heightMm) + " mm at " + Millimetres(request.xMm) +
                      ", " + Millimetres(request.yMm) + ", and the page has " +
                      Millimetres(page.widthMm) + " x " + Millimetres(page.heightMm) + " mm.",
                  {},
                  "  another place or size: --at X,Y, --size WIDTHxHEIGHT; or let it be so: "
                  "--beyond-edge"};
}

// Minutes east of Greenwich at that moment.
int UtcOffset(std::time_t now) {
    const std::tm local = platform::LocalTime(now);
    const std::tm utc = platform::UtcTime(now);
    int days = local.tm_yday - utc.tm_yday;
    if (local.tm_year != utc.tm_year) days = local.tm_year > utc.tm_year ? 1 : -1;
    return days * 1440 + (local.tm_hour - utc.tm_hour) * 60 + local.tm_min - utc.tm_min;
}

// The text of a seal signature's property: what was stamped, and where.
std::string Property(const StampRequest& request) {
    return "application/pdf; page=" + std::to_string(request.page) +
           "; rect=" + Millimetres(request.xMm) + "," + Millimetres(request.yMm) + "," +
           Millimetres(request.widthMm) + "," + Millimetres(request.heightMm) + "; unit=mm";
}

StampRequest MakeRequest(const Options& options, const Wish& wish, const PdfPageSize& page,
                         const SelectedSeal& selected) {
    StampRequest request;
    request.inputPath = platform::PathFromUtf8(options.input);
    request.outputPath = platform::PathFromUtf8(options.output);
    request.widthMm = selected.widthMm;
    request.heightMm = selected.heightMm;
    Place(wish, page, request);
    CheckLiesOnPage(options, page, request);
    request.picture = selected.picture;
    const std::string seal = IsSealSignature(selected.mode) ? SelectedSealFile() : "";
    const StampSubFilter& form = SubFilterOf(selected.mode, seal);
    request.filter = form.filter;
    request.subFilter = form.subFilter;
    request.contentsSize =
        ContentsSizeFor(selected.mode, seal, selected.mode == 0 && TimeStampsAreOn());
    request.name = selected.commonName;
    request.reason = options.reason;
    request.location = options.location;
    request.signingTime = std::time(nullptr);
    request.utcOffsetMinutes = UtcOffset(request.signingTime);
    return request;
}

// Only data gets a time stamp from the library, no file by its path.
int MakeStampedSignature(const SignedRanges& ranges, std::string& contents) {
    const int code =
        ranges.path.empty()
            ? MakeSignature(ranges.data, "", contents)
            : MakeSignature(ReadWholeFile(platform::Utf8FromPath(ranges.path), kLargestStamped), "",
                            contents);
    return code || contents.empty() ? code : CheckTimeStamped(contents);
}

int Make(const SignedRanges& ranges, const std::string& property, bool timeStamp,
         std::string& contents) {
    if (timeStamp) return MakeStampedSignature(ranges, contents);
    return ranges.path.empty() ? MakeSignature(ranges.data, property, contents)
                               : MakeFileSignature(ranges.path, property, contents);
}

struct Made {
    std::string signature;
    bool byPath = false;  // what is signed was hashed as a file
};

// The signer keeps what it has made in `made`.
StampSigner SignerFor(const StampRequest& request, bool timeStamp, Made& made) {
    return [property = Property(request), timeStamp, &made](const SignedRanges& ranges,
                                                            std::string& contents) {
        if (InterruptGuard::Interrupted()) return kInterruptedCode;
        const int code = Make(ranges, property, timeStamp, contents);
        made = {contents, !timeStamp && !ranges.path.empty()};
        if (InterruptGuard::Interrupted()) return kInterruptedCode;
        return code == 0 && contents.empty() ? kNothingSignedCode : code;
    };
}

[[noreturn]] void ThrowInterrupted() {
    throw Failure{ExitCode::kInterrupted, "Interrupted; nothing was written."};
}

SelectedSeal Select(const Options& options) {
    SelectedSeal selected;
    try {
        selected = SelectStamp(options.selection, options.content);
    } catch (const Failure&) {
        // What an interrupt ended looks like a dialog that was closed or a PIN that is missing.
        if (InterruptGuard::Interrupted()) ThrowInterrupted();
        throw;
    }
    if (InterruptGuard::Interrupted()) ThrowInterrupted();
    return selected;
}

void CheckStamped(const StampResult& result, const LogMark& mark) {
    if (result.error == StampError::kNone) return;
    if (result.error != StampError::kSignerFailed) {
        throw Failure{ExitCodeOf(result.error), result.message};
    }
    if (result.signerCode == kInterruptedCode) ThrowInterrupted();
    if (result.signerCode == kNothingSignedCode) {
        throw Failure{ExitCode::kFailed,
                      "This seal is a picture only: no signature can be made with it."};
    }
    CheckResult(result.signerCode, "The signature can't be made.", mark);
}

// Why the library makes no time stamp for it; empty if it does.
std::string WhyUnstamped(int mode, bool byPath) {
    if (mode != 0) return "a signature with a seal of a national form carries none";
    return byPath ? "a file that is hashed by its path gets none" : "";
}

std::string WorkText(const Options& options, const std::string& whyUnstamped) {
    if (whyUnstamped.empty() && TimeStampsAreOn()) return kWaitingForAuthority;
    const std::uint64_t size = CheckReadable(options.input);
    return size > kLongWork ? "Stamping " + SizeText(size) : "";
}

StampResult StampShown(const StampRequest& request, const StampSigner& signer,
                       const std::string& workText, CInputCopy& copy) {
    const LogMark mark;
    const Progress progress(workText);
    const StampResult result = StampPdf(request, signer, copy);
    CheckStamped(result, mark);
    return result;
}

Report Describe(const Options& options, const SelectedSeal& selected, const StampRequest& request,
                const StampResult& result) {
    Report report;
    report.json["output"] = options.output;
    report.json["page"] = result.page;
    report.json["pages"] = result.pageCount;
    report.json["xMm"] = request.xMm;
    report.json["yMm"] = request.yMm;
    report.json["widthMm"] = request.widthMm;
    report.json["heightMm"] = request.heightMm;
    report.json["field"] = result.fieldName;
    report.json["certId"] = Utf8FromGbk(selected.certId);
    report.json["signer"] = selected.commonName;
    report.json["algorithm"] = selected.keyType;
    report.json["source"] = SourceName(selected.source);
    report.json["mode"] = selected.mode;
    report.json["filter"] = request.filter;
    report.json["subFilter"] = request.subFilter;
    report.text = "stamp  " + Printable(options.output) + "  page " + std::to_string(result.page) +
                  " of " + std::to_string(result.pageCount) + ", " + Millimetres(request.widthMm) +
                  " x " + Millimetres(request.heightMm) + " mm at " + Millimetres(request.xMm) +
                  ", " + Millimetres(request.yMm) + "\n       signed by " +
                  Printable(selected.commonName) + " (" + selected.keyType + "), " +
                  request.subFilter + ", " + result.fieldName + "\n";
    if (!selected.sealFile.empty() || !selected.sealName.empty()) {
        report.json["seal"]["file"] =
            selected.sealFile.empty() ? Json::Value() : Json::Value(selected.sealFile);
        report.json["seal"]["name"] = selected.sealName;
        report.text += "       seal " + Printable(selected.sealFile) +
                       (selected.sealFile.empty() ? "" : "  ") + Printable(selected.sealName) +
                       "\n";
    }
    if (selected.source != SealSource::kKey) {
        report.text += std::string("       picture ") + SourceText(selected.source) + "\n";
    }
    return report;
}

void CheckCanCarryTimeStamp(const Options& options, const SelectedSeal& selected) {
    if (!options.timeStamp || selected.mode == 0) return;
    throw Failure{ExitCode::kFailed,
                  "A signature with this seal carries no time stamp: only that with a seal of the "
                  "form es does."};
}

Report Stamp(const Options& options) {
    CheckIsNoStream(options.input);
    CheckIsNoStream(options.output);
    const Wish wish = ReadWish(options);
    CheckIsNotInput(options.output, options.input);
    CheckIsNotInput(options.output, options.selection.pin.file);
    if (options.timeStamp) RequireTimeStamps();
    const PdfPageSize page = Measure(options);
    // From the first byte beside the output on an interrupt has to wait until that is removed.
    std::optional<InterruptGuard> guard;
    CInputCopy copy(platform::PathFromUtf8(options.input), platform::PathFromUtf8(options.output));
    if (copy.IsLarge()) {
        guard.emplace();
        copy.Begin();
    }
    const LibrarySession library;
    const SelectedSeal selected = Select(options);
    CheckCanCarryTimeStamp(options, selected);
    const StampRequest request = MakeRequest(options, wish, page, selected);
    if (!guard) guard.emplace();
    const bool large = copy.IsLarge() && !options.timeStamp;
    Made made;
    const StampResult result =
        StampShown(request, SignerFor(request, options.timeStamp, made),
                   WorkText(options, WhyUnstamped(selected.mode, large)), copy);
    ClearSelectKeyID();
    Report report = Describe(options, selected, request, result);
    const std::string stamp =
        TellTimeStamp(made.signature, WhyUnstamped(selected.mode, made.byPath), report.json);
    if (!stamp.empty()) report.text += "       " + stamp;
    return report;
}

void Bind(CLI::App& command, Options& options) {
    command.add_option("IN.pdf", options.input, "The document")->required();
    command.add_option("OUT.pdf", options.output, "The stamped document; replaced if it is there")
        ->required();
    command.add_option("--page", options.page, "From 1, or from the end: -1 is the last")
        ->capture_default_str();
    command.add_option("--at", options.at,
                       "Upper left corner of the seal, X,Y in mm from the page's upper left "
                       "corner; without it 25 mm from the lower right one");
    command.add_option("--size", options.size,
                       "Size of the seal, WIDTHxHEIGHT in mm; without it the seal's own");
    command.add_flag("--beyond-edge", options.beyondEdge,
                     "Let a part of the seal lie beyond the page's edge; without it that is "
                     "refused");
    command.add_option("--reason", options.reason, "Reason, shown with the signature");
    command.add_option("--location", options.location, "Place, shown with the signature");
    command.add_flag("--timestamp", options.timeStamp, "No stamp without a good time stamp");
    BindSelection(command, options.selection, true);
    BindContentPicture(command, options.content);
}

}  // namespace

void DeclareStamp(CLI::App& parent, Invocation& invocation) {
    AddCommand<Options>(parent, invocation, "stamp", "Put a seal on a page of a PDF and sign it",
                        "  tesmark stamp contract.pdf stamped.pdf\n"
                        "  tesmark stamp contract.pdf stamped.pdf --page 1 --at 120,230\n"
                        "  tesmark stamp in.pdf out.pdf --cert alice --seal GBESEAL --size 30x30\n"
                        "  tesmark stamp in.pdf out.pdf --pin-file pin.txt --reason Approved\n"
                        "  tesmark stamp in.pdf out.pdf --text Approved --frame 2 --colour blue\n"
                        "\n"
                        "Where the seal comes from is a setting of the machine, bSealPosition: the "
                        "keys (0), the\n"
                        "online seal service (1), or a drawing of the certificate's name in the "
                        "place of a seal\n"
                        "(3 and 4); see \"tesmark config online\". With --text it is a drawing of "
                        "that text, whatever\n"
                        "the setting. A drawing is signed with a PKCS#7.",
                        Bind, Stamp);
}

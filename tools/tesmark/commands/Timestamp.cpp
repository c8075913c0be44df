#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Declare.h"
#include "FileAccess.h"
#include "Library.h"
#include "ResultText.h"
#include "SignatureVerdict.h"
#include "TerminalText.h"
#include "commands/VerdictOutput.h"
#include "components/certservice/ServiceCodes.h"
#include "pdf/PdfSignatures.h"
#include "platform/Files.h"

namespace {

constexpr std::uint64_t kLargestSignature = 64 * 1024 * 1024;

struct Options {
    std::string input;
};

struct Named {
    std::string name;
    std::string signature;
};

std::vector<Named> SignaturesOf(const std::string& input) {
    const std::uint64_t size = CheckReadable(input);
    PdfSignatures found;
    std::string message;
    const StampError error = ReadPdfSignatures(platform::PathFromUtf8(input), found, message);
    if (error != StampError::kNotPdf) {
        if (error != StampError::kNone) throw Failure{ExitCode::kFile, message};
        std::vector<Named> list;
        for (const PdfSignature& signature : found.list) {
            list.push_back({signature.fieldName, signature.contents});
        }
        return list;
    }
    if (size > kLargestSignature) {
        throw Failure{ExitCode::kFile, "This is neither a PDF nor a signature: " + input + "."};
    }
    return {{input, ReadWholeFile(input, kLargestSignature)}};
}

enum class StampStanding { kNone, kGood, kBad };

const char* StandingText(StampStanding standing) {
    switch (standing) {
        case StampStanding::kNone: return "none";
        case StampStanding::kGood: return "good";
        case StampStanding::kBad: break;
    }
    return "bad";
}

// What is no signature at all isn't one without a time stamp.
std::optional<VerdictStep> Judge(const std::string& signature, SignatureVerdict& verdict) {
    if (KindOf(signature) != SignatureKind::kOther) return JudgeTimeStamp(signature, verdict);
    return VerdictStep{"signature", false, "form", kServiceMessageDamaged,
                       ResultText(kServiceMessageDamaged)};
}

StampStanding AddTimeStamp(const Named& named, Report& report) {
    SignatureVerdict verdict;
    const auto step = Judge(named.signature, verdict);
    const StampStanding standing = !step        ? StampStanding::kNone
                                   : step->good ? StampStanding::kGood
                                                : StampStanding::kBad;
    Json::Value json(Json::objectValue);
    if (verdict.timeStamp) json = TimeStampJson(*verdict.timeStamp);
    json["signature"] = named.name;
    json["verdict"] = StandingText(standing);
    std::string text = Padded(step && !step->good ? "BAD" : StandingText(standing), 6);
    text += Printable(named.name);
    if (verdict.timeStamp) text += "  " + TimeStampText(*verdict.timeStamp);
    if (step && !step->good) {
        json["code"] = step->code;
        json["reason"] = step->reason;
        text += "\n      WRONG: " + step->reason + " (" + ResultNumber(step->code) + ")";
    }
    report.text += text + "\n";
    report.json["timeStamps"].append(json);
    return standing;
}

Report Show(const Options& options) {
    const std::vector<Named> signatures = SignaturesOf(options.input);
    Report report;
    report.json["file"] = options.input;
    report.json["timeStamps"] = Json::Value(Json::arrayValue);
    report.exitCode = ExitCode::kNotGood;
    if (signatures.empty()) report.text = "There is no signature in it.\n";
    const LibrarySession library;
    bool anyGood = false;
    bool anyBad = false;
    for (const Named& named : signatures) {
        const StampStanding standing = AddTimeStamp(named, report);
        anyGood = anyGood || standing == StampStanding::kGood;
        anyBad = anyBad || standing == StampStanding::kBad;
    }
    if (anyGood && !anyBad) report.exitCode = ExitCode::kOk;
    return report;
}

void Bind(CLI::App& command, Options& options) {
    command.add_option("SIGNATURE", options.input, "A signature's file, or a signed PDF")
        ->required();
}

}  // namespace

void DeclareTimestamp(CLI::App& parent, Invocation& invocation) {
    AddCommand<Options>(parent, invocation, "timestamp",
                        "Show and verify the time stamps of signatures",
                        "  tesmark timestamp stamped.pdf\n"
                        "  tesmark timestamp report.txt.p7s --json",
                        Bind, Show);
}

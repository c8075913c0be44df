#include "commands/VerdictOutput.h"

#include "Output.h"
#include "ResultText.h"
#include "TerminalText.h"

namespace {

Json::Value StepsJson(const std::vector<VerdictStep>& steps) {
    Json::Value list(Json::arrayValue);
    for (const VerdictStep& step : steps) {
        Json::Value row(Json::objectValue);
        row["name"] = step.name;
        row["good"] = step.good;
        if (!step.failed.empty()) row["failed"] = step.failed;
        if (step.code) row["code"] = step.code;
        if (!step.reason.empty()) row["reason"] = step.reason;
        list.append(row);
    }
    return list;
}

Json::Value SignerJson(const SignerInfo& signer) {
    Json::Value object(Json::objectValue);
    object["name"] = signer.name;
    object["serial"] = signer.serial;
    object["issuer"] = signer.issuer;
    object["subject"] = signer.subject;
    object["algorithm"] = signer.keyType;
    object["notBefore"] = signer.notBefore;
    object["notAfter"] = signer.notAfter;
    return object;
}

Json::Value SealJson(const SealInfoOfSignature& seal) {
    Json::Value object(Json::objectValue);
    object["name"] = seal.name;
    object["number"] = seal.number;
    object["form"] = seal.form;
    object["widthMm"] = seal.widthMm;
    object["heightMm"] = seal.heightMm;
    object["property"] = seal.property;
    object["maker"] = seal.maker;
    object["madeBySigner"] = seal.madeBySigner;
    return object;
}

Json::Value Numbers(const std::vector<int>& numbers) {
    Json::Value list(Json::arrayValue);
    for (const int number : numbers) list.append(number);
    return list;
}

std::string StepText(const VerdictStep& step) {
    std::string text = std::string(step.name) + ": ";
    if (!step.good && step.failed != step.name) text += step.failed + ": ";
    text += step.reason;
    if (step.code) text += " (" + ResultNumber(step.code) + ")";
    return text;
}

// "objects 4, 17 and 3 more".
std::string ObjectsText(const std::vector<int>& numbers) {
    constexpr std::size_t kShown = 8;
    std::string text = numbers.size() == 1 ? "object " : "objects ";
    for (std::size_t i = 0; i < numbers.size() && i < kShown; ++i) {
        text += (i ? ", " : "") + std::to_string(numbers[i]);
    }
    if (numbers.size() > kShown)
        text += " and " + std::to_string(numbers.size() - kShown) + " more";
    return text;
}

std::string AdditionText(const PdfAddition& after) {
    std::string text = CountText(static_cast<std::size_t>(after.bytes), "byte") + " added since";
    if (after.signature) text += ", with a further signature";
    if (!after.compared) return text + "; what they change can't be told";
    if (after.altered.empty()) {
        return text +
               (after.signature ? " and no other change" : ", without a change to what was there");
    }
    return text + "; changed: " + ObjectsText(after.altered);
}

}  // namespace

const char* StandingText(Standing standing) {
    switch (standing) {
        case Standing::kGood: return "good";
        case Standing::kChanged: return "changed";
        case Standing::kBad: break;
    }
    return "bad";
}

Json::Value TimeStampJson(const TimeStampInfo& stamp) {
    Json::Value object(Json::objectValue);
    object["time"] = stamp.time;
    object["authority"] = stamp.authority;
    object["serial"] = stamp.serial;
    object["policy"] = stamp.policy;
    object["hash"] = stamp.hash;
    return object;
}

std::string TimeStampText(const TimeStampInfo& stamp) {
    return stamp.time + " by " + Printable(stamp.authority) + ", serial number " +
           Printable(stamp.serial);
}

Json::Value VerdictJson(const SignatureVerdict& verdict) {
    Json::Value object(Json::objectValue);
    object["kind"] = SignatureKindText(verdict.kind);
    object["steps"] = StepsJson(verdict.steps);
    if (!verdict.signer.certificate.empty()) object["signer"] = SignerJson(verdict.signer);
    object["revocationChecked"] = verdict.revocationChecked;
    if (!verdict.signingTime.empty()) object["signingTime"] = verdict.signingTime;
    if (verdict.timeStamp) object["timeStamp"] = TimeStampJson(*verdict.timeStamp);
    if (verdict.seal) object["seal"] = SealJson(*verdict.seal);
    return object;
}

std::string VerdictText(const SignatureVerdict& verdict, const std::string& indent) {
    std::string text;
    const auto line = [&](const std::string& content) { text += indent + content + "\n"; };
    if (!verdict.signer.certificate.empty()) {
        line("signer  " + Printable(verdict.signer.name) + " (" + verdict.signer.keyType +
             "), serial number " + Printable(verdict.signer.serial));
        line("issuer  " + Printable(verdict.signer.issuer));
    }
    if (!verdict.signingTime.empty()) {
        line("signed  " + verdict.signingTime + ", claimed by the signer");
    }
    if (verdict.timeStamp) line("stamp   " + TimeStampText(*verdict.timeStamp));
    if (verdict.seal) {
        line("seal    " + Printable(verdict.seal->name) + ", number " +
             Printable(verdict.seal->number) + ", " + verdict.seal->form);
        line("        seal made by " + Printable(verdict.seal->maker));
        if (verdict.seal->madeBySigner)
            line("note    seal: its maker and the signer are the same certificate");
    }
    if (!verdict.signer.certificate.empty() && !verdict.revocationChecked)
        line("note    certificate: revocation not checked (see the setting bVerifyCRL)");
    for (const VerdictStep& step : verdict.steps) {
        if (!step.good || !step.reason.empty()) {
            line((step.good ? "note    " : "WRONG   ") + StepText(step));
        }
    }
    return text;
}

Json::Value PdfSignatureJson(const PdfSignature& signature, std::uint64_t fileSize) {
    Json::Value object(Json::objectValue);
    object["field"] = signature.fieldName;
    object["filter"] = signature.filter;
    object["subFilter"] = signature.subFilter;
    object["name"] = signature.name;
    object["reason"] = signature.reason;
    object["location"] = signature.location;
    object["page"] = signature.page;
    for (const double number : signature.rectangle) object["rectangle"].append(number);
    object["certifies"] = signature.certifies;
    Json::Value covers(Json::objectValue);
    covers["whole"] = signature.problem == RangeProblem::kNone && signature.end == fileSize;
    covers["problem"] = RangeProblemText(signature.problem);
    covers["end"] = static_cast<Json::UInt64>(signature.end);
    covers["bytesAfter"] = static_cast<Json::UInt64>(signature.after.bytes);
    covers["signatureAfter"] = signature.after.signature;
    covers["compared"] = signature.after.compared;
    covers["added"] = Numbers(signature.after.added);
    covers["changed"] = Numbers(signature.after.changed);
    covers["removed"] = Numbers(signature.after.removed);
    covers["altered"] = Numbers(signature.after.altered);
    object["covers"] = covers;
    return object;
}

std::string PdfSignatureText(const PdfSignature& signature, std::uint64_t fileSize,
                             const std::string& indent) {
    std::string text;
    if (!signature.reason.empty()) text += indent + "reason  " + Printable(signature.reason) + "\n";
    if (signature.problem != RangeProblem::kNone) return text;
    text += indent + "covers  ";
    if (signature.end == fileSize) return text + "the whole document\n";
    return text + SizeText(signature.end) + " of " + SizeText(fileSize) + "; " +
           AdditionText(signature.after) + "\n";
}

#include "TimeStampWish.h"

#include "Failure.h"
#include "ResultText.h"
#include "SignatureVerdict.h"
#include "TwoStep.h"
#include "commands/VerdictOutput.h"
#include "foundation/Registry.h"
#include "include/TesmarkOpt.h"

namespace {

std::string TellNone(const std::string& why, Json::Value& json) {
    json["timeStamp"] = Json::Value();
    json["noTimeStamp"] = why;
    return "no time stamp: " + why + "\n";
}

}  // namespace

bool TimeStampsAreOn() { return ReadNumberSetting("bSignWithTimeStamp") != 0; }

void RequireTimeStamps() {
    if (TimeStampsAreOn()) return;
    throw Failure{ExitCode::kSetup,
                  "Signatures get no time stamp on this machine.",
                  {},
                  "  switch it on: tesmark config set bSignWithTimeStamp 1"};
}

int CheckTimeStamped(std::string_view signature) {
    return VerifyPDFTimeStamp(Bytes(signature), static_cast<int>(signature.size()));
}

std::string TellTimeStamp(std::string_view signature, const std::string& whyNone,
                          Json::Value& json) {
    if (!TimeStampsAreOn()) return {};
    if (!whyNone.empty()) return TellNone(whyNone, json);
    SignatureVerdict verdict;
    const auto step = JudgeTimeStamp(signature, verdict);
    if (!step) return TellNone("the library has put none in", json);
    Json::Value told(Json::objectValue);
    std::string text = "time stamp";
    if (verdict.timeStamp) {
        told = TimeStampJson(*verdict.timeStamp);
        text += " " + TimeStampText(*verdict.timeStamp);
    }
    told["verdict"] = step->good ? "good" : "bad";
    if (!step->good) {
        told["code"] = step->code;
        told["reason"] = step->reason;
        text += "; it is BAD: " + step->reason + " (" + ResultNumber(step->code) + ")";
    }
    json["timeStamp"] = told;
    return text + "\n";
}

#include "commands/InventoryJson.h"

#include "TerminalText.h"

namespace {

void PutProblem(Json::Value& json, const std::string& problem, int code) {
    json["problem"] = problem.empty() ? Json::Value() : Json::Value(problem);
    if (code) json["code"] = code;
}

}  // namespace

Json::Value SealJson(const SealFile& seal) {
    Json::Value json(Json::objectValue);
    json["file"] = Utf8FromGbk(seal.fileName);
    json["form"] = SealKindText(seal.kind);
    json["name"] = seal.name;
    json["widthMm"] = seal.widthMm > 0 ? Json::Value(seal.widthMm) : Json::Value();
    json["heightMm"] = seal.heightMm > 0 ? Json::Value(seal.heightMm) : Json::Value();
    json["size"] = static_cast<Json::UInt64>(seal.content.size());
    PutProblem(json, ProblemOf(seal), seal.readCode ? seal.readCode : seal.verifyCode);
    return json;
}

Json::Value CertificateJson(const CertificateEntry& certificate) {
    Json::Value json(Json::objectValue);
    json["certId"] = Utf8FromGbk(certificate.certId);
    json["label"] = certificate.label;
    json["commonName"] = certificate.commonName;
    json["serial"] = certificate.serial;
    json["algorithm"] = certificate.keyType == "SM2" ? "SM2" : certificate.readCode ? "" : "RSA";
    json["keyType"] = certificate.keyType;
    json["notBefore"] = certificate.notBefore;
    json["notAfter"] = certificate.notAfter;
    PutProblem(json, ProblemOf(certificate),
               certificate.readCode ? certificate.readCode : certificate.validateCode);
    json["seals"] = Json::arrayValue;
    for (const SealFile& seal : certificate.seals) json["seals"].append(SealJson(seal));
    return json;
}

Json::Value InventoryJson(const std::vector<CertificateEntry>& certificates) {
    Json::Value json(Json::arrayValue);
    for (const CertificateEntry& entry : certificates) json.append(CertificateJson(entry));
    return json;
}

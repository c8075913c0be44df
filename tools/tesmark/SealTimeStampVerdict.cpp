#include "SealTimeStampVerdict.h"

#include "CertServiceClient.h"
#include "FailedStep.h"
#include "ResultText.h"
#include "SignatureTime.h"
#include "TerminalText.h"
#include "components/certservice/TimeStampToken.h"
#include "components/seallibrary/SealTimeStamp.h"

namespace {

// As docs/certservice.md numbers them.
enum TokenField { kSerial = 2, kPolicy = 3, kAuthority = 4, kHash = 6 };

// Without a list: the seal library has asked the one that it was given.
class CServiceJudge : public CertificateJudge {
public:
    int Validate(const std::string& certificate) override {
        return m_service.Validate(certificate);
    }
    int ValidateWithList(const std::string& certificate, const std::string&) override {
        return m_service.Validate(certificate);
    }

private:
    CertServiceClient m_service;
};

std::optional<TimeStampInfo> ReadToken(const std::string& der) {
    const auto token = TimeStampToken::Parse(der);
    if (!token) return {};
    const auto field = [&](TokenField number) {
        std::string value;
        token->Field(number, value);
        return Utf8FromGbk(value.substr(0, value.find('\0')));
    };
    return TimeStampInfo{LocalTimeText(token->Time()), field(kAuthority), field(kSerial),
                         field(kPolicy), field(kHash)};
}

}  // namespace

std::optional<VerdictStep> JudgeTimeStampOf(const SealSignature& signature,
                                            SignatureVerdict& verdict) {
    if (!signature.timeStamp) return {};
    verdict.timeStamp = ReadToken(*signature.timeStamp);
    CServiceJudge judge;
    std::time_t time = 0;
    const int code = JudgeTimeStamp(*signature.timeStamp, signature.signature, "", judge, time);
    if (code) return VerdictStep{"time stamp", false, FailedStepOf(code), code, ResultText(code)};
    return VerdictStep{"time stamp", true, "", 0, ""};
}

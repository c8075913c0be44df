#include "commands/ExamineSources.h"

#include <string>

#include "ServiceAddress.h"
#include "Settings.h"
#include "StampPicture.h"
#include "TerminalText.h"
#include "commands/ExamineExchange.h"
#include "components/http/Address.h"
#include "components/http/SealServiceSettings.h"
#include "foundation/Registry.h"
#include "foundation/SealSettings.h"

namespace {

constexpr char kSource[] = "seal source";
constexpr char kStatus[] = "seal status";

void ExamineService(Findings& findings) {
    const auto url = ReadSetting(FindSetting("sWSURL"));
    if (!url || url->empty()) {
        findings.Problem(kSource, "Seals come from the online service; its address is not set.",
                         "tesmark config online http://HOST/QelmServlet");
        return;
    }
    const std::string shown = Printable(WithoutPasswords(*url));
    const std::string fault = FaultOfServiceAddress(*url);
    if (fault.empty()) {
        findings.Good(kSource, "the online service at " + shown + " (not asked)");
    } else {
        findings.Problem(kSource, "No online service can be asked at " + shown + ": " + fault + ".",
                         "tesmark config online http://HOST/QelmServlet");
    }
}

std::string KeysText() {
    const unsigned int position = ReadNumberSetting("bSealPosition");
    if (position <= FindSetting("bSealPosition").largest) return "the keys";
    return "the keys: bSealPosition is " + std::to_string(position) +
           ", which stands for no other place";
}

void ExamineSource(Findings& findings, SealSource source) {
    if (source == SealSource::kOnline) return ExamineService(findings);
    findings.Good(kSource, source == SealSource::kName
                               ? "none: pictures are drawn of the certificate's name"
                               : KeysText());
}

// The library asks for the status at exactly that.
bool StatusIsAskedFor() { return ReadNumberSetting("ReqEsealStatus") == kRequestStatus; }

void ExamineStatus(Findings& findings) {
    if (!StatusIsAskedFor()) {
        findings.Good(kStatus, "not asked for");
        return;
    }
    constexpr char kAdvice[] = "tesmark config set sEsealStateUrl http://HOST/PATH";
    const std::string url = ReadSetting(FindSetting("sEsealStateUrl")).value_or("");
    const std::string fault = url.empty() ? "" : FaultOfStatusAddress(url);
    const std::string shown = Printable(WithoutPasswords(url));
    if (url.empty()) {
        findings.Problem(kStatus, "A seal's status is to be asked for; no address is set.",
                         kAdvice);
    } else if (!fault.empty()) {
        findings.Problem(kStatus, "No status can be asked for at " + shown + ": " + fault + ".",
                         kAdvice);
    } else {
        findings.Good(kStatus, shown + " (not asked)");
    }
}

// "10 seconds to reach a server, ..."
std::string WayText(const SealServiceSettings& settings) {
    const std::string certificates = settings.caFile.empty()
                                         ? "the system's certificates"
                                         : "the certificates of " + Printable(settings.caFile);
    const std::string proxy =
        settings.proxy.empty() ? "" : ", by " + Printable(WithoutPasswords(settings.proxy));
    return std::to_string(settings.connectTimeoutMs / 1'000) + " seconds to reach a server, " +
           std::to_string(settings.timeoutMs / 1'000) + " for all, " +
           std::to_string(settings.largestAnswer >> 20) + " MiB of an answer, " + certificates +
           proxy;
}

// The library's exchanges and those of the seal library, as the transport reads its settings.
void ExamineWay(Findings& findings, bool inUse) {
    constexpr ExchangeMaker kTransport = {"service exchange", "Service", "the transport"};
    const std::size_t before = findings.Problems();
    if (inUse) {
        ExamineExchange(findings, kTransport);
        ExamineNumber(findings, kTransport, "ServiceLargestAnswer", "MiB");
    }
    if (findings.Problems() > before) return;
    findings.Good(kTransport.subject,
                  WayText(ReadSealServiceSettings()) + (inUse ? "" : " (not in use)"));
}

}  // namespace

void ExamineSources(Findings& findings) {
    const SealSource source = ConfiguredSource();
    ExamineSource(findings, source);
    ExamineStatus(findings);
    ExamineWay(findings, source == SealSource::kOnline || StatusIsAskedFor());
}

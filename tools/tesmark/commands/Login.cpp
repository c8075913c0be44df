#include <optional>
#include <string>

#include "CertServiceClient.h"
#include "Declare.h"
#include "Inventory.h"
#include "KeyDevices.h"
#include "Library.h"
#include "Pin.h"
#include "ResultText.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "commands/InventoryJson.h"
#include "include/TesmarkOpt.h"

namespace {

struct LoginOptions {
    std::string cert;
    bool scan = false;
    PinOptions pin;
};

struct LogoutOptions {};

const CertificateEntry& FindScan(const std::vector<CertificateEntry>& certificates) {
    for (const CertificateEntry& entry : certificates) {
        if (IsScan(entry)) return entry;
    }
    throw Failure{ExitCode::kSetup,
                  "There is no phone to scan with.",
                  {},
                  InventoryText(certificates, "  ") +
                      "  make one for development: tesmark key scan --name NAME"};
}

// The seals that it has brought are there as long as this process.
Report LogInByScan(const CertServiceClient& service) {
    FindScan(ListCertificates(service, WithSeals::kNo));
    Scan();
    const auto certificates = ListCertificates(service, WithSeals::kYes);
    const CertificateEntry& entry = FindScan(certificates);
    Report report;
    report.json = CertificateJson(entry);
    report.json["scan"] = true;
    report.text = "scan   " + CountText(entry.seals.size(), "seal") + "\n" +
                  InventoryText({entry}, "       ");
    return report;
}

std::string WantedPin(const PinOptions& options) {
    auto pin = GivenPin(options);
    if (!pin) pin = ReadHidden("PIN: ");
    if (pin) return *pin;
    throw Failure{ExitCode::kPin,
                  "There is no terminal to ask for the PIN.",
                  {},
                  "  give it with --pin-file FILE (\"-\" is standard input)"};
}

void OpenKey(const CertificateEntry& entry, const std::string& pin) {
    const LogMark mark;
    try {
        CheckResult(CurrentCertLogin(entry.certId.c_str(), pin.c_str()),
                    "The key can't be opened with this PIN.", mark);
    } catch (Failure& failure) {
        TellTriesLeft(entry.certId, failure);
        throw;
    }
}

Report Login(const LoginOptions& options) {
    const LibrarySession library;
    const CertServiceClient service;
    if (options.scan) return LogInByScan(service);
    const auto certificates = ListCertificates(service, WithSeals::kNo);
    const CertificateEntry& entry = FindCertificate(certificates, options.cert);
    if (IsScan(entry)) return LogInByScan(service);
    OpenKey(entry, WantedPin(options.pin));
    const int tries = TriesLeft(entry.certId);
    Report report;
    report.json["certId"] = Utf8FromGbk(entry.certId);
    report.json["commonName"] = entry.commonName;
    report.json["scan"] = false;
    report.json["triesLeft"] = tries < 0 ? Json::Value() : Json::Value(tries);
    report.text = "login  " + Printable(Utf8FromGbk(entry.certId)) + "  " +
                  Printable(entry.commonName) +
                  (tries < 0 ? std::string() : "  " + TriesText(tries)) + "\n";
    return report;
}

Report LogOut(const LogoutOptions&) {
    const LibrarySession library;
    const CertServiceClient service;
    const auto certificates = ListCertificates(service, WithSeals::kNo);
    const LogMark mark;
    CheckResult(Logout(), "Not all keys could be told to end their logins.", mark);
    Report report;
    report.json["certificates"] = Json::arrayValue;
    for (const CertificateEntry& entry : certificates) {
        report.json["certificates"].append(Utf8FromGbk(entry.certId));
    }
    report.text = "logout " + CountText(certificates.size(), "certificate") + "\n";
    return report;
}

void BindLogin(CLI::App& command, LoginOptions& options) {
    auto* scan = command.add_flag("--scan", options.scan, "Scan with the phone instead of a PIN");
    command
        .add_option("--cert", options.cert,
                    "Certificate: its certId, name or serial number, as \"tesmark list\" shows "
                    "them; not needed if there is only one")
        ->excludes(scan);
    BindPin(command, options.pin);
}

void BindLogout(CLI::App&, LogoutOptions&) {}

}  // namespace

void DeclareLogin(CLI::App& parent, Invocation& invocation) {
    AddCommand<LoginOptions>(
        parent, invocation, "login",
        "Try a key's PIN and tell the tries that are left, or try a scan by phone",
        "  tesmark login --cert alice --pin-file pin.txt\n"
        "  tesmark login --scan\n"
        "\n"
        "A login helps no other command: with the open certificate service it holds for the\n"
        "process that made it, and so ends with this command. To stamp or sign, give the PIN to\n"
        "\"tesmark stamp\" or \"tesmark sign\". A service of another maker may keep it.",
        BindLogin, Login);
}

void DeclareLogout(CLI::App& parent, Invocation& invocation) {
    AddCommand<LogoutOptions>(
        parent, invocation, "logout", "Have the certificate service end the logins of all keys",
        "  tesmark logout\n"
        "\n"
        "With the open certificate service logins hold for one process: there is none to end but\n"
        "this command's own, and those of other programs stay. A service of another maker that\n"
        "keeps logins for several programs ends them.",
        BindLogout, LogOut);
}

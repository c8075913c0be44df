#include "commands/KeyScan.h"

#include <openssl/rand.h>

#include <string>

#include "Failure.h"
#include "ResultText.h"
#include "TerminalText.h"
#include "commands/Development.h"
#include "components/certservice/KeyFolder.h"
#include "components/certservice/Places.h"
#include "components/certservice/ScanDevice.h"
#include "components/certservice/ScanPhone.h"
#include "components/certservice/ServiceCodes.h"
#include "components/crypto/Hex.h"
#include "platform/Files.h"

namespace {

struct Options {
    std::string name;
    std::string id;
    std::string algorithm = "sm2";
    std::string organization;
    std::string serial;
    int days = 3 * 365;
    std::string answer;
    bool remove = false;
};

// Nobody types it: the phone's record holds it.
std::string RandomPin() {
    std::string bytes(8, '\0');
    if (RAND_bytes(reinterpret_cast<unsigned char*>(bytes.data()),
                   static_cast<int>(bytes.size())) != 1) {
        throw Failure{ExitCode::kFailed, "The phone's PIN can't be made."};
    }
    return CapitalHexOf(bytes);
}

void CheckCode(int code, const std::string& folder) {
    if (code == kServiceOk) return;
    if (code == kServiceNoSuchCertificate) {
        throw Failure{ExitCode::kSetup,
                      "This machine has no phone to scan with.",
                      {},
                      "  make one for development: tesmark key scan --name NAME"};
    }
    throw Failure{ExitCodeFor(code),
                  "The phone's record can't be read or written: " +
                      platform::Utf8FromPath(ScanFolderIn(folder)) + ".",
                  code};
}

// A new person's key on the phone. What the phone says to a request stays as it was.
ScanPhone MakePerson(const Options& options, const std::string& folder) {
    ScanPhone phone;
    const int code = ReadScanPhone(folder, phone);
    if (code != kServiceNoSuchCertificate) CheckCode(code, folder);
    phone.pin = RandomPin();
    CertificateRequest request;
    request.commonName = GbkFromArgument(options.name, "The name");
    request.organization = GbkFromArgument(options.organization, "The organization");
    request.serial = options.serial;
    const DevelopmentKey key =
        MakeDevelopmentKey(AlgorithmOf(options.algorithm), options.days, request);
    const std::string certId =
        StoreKey(ScanFolderIn(folder), NameOfKeyFolder(options.id, options.name), key.key.get(),
                 key.certificate, phone.pin);
    phone.person = certId.substr(sizeof kKeyFolderPrefix - 1);
    return phone;
}

ScanAnswer WantedAnswer(const std::string& name) {
    ScanAnswer answer{};
    if (ScanAnswerOf(name, answer)) return answer;
    throw Failure{ExitCode::kUsage,
                  "A phone has no answer \"" + name + "\": there are accept, refuse and silent."};
}

Report Remove(const std::string& folder) {
    CheckCode(RemoveScanPhone(folder), folder);
    Report report;
    report.json["removed"] = kScanCertId;
    report.text =
        "phone  removed; the keys stay in " + platform::Utf8FromPath(ScanFolderIn(folder)) + "\n";
    return report;
}

Report Scan(const Options& options) {
    CheckKeyId(options.id);
    const std::string folder = KeyFolderPath();
    if (options.remove) return Remove(folder);
    ScanAnswer answer{};
    if (!options.answer.empty()) answer = WantedAnswer(options.answer);
    ScanPhone phone;
    if (options.name.empty()) {
        CheckCode(ReadScanPhone(folder, phone), folder);
    } else {
        phone = MakePerson(options, folder);
    }
    if (!options.answer.empty()) phone.answer = answer;
    if (!options.name.empty() || !options.answer.empty()) {
        CheckCode(WriteScanPhone(folder, phone), folder);
    }
    Report report;
    report.json["certId"] = kScanCertId;
    report.json["person"] = phone.person;
    report.json["answer"] = NameOf(phone.answer);
    report.json["folder"] = platform::Utf8FromPath(ScanFolderIn(folder));
    report.text = std::string("phone  ") + kScanCertId + "  of " + Printable(phone.person) +
                  ", answer: " + NameOf(phone.answer) + "\n";
    return report;
}

void Bind(CLI::App& command, Options& options) {
    auto* name = command.add_option("--name", options.name,
                                    "A new person's key on the phone, with this common name; who "
                                    "was there before stays on it, but is no longer asked");
    const auto ofName = [&](const char* option, auto& value, const char* text) {
        return command.add_option(option, value, text)->needs(name);
    };
    ofName("--algorithm", options.algorithm, "sm2, rsa2048, rsa3072 or rsa4096")
        ->capture_default_str();
    ofName("--days", options.days, "Days for which the certificate is valid")
        ->check(CLI::Range(1, 7300))
        ->capture_default_str();
    ofName("--organization", options.organization, "Organization in the certificate");
    ofName("--serial", options.serial, "Serial number, hexadecimal; random without it");
    ofName("--id", options.id, "Name of the key's folder; without it the name or serial number");
    auto* answer = command.add_option(
        "--answer", options.answer,
        "What the phone says to a request: accept, refuse, or silent for nothing at all");
    command.add_flag("--remove", options.remove, "There is no phone any more")
        ->excludes(name)
        ->excludes(answer);
}

}  // namespace

void DeclareKeyScan(CLI::App& parent, Invocation& invocation) {
    AddCommand<Options>(
        parent, invocation, "scan",
        "Set up or show the stand-in, for development, of a phone that is scanned with",
        "  tesmark key scan --name \"Zhang San\" --id zhang\n"
        "  tesmark seal new --cert hlvqDev000000000000000000 --form gm2014 --name \"Zhang San\"\n"
        "  tesmark key scan --answer refuse\n"
        "  tesmark key scan --remove\n"
        "\n"
        "There is no phone, and no network is used: its person's key lies among the development\n"
        "keys, and what it says to a request is set here.",
        Bind, Scan);
}

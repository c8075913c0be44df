#include <string>

#include "CertServiceClient.h"
#include "Declare.h"
#include "FileAccess.h"
#include "Inventory.h"
#include "Library.h"
#include "ResultText.h"
#include "TerminalText.h"
#include "TwoStep.h"
#include "components/certservice/Certificate.h"
#include "foundation/Text.h"
#include "include/TesmarkOpt.h"

namespace {

constexpr std::uint64_t kLargestCertificate = 1024 * 1024;

struct Options {
    std::string file;
    std::string cert;
};

std::string DerOfFile(const std::string& path) {
    const auto certificates = ReadCertificates(ReadWholeFile(path, kLargestCertificate));
    if (!certificates.empty()) return DerOf<i2d_X509>(certificates.front().get());
    throw Failure{ExitCode::kFile, "There is no certificate in " + path + ", in PEM or DER."};
}

// What a stamp or a signature would take without asking: the one that is named, or the only one.
std::string InUse(const std::vector<CertificateEntry>& certificates, const std::string& cert) {
    if (cert.empty() && certificates.size() != 1) return "";
    return FindCertificate(certificates, cert).certId;
}

std::string Holder(const std::vector<CertificateEntry>& certificates, const std::string& der) {
    for (const CertificateEntry& entry : certificates) {
        if (entry.readCode == 0 && entry.der == der) return entry.certId;
    }
    return "";
}

Json::Value OrNull(const std::string& certId) {
    return certId.empty() ? Json::Value() : Json::Value(Utf8FromGbk(certId));
}

std::string Shown(const std::string& certId) { return Printable(Utf8FromGbk(certId)); }

void Judge(const std::string& holder, const std::string& selected, bool inUse, Report& report) {
    if (holder.empty()) {
        report.exitCode = ExitCode::kSetup;
        report.text = "absent   it is on no key of this machine\n";
    } else if (!inUse) {
        report.exitCode = ExitCode::kChoice;
        report.text = "present  " + Shown(holder) + ", not in use: " +
                      (selected.empty() ? "several certificates are there, name one with --cert"
                                        : Shown(selected) + " is") +
                      "\n";
    } else {
        report.text = "present  " + Shown(holder) + ", in use\n";
    }
}

Report Present(const Options& options) {
    const std::string der = DerOfFile(options.file);
    const LibrarySession library;
    const CertServiceClient service;
    const auto certificates = ListCertificates(service, WithSeals::kNo);
    const std::string selected = InUse(certificates, options.cert);
    const std::string holder = Holder(certificates, der);
    const std::string text = Base64Encode(der);
    const LogMark mark;
    SetCurrentCertID(selected.c_str());
    const int code = CheckIsCertExist(Bytes(text), static_cast<int>(text.size()));
    ClearSelectKeyID();
    // Without a key there is nothing to compare with; the list has told that already.
    const bool noKey = code == TESMARK_NO_KEY || code == TESMARK_NO_CERT;
    if (code != TESMARK_CERT_NOT_IN_USE && !noKey) {
        CheckResult(code, "The keys can't be compared with it.", mark);
    }
    Report report;
    const bool inUse = code == 0 && !holder.empty();
    report.json["certId"] = OrNull(holder);
    report.json["selected"] = OrNull(selected);
    report.json["present"] = !holder.empty();
    report.json["inUse"] = inUse;
    Judge(holder, selected, inUse, report);
    return report;
}

void Bind(CLI::App& command, Options& options) {
    command.add_option("CERT", options.file, "A certificate's file, PEM or DER")->required();
    command.add_option("--cert", options.cert,
                       "The certificate that is used, as for \"tesmark stamp\"; not needed if "
                       "there is only one");
}

}  // namespace

void DeclarePresent(CLI::App& parent, Invocation& invocation) {
    AddCommand<Options>(
        parent, invocation, "present",
        "Tell whether a certificate is on a key of this machine, and in use",
        "  tesmark present alice.pem\n"
        "  tesmark present alice.der --cert DevKeys/alice\n"
        "\n"
        "In use is the only certificate that is there, or the one that --cert names. Exit code 0:\n"
        "on a key and in use; 5: on a key, but another one is in use, or of several none is "
        "named;\n"
        "3: on no key. No PIN is needed. Where of several none is named, and the certificate is\n"
        "that of a phone, a scan decides.",
        Bind, Present);
}

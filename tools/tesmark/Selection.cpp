#include "Selection.h"

#include <CLI/CLI.hpp>
#include <cstdlib>

#include "CertServiceClient.h"
#include "Failure.h"
#include "Inventory.h"
#include "Library.h"
#include "ResultText.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "TimeStampWish.h"
#include "TwoStep.h"
#include "drawing/Picture.h"
#include "foundation/Text.h"
#include "include/TesmarkOpt.h"

namespace {

constexpr double kPictureDpi = 300;

constexpr int kFieldKeyType = 3;
constexpr int kFieldCommonName = 17;

const CertificateEntry& Wanted(const std::vector<CertificateEntry>& certificates,
                               const SelectionOptions& options) {
    return options.serial.empty() ? FindCertificate(certificates, options.cert)
                                  : FindBySerial(certificates, options.serial);
}

// The library could not ask; the command line can name what it would have asked for.
[[noreturn]] void AskForChoice(const CertServiceClient& service) {
    const auto certificates = ListCertificates(service, WithSeals::kYes);
    std::size_t seals = 0;
    for (const CertificateEntry& entry : certificates) seals += entry.seals.size();
    Failure failure{ExitCode::kChoice, "There is more than one seal, and no dialog to choose in.",
                    TESMARK_CANCELLED,
                    InventoryText(certificates, "  ") + "  name one: --cert CERT, --seal SEAL"};
    if (seals == 0) {
        failure.exitCode = ExitCode::kSetup;
        failure.sentence = "There is no seal in any key.";
        failure.hint = InventoryText(certificates, "  ") +
                       "  make one for development: tesmark seal new --name NAME";
    } else if (seals == 1) {
        failure.sentence = "There is more than one certificate, and no dialog to choose in.";
    }
    throw failure;
}

// Where time stamps are on, one is asked for to try it. A person who is still to be asked for the
// PIN needs the terminal.
int SelectByLibrary(bool keyIsOpen, int& length) {
    const Progress progress(keyIsOpen && TimeStampsAreOn() ? kWaitingForAuthority : "");
    return GetSealInfo(nullptr, &length);
}

// Also opens the key, where a PIN is there: before the library tries it.
std::string LetLibraryChoose(const SelectionOptions& options, const CertServiceClient& service) {
    const auto pin = GivenPin(options.pin);
    if (pin) {
        const auto certificates = ListCertificates(service, WithSeals::kNo);
        LogIn(FindCertificate(certificates, "").certId, *pin);
    }
    const LogMark mark;
    std::string picture;
    int length = 0;
    const int code = SelectByLibrary(pin.has_value(), length);
    if (code == TESMARK_CANCELLED) AskForChoice(service);
    // Says how to come by a key.
    if (code == TESMARK_NO_KEY || code == TESMARK_NO_CERT) FindCertificate({}, "");
    CheckResult(code, "No seal can be had.", mark);
    picture.resize(static_cast<std::size_t>(std::max(length, 0)));
    CheckResult(GetSealInfo(reinterpret_cast<unsigned char*>(picture.data()), &length),
                "No seal can be had.", mark);
    return picture;
}

void CheckUsable(const CertificateEntry& certificate, const SealFile& seal) {
    if (const std::string problem = ProblemOf(seal); !problem.empty()) {
        const int code = seal.readCode ? seal.readCode : seal.verifyCode;
        throw Failure{ExitCodeFor(code), "The seal \"" + seal.name + "\" can't be used.", code};
    }
    if (const std::string problem = ProblemOf(certificate); !problem.empty()) {
        throw Failure{ExitCode::kFailed, "The certificate \"" + certificate.commonName +
                                             "\" can't be used: " + problem + "."};
    }
}

// The host remembers serial number and file; the mode asks for the seal and becomes its own.
void TellLibrary(const CertificateEntry& certificate, const SealFile& seal) {
    const std::string base64 = Base64Encode(seal.content);
    const LogMark mark;
    const int code =
        SetCertSeal(Bytes(certificate.serial), static_cast<int>(certificate.serial.size()),
                    Bytes(base64), static_cast<int>(base64.size()), 1);
    CheckResult(code, "The library doesn't find this certificate with this seal.", mark);
    if (SelectedCertificate() != certificate.certId) {
        throw Failure{ExitCode::kFailed,
                      "The library selected another certificate than the one that was named."};
    }
}

SealFile ChooseHere(const SelectionOptions& options, const CertServiceClient& service) {
    const auto certificates = ListCertificates(service, WithSeals::kYes);
    std::vector<const CertificateEntry*> candidates;
    if (options.cert.empty() && options.serial.empty()) {
        for (const CertificateEntry& entry : certificates) candidates.push_back(&entry);
    } else {
        candidates.push_back(&Wanted(certificates, options));
    }
    const ChosenSeal chosen = FindSeal(candidates, options.seal);
    CheckUsable(*chosen.certificate, *chosen.seal);
    if (const auto pin = GivenPin(options.pin)) LogIn(chosen.certificate->certId, *pin);
    TellLibrary(*chosen.certificate, *chosen.seal);
    return *chosen.seal;
}

void SetSize(SelectedSeal& selected, int widthMm, int heightMm) {
    selected.widthMm = widthMm;
    selected.heightMm = heightMm;
    if (widthMm > 0 && heightMm > 0) return;
    PictureInfo info;
    if (!ReadPictureInfo(selected.picture, info)) {
        throw Failure{ExitCode::kFailed,
                      "The seal tells no size, and its picture can't be measured: use --size."};
    }
    selected.widthMm = MillimetresOf(info.width, kPictureDpi);
    selected.heightMm = MillimetresOf(info.height, kPictureDpi);
}

}  // namespace

void BindSelection(CLI::App& command, SelectionOptions& options, bool withSeal) {
    auto* cert = command.add_option("--cert", options.cert,
                                    "Certificate: its certId, name or serial number, as \"tesmark "
                                    "list\" shows them; not needed if there is only one");
    command.add_option("--serial", options.serial, "Certificate by its serial number alone")
        ->excludes(cert);
    if (withSeal) {
        command.add_option("--seal", options.seal,
                           "Seal: its file in the key, or its name; not needed if there is only "
                           "one");
    }
    BindPin(command, options.pin);
}

SelectedSeal SelectSeal(const SelectionOptions& options) {
    const CertServiceClient service;
    SelectedSeal selected;
    int widthMm = -1;
    int heightMm = -1;
    if (options.cert.empty() && options.serial.empty() && options.seal.empty()) {
        selected.picture = LetLibraryChoose(options, service);
        GetSealPicSize(&widthMm, &heightMm);
    } else {
        const SealFile seal = ChooseHere(options, service);
        selected.picture = seal.picture;
        widthMm = seal.widthMm;
        heightMm = seal.heightMm;
    }
    selected.mode = GetEsealMode();
    selected.certId = SelectedCertificate();
    if (selected.certId.empty()) {
        throw Failure{ExitCode::kFailed, "The library has selected no certificate."};
    }
    std::string der;
    service.ExportCertificate(selected.certId, der);
    selected.commonName = service.CertificateField(der, kFieldCommonName);
    selected.keyType = service.CertificateField(der, kFieldKeyType) == "SM2" ? "SM2" : "RSA";
    SetSize(selected, widthMm, heightMm);
    return selected;
}

SelectedCert SelectCertificate(const SelectionOptions& options) {
    const CertServiceClient service;
    const auto certificates = ListCertificates(service, WithSeals::kNo);
    const CertificateEntry& entry = Wanted(certificates, options);
    if (const auto pin = GivenPin(options.pin)) LogIn(entry.certId, *pin);
    SetContentSignCertId(Bytes(entry.certId), static_cast<int>(entry.certId.size()));
    return {entry.certId, entry.commonName, entry.keyType == "SM2" ? "SM2" : "RSA", entry.der};
}

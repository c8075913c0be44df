#include "Selection.h"

#include <strings.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cstdlib>
#include <optional>

#include "CertServiceClient.h"
#include "Failure.h"
#include "Inventory.h"
#include "Library.h"
#include "ResultText.h"
#include "SealStatus.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "TimeStampWish.h"
#include "TwoStep.h"
#include "components/drawing/Picture.h"
#include "foundation/Text.h"
#include "include/TesmarkOpt.h"

namespace {

constexpr double kPictureDpi = 300;

constexpr int kFieldKeyType = 3;
constexpr int kFieldCommonName = 17;

// Room for any text that the library gives for a key's type.
constexpr std::size_t kKeyTypeRoom = 512;

bool IsNamed(const SelectionOptions& options) {
    return !options.cert.empty() || !options.serial.empty();
}

const CertificateEntry& Wanted(const std::vector<CertificateEntry>& certificates,
                               const SelectionOptions& options) {
    return options.serial.empty() ? FindCertificate(certificates, options.cert)
                                  : FindBySerial(certificates, options.serial);
}

// The library tells a dialog that the user has left and one that could not be shown by one code.
constexpr char kNoneChosen[] =
    ", and none was chosen: the dialog was left, or can't be shown here.";

// The command line can name what the library has asked for, or would have.
[[noreturn]] void AskForSeal(const CertServiceClient& service) {
    const auto certificates = ListCertificates(service, WithSeals::kYes);
    std::size_t seals = 0;
    bool scan = false;
    for (const CertificateEntry& entry : certificates) {
        seals += entry.seals.size();
        scan = scan || IsScan(entry);
    }
    Failure failure{ExitCode::kChoice, std::string("There is more than one seal") + kNoneChosen,
                    TESMARK_CANCELLED,
                    InventoryText(certificates, "  ") + "  name one: --cert CERT, --seal SEAL"};
    if (seals == 0 && !scan) {
        failure.exitCode = ExitCode::kSetup;
        failure.sentence = "There is no seal in any key.";
        failure.hint = InventoryText(certificates, "  ") +
                       "  make one for development: tesmark seal new --name NAME";
    } else if (seals <= 1) {
        failure.sentence = std::string("There is more than one certificate") + kNoneChosen;
    }
    throw failure;
}

[[noreturn]] void AskForCertificate(const std::vector<CertificateEntry>& certificates) {
    throw Failure{ExitCode::kChoice,
                  std::string("There is more than one certificate") + kNoneChosen,
                  TESMARK_CANCELLED, InventoryText(certificates, "  ") + "  name one: --cert CERT"};
}

// A phone wants no PIN from here.
void LogInWith(const std::optional<std::string>& pin, const CertificateEntry& certificate) {
    if (pin && !IsScan(certificate)) LogIn(certificate.certId, *pin);
}

// Where time stamps are on, one is asked for to try it. A person who is still to be asked for the
// PIN needs the terminal.
int SelectByLibrary(bool keyIsOpen, int& length) {
    const Progress progress(keyIsOpen && TimeStampsAreOn() ? kWaitingForAuthority : "");
    return GetSealInfo(nullptr, &length);
}

// While it lives the library chooses a seal without a try of its key: for the time until it is
// known which key the PIN is for.
class ChoiceWithoutKey {
public:
    ChoiceWithoutKey() { SetGetStampPictureMode(0); }
    ~ChoiceWithoutKey() { SetGetStampPictureMode(1); }
    ChoiceWithoutKey(const ChoiceWithoutKey&) = delete;
    ChoiceWithoutKey& operator=(const ChoiceWithoutKey&) = delete;
};

std::string ChosenPicture(const CertServiceClient& service, bool keyIsOpen) {
    const LogMark mark;
    std::string picture;
    int length = 0;
    const int code = SelectByLibrary(keyIsOpen, length);
    if (code == TESMARK_CANCELLED) AskForSeal(service);
    // Says how to come by a key.
    if (code == TESMARK_NO_KEY || code == TESMARK_NO_CERT) FindCertificate({}, "");
    CheckResult(code, "No seal can be had.", mark);
    // Of several seals of a scan none was picked.
    if (length <= 0) AskForSeal(service);
    picture.resize(static_cast<std::size_t>(length));
    CheckResult(GetSealInfo(reinterpret_cast<unsigned char*>(picture.data()), &length),
                "No seal can be had.", mark);
    return picture;
}

// Checked, which the library has left for later.
const CertificateEntry& ChosenCertificate(const std::vector<CertificateEntry>& certificates) {
    const LogMark mark;
    std::string certId;
    const int code = FetchInTwoSteps(
        [](unsigned char* out, int* outLen) { return GetSelectedCertId(out, outLen); }, certId);
    CheckResult(code, "The certificate that was chosen can't be used.", mark);
    return FindCertificate(certificates, Utf8FromGbk(certId));
}

// With a PIN the key is opened before the library tries it; where several could be meant, as soon
// as one is chosen.
std::string LetLibraryChoose(const SelectionOptions& options, const CertServiceClient& service) {
    const auto pin = GivenPin(options.pin);
    if (!pin) return ChosenPicture(service, false);
    const auto certificates = ListCertificates(service, WithSeals::kNo);
    if (certificates.size() <= 1) {
        LogInWith(pin, FindCertificate(certificates, ""));
        return ChosenPicture(service, true);
    }
    const ChoiceWithoutKey choice;
    std::string picture = ChosenPicture(service, false);
    LogInWith(pin, ChosenCertificate(certificates));
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

// A phone that is named is scanned with: its seals are there then.
std::vector<CertificateEntry> ListToChooseFrom(const SelectionOptions& options,
                                               const CertServiceClient& service) {
    auto certificates = ListCertificates(service, WithSeals::kYes);
    if (!IsNamed(options) || !IsScan(Wanted(certificates, options))) return certificates;
    Scan();
    return ListCertificates(service, WithSeals::kYes);
}

bool IsNameOf(const SealFile& seal, const std::string& wanted) {
    return strcasecmp(Utf8FromGbk(seal.fileName).c_str(), wanted.c_str()) == 0 ||
           strcasecmp(seal.name.c_str(), wanted.c_str()) == 0;
}

// A part of a name must be one of no other seal on this machine: with ESEAL nobody means the
// GBESEAL of a key that lacks an ESEAL.
void CheckNamedAlone(const std::vector<CertificateEntry>& certificates, const SealFile& found,
                     const std::string& wanted) {
    if (wanted.empty() || IsNameOf(found, wanted)) return;
    std::size_t count = 0;
    for (const CertificateEntry& entry : certificates) {
        for (const SealFile& seal : entry.seals) {
            if (Utf8FromGbk(seal.fileName).find(wanted) != std::string::npos ||
                seal.name.find(wanted) != std::string::npos) {
                ++count;
            }
        }
    }
    if (count <= 1) return;
    throw Failure{ExitCode::kChoice,
                  "\"" + wanted +
                      "\" is a part of more than one seal's name, and the name of none "
                      "of this certificate.",
                  {},
                  InventoryText(certificates, "  ")};
}

// A seal that has no file has no name to tell either.
std::string ContentOfSeal() {
    std::string content;
    FetchInTwoSteps([](unsigned char* out, int* outLen) { return GetSelectedSeal(out, outLen); },
                    content);
    return content;
}

// The seal's file among those of its key; empty for one of another place.
std::string FileOfSeal(const CertServiceClient& service, const std::string& certId,
                       const std::string& content) {
    std::vector<std::string> names;
    if (service.ListFiles(certId, names) != 0) return {};
    for (const std::string& name : names) {
        std::string file;
        if (SealKindOf(name) && service.ReadFile(certId, name, file) == 0 && file == content) {
            return Utf8FromGbk(name);
        }
    }
    return {};
}

SealFile ChooseHere(const SelectionOptions& options, const CertServiceClient& service) {
    const auto certificates = ListToChooseFrom(options, service);
    std::vector<const CertificateEntry*> candidates;
    if (!IsNamed(options)) {
        for (const CertificateEntry& entry : certificates) candidates.push_back(&entry);
    } else {
        candidates.push_back(&Wanted(certificates, options));
    }
    const ChosenSeal chosen = FindSeal(candidates, options.seal);
    CheckNamedAlone(certificates, *chosen.seal, options.seal);
    CheckUsable(*chosen.certificate, *chosen.seal);
    CheckSealStatus(*chosen.seal);
    LogInWith(GivenPin(options.pin), *chosen.certificate);
    TellLibrary(*chosen.certificate, *chosen.seal);
    return *chosen.seal;
}

// The library asks which one. It scans where that is a phone's.
std::string LetLibraryChooseCertificate(const std::vector<CertificateEntry>& certificates) {
    const LogMark mark;
    std::array<char, kKeyTypeRoom> type{};
    const int code = GetCertType(type.data());
    // Without a dialog the library goes on with no certificate, whose export fails.
    if (code == TESMARK_FAILED || code == TESMARK_CERT_EXPORT_FAILED) {
        AskForCertificate(certificates);
    }
    CheckResult(code, "No certificate can be had.", mark);
    std::string certId = SelectedCertificate();
    if (certId.empty()) AskForCertificate(certificates);
    return certId;
}

}  // namespace

void BindSelection(CLI::App& command, SelectionOptions& options, bool withSeal) {
    auto* cert = command.add_option("--cert", options.cert,
                                    "Certificate: its certId, name or serial number, as \"tesmark "
                                    "list\" shows them; without it the only one, or the one "
                                    "that is chosen in a dialog");
    command.add_option("--serial", options.serial, "Certificate by its serial number alone")
        ->excludes(cert);
    if (withSeal) {
        command.add_option("--seal", options.seal,
                           "Seal: its file in the key, or its name; without it the only one, or "
                           "the one that is chosen in a dialog");
    }
    BindPin(command, options.pin);
}

SelectedSeal SelectSeal(const SelectionOptions& options) {
    const CertServiceClient service;
    SelectedSeal selected;
    int widthMm = -1;
    int heightMm = -1;
    if (!IsNamed(options) && options.seal.empty()) {
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
    selected.sealFile = FileOfSeal(service, selected.certId, ContentOfSeal());
    selected.sealName = NameOfSelectedSeal(selected.mode);
    selected.commonName = service.CertificateField(der, kFieldCommonName);
    selected.keyType = service.CertificateField(der, kFieldKeyType) == "SM2" ? "SM2" : "RSA";
    SetSize(selected, widthMm, heightMm);
    return selected;
}

SelectedCert SelectCertificate(const SelectionOptions& options) {
    const CertServiceClient service;
    const auto certificates = ListCertificates(service, WithSeals::kNo);
    const bool asks = !IsNamed(options) && certificates.size() > 1;
    const CertificateEntry& entry =
        asks ? FindCertificate(certificates, Utf8FromGbk(LetLibraryChooseCertificate(certificates)))
             : Wanted(certificates, options);
    if (!asks && IsScan(entry)) Scan();
    LogInWith(GivenPin(options.pin), entry);
    SetContentSignCertId(Bytes(entry.certId), static_cast<int>(entry.certId.size()));
    return {entry.certId, entry.commonName, entry.keyType == "SM2" ? "SM2" : "RSA", entry.der};
}

std::string NameOfSelectedSeal(int mode) {
    const std::string content = ContentOfSeal();
    const SealFileKind kind = mode == 0   ? SealFileKind::kEs
                              : mode == 1 ? SealFileKind::kGm
                                          : SealFileKind::kGb;
    const SealFile seal = ReadSealFile("", kind, content);
    return seal.readCode ? "" : seal.name;
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

#include <algorithm>
#include <cmath>
#include <ctime>
#include <string>

#include "CertServiceClient.h"
#include "Declare.h"
#include "FileAccess.h"
#include "Inventory.h"
#include "KeyDevices.h"
#include "Library.h"
#include "Pin.h"
#include "ResultText.h"
#include "TerminalText.h"
#include "commands/Development.h"
#include "commands/SealPicture.h"
#include "components/certservice/KeyFolder.h"
#include "components/certservice/Places.h"
#include "components/certservice/ScanDevice.h"
#include "components/certservice/ScanPhone.h"
#include "components/crypto/Signature.h"
#include "components/seallibrary/EsSeal.h"
#include "components/seallibrary/SealMaker.h"

namespace {

constexpr std::time_t kHour = 3600;
constexpr std::time_t kDay = 24 * kHour;

struct Options {
    std::string cert;
    std::string form = "gb2020";
    std::string name;
    int validDays = 3 * 365;
    PictureOptions picture;
    PinOptions pin;
};

struct Form {
    const char* option;
    const char* filePrefix;  // the library knows the form by the file's name alone
    const char* text;
};

constexpr Form kForms[] = {{"gm2014", "SEAL01", "GM/T 0031-2014"},
                           {"gb2020", "GBESEAL", "GB/T 38540-2020"},
                           {"es", "ESEAL", "ES"},
                           {"picture", "HLVQSEAL", "picture"}};

const Form& FormOf(const std::string& option) {
    for (const Form& form : kForms) {
        if (option == form.option) return form;
    }
    throw Failure{ExitCode::kUsage, "No form of seals is called \"" + option +
                                        "\": there are gm2014, gb2020, es and picture."};
}

// Signed with a seal maker's key that the development CA has certified for this one seal and that
// nobody keeps.
std::string NationalSeal(const Options& options, const CertificateEntry& signer,
                         const SealPicture& picture) {
    const bool sm2 = signer.keyType == "SM2";
    CertificateRequest request;
    request.organization = "Velmora";
    request.commonName = "Velmora Development Seal Maker";
    const DevelopmentKey maker =
        MakeDevelopmentKey(AlgorithmOf(sm2 ? "sm2" : "rsa2048"), options.validDays, request);
    SealOrder order;
    order.form = options.form == "gm2014" ? SealForm::kGm2014 : SealForm::kGb2020;
    order.esId = MakeSealNumber();
    order.name = options.name;
    order.signerCertificates = {signer.der};
    order.picture = picture.content;
    order.pictureType = picture.type;
    order.widthMm = picture.widthMm;
    order.heightMm = picture.heightMm;
    order.created = std::time(nullptr);
    order.validFrom = order.created - kHour;
    order.validTo = order.created + options.validDays * kDay;
    const HashAlgorithm hash = sm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
    std::string error;
    std::string seal = MakeSeal(
        order, maker.certificate,
        [&](std::string_view tbs) { return SignData(maker.key.get(), hash, tbs); }, error);
    if (seal.empty()) throw Failure{ExitCode::kFailed, "The seal can't be made: " + error};
    return seal;
}

std::string EsSeal(const Options& options, const SealPicture& picture) {
    const std::string name = GbkFromArgument(options.name, "The name");
    std::string seal = MakeEsSeal(name, picture.content);
    if (seal.empty()) {
        throw Failure{ExitCode::kUsage, "The name of an ES seal has at most " +
                                            std::to_string(kEsNameCapacity) + " bytes of GBK."};
    }
    return seal;
}

// The first of PREFIX, PREFIX_2, PREFIX_3 ... that the key doesn't have.
std::string FreeName(const std::vector<std::string>& taken, const std::string& prefix) {
    std::string name = prefix;
    for (int i = 2; std::find(taken.begin(), taken.end(), name) != taken.end(); ++i) {
        name = prefix + "_" + std::to_string(i);
    }
    return name;
}

// The file's name, one that the key doesn't have yet.
std::string WriteNew(KeyDevice& device, const std::string& certId, const Form& form,
                     const std::string& seal) {
    std::vector<std::string> names;
    device.ListFiles(certId, names);
    std::string name = FreeName(names, form.filePrefix);
    if (const int code = device.WriteFile(certId, name, seal)) {
        throw Failure{ExitCodeFor(code), "The seal can't be written into the key.", code,
                      "  a token wants its PIN for this: --pin-file FILE"};
    }
    return name;
}

// The device shows a phone's files after a scan alone: they are written where they lie.
std::string PutOntoPhone(const Form& form, const std::string& seal) {
    const std::string path = KeyFolderPath();
    ScanPhone phone;
    if (const int code = ReadScanPhone(path, phone)) {
        throw Failure{ExitCodeFor(code), "The phone's record can't be read.", code};
    }
    KeyFolder keys(ScanFolderIn(path));
    return WriteNew(keys, kKeyFolderPrefix + phone.person, form, seal);
}

// Development keys are written without a PIN, tokens only after a login.
std::string PutIntoKey(const CertificateEntry& signer, const Form& form, const std::string& seal,
                       const PinOptions& pinOptions) {
    if (signer.certId == kScanCertId) return PutOntoPhone(form, seal);
    for (const auto& device : OpenKeyDevices()) {
        if (!device->Owns(signer.certId)) continue;
        if (const auto pin = GivenPin(pinOptions)) {
            if (const int code = device->Login(signer.certId, *pin)) {
                Failure failure{ExitCodeFor(code), "The key can't be opened with this PIN.", code};
                TellTriesLeft(signer.certId, failure);
                throw failure;
            }
        }
        return WriteNew(*device, signer.certId, form, seal);
    }
    throw Failure{ExitCode::kSetup, "The key is not one that tesmark can write into: " +
                                        Utf8FromGbk(signer.certId) + "."};
}

// The library takes a phone's file of the other form for an ES seal.
void CheckForm(const Options& options, const CertificateEntry& signer) {
    if (signer.certId != kScanCertId || options.form != "gb2020") return;
    throw Failure{ExitCode::kUsage,
                  "A phone brings no seals of this form to the library.",
                  {},
                  "  name another: --form gm2014, --form es, --form picture"};
}

std::string MakeSealFile(const Options& options, const CertificateEntry& signer,
                         const SealPicture& picture) {
    if (options.form == "picture") return picture.content;
    return options.form == "es" ? EsSeal(options, picture) : NationalSeal(options, signer, picture);
}

Report NewSeal(const Options& options) {
    const Form& form = FormOf(options.form);
    const SealPicture picture = MakeSealPicture(options.picture, options.name);
    const LibrarySession library;
    const CertServiceClient service;
    const auto certificates = ListCertificates(service, WithSeals::kNo);
    const CertificateEntry& signer = FindCertificate(certificates, options.cert);
    CheckForm(options, signer);
    const std::string seal = MakeSealFile(options, signer, picture);
    const std::string file = PutIntoKey(signer, form, seal, options.pin);
    const SealFile made = ReadSealFile(file, *SealKindOf(file), seal);
    if (const std::string problem = ProblemOf(made); !problem.empty()) {
        throw Failure{ExitCode::kFailed, "The seal was written, but " + problem + ".",
                      made.readCode ? made.readCode : made.verifyCode};
    }
    Report report;
    report.json["certId"] = Utf8FromGbk(signer.certId);
    report.json["file"] = file;
    report.json["form"] = form.text;
    report.json["name"] = options.name;
    report.json["widthMm"] = picture.widthMm;
    report.json["heightMm"] = picture.heightMm;
    report.text = "seal   " + file + "  " + form.text + "  " + Printable(options.name) + "  " +
                  std::to_string(picture.widthMm) + " x " + std::to_string(picture.heightMm) +
                  " mm  in " + Utf8FromGbk(signer.certId) + "\n";
    return report;
}

void Bind(CLI::App& command, Options& options) {
    command
        .add_option("--name", options.name, "The seal's name; drawn on the arc without a picture")
        ->required();
    command.add_option("--cert", options.cert,
                       "The certificate that may sign with it; not needed if there is only one");
    command
        .add_option("--form", options.form,
                    "gm2014 (GM/T 0031-2014), gb2020 (GB/T 38540-2020), es (the old ES file) or "
                    "picture (the picture alone, as a phone may bring it)")
        ->capture_default_str();
    command.add_option("--valid-days", options.validDays, "Days for which the seal is valid")
        ->check(CLI::Range(1, 7300))
        ->capture_default_str();
    BindPicture(command, options.picture);
    BindPin(command, options.pin);
}

}  // namespace

void DeclareSeal(CLI::App& parent, Invocation& invocation) {
    CLI::App* group = AddGroup(parent, "seal", "Make electronic seals for development",
                               "  tesmark seal new --name \"Velmora Ltd\"");
    AddCommand<Options>(
        *group, invocation, "new",
        "Make a seal, drawn as a round company seal or from a picture, and put it into the key",
        "  tesmark seal new --name \"Velmora Ltd\"\n"
        "  tesmark seal new --cert alice --form es --name alice --picture alice.png --width 40\n"
        "  tesmark seal new --name \"Velmora Ltd\" --purpose CONTRACTS --number 1101080012345",
        Bind, NewSeal);
}

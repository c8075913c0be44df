#include "commands/Development.h"

#include <array>
#include <ctime>
#include <utility>

#include "Failure.h"
#include "PlatformText.h"
#include "ResultText.h"
#include "components/certservice/KeyFolder.h"
#include "components/certservice/Places.h"
#include "components/certservice/ServiceCodes.h"
#include "components/crypto/Signature.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace {

constexpr std::time_t kHour = 3600;
constexpr std::time_t kDay = 24 * kHour;

constexpr auto kAlgorithms = std::to_array<std::pair<const char*, DevelopmentAlgorithm>>({
    {"sm2", {KeyKind::kSm2, 0, "SM2"}},
    {"rsa2048", {KeyKind::kRsa, 2048, "RSA 2048"}},
    {"rsa3072", {KeyKind::kRsa, 3072, "RSA 3072"}},
    {"rsa4096", {KeyKind::kRsa, 4096, "RSA 4096"}},
});

std::unique_ptr<DevelopmentCa> OpenCa(KeyKind kind) {
    const std::string folder = CaFolderPath();
    const std::string trust = TrustFolderPath();
    int code = 0;
    auto ca = DevelopmentCa::Open(kind, folder, trust, code);
    if (ca) return ca;
    throw Failure{ExitCode::kSetup, "The development CA can't be opened or made.", code,
                  "  it lies in " + platform::Utf8FromPath(folder) + ", its certificate in " +
                      platform::Utf8FromPath(trust) +
                      "\n  other folders: tesmark config set CaFolder, TrustFolder" +
                      kOtherFoldersHint};
}

}  // namespace

DevelopmentAlgorithm AlgorithmOf(const std::string& name) {
    for (const auto& [known, algorithm] : kAlgorithms) {
        if (name == known) return algorithm;
    }
    throw Failure{ExitCode::kUsage, "No algorithm is called \"" + name +
                                        "\": there are sm2, rsa2048, rsa3072 and rsa4096."};
}

DevelopmentKey MakeDevelopmentKey(const DevelopmentAlgorithm& algorithm, int days,
                                  CertificateRequest request) {
    const auto ca = OpenCa(algorithm.kind);
    DevelopmentKey made;
    made.key.reset(GenerateKey(algorithm.kind, algorithm.rsaBits));
    if (!made.key) throw Failure{ExitCode::kFailed, "The key can't be made."};
    request.notBefore = std::time(nullptr) - kHour;
    request.notAfter = std::time(nullptr) + days * kDay;
    made.certificate = ca->Issue(made.key.get(), request);
    if (made.certificate.empty()) {
        throw Failure{ExitCode::kUsage,
                      "No certificate can say this: is the serial number hexadecimal with at most "
                      "40 digits, and is the name short enough (64 characters)?"};
    }
    return made;
}

void CheckKeyId(const std::string& id) {
    if (id.empty() || IsKeyName(id)) return;
    throw Failure{ExitCode::kUsage,
                  "--id is the name of a key's folder, of at most " +
                      std::to_string(kMaximumKeyName) +
                      " letters, digits, \"-\", \"_\" and \".\", the first of them no \".\": \"" +
                      id + "\" is none."};
}

std::string NameOfKeyFolder(const std::string& id, const std::string& name) {
    if (!id.empty()) return id;
    return IsKeyName(name) ? name : "";
}

std::string StoreKey(const std::string& path, const std::string& name, EVP_PKEY* key,
                     const std::string& certificate, const std::string& pin) {
    KeyFolder folder(path);
    std::string certId;
    const int code = folder.Store(name, key, certificate, pin, certId);
    if (code == kServiceBadArgument) {
        throw Failure{ExitCode::kFailed,
                      "The key can't be stored: a key \"" + name +
                          "\" is there already, or its folder can't have this name.",
                      code, "  give it another name with --id; see: tesmark key list"};
    }
    if (code)
        throw Failure{ExitCodeFor(code),
                      "The key can't be stored in " + platform::Utf8FromPath(path) + ".", code};
    return certId;
}

std::string DateAfter(int days) {
    const std::tm time = platform::LocalTime(std::time(nullptr) + days * kDay);
    std::array<char, 16> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d", &time);
    return text.data();
}

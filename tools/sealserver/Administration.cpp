#include "tools/sealserver/Administration.h"

#include "components/text/Utf8Text.h"
#include "tools/sealserver/OfferedSeal.h"
#include "tools/sealserver/ServiceRequest.h"

namespace {

// A seal without a name is called so by the library, too.
constexpr char kUnnamed[] = "印章";

std::string Trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

std::string Checked(const std::string& what, const std::string& text, std::size_t limit) {
    const std::string trimmed = Trimmed(text);
    std::u32string characters;
    if (!Utf8Characters(trimmed, characters))
        throw Refusal(what + " holds what is no text in UTF-8, or control characters.");
    if (trimmed.size() > limit)
        throw Refusal(what + " has more than " + std::to_string(limit) + " bytes.");
    return trimmed;
}

StoredCertificate CertificateOfTexts(const std::string& serial, const std::string& name) {
    StoredCertificate certificate;
    certificate.serial = Checked("The serial number", serial, kMaxRequestText);
    certificate.name = Checked("The distinguished name", name, kMaxRequestText);
    constexpr char kDigits[] = "0123456789ABCDEFabcdef";
    if (certificate.serial.find_first_of(kDigits) == std::string::npos)
        throw Refusal("The serial number has no digit.");
    if (SerialKey(certificate.serial).find_first_not_of("0123456789ABCDEF") != std::string::npos)
        throw Refusal("The serial number holds what is no hexadecimal digit.");
    return certificate;
}

// An "ES" file has no number in it by which the same one would be told: it would be given out
// twice, under two numbers.
std::string NumberOf(SealStore& store, std::int64_t certificate, const OfferedSeal& offered,
                     const std::string& given) {
    const std::string number = Checked("The number", given, kMaxAnswerText);
    if (!number.empty()) return number;
    if (const auto known = store.NumberOfFile(certificate, offered.hash))
        throw Refusal("The certificate has this seal file already, under the number " + *known +
                      ". Give another number to add it once more.");
    const std::string own = Checked("The number", offered.sealId, kMaxAnswerText);
    return own.empty() ? store.FirstFreeNumber(certificate) : own;
}

}  // namespace

std::int64_t EnterCertificate(SealStore& store, const std::string& file, const std::string& serial,
                              const std::string& name) {
    const bool hasTexts = !Trimmed(serial).empty() || !Trimmed(name).empty();
    if (!file.empty() && hasTexts)
        throw Refusal("Give a certificate's file or its two texts, not both.");
    if (!file.empty()) {
        const auto certificate = ReadOfferedCertificate(file);
        if (!certificate) throw Refusal("The file holds no certificate in PEM or DER.");
        return store.AddCertificate(*certificate);
    }
    if (Trimmed(serial).empty())
        throw Refusal("Give a certificate's file, or its serial number and name.");
    return store.AddCertificate(CertificateOfTexts(serial, name));
}

std::int64_t EnterSeal(SealStore& store, std::int64_t certificate, const SealEntry& entry) {
    if (!store.Certificate(certificate)) throw Refusal("There is no such certificate any more.");
    const auto offered = ReadOfferedSeal(entry.file);
    if (!offered)
        throw Refusal("The file is no seal: neither of GM/T 0031 or GB/T 38540 nor \"ES\".");
    StoredSeal seal;
    seal.certificate = certificate;
    seal.number = NumberOf(store, certificate, *offered, entry.number);
    seal.name = Checked("The name", entry.name, kMaxAnswerText);
    if (seal.name.empty()) seal.name = Checked("The name", offered->name, kMaxAnswerText);
    if (seal.name.empty()) seal.name = kUnnamed;
    seal.form = offered->form;
    seal.sealId = offered->sealId;
    seal.hash = offered->hash;
    seal.file = entry.file;
    try {
        return store.AddSeal(seal);
    } catch (const DatabaseFailure& failure) {
        if (!failure.IsConflict()) throw;
        throw Refusal("The certificate has a seal of this number already.");
    }
}

std::string WarningAboutSeal(SealStore& store, std::int64_t seal) {
    const auto stored = store.Seal(seal);
    const auto certificate = stored ? store.Certificate(stored->certificate) : std::nullopt;
    const auto offered = stored ? ReadOfferedSeal(stored->file) : std::nullopt;
    return certificate && offered ? WarningAbout(*offered, *certificate) : std::string();
}

#include "fakes/CertServiceAnswers.h"

#include <cstdlib>
#include <functional>

#include "fakes/World.h"

namespace fakes {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kHashSize = 32;

Answer Fails(int result) {
    Answer answer;
    answer.result = result;
    return answer;
}

Answer Gives(std::string output) {
    Answer answer;
    answer.output = std::move(output);
    return answer;
}

int DigitValue(char c) {
    for (int value = 0; value < 64; ++value) {
        if (kAlphabet[value] == c) return value;
    }
    return -1;
}

}  // namespace

Answer UserList(const Call&) {
    std::string list;
    for (const Certificate& certificate : Certificates()) {
        list += certificate.label + "||" + certificate.certId + "&&&";
    }
    return Gives(list);
}

Answer DeviceKind(const Call& call) {
    const Certificate* const certificate = FindCertificate(call.arguments[0]);
    return certificate != nullptr ? Gives(certificate->device) : Fails(kUnknownCertificate);
}

Answer FileNames(const Call& call) {
    const Certificate* const certificate = FindCertificate(call.arguments[0]);
    if (certificate == nullptr) return Fails(kUnknownCertificate);
    std::string names;
    for (const auto& file : certificate->files) names += file.first + "&&&";
    return Gives(names);
}

Answer FileContent(const Call& call) {
    const Certificate* const certificate = FindCertificate(call.arguments[0]);
    if (certificate == nullptr) return Fails(kUnknownCertificate);
    for (const auto& file : certificate->files) {
        if (file.first == call.arguments[1]) return Gives(file.second);
    }
    return Fails(kNoSuchFile);
}

Answer CertificateDer(const Call& call) {
    const Certificate* const certificate = FindCertificate(call.arguments[0]);
    return certificate != nullptr ? Gives(certificate->Der()) : Fails(kUnknownCertificate);
}

Answer CertificateField(const Call& call) {
    const Certificate* const certificate = FindCertificateByDer(call.arguments[0]);
    if (certificate == nullptr) return Fails(kUnknownCertificate);
    switch (std::atoi(call.arguments[1].c_str())) {
        case 2: return Gives(certificate->Serial());
        case 3: return Gives(certificate->keyType);
        case 11: return Gives(certificate->notBefore);
        case 12: return Gives(certificate->notAfter);
        case 17: return Gives(certificate->label);
        default: return Gives("field " + call.arguments[1] + " of " + certificate->certId);
    }
}

Answer CertificateValidity(const Call& call) {
    const Certificate* const certificate = FindCertificateByDer(call.arguments[0]);
    return Fails(certificate != nullptr ? certificate->validity : kUnknownCertificate);
}

Answer SignatureOf(const Call& call) {
    const bool known = FindCertificate(call.arguments[0]) != nullptr;
    return known ? Gives(call.function + " by " + call.arguments[0]) : Fails(kUnknownCertificate);
}

Answer HashOf(const Call& call) {
    const std::size_t seed = std::hash<std::string>{}(call.arguments[0] + call.arguments[1]);
    std::string hash;
    for (std::size_t i = 0; i < kHashSize; ++i) {
        hash += static_cast<char>(seed >> (8 * (i % sizeof seed)));
    }
    return Gives(hash);
}

Answer Base64Text(const Call& call) {
    const std::string& bytes = call.arguments[0];
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        unsigned group = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            group =
                group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            const bool padding = i + k > bytes.size();
            text += padding ? '=' : kAlphabet[group >> (18 - 6 * k) & 63];
        }
    }
    return Gives(text);
}

Answer Base64Bytes(const Call& call) {
    std::string bytes;
    unsigned group = 0;
    int bits = 0;
    for (const char c : call.arguments[0]) {
        const int value = DigitValue(c);
        if (value < 0) break;
        group = group << 6 | static_cast<unsigned>(value);
        bits += 6;
        if (bits < 8) continue;
        bits -= 8;
        bytes += static_cast<char>(group >> bits);
    }
    return Gives(bytes);
}

}  // namespace fakes

#include "fakes/World.h"

#include <map>

namespace fakes {

namespace {

constexpr std::size_t kEsHeaderSize = 328;
constexpr std::size_t kEsPictureLength = 12;
constexpr std::size_t kEsName = 86;

struct State {
    std::vector<Certificate> certificates;
    std::map<std::string, NationalSeal> seals;
    int loads = 0;
    int unloads = 0;
};

// Leaked on purpose: the service's file may be unloaded while the process ends.
State& Current() {
    static auto* const state = new State;
    return *state;
}

}  // namespace

std::string Certificate::Der() const { return "DER of " + certId; }

std::string Certificate::Serial() const { return serial.empty() ? "serial of " + certId : serial; }

Certificate& AddCertificate(const std::string& label, const std::string& certId) {
    Certificate& certificate = Current().certificates.emplace_back();
    certificate.label = label;
    certificate.certId = certId;
    return certificate;
}

void AddFile(const std::string& certId, const std::string& name, const std::string& content) {
    for (Certificate& certificate : Current().certificates) {
        if (certificate.certId == certId) certificate.files.emplace_back(name, content);
    }
}

const Certificate* FindCertificate(const std::string& certId) {
    for (const Certificate& certificate : Current().certificates) {
        if (certificate.certId == certId) return &certificate;
    }
    return nullptr;
}

const Certificate* FindCertificateByDer(const std::string& der) {
    for (const Certificate& certificate : Current().certificates) {
        if (certificate.Der() == der) return &certificate;
    }
    return nullptr;
}

const std::vector<Certificate>& Certificates() { return Current().certificates; }

std::string EsSeal(const std::string& picture, const std::string& name) {
    std::string file(kEsHeaderSize, '\0');
    file.replace(0, 2, "ES");
    for (std::size_t i = 0; i < 4; ++i) {
        file[kEsPictureLength + i] = static_cast<char>(picture.size() >> (8 * i));
    }
    file.replace(kEsName, name.size(), name);
    return file + picture;
}

NationalSeal& AddNationalSeal(const std::string& content, const std::string& nameUtf8,
                              const std::string& picture) {
    NationalSeal& seal = Current().seals[content];
    seal.nameUtf8 = nameUtf8;
    seal.picture = picture;
    return seal;
}

const NationalSeal* FindNationalSeal(const std::string& content) {
    const auto seal = Current().seals.find(content);
    return seal == Current().seals.end() ? nullptr : &seal->second;
}

int ServiceLoads() { return Current().loads; }
int ServiceUnloads() { return Current().unloads; }
void NoteServiceLoad() { ++Current().loads; }
void NoteServiceUnload() { ++Current().unloads; }

void ResetWorld() { Current() = {}; }

}  // namespace fakes

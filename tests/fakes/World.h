// World.h - the keys and seals from which the stand-ins answer by themselves.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace fakes {

// A certificate in a hardware key and the files beside it, in the order in which they are named.
struct Certificate {
    std::string label;
    std::string certId;
    std::string device = "HARD";
    std::string keyType = "SM2";
    std::string serial;  // empty: "serial of " and the identifier
    std::string notBefore = "20000101000000";
    std::string notAfter = "20991231235959";
    int validity = 0;  // the result of SOF_ValidateCert
    std::vector<std::pair<std::string, std::string>> files;

    // What SOF_ExportUserCert gives.
    std::string Der() const;
    std::string Serial() const;
};

// The certificate stays in the world until Reset; the reference until the next one is added.
Certificate& AddCertificate(const std::string& label, const std::string& certId);
// For a certificate that was added before.
void AddFile(const std::string& certId, const std::string& name, const std::string& content);
const Certificate* FindCertificate(const std::string& certId);
const Certificate* FindCertificateByDer(const std::string& der);
const std::vector<Certificate>& Certificates();

// A file of the old format: 328 bytes of header, then the picture.
std::string EsSeal(const std::string& picture, const std::string& name = "seal");

// A seal that the seal library reads.
struct NationalSeal {
    std::string nameUtf8;
    std::string picture;
    int width = 40;
    int height = 40;
    std::vector<std::string> fields = std::vector<std::string>(11, "field");
    int verifyResult = 0;
};

// Makes the seal library know the file with this content; any other file is kUnknownSeal to it.
NationalSeal& AddNationalSeal(const std::string& content, const std::string& nameUtf8,
                              const std::string& picture);
const NationalSeal* FindNationalSeal(const std::string& content);

constexpr int kUnknownSeal = 0x0B000001;
constexpr int kUnknownCertificate = 0x0A00001B;
constexpr int kNoSuchFile = 0x0A000031;

// How often the certificate service's file was loaded and unloaded since Reset.
int ServiceLoads();
int ServiceUnloads();
void NoteServiceLoad();
void NoteServiceUnload();

void ResetWorld();

}  // namespace fakes

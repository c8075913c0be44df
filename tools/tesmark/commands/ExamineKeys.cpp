#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "CertServiceClient.h"
#include "Failure.h"
#include "Inventory.h"
#include "KeyDevices.h"
#include "Library.h"
#include "PathText.h"
#include "ResultText.h"
#include "TerminalText.h"
#include "commands/Findings.h"
#include "components/certservice/KeyFolder.h"
#include "components/certservice/Places.h"
#include "platform/Files.h"

namespace {

namespace fs = std::filesystem;

std::string AdviceFor(const CertificateEntry& certificate) {
    if (certificate.readCode) return "restore the key from a copy, or remove it";
    if (certificate.validateCode == -1) {
        return "put its CA's certificate into the trust folder, a renewed one if that has expired";
    }
    return "get a new certificate";
}

std::string AdviceFor(const SealFile& seal) {
    if (seal.readCode) return "write the seal into the key again, or remove the file";
    return "ask the seal's maker for a new one; for development: tesmark seal new";
}

void ExamineSeals(Findings& findings, const CertificateEntry& certificate) {
    for (const SealFile& seal : certificate.seals) {
        const std::string who = Printable(Utf8FromGbk(seal.fileName)) + " in " +
                                Printable(Utf8FromGbk(certificate.certId));
        const std::string problem = ProblemOf(seal);
        if (problem.empty()) {
            findings.Good("seal",
                          who + ", " + SealKindText(seal.kind) + ", " + Printable(seal.name));
        } else {
            findings.Problem("seal", who + ": " + problem + ".", AdviceFor(seal));
        }
    }
}

void ExamineCertificate(Findings& findings, const CertificateEntry& certificate) {
    const std::string who = Printable(Utf8FromGbk(certificate.certId));
    const std::string problem = ProblemOf(certificate);
    if (problem.empty()) {
        findings.Good("key", who + ", " + Printable(certificate.commonName) + ", until " +
                                 certificate.notAfter.substr(0, 10));
    } else {
        findings.Problem("key", who + ": " + problem + ".", AdviceFor(certificate));
    }
    ExamineSeals(findings, certificate);
}

// A folder whose certificate can't be read is no key to anybody: only a look at the disk shows it.
void ExamineFolder(Findings& findings) {
    const std::string path = KeyFolderPath();
    KeyFolder folder(path);
    std::vector<DeviceCertificate> certificates;
    folder.ListCertificates(certificates);
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(FileAt(platform::Utf8FromPath(path)), error)) {
        const std::string certId = kKeyFolderPrefix + TextOf(entry.path().filename());
        const bool hidden = TextOf(entry.path().filename()).starts_with('.');
        if (hidden || !entry.is_directory(error)) continue;
        const bool listed = std::any_of(
            certificates.begin(), certificates.end(),
            [&](const DeviceCertificate& certificate) { return certificate.certId == certId; });
        if (!listed) {
            findings.Problem("key", certId + ": its certificate is damaged or missing.",
                             "restore or remove " + TextOf(entry.path()));
        }
    }
}

void ExamineTries(Findings& findings) {
    for (const auto& device : OpenKeyDevices()) {
        std::vector<DeviceCertificate> certificates;
        device->ListCertificates(certificates);
        for (const DeviceCertificate& certificate : certificates) {
            if (device->RetriesLeft(certificate.certId) != 0) continue;
            findings.Problem(
                "key",
                Utf8FromGbk(certificate.certId) + ": the key is locked after too many wrong PINs.",
                "have it unlocked by whoever gave it out");
        }
    }
}

}  // namespace

void ExamineKeys(Findings& findings) {
    try {
        const LibrarySession library;
        const CertServiceClient service;
        const auto certificates = ListCertificates(service, WithSeals::kYes);
        if (certificates.empty()) {
            findings.Problem("keys", "No key is present.",
                             "plug one in; for development: tesmark key new --name NAME");
        }
        for (const CertificateEntry& entry : certificates) ExamineCertificate(findings, entry);
    } catch (const Failure& failure) {
        findings.Problem("keys", "The keys can't be examined: " + failure.sentence,
                         "mend what is wrong above first");
    }
    ExamineFolder(findings);
    ExamineTries(findings);
}

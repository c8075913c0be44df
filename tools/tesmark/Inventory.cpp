#include "Inventory.h"

#include <strings.h>

#include <algorithm>
#include <functional>

#include "CertServiceClient.h"
#include "Output.h"
#include "ResultText.h"
#include "TerminalText.h"
#include "include/TesmarkOpt.h"

namespace {

// Fields of SOF_GetCertInfo.
constexpr int kFieldSerial = 2;
constexpr int kFieldKeyType = 3;
constexpr int kFieldNotBefore = 11;
constexpr int kFieldNotAfter = 12;
constexpr int kFieldCommonName = 17;

// In the certId, whoever has made the certificate service.
constexpr char kScanPlaceholder[] = "hlvqDev000000000000000000";

// "20261121093000" to "2026-11-21 09:30:00"; another form stays as it is.
std::string ReadableTime(const std::string& time) {
    const bool digits =
        std::all_of(time.begin(), time.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (time.size() != 14 || !digits) return time;
    return time.substr(0, 4) + "-" + time.substr(4, 2) + "-" + time.substr(6, 2) + " " +
           time.substr(8, 2) + ":" + time.substr(10, 2) + ":" + time.substr(12, 2);
}

CertificateEntry ReadCertificate(const CertServiceClient& service,
                                 const CertServiceClient::User& user) {
    CertificateEntry entry;
    entry.certId = user.certId;
    entry.label = user.label;
    entry.usable = service.DeviceKind(user.certId) == "HARD";
    entry.readCode = service.ExportCertificate(user.certId, entry.der);
    if (entry.readCode) return entry;
    entry.commonName = service.CertificateField(entry.der, kFieldCommonName);
    entry.serial = service.CertificateField(entry.der, kFieldSerial);
    entry.keyType = service.CertificateField(entry.der, kFieldKeyType);
    entry.notBefore = ReadableTime(service.CertificateField(entry.der, kFieldNotBefore));
    entry.notAfter = ReadableTime(service.CertificateField(entry.der, kFieldNotAfter));
    entry.validateCode = service.Validate(entry.der);
    return entry;
}

void ReadSeals(const CertServiceClient& service, CertificateEntry& entry) {
    std::vector<std::string> names;
    if (service.ListFiles(entry.certId, names) != 0) return;
    for (const std::string& name : names) {
        const auto kind = SealKindOf(name);
        if (!kind) continue;
        std::string content;
        if (const int code = service.ReadFile(entry.certId, name, content)) {
            SealFile unread;
            unread.fileName = name;
            unread.kind = *kind;
            unread.readCode = code;
            entry.seals.push_back(std::move(unread));
            continue;
        }
        entry.seals.push_back(ReadSealFile(name, *kind, std::move(content)));
    }
}

// The certificate's word in a table: RSA keys have many names for their type.
std::string Algorithm(const CertificateEntry& entry) {
    if (entry.readCode) return "?";
    return entry.keyType == "SM2" ? "SM2" : "RSA";
}

std::string State(const std::string& problem) { return problem.empty() ? "good" : problem; }

bool EqualIgnoringCase(const std::string& left, const std::string& right) {
    return strcasecmp(left.c_str(), right.c_str()) == 0;
}

// The one item for which `matches` holds; null for none, and for several with `several` set.
template <typename Item>
const Item* Only(const std::vector<const Item*>& items,
                 const std::function<bool(const Item&)>& matches, bool& several) {
    const Item* found = nullptr;
    for (const Item* item : items) {
        if (!matches(*item)) continue;
        if (found) {
            several = true;
            return nullptr;
        }
        found = item;
    }
    return found;
}

// Exact matches win over parts of a name.
template <typename Item>
const Item* Match(const std::vector<const Item*>& items, const std::string& wanted,
                  std::vector<std::string> (*names)(const Item&), bool& several) {
    const auto exactly = [&](const Item& item) {
        const auto all = names(item);
        return std::any_of(all.begin(), all.end(), [&](const std::string& name) {
            return EqualIgnoringCase(name, wanted);
        });
    };
    const auto partly = [&](const Item& item) {
        const auto all = names(item);
        return std::any_of(all.begin(), all.end(), [&](const std::string& name) {
            return name.find(wanted) != std::string::npos;
        });
    };
    const Item* found = Only<Item>(items, exactly, several);
    return found || several ? found : Only<Item>(items, partly, several);
}

std::vector<std::string> NamesOfCertificate(const CertificateEntry& entry) {
    return {Utf8FromGbk(entry.certId),
            Utf8FromGbk(entry.certId.substr(entry.certId.rfind('/') + 1)), entry.serial,
            entry.label, entry.commonName};
}

std::vector<std::string> NamesOfSeal(const SealFile& seal) {
    return {Utf8FromGbk(seal.fileName), seal.name};
}

[[noreturn]] void RefuseCertificate(const std::vector<CertificateEntry>& certificates,
                                    const std::string& wanted, bool several) {
    if (certificates.empty()) {
        throw Failure{ExitCode::kSetup, "No key is present.", TESMARK_NO_KEY,
                      "  plug one in, or make one for development: tesmark key new --name NAME"};
    }
    const std::string list = InventoryText(certificates, "  ");
    if (wanted.empty()) {
        throw Failure{
            ExitCode::kChoice, "Several certificates are present: name one with --cert.", {}, list};
    }
    throw Failure{ExitCode::kChoice,
                  several ? "\"" + wanted + "\" names more than one certificate."
                          : "No certificate is called \"" + wanted + "\".",
                  {},
                  list};
}

}  // namespace

std::vector<CertificateEntry> ListCertificates(const CertServiceClient& service, WithSeals seals) {
    std::vector<CertServiceClient::User> users;
    if (const int code = service.ListUsers(users)) {
        throw Failure{ExitCodeFor(code), "The certificates can't be listed.", code};
    }
    std::vector<CertificateEntry> entries;
    for (const auto& user : users) {
        entries.push_back(ReadCertificate(service, user));
        if (seals == WithSeals::kYes) ReadSeals(service, entries.back());
    }
    return entries;
}

bool IsScan(const CertificateEntry& certificate) {
    return certificate.certId.find(kScanPlaceholder) != std::string::npos;
}

std::string ProblemOf(const CertificateEntry& certificate) {
    if (certificate.readCode) return ResultText(certificate.readCode);
    if (!certificate.usable) return "its key is not of the kind that the library uses";
    switch (certificate.validateCode) {
        case 0: return "";
        case -1: return "not trusted on this machine";
        case -2:
        case -5: return "expired or not yet valid";
        case -3:
        case -6: return "revoked";
        default: return ResultText(certificate.validateCode);
    }
}

std::string ProblemOf(const SealFile& seal) {
    if (seal.readCode) return ResultText(seal.readCode);
    if (seal.verifyCode) return ResultText(seal.verifyCode);
    return "";
}

const CertificateEntry& FindCertificate(const std::vector<CertificateEntry>& certificates,
                                        const std::string& wanted) {
    std::vector<const CertificateEntry*> items;
    for (const CertificateEntry& entry : certificates) items.push_back(&entry);
    bool several = false;
    const CertificateEntry* found = nullptr;
    if (!wanted.empty()) {
        found = Match(items, wanted, NamesOfCertificate, several);
    } else if (items.size() == 1) {
        found = items.front();
    }
    if (!found) RefuseCertificate(certificates, wanted, several);
    return *found;
}

const CertificateEntry& FindBySerial(const std::vector<CertificateEntry>& certificates,
                                     const std::string& serial) {
    for (const CertificateEntry& entry : certificates) {
        if (EqualIgnoringCase(entry.serial, serial)) return entry;
    }
    throw Failure{ExitCode::kChoice,
                  "No certificate has the serial number " + serial + ".",
                  {},
                  InventoryText(certificates, "  ")};
}

ChosenSeal FindSeal(const std::vector<const CertificateEntry*>& certificates,
                    const std::string& wanted) {
    std::vector<const SealFile*> seals;
    std::vector<CertificateEntry> shown;
    for (const CertificateEntry* certificate : certificates) {
        for (const SealFile& seal : certificate->seals) seals.push_back(&seal);
        shown.push_back(*certificate);
    }
    if (seals.empty()) {
        throw Failure{ExitCode::kSetup,
                      "There is no seal in the key.",
                      {},
                      InventoryText(shown, "  ") +
                          "  make one for development: tesmark seal new --name NAME"};
    }
    bool several = wanted.empty() && seals.size() > 1;
    const SealFile* found = wanted.empty() && !several ? seals.front() : nullptr;
    if (!wanted.empty()) found = Match(seals, wanted, NamesOfSeal, several);
    if (!found) {
        throw Failure{ExitCode::kChoice,
                      wanted.empty() ? "Several seals are present: name one with --seal."
                      : several      ? "\"" + wanted + "\" names more than one seal."
                                     : "No seal is called \"" + wanted + "\".",
                      {},
                      InventoryText(shown, "  ")};
    }
    for (const CertificateEntry* certificate : certificates) {
        for (const SealFile& seal : certificate->seals) {
            if (&seal == found) return {certificate, found};
        }
    }
    return {};
}

std::string InventoryText(const std::vector<CertificateEntry>& certificates,
                          const std::string& indent) {
    std::string text;
    for (const CertificateEntry& entry : certificates) {
        text += indent + Printable(Utf8FromGbk(entry.certId)) + "  " + Algorithm(entry) + "  " +
                Printable(entry.commonName.empty() ? entry.label : entry.commonName);
        const std::string until = entry.notAfter.substr(0, 10);
        if (!until.empty()) text += "  until " + until;
        text += "  " + State(ProblemOf(entry)) + "\n";
        Table seals({});
        for (const SealFile& seal : entry.seals) {
            std::string size;
            if (seal.widthMm > 0) {
                size = std::to_string(seal.widthMm) + " x " + std::to_string(seal.heightMm) + " mm";
            }
            seals.Add({"seal", Printable(Utf8FromGbk(seal.fileName)), SealKindText(seal.kind),
                       Printable(seal.name), size, State(ProblemOf(seal))});
        }
        text += seals.Text(indent + "  ");
    }
    return text;
}

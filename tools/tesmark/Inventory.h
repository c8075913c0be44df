// Inventory.h - the certificates that are present on this machine, with their seals, and finding
// the one that a user means.
#pragma once

#include <string>
#include <vector>

#include "SealFile.h"

class CertServiceClient;

struct CertificateEntry {
    std::string certId;  // the service's bytes
    std::string label;   // UTF-8, as all that follows
    std::string commonName;
    std::string serial;     // in the spelling that SetCertSeal compares with
    std::string keyType;    // "SM2", or another text for RSA
    std::string notBefore;  // "2026-11-21 09:30:00", as the certificate states it
    std::string notAfter;
    std::string der;
    bool usable = true;    // on a key of the kind that the library uses
    int readCode = 0;      // why the certificate could not be read; the rest is then empty
    int validateCode = 0;  // as SOF_ValidateCert
    std::vector<SealFile> seals;
};

// Is it the place of a scan by phone, whose seals are there after the scan alone?
bool IsScan(const CertificateEntry& certificate);

enum class WithSeals { kNo, kYes };

// In the service's order. Throws a Failure if the list can't be had; a key that can't be read
// stands in the list with its code.
std::vector<CertificateEntry> ListCertificates(const CertServiceClient& service, WithSeals seals);

// What is wrong with the certificate or the seal, as one clause; empty if nothing is.
std::string ProblemOf(const CertificateEntry& certificate);
std::string ProblemOf(const SealFile& seal);

// The certificate that `wanted` names: its certId with or without what stands before the last "/",
// its serial number, its label or common name, or a part of one that no other has. An empty
// `wanted` names the only one. Throws a Failure that lists what is there.
const CertificateEntry& FindCertificate(const std::vector<CertificateEntry>& certificates,
                                        const std::string& wanted);
const CertificateEntry& FindBySerial(const std::vector<CertificateEntry>& certificates,
                                     const std::string& serial);

struct ChosenSeal {
    const CertificateEntry* certificate;
    const SealFile* seal;
};
// The seal of that file name or name (or a part of it that no other has), among all certificates;
// an empty `wanted` names the only one.
ChosenSeal FindSeal(const std::vector<const CertificateEntry*>& certificates,
                    const std::string& wanted);

// The table of certificates and seals that hints and `tesmark list` show.
std::string InventoryText(const std::vector<CertificateEntry>& certificates,
                          const std::string& indent);

// ScanPhone.h - the phone that a development machine scans with: a folder ".scan" among the
// development keys, with the person's key as any other there, and "phone.json".
//
//     {"person": "alice", "pin": "9F24...", "answer": "accept"}
//
// names the key's folder in ".scan", the PIN that the person types on the phone, and what the phone
// says to a request: "accept", "refuse" or "silent"; without it "accept".
#pragma once

#include <string>

enum class ScanAnswer { kAccept, kRefuse, kSilent };

struct ScanPhone {
    std::string person;
    std::string pin;
    ScanAnswer answer = ScanAnswer::kAccept;
};

// False if there is no answer of that name.
bool ScanAnswerOf(const std::string& name, ScanAnswer& answer);
const char* NameOf(ScanAnswer answer);

// Below the folder of development keys, which has no separator at its end, nor has this. No key can
// have that name.
std::string ScanFolderIn(const std::string& keyFolder);

bool HasScanPhone(const std::string& keyFolder);
// kServiceNoSuchCertificate: there is none; kServiceKeyDamaged: its record isn't what stands above.
int ReadScanPhone(const std::string& keyFolder, ScanPhone& phone);
// Replaces the record, for its owner alone. kServiceFileUnreadable if it can't be written.
int WriteScanPhone(const std::string& keyFolder, const ScanPhone& phone);
// From then on there is no phone; the keys stay in the folder. kServiceNoSuchCertificate if there
// was none, kServiceFileUnreadable if the record can't be removed.
int RemoveScanPhone(const std::string& keyFolder);

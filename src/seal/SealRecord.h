// SealRecord.h - a seal that was read, and the certificate beside which it stands.
#pragma once

#include <string>
#include <vector>

// The formats of seal files; the number decides which signature is made with the seal.
enum SealType : int {
    SealTypeDefault = 0,  // the old "ES" file
    SealTypeGM = 1,       // national-cryptography format
    SealTypeGB = 2,       // national-office format
    SealTypeHLVQ = 3,     // a bare picture
};

// Copies share the two buffers, which the list that holds the record owns and frees with free().
struct SealRecord {
    int type = SealTypeDefault;
    std::string name;  // GBK
    unsigned char reserved1[32] = {};
    unsigned char reserved2[64] = {};
    unsigned char* sealData = nullptr;  // the whole file, one zero byte behind it
    int sealDataLen = 0;                // without that byte
    unsigned char* picData = nullptr;   // the picture, one zero byte behind it
    int picLen = 0;                     // without that byte
    int picWidth = 0;                   // as the seal tells it, -1 where it tells none
    int picHeight = 0;
};

// Frees the buffers of all records and empties the list that owns them.
void FreeSeals(std::vector<SealRecord>& seals);

// The texts are cut or unterminated where they don't fit: the first 64 bytes of the identifier and
// the first 32 of the label, as they come.
struct CertRecord {
    char certId[64] = {};
    char certName[32] = {};
    int scanMode = 0;  // 1 marks the entry of the scan by phone
    std::vector<SealRecord> seals;

    // The identifier as a terminated text. One of 64 bytes or more runs on through certName and
    // the bytes of scanMode to the first zero, as the fields lie in memory, and ends there at the
    // latest.
    std::string CertIdText() const;
    // The label likewise: one of 32 bytes or more runs on through the bytes of scanMode.
    std::string CertNameText() const;
};

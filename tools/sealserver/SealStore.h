// SealStore.h - the certificates that the service knows and the seals that it gives out for them,
// in one file of SQLite.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/sealserver/Database.h"

// All texts are UTF-8.
struct StoredCertificate {
    std::int64_t id = 0;
    std::string serial;  // as the certificate service tells it, field 2
    std::string name;    // the distinguished name as it tells it, field 33
    std::string der;     // empty where only the two texts were given
};

struct StoredSeal {
    std::int64_t id = 0;
    std::int64_t certificate = 0;
    std::string number;  // SEALNUM; once for a certificate
    std::string name;    // SEALNAME
    std::string form;
    std::string sealId;  // the number in the seal itself; empty in an old "ES" file
    std::string hash;    // of the whole file: SM3, hexadecimal, capital letters
    bool suspended = false;
    std::string added;  // UTC
    std::string file;   // left empty in lists
};

enum class SealStatus {
    kValid,
    kSuspended,  // for one certificate at least
    kReplaced,   // another file is known by that number
    kUnknown,
};

// "valid", "suspended", "replaced", "unknown".
const char* SealStatusText(SealStatus status);

// The key by which serial numbers compare: hexadecimal digits in capital letters, without zeros at
// the front, blanks, colons and hyphens.
std::string SerialKey(std::string_view serial);

// For several threads at a time. Every call is one transaction; what SQLite refuses is thrown as a
// DatabaseFailure. What another process does with the same file is seen at once.
class SealStore {
public:
    // Makes the tables if there are none; throws std::runtime_error for the file of another program
    // or of a later version.
    explicit SealStore(const std::string& path);

    std::vector<StoredCertificate> Certificates();
    std::optional<StoredCertificate> Certificate(std::int64_t id);
    // By both texts: the serial numbers' keys are equal, and the names are, byte for byte.
    std::optional<StoredCertificate> FindCertificate(const std::string& serial,
                                                     const std::string& name);
    // The new one's id, or that of the one that is there, which takes `der` if it had none.
    std::int64_t AddCertificate(const StoredCertificate& certificate);
    // Its seals go with it.
    bool RemoveCertificate(std::int64_t id);

    std::vector<StoredSeal> Seals(std::int64_t certificate);
    std::optional<StoredSeal> Seal(std::int64_t id);
    std::optional<StoredSeal> FindSeal(std::int64_t certificate, const std::string& number);
    // Of the seal of the certificate whose file has that hash, the first one; reads no seal's file.
    std::optional<std::string> NumberOfFile(std::int64_t certificate, const std::string& hash);
    // The first of "1", "2", ... that no seal of the certificate has. Reads no seal's file.
    std::string FirstFreeNumber(std::int64_t certificate);
    // A conflict if the certificate has a seal of that number. `id` and `added` aren't looked at.
    std::int64_t AddSeal(const StoredSeal& seal);
    // False where there is no such seal.
    bool SetSuspended(std::int64_t id, bool suspended);
    bool RemoveSeal(std::int64_t id);

    // Of the seal with that number in it and that hash, for whatever certificates it is given out.
    SealStatus StatusOf(const std::string& sealId, const std::string& hash);

    // Empty where it was never set.
    std::string Setting(const std::string& name);
    void SetSetting(const std::string& name, const std::string& value);

private:
    using Lock = std::lock_guard<std::mutex>;

    std::mutex m_mutex;
    Database m_database;
};

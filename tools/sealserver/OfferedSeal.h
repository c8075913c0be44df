// OfferedSeal.h - seal files and certificates as an administrator hands them in.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "components/seallibrary/Seal.h"
#include "tools/sealserver/SealStore.h"

// A seal file that the clients' library can read. Texts are UTF-8.
struct OfferedSeal {
    std::string form;  // "ES", or the standard's number such as "GB/T 38540-2020"
    std::string name;
    std::string sealId;  // empty for "ES"
    std::string hash;    // SM3 of the file, hexadecimal, capital letters
    std::string picture;
    std::optional<Seal> national;  // none for "ES"
};

// The size of a seal file and, in UTF-8, of the texts that go into an answer.
constexpr std::size_t kMaxSealFileBytes = 8u << 20;
constexpr std::size_t kMaxCertificateFileBytes = 64u << 10;
constexpr std::size_t kMaxAnswerText = 200;

// Only the structure is read: nothing is verified, since that is the clients' part. None for any
// other file and for one over the limit.
std::optional<OfferedSeal> ReadOfferedSeal(std::string_view file);

// The media type by the picture's first bytes; empty for what a browser isn't given.
std::string PictureType(std::string_view picture);

// The first certificate of a file in PEM or DER, with the texts by which the open certificate
// service names it. None if there is no certificate in it.
std::optional<StoredCertificate> ReadOfferedCertificate(std::string_view file);

// What the administrator is told about a seal that can't be used with the certificate it is entered
// for, as a sentence: it names other ones as its signers. Empty as far as both tell nothing of the
// kind: an "ES" file names no signers, and of a certificate only the two texts may be known.
std::string WarningAbout(const OfferedSeal& seal, const StoredCertificate& certificate);

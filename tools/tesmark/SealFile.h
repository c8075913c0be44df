// SealFile.h - a seal's file as it stands in a key, read by the library's rules.
#pragma once

#include <optional>
#include <string>

enum class SealFileKind { kEs, kGm, kGb, kPicture };

struct SealFile {
    std::string fileName;  // the key's bytes
    SealFileKind kind = SealFileKind::kEs;
    std::string content;
    std::string name;     // UTF-8
    std::string picture;  // the image file; empty for a seal that can't be read
    int widthMm = -1;     // -1 where the seal tells no size
    int heightMm = -1;
    int readCode = 0;    // why it could not be read; the library then leaves it out
    int verifyCode = 0;  // TVK_Verify_SESeal, for the national forms
};

// The kind that the library takes a file of that name for; none if it is no seal to it. The name
// alone decides: "GBESEAL", then "ESEAL", then "SEAL01", then "HLVQSEAL" anywhere in it.
std::optional<SealFileKind> SealKindOf(const std::string& fileName);

// "ES", "GM/T 0031", "GB/T 38540", "picture".
const char* SealKindText(SealFileKind kind);

// Reads name, picture and size, and has the national forms verified by the seal library, which is
// up (a LibrarySession is open). Nothing is thrown; the codes tell.
SealFile ReadSealFile(const std::string& fileName, SealFileKind kind, std::string content);

// SealForm.h - the national forms of electronic seals and the signature algorithms in them.
#pragma once

// The form decides how a seal and the signatures made with it are laid out.
enum class SealForm {
    kGm2014,  // GM/T 0031-2014; header versions 1 to 3, told by two outer elements
    kGb2020,  // GB/T 38540-2020; header version 4
    kGm2025,  // GM/T 0031-2025; header version 5
};

// GM/T 0006: SM2 signatures with SM3. RFC 8017: sha256WithRSAEncryption.
constexpr char kSm2WithSm3[] = "1.2.156.10197.1.501";
constexpr char kSha256WithRsa[] = "1.2.840.113549.1.1.11";

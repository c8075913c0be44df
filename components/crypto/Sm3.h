// Sm3.h - the SM3 hash (GB/T 32905) piece by piece, by libgcrypt, whose code for it is faster than
// OpenSSL's.
#pragma once

#include <gcrypt.h>

#include <string>
#include <string_view>

class Sm3 {
public:
    Sm3();
    ~Sm3();
    Sm3(const Sm3&) = delete;
    Sm3& operator=(const Sm3&) = delete;

    void Update(std::string_view data);
    // The 32 bytes of the hash; empty if libgcrypt has no SM3. Nothing can be added afterwards.
    std::string Finish();

private:
    gcry_md_hd_t m_hash = nullptr;
};

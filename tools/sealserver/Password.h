// Password.h - the administrator's password: kept as a hash, asked at the login.
#pragma once

#include <string>
#include <string_view>

constexpr std::size_t kShortestPassword = 10;  // in bytes of UTF-8
constexpr std::size_t kLongestPassword = 256;

// "scrypt$<N>$<r>$<p>$<salt>$<hash>" (RFC 7914) with a new salt, both in hexadecimal; throws
// std::runtime_error where OpenSSL fails. Takes about a tenth of a second and 32 MB.
std::string HashPassword(std::string_view password);
// False for another password and for a text that isn't such a hash.
bool PasswordMatches(std::string_view password, const std::string& hash);

// A random password of 20 letters and digits, without those that are easily taken for others.
std::string MakePassword();

// `bytes` random bytes in hexadecimal.
std::string RandomHex(std::size_t bytes);

// In a time that doesn't depend on where they differ.
bool EqualSecrets(std::string_view left, std::string_view right);

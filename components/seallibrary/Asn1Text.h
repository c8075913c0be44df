// Asn1Text.h - values of single ASN.1 types, to and from the language's own.
#pragma once

#include <openssl/asn1.h>

#include <ctime>
#include <string>
#include <string_view>

// The content's bytes.
std::string BytesOf(const ASN1_STRING* text);
// The same as UTF-8: BMPString and T61String are converted, all other types are taken as they are.
std::string Utf8Of(const ASN1_STRING* text);
// False if it is outside `lowest` to `highest`.
bool NumberOf(const ASN1_INTEGER* integer, long lowest, long highest, long& number);
// False unless it is made of whole bytes.
bool BitsOf(const ASN1_BIT_STRING* bits, std::string& bytes);
// Dotted; empty for an identifier of more than 79 characters.
std::string DottedOf(const ASN1_OBJECT* object);

// All false on lack of memory. SetBits keeps zero bytes at the end.
bool SetText(ASN1_STRING* target, int type, std::string_view text);
bool SetBits(ASN1_STRING* target, std::string_view bytes);
bool SetNumber(ASN1_INTEGER* target, long number);
bool SetObject(ASN1_OBJECT*& target, const char* dotted);

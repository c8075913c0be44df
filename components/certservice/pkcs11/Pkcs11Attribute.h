// Pkcs11Attribute.h - attributes of a token's objects, each with its value's bytes.
#pragma once

#include <p11-kit/pkcs11.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct Pkcs11Attribute {
    CK_ATTRIBUTE_TYPE type;
    std::string value;
};

using Pkcs11Attributes = std::vector<Pkcs11Attribute>;

Pkcs11Attribute NumberAttribute(CK_ATTRIBUTE_TYPE type, CK_ULONG number);
Pkcs11Attribute FlagAttribute(CK_ATTRIBUTE_TYPE type, bool flag);
Pkcs11Attribute BytesAttribute(CK_ATTRIBUTE_TYPE type, std::string_view bytes);

// An attribute to be read, with room for a value of `expected` bytes. A larger value is read all
// the same, at the price of more calls.
Pkcs11Attribute WantedAttribute(CK_ATTRIBUTE_TYPE type, std::size_t expected);

// The number in `value`; `absent` if it has another size than a number.
CK_ULONG NumberOf(const std::string& value, CK_ULONG absent);

// As the module takes them; valid as long as `attributes` isn't changed.
std::vector<CK_ATTRIBUTE> TemplateOf(Pkcs11Attributes& attributes);

// Replaces each value by the object's. A value that the object lacks, or that the token doesn't
// give away, becomes empty, and so does one of more than 16 MiB. Any other failure of the module is
// its result.
CK_RV ReadAttributes(const CK_FUNCTION_LIST* functions, CK_SESSION_HANDLE session,
                     CK_OBJECT_HANDLE object, Pkcs11Attributes& attributes);

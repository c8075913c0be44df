#include "components/seallibrary/Asn1Text.h"

#include <openssl/objects.h>

#include <climits>
#include <cstdint>

#include "components/crypto/Handles.h"

std::string BytesOf(const ASN1_STRING* text) {
    if (!text || text->length <= 0) return {};
    return std::string(reinterpret_cast<const char*>(text->data),
                       static_cast<std::size_t>(text->length));
}

std::string Utf8Of(const ASN1_STRING* text) {
    if (!text) return {};
    if (text->type != V_ASN1_BMPSTRING && text->type != V_ASN1_T61STRING) return BytesOf(text);
    unsigned char* utf8 = nullptr;
    const int length = ASN1_STRING_to_UTF8(&utf8, text);
    return TakeBytes(utf8, length);
}

bool NumberOf(const ASN1_INTEGER* integer, long lowest, long highest, long& number) {
    std::int64_t value = 0;
    if (!integer || !ASN1_INTEGER_get_int64(&value, integer)) return false;
    if (value < lowest || value > highest) return false;
    number = static_cast<long>(value);
    return true;
}

bool BitsOf(const ASN1_BIT_STRING* bits, std::string& bytes) {
    if (!bits || (bits->flags & 0x07)) return false;
    bytes = BytesOf(bits);
    return true;
}

std::string DottedOf(const ASN1_OBJECT* object) {
    char text[80];
    const int length = OBJ_obj2txt(text, sizeof text, object, 1);
    if (length <= 0 || length >= static_cast<int>(sizeof text)) return {};
    return text;
}

bool SetText(ASN1_STRING* target, int type, std::string_view text) {
    if (text.size() > INT_MAX) return false;
    target->type = type;
    return ASN1_STRING_set(target, text.data(), static_cast<int>(text.size())) == 1;
}

bool SetBits(ASN1_STRING* target, std::string_view bytes) {
    if (!SetText(target, V_ASN1_BIT_STRING, bytes)) return false;
    target->flags &= ~0x07L;
    target->flags |= ASN1_STRING_FLAG_BITS_LEFT;
    return true;
}

bool SetNumber(ASN1_INTEGER* target, long number) {
    return ASN1_INTEGER_set_int64(target, number) == 1;
}

bool SetObject(ASN1_OBJECT*& target, const char* dotted) {
    ASN1_OBJECT* object = OBJ_txt2obj(dotted, 1);
    if (!object) return false;
    ASN1_OBJECT_free(target);
    target = object;
    return true;
}

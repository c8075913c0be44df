#include "components/certservice/pkcs11/Pkcs11Attribute.h"

#include <cstring>

namespace {

constexpr CK_ULONG kLargestValue = 16 * 1024 * 1024;

bool IsAbsence(CK_RV result) {
    return result == CKR_ATTRIBUTE_TYPE_INVALID || result == CKR_ATTRIBUTE_SENSITIVE;
}

CK_RV ReadOne(const CK_FUNCTION_LIST* functions, CK_SESSION_HANDLE session, CK_OBJECT_HANDLE object,
              Pkcs11Attribute& attribute) {
    attribute.value.clear();
    CK_ATTRIBUTE wanted{attribute.type, nullptr, 0};
    CK_RV result = functions->C_GetAttributeValue(session, object, &wanted, 1);
    if (IsAbsence(result)) return CKR_OK;
    if (result != CKR_OK) return result;
    if (wanted.ulValueLen == 0 || wanted.ulValueLen > kLargestValue) return CKR_OK;
    std::string value(wanted.ulValueLen, '\0');
    wanted.pValue = value.data();
    result = functions->C_GetAttributeValue(session, object, &wanted, 1);
    if (result != CKR_OK) return result;
    if (wanted.ulValueLen > value.size()) return CKR_GENERAL_ERROR;
    value.resize(wanted.ulValueLen);
    attribute.value = std::move(value);
    return CKR_OK;
}

bool Fits(const std::vector<CK_ATTRIBUTE>& wanted, const Pkcs11Attributes& attributes) {
    for (std::size_t i = 0; i < wanted.size(); ++i)
        if (wanted[i].ulValueLen > attributes[i].value.size()) return false;
    return true;
}

}  // namespace

Pkcs11Attribute NumberAttribute(CK_ATTRIBUTE_TYPE type, CK_ULONG number) {
    return {type, std::string(reinterpret_cast<const char*>(&number), sizeof number)};
}

Pkcs11Attribute FlagAttribute(CK_ATTRIBUTE_TYPE type, bool flag) {
    return {type, std::string(1, flag ? CK_TRUE : CK_FALSE)};
}

Pkcs11Attribute BytesAttribute(CK_ATTRIBUTE_TYPE type, std::string_view bytes) {
    return {type, std::string(bytes)};
}

Pkcs11Attribute WantedAttribute(CK_ATTRIBUTE_TYPE type, std::size_t expected) {
    return {type, std::string(expected, '\0')};
}

CK_ULONG NumberOf(const std::string& value, CK_ULONG absent) {
    CK_ULONG number = absent;
    if (value.size() == sizeof number) std::memcpy(&number, value.data(), sizeof number);
    return number;
}

std::vector<CK_ATTRIBUTE> TemplateOf(Pkcs11Attributes& attributes) {
    std::vector<CK_ATTRIBUTE> result;
    result.reserve(attributes.size());
    for (Pkcs11Attribute& attribute : attributes) {
        result.push_back({attribute.type, attribute.value.data(),
                          static_cast<CK_ULONG>(attribute.value.size())});
    }
    return result;
}

CK_RV ReadAttributes(const CK_FUNCTION_LIST* functions, CK_SESSION_HANDLE session,
                     CK_OBJECT_HANDLE object, Pkcs11Attributes& attributes) {
    std::vector<CK_ATTRIBUTE> wanted = TemplateOf(attributes);
    const CK_RV result =
        functions->C_GetAttributeValue(session, object, wanted.data(), wanted.size());
    if (result == CKR_OK && Fits(wanted, attributes)) {
        for (std::size_t i = 0; i < wanted.size(); ++i)
            attributes[i].value.resize(wanted[i].ulValueLen);
        return CKR_OK;
    }
    // Some modules stop at the first value that they can't give, so the lengths of the others mean
    // nothing then.
    for (Pkcs11Attribute& attribute : attributes)
        if (const CK_RV failure = ReadOne(functions, session, object, attribute)) return failure;
    return CKR_OK;
}

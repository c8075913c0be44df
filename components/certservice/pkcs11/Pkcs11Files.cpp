#include "components/certservice/pkcs11/Pkcs11Files.h"

#include <algorithm>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pkcs11/Pkcs11Text.h"
#include "platform/CodePage.h"

namespace {

constexpr std::size_t kExpectedName = 256;
constexpr std::size_t kExpectedOwner = 64;
// A seal with its picture; a larger file costs further calls.
constexpr std::size_t kExpectedFile = 64 * 1024;

}  // namespace

int Pkcs11Files::SearchBy(Pkcs11Token& token, const Pkcs11Attribute& owner, Objects& objects) {
    std::vector<CK_OBJECT_HANDLE> found;
    if (const int code = token.Find({NumberAttribute(CKA_CLASS, CKO_DATA), owner}, found))
        return code;
    for (const CK_OBJECT_HANDLE object : found) {
        Pkcs11Attributes attributes{WantedAttribute(CKA_LABEL, kExpectedName)};
        if (const int code = token.Read(object, attributes)) return code;
        std::vector<CK_OBJECT_HANDLE>& sameName = objects[TextOfToken(attributes[0].value)];
        if (std::find(sameName.begin(), sameName.end(), object) == sameName.end())
            sameName.push_back(object);
    }
    return kServiceOk;
}

int Pkcs11Files::Search(Pkcs11Token& token) {
    Objects objects;
    if (const int code = SearchBy(token, BytesAttribute(CKA_OBJECT_ID, m_id), objects)) return code;
    if (const int code = SearchBy(token, BytesAttribute(CKA_APPLICATION, HexOf(m_id)), objects))
        return code;
    m_objects = std::move(objects);
    return kServiceOk;
}

int Pkcs11Files::List(Pkcs11Token& token, std::vector<std::string>& names) {
    if (const int code = Search(token)) return code;
    names.clear();
    for (const auto& [name, objects] : m_objects)
        if (!name.empty()) names.push_back(name);
    return kServiceOk;
}

// False if the object isn't that file any more: the token's contents may have changed since the
// search, and a handle may have been given to another object.
bool Pkcs11Files::ReadObject(Pkcs11Token& token, CK_OBJECT_HANDLE object, const std::string& name,
                             std::string& content, int& code) {
    Pkcs11Attributes attributes{WantedAttribute(CKA_LABEL, kExpectedName),
                                WantedAttribute(CKA_OBJECT_ID, kExpectedOwner),
                                WantedAttribute(CKA_APPLICATION, kExpectedOwner),
                                WantedAttribute(CKA_VALUE, kExpectedFile)};
    code = token.Read(object, attributes);
    if (code != kServiceOk) return false;
    if (TextOfToken(attributes[0].value) != name) return false;
    if (attributes[1].value != m_id && attributes[2].value != HexOf(m_id)) return false;
    content = std::move(attributes[3].value);
    return true;
}

int Pkcs11Files::Read(Pkcs11Token& token, const std::string& name, std::string& content) {
    int code = kServiceOk;
    const auto known = m_objects.find(name);
    if (known != m_objects.end() && ReadObject(token, known->second.back(), name, content, code))
        return kServiceOk;
    if (code == kServiceKeyRemoved) return code;
    if (const int failure = Search(token)) return failure;
    const auto found = m_objects.find(name);
    if (found == m_objects.end()) return kServiceNoSuchFile;
    if (ReadObject(token, found->second.back(), name, content, code)) return kServiceOk;
    return code != kServiceOk ? code : kServiceNoSuchFile;
}

int Pkcs11Files::Write(Pkcs11Token& token, const std::string& name, std::string_view content) {
    if (name.empty()) return kServiceBadArgument;
    if (const int code = Search(token)) return code;
    const auto found = m_objects.find(name);
    const std::vector<CK_OBJECT_HANDLE> old =
        found == m_objects.end() ? std::vector<CK_OBJECT_HANDLE>() : found->second;
    const int code = token.Create(
        {NumberAttribute(CKA_CLASS, CKO_DATA), FlagAttribute(CKA_TOKEN, true),
         FlagAttribute(CKA_PRIVATE, false), BytesAttribute(CKA_LABEL, platform::Utf8FromAnsi(name)),
         BytesAttribute(CKA_APPLICATION, HexOf(m_id)), BytesAttribute(CKA_OBJECT_ID, m_id),
         BytesAttribute(CKA_VALUE, content)});
    if (code != kServiceOk) return code;
    m_objects.erase(name);
    for (const CK_OBJECT_HANDLE object : old)
        if (const int failure = token.Destroy(object)) return failure;
    return kServiceOk;
}

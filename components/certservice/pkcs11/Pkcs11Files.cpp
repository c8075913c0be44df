#include "components/certservice/pkcs11/Pkcs11Files.h"

#include <algorithm>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pkcs11/Pkcs11Text.h"
#include "components/crypto/Hex.h"
#include "platform/CodePage.h"

namespace {

constexpr std::size_t kExpectedName = 256;
constexpr std::size_t kExpectedOwner = 64;
// A seal with its picture; a larger file costs further calls.
constexpr std::size_t kExpectedFile = 64 * 1024;
constexpr unsigned int kSearchHoldsMs = 1000;

}  // namespace

bool Pkcs11Files::Object::BelongsTo(const std::string& id) const {
    return objectId == id || application == LowerHexOf(id);
}

int Pkcs11Files::ReadObject(Pkcs11Token& token, Object& object, std::string* content) {
    Pkcs11Attributes attributes{WantedAttribute(CKA_LABEL, kExpectedName),
                                WantedAttribute(CKA_OBJECT_ID, kExpectedOwner),
                                WantedAttribute(CKA_APPLICATION, kExpectedOwner)};
    if (content) attributes.push_back(WantedAttribute(CKA_VALUE, kExpectedFile));
    if (const int code = token.Read(object.handle, attributes)) return code;
    object.name = TextOfToken(attributes[0].value);
    object.objectId = std::move(attributes[1].value);
    object.application = std::move(attributes[2].value);
    if (content) *content = std::move(attributes[3].value);
    return kServiceOk;
}

int Pkcs11Files::Search(Pkcs11Token& token) {
    Forget();
    m_listed.clear();
    m_objects.clear();
    std::vector<CK_OBJECT_HANDLE> found;
    if (const int code = token.Find({NumberAttribute(CKA_CLASS, CKO_DATA)}, found)) return code;
    for (const CK_OBJECT_HANDLE handle : found) {
        Object object{handle, {}, {}, {}};
        if (const int code = ReadObject(token, object, nullptr)) return code;
        m_objects.push_back(std::move(object));
    }
    m_searched = true;
    m_searchedAt = m_clock();
    return kServiceOk;
}

int Pkcs11Files::List(Pkcs11Token& token, const std::string& id, std::vector<std::string>& names) {
    // The clock wraps.
    const unsigned int age =
        static_cast<unsigned int>(m_clock()) - static_cast<unsigned int>(m_searchedAt);
    if (!m_searched || m_listed.contains(id) || age >= kSearchHoldsMs || !token.IsPresent())
        if (const int code = Search(token)) return code;
    m_listed.insert(id);
    std::set<std::string> sorted;
    for (const Object& object : m_objects)
        if (!object.name.empty() && object.BelongsTo(id)) sorted.insert(object.name);
    names.assign(sorted.begin(), sorted.end());
    return kServiceOk;
}

// False if no such file was seen, or what was seen isn't that file any more: the token's contents
// may have changed since the search, and a handle may have been given to another object.
bool Pkcs11Files::ReadNewest(Pkcs11Token& token, const std::string& id, const std::string& name,
                             std::string& content, int& code) const {
    const auto seen = std::find_if(m_objects.rbegin(), m_objects.rend(), [&](const Object& object) {
        return object.name == name && object.BelongsTo(id);
    });
    if (seen == m_objects.rend()) return false;
    Object object{seen->handle, {}, {}, {}};
    std::string value;
    code = ReadObject(token, object, &value);
    if (code != kServiceOk || object.name != name || !object.BelongsTo(id)) return false;
    content = std::move(value);
    return true;
}

int Pkcs11Files::Read(Pkcs11Token& token, const std::string& id, const std::string& name,
                      std::string& content) {
    int code = kServiceOk;
    if (m_searched && ReadNewest(token, id, name, content, code)) return kServiceOk;
    if (code == kServiceKeyRemoved) return code;
    if (const int failure = Search(token)) return failure;
    code = kServiceOk;
    if (ReadNewest(token, id, name, content, code)) return kServiceOk;
    return code != kServiceOk ? code : kServiceNoSuchFile;
}

int Pkcs11Files::Write(Pkcs11Token& token, const std::string& id, const std::string& name,
                       std::string_view content) {
    if (name.empty()) return kServiceBadArgument;
    if (const int code = Search(token)) return code;
    Forget();
    const int code = token.Create(
        {NumberAttribute(CKA_CLASS, CKO_DATA), FlagAttribute(CKA_TOKEN, true),
         FlagAttribute(CKA_PRIVATE, false), BytesAttribute(CKA_LABEL, platform::Utf8FromAnsi(name)),
         BytesAttribute(CKA_APPLICATION, LowerHexOf(id)), BytesAttribute(CKA_OBJECT_ID, id),
         BytesAttribute(CKA_VALUE, content)});
    if (code != kServiceOk) return code;
    for (const Object& old : m_objects)
        if (old.name == name && old.BelongsTo(id))
            if (const int failure = token.Destroy(old.handle)) return failure;
    return kServiceOk;
}

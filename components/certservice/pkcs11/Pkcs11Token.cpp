#include "components/certservice/pkcs11/Pkcs11Token.h"

#include <algorithm>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pkcs11/Pkcs11Codes.h"
#include "components/certservice/pkcs11/Pkcs11Text.h"

namespace {

// Room for the largest RSA signature, that of a key of 8192 bits.
constexpr CK_ULONG kSignatureRoom = 1024;
constexpr CK_ULONG kObjectsPerCall = 64;

template <std::size_t Size>
std::string_view FieldText(const unsigned char (&field)[Size]) {
    const std::string_view text(reinterpret_cast<const char*>(field), Size);
    const auto end = text.find_last_not_of(std::string_view(" \0", 2));
    return text.substr(0, end == std::string_view::npos ? 0 : end + 1);
}

bool IsPlain(std::string_view text) {
    return !text.empty() && text.find_first_not_of(
                                "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                "0123456789-_.") == std::string_view::npos;
}

}  // namespace

std::string Pkcs11Token::SerialOf(const CK_TOKEN_INFO& info) {
    const std::string_view serial = FieldText(info.serialNumber);
    if (IsPlain(serial)) return std::string(serial);
    std::string description(serial);
    for (const std::string_view part :
         {FieldText(info.manufacturerID), FieldText(info.model), FieldText(info.label)})
        description.append("\n").append(part);
    return ShortDigest(description, 16);
}

bool Pkcs11Token::TokenInfo(CK_TOKEN_INFO& info) const {
    return m_module->Functions()->C_GetTokenInfo(m_slot, &info) == CKR_OK;
}

bool Pkcs11Token::IsPresent() const {
    CK_TOKEN_INFO info{};
    return TokenInfo(info) && SerialOf(info) == m_serial;
}

CK_RV Pkcs11Token::OpenSession() {
    if (m_session != CK_INVALID_HANDLE) return CKR_OK;
    CK_RV result = m_module->Functions()->C_OpenSession(m_slot, CKF_SERIAL_SESSION | CKF_RW_SESSION,
                                                        nullptr, nullptr, &m_session);
    if (result == CKR_TOKEN_WRITE_PROTECTED)
        result = m_module->Functions()->C_OpenSession(m_slot, CKF_SERIAL_SESSION, nullptr, nullptr,
                                                      &m_session);
    if (result != CKR_OK) m_session = CK_INVALID_HANDLE;
    return result;
}

void Pkcs11Token::DropSession() {
    if (m_session != CK_INVALID_HANDLE && !Pkcs11Module::ProcessEnds())
        m_module->Functions()->C_CloseSession(m_session);
    m_session = CK_INVALID_HANDLE;
}

int Pkcs11Token::Result(CK_RV result) {
    int code = ServiceCodeOf(result);
    if (code == kServiceTokenFailure && !IsPresent()) code = kServiceKeyRemoved;
    if (code == kServiceKeyRemoved) DropSession();
    return code;
}

int Pkcs11Token::Login(std::string_view pin) {
    if (const CK_RV result = OpenSession()) return Result(result);
    auto* const bytes = reinterpret_cast<CK_UTF8CHAR*>(const_cast<char*>(pin.data()));
    return Result(m_module->Functions()->C_Login(m_session, CKU_USER, bytes, pin.size()));
}

int Pkcs11Token::Logout() {
    if (m_session == CK_INVALID_HANDLE) return kServiceOk;
    const CK_RV result = m_module->Functions()->C_Logout(m_session);
    return result == CKR_USER_NOT_LOGGED_IN ? kServiceOk : Result(result);
}

bool Pkcs11Token::IsLoggedIn() {
    CK_TOKEN_INFO info{};
    if (!TokenInfo(info) || SerialOf(info) != m_serial) return false;
    if (!(info.flags & CKF_LOGIN_REQUIRED)) return true;
    CK_SESSION_INFO session{};
    if (Result(OpenSession()) ||
        Result(m_module->Functions()->C_GetSessionInfo(m_session, &session)))
        return false;
    return session.state == CKS_RO_USER_FUNCTIONS || session.state == CKS_RW_USER_FUNCTIONS;
}

int Pkcs11Token::RetriesLeft() const {
    CK_TOKEN_INFO info{};
    if (!TokenInfo(info)) return -1;
    if (info.flags & CKF_USER_PIN_LOCKED) return 0;
    return info.flags & CKF_USER_PIN_FINAL_TRY ? 1 : -1;
}

int Pkcs11Token::Find(Pkcs11Attributes description, std::vector<CK_OBJECT_HANDLE>& objects) {
    objects.clear();
    if (const CK_RV result = OpenSession()) return Result(result);
    return Result(FindInSession(description, objects));
}

CK_RV Pkcs11Token::FindInSession(Pkcs11Attributes& description,
                                 std::vector<CK_OBJECT_HANDLE>& objects) {
    std::vector<CK_ATTRIBUTE> wanted = TemplateOf(description);
    CK_RV result =
        m_module->Functions()->C_FindObjectsInit(m_session, wanted.data(), wanted.size());
    if (result != CKR_OK) return result;
    CK_OBJECT_HANDLE found[kObjectsPerCall];
    CK_ULONG count = 0;
    do {
        count = 0;
        result = m_module->Functions()->C_FindObjects(m_session, found, kObjectsPerCall, &count);
        if (result != CKR_OK) break;
        objects.insert(objects.end(), found, found + std::min(count, kObjectsPerCall));
    } while (count != 0);
    const CK_RV ended = m_module->Functions()->C_FindObjectsFinal(m_session);
    return result != CKR_OK ? result : ended;
}

int Pkcs11Token::Read(CK_OBJECT_HANDLE object, Pkcs11Attributes& attributes) {
    if (const CK_RV result = OpenSession()) return Result(result);
    return Result(ReadAttributes(m_module->Functions(), m_session, object, attributes));
}

int Pkcs11Token::Create(Pkcs11Attributes attributes) {
    if (const CK_RV result = OpenSession()) return Result(result);
    std::vector<CK_ATTRIBUTE> wanted = TemplateOf(attributes);
    CK_OBJECT_HANDLE object = CK_INVALID_HANDLE;
    return Result(
        m_module->Functions()->C_CreateObject(m_session, wanted.data(), wanted.size(), &object));
}

int Pkcs11Token::Destroy(CK_OBJECT_HANDLE object) {
    if (const CK_RV result = OpenSession()) return Result(result);
    return Result(m_module->Functions()->C_DestroyObject(m_session, object));
}

int Pkcs11Token::Sign(CK_MECHANISM_TYPE mechanism, CK_OBJECT_HANDLE key, std::string data,
                      std::string& signature) {
    if (const CK_RV result = OpenSession()) return Result(result);
    CK_MECHANISM chosen{mechanism, nullptr, 0};
    if (const CK_RV result = m_module->Functions()->C_SignInit(m_session, &chosen, key))
        return Result(result);
    std::string room(kSignatureRoom, '\0');
    CK_ULONG length = room.size();
    const CK_RV result = m_module->Functions()->C_Sign(
        m_session, reinterpret_cast<CK_BYTE*>(data.data()), data.size(),
        reinterpret_cast<CK_BYTE*>(room.data()), &length);
    if (result != CKR_OK) return Result(result);
    if (length > room.size()) return kServiceTokenFailure;
    room.resize(length);
    signature = std::move(room);
    return kServiceOk;
}

#include "components/certservice/tokens/FakePkcs11.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

namespace {

constexpr CK_SLOT_ID kSlot = 7;

std::vector<CK_OBJECT_HANDLE> g_found;

// Counts the call, and gives the failure that the test wants of it.
CK_RV Enter(const char* name) {
    FakeToken& token = TheFakeToken();
    ++token.calls[name];
    if (token.failingCall == name) return token.failure;
    const std::string_view call(name);
    if (call == "C_Initialize" || call == "C_Finalize" || call == "C_GetFunctionList")
        return CKR_OK;
    return token.initialised ? CKR_OK : CKR_CRYPTOKI_NOT_INITIALIZED;
}

CK_RV EnterSession(const char* name, CK_SESSION_HANDLE session) {
    if (const CK_RV result = Enter(name)) return result;
    return TheFakeToken().sessions.contains(session) ? CKR_OK : CKR_SESSION_HANDLE_INVALID;
}

template <std::size_t Size>
void Fill(unsigned char (&field)[Size], std::string_view text) {
    std::memset(field, ' ', Size);
    std::memcpy(field, text.data(), std::min(text.size(), Size));
}

std::string ValueOf(const CK_ATTRIBUTE& attribute) {
    return {static_cast<const char*>(attribute.pValue), attribute.ulValueLen};
}

bool Matches(const FakeObject& object, const CK_ATTRIBUTE* wanted, CK_ULONG count) {
    const auto hidden = object.find(CKA_PRIVATE);
    if (hidden != object.end() && hidden->second == "\1" && !TheFakeToken().loggedIn) return false;
    return std::all_of(wanted, wanted + count, [&](const CK_ATTRIBUTE& attribute) {
        const auto found = object.find(attribute.type);
        return found != object.end() && found->second == ValueOf(attribute);
    });
}

CK_RV Give(const FakeObject& object, CK_ATTRIBUTE& attribute) {
    const auto found = object.find(attribute.type);
    const CK_ULONG room = attribute.ulValueLen;
    attribute.ulValueLen = CK_UNAVAILABLE_INFORMATION;
    if (found == object.end()) return CKR_ATTRIBUTE_TYPE_INVALID;
    if (attribute.pValue && room < found->second.size()) return CKR_BUFFER_TOO_SMALL;
    attribute.ulValueLen = found->second.size();
    if (attribute.pValue) found->second.copy(static_cast<char*>(attribute.pValue), room);
    return CKR_OK;
}

}  // namespace

FakeToken& TheFakeToken() {
    static FakeToken token;
    return token;
}

extern "C" {

CK_RV C_Initialize(void*) {
    if (const CK_RV result = Enter("C_Initialize")) return result;
    if (TheFakeToken().initialised) return CKR_CRYPTOKI_ALREADY_INITIALIZED;
    TheFakeToken().initialised = true;
    return CKR_OK;
}

CK_RV C_Finalize(void*) {
    if (const CK_RV result = Enter("C_Finalize")) return result;
    TheFakeToken().initialised = false;
    return CKR_OK;
}

CK_RV C_GetSlotList(unsigned char, CK_SLOT_ID* slots, CK_ULONG* count) {
    if (const CK_RV result = Enter("C_GetSlotList")) return result;
    const CK_ULONG room = *count;
    *count = TheFakeToken().present ? 1 : 0;
    if (slots && room < *count) return CKR_BUFFER_TOO_SMALL;
    if (slots && *count) slots[0] = kSlot;
    return CKR_OK;
}

CK_RV C_GetTokenInfo(CK_SLOT_ID slot, CK_TOKEN_INFO* info) {
    if (const CK_RV result = Enter("C_GetTokenInfo")) return result;
    const FakeToken& token = TheFakeToken();
    if (slot != kSlot) return CKR_SLOT_ID_INVALID;
    if (!token.present) return CKR_TOKEN_NOT_PRESENT;
    Fill(info->label, "Fake");
    Fill(info->manufacturerID, "Maker");
    Fill(info->model, "Model");
    Fill(info->serialNumber, token.serial);
    info->flags = token.flags | (token.triesLeft == 0 ? CKF_USER_PIN_LOCKED : 0);
    if (token.triesLeft == 1) info->flags |= CKF_USER_PIN_FINAL_TRY;
    return CKR_OK;
}

CK_RV C_OpenSession(CK_SLOT_ID slot, CK_FLAGS flags, void*, CK_NOTIFY, CK_SESSION_HANDLE* session) {
    if (const CK_RV result = Enter("C_OpenSession")) return result;
    FakeToken& token = TheFakeToken();
    if (slot != kSlot || !token.present) return CKR_TOKEN_NOT_PRESENT;
    if (token.writeProtected && (flags & CKF_RW_SESSION)) return CKR_TOKEN_WRITE_PROTECTED;
    *session = ++token.lastSession;
    token.sessions.insert(*session);
    return CKR_OK;
}

CK_RV C_CloseSession(CK_SESSION_HANDLE session) {
    if (const CK_RV result = EnterSession("C_CloseSession", session)) return result;
    TheFakeToken().sessions.erase(session);
    if (TheFakeToken().sessions.empty()) TheFakeToken().loggedIn = false;
    return CKR_OK;
}

CK_RV C_GetSessionInfo(CK_SESSION_HANDLE session, CK_SESSION_INFO* info) {
    if (const CK_RV result = EnterSession("C_GetSessionInfo", session)) return result;
    info->state = TheFakeToken().loggedIn ? CKS_RW_USER_FUNCTIONS : CKS_RW_PUBLIC_SESSION;
    return CKR_OK;
}

CK_RV C_Login(CK_SESSION_HANDLE session, CK_USER_TYPE, unsigned char* pin, CK_ULONG length) {
    if (const CK_RV result = EnterSession("C_Login", session)) return result;
    FakeToken& token = TheFakeToken();
    if (token.loggedIn) return CKR_USER_ALREADY_LOGGED_IN;
    if (token.triesLeft == 0) return CKR_PIN_LOCKED;
    if (token.pin != std::string_view(reinterpret_cast<char*>(pin), length)) {
        --token.triesLeft;
        return CKR_PIN_INCORRECT;
    }
    token.loggedIn = true;
    return CKR_OK;
}

CK_RV C_Logout(CK_SESSION_HANDLE session) {
    if (const CK_RV result = EnterSession("C_Logout", session)) return result;
    if (!TheFakeToken().loggedIn) return CKR_USER_NOT_LOGGED_IN;
    TheFakeToken().loggedIn = false;
    return CKR_OK;
}

CK_RV C_FindObjectsInit(CK_SESSION_HANDLE session, CK_ATTRIBUTE* wanted, CK_ULONG count) {
    if (const CK_RV result = EnterSession("C_FindObjectsInit", session)) return result;
    g_found.clear();
    for (const auto& [handle, object] : TheFakeToken().objects)
        if (Matches(object, wanted, count)) g_found.push_back(handle);
    return CKR_OK;
}

CK_RV C_FindObjects(CK_SESSION_HANDLE session, CK_OBJECT_HANDLE* objects, CK_ULONG room,
                    CK_ULONG* count) {
    if (const CK_RV result = EnterSession("C_FindObjects", session)) return result;
    *count = std::min<CK_ULONG>(room, g_found.size());
    std::copy_n(g_found.begin(), *count, objects);
    g_found.erase(g_found.begin(), g_found.begin() + static_cast<std::ptrdiff_t>(*count));
    return CKR_OK;
}

CK_RV C_FindObjectsFinal(CK_SESSION_HANDLE session) {
    return EnterSession("C_FindObjectsFinal", session);
}

CK_RV C_GetAttributeValue(CK_SESSION_HANDLE session, CK_OBJECT_HANDLE handle,
                          CK_ATTRIBUTE* attributes, CK_ULONG count) {
    if (const CK_RV result = EnterSession("C_GetAttributeValue", session)) return result;
    const auto object = TheFakeToken().objects.find(handle);
    if (object == TheFakeToken().objects.end()) return CKR_OBJECT_HANDLE_INVALID;
    CK_RV worst = CKR_OK;
    for (CK_ULONG i = 0; i < count; ++i) {
        const CK_RV result = Give(object->second, attributes[i]);
        if (result != CKR_OK && TheFakeToken().stopsAtMissingAttribute) return result;
        if (result != CKR_OK) worst = result;
    }
    return worst;
}

CK_RV C_CreateObject(CK_SESSION_HANDLE session, CK_ATTRIBUTE* attributes, CK_ULONG count,
                     CK_OBJECT_HANDLE* handle) {
    if (const CK_RV result = EnterSession("C_CreateObject", session)) return result;
    if (!TheFakeToken().loggedIn) return CKR_USER_NOT_LOGGED_IN;
    FakeObject object;
    for (CK_ULONG i = 0; i < count; ++i) object[attributes[i].type] = ValueOf(attributes[i]);
    *handle = TheFakeToken().Add(std::move(object));
    return CKR_OK;
}

CK_RV C_DestroyObject(CK_SESSION_HANDLE session, CK_OBJECT_HANDLE handle) {
    if (const CK_RV result = EnterSession("C_DestroyObject", session)) return result;
    return TheFakeToken().objects.erase(handle) ? CKR_OK : CKR_OBJECT_HANDLE_INVALID;
}

CK_RV C_SignInit(CK_SESSION_HANDLE session, CK_MECHANISM* mechanism, CK_OBJECT_HANDLE) {
    if (const CK_RV result = EnterSession("C_SignInit", session)) return result;
    TheFakeToken().signedBy = mechanism->mechanism;
    return CKR_OK;
}

CK_RV C_Sign(CK_SESSION_HANDLE session, unsigned char* data, CK_ULONG length,
             unsigned char* signature, CK_ULONG* signatureLength) {
    if (const CK_RV result = EnterSession("C_Sign", session)) return result;
    FakeToken& token = TheFakeToken();
    token.signedData.assign(reinterpret_cast<char*>(data), length);
    const CK_ULONG room = *signatureLength;
    *signatureLength = token.signature.size();
    if (room < token.signature.size()) return CKR_BUFFER_TOO_SMALL;
    token.signature.copy(reinterpret_cast<char*>(signature), room);
    return CKR_OK;
}

__attribute__((visibility("default"))) CK_RV C_GetFunctionList(CK_FUNCTION_LIST** list) {
    static CK_FUNCTION_LIST functions;
    functions.version = {2, 40};
    functions.C_Initialize = C_Initialize;
    functions.C_Finalize = C_Finalize;
    functions.C_GetSlotList = C_GetSlotList;
    functions.C_GetTokenInfo = C_GetTokenInfo;
    functions.C_OpenSession = C_OpenSession;
    functions.C_CloseSession = C_CloseSession;
    functions.C_GetSessionInfo = C_GetSessionInfo;
    functions.C_Login = C_Login;
    functions.C_Logout = C_Logout;
    functions.C_FindObjectsInit = C_FindObjectsInit;
    functions.C_FindObjects = C_FindObjects;
    functions.C_FindObjectsFinal = C_FindObjectsFinal;
    functions.C_GetAttributeValue = C_GetAttributeValue;
    functions.C_CreateObject = C_CreateObject;
    functions.C_DestroyObject = C_DestroyObject;
    functions.C_SignInit = C_SignInit;
    functions.C_Sign = C_Sign;
    *list = &functions;
    return Enter("C_GetFunctionList");
}
}

// Pkcs11Token.h - one token in its slot, and the one session in which it is used.
#pragma once

#include <p11-kit/pkcs11.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "components/certservice/pkcs11/Pkcs11Attribute.h"
#include "components/certservice/pkcs11/Pkcs11Module.h"

// The session is opened at the first need, for writing where the token allows it, and kept, since a
// login ends with its last session. All operations return a ServiceCode. A failure behind which the
// token turns out to be gone is kServiceKeyRemoved; the session is dropped then, and the next
// operation opens a new one, to which nobody is logged in. Not for use by two threads at a time.
class Pkcs11Token {
public:
    // `serial` is what SerialOf tells of the token in `slot`.
    Pkcs11Token(std::shared_ptr<Pkcs11Module> module, CK_SLOT_ID slot, std::string serial)
        : m_module(std::move(module)), m_slot(slot), m_serial(std::move(serial)) {}
    ~Pkcs11Token() { DropSession(); }
    Pkcs11Token(const Pkcs11Token&) = delete;
    Pkcs11Token& operator=(const Pkcs11Token&) = delete;

    // Tells tokens apart: the serial number, or a digest of the token's description where the
    // number is missing or isn't made of letters, digits, "-", "_" and "." alone. At most 16
    // characters.
    static std::string SerialOf(const CK_TOKEN_INFO& info);

    CK_SLOT_ID Slot() const { return m_slot; }
    const std::string& Serial() const { return m_serial; }
    // Is it still the same token that is in the slot?
    bool IsPresent() const;

    // Success as well if somebody in this process has logged in already, whatever the PIN.
    int Login(std::string_view pin);
    int Logout();
    // True as well for a token that wants no login.
    bool IsLoggedIn();
    // As the token's flags tell: 0 locked, 1 the last try, otherwise -1.
    int RetriesLeft() const;

    int Find(Pkcs11Attributes description, std::vector<CK_OBJECT_HANDLE>& objects);
    int Read(CK_OBJECT_HANDLE object, Pkcs11Attributes& attributes);
    int Create(Pkcs11Attributes attributes);
    int Destroy(CK_OBJECT_HANDLE object);
    int Sign(CK_MECHANISM_TYPE mechanism, CK_OBJECT_HANDLE key, std::string data,
             std::string& signature);

private:
    bool TokenInfo(CK_TOKEN_INFO& info) const;
    CK_RV OpenSession();
    void DropSession();
    CK_RV FindInSession(Pkcs11Attributes& description, std::vector<CK_OBJECT_HANDLE>& objects);
    int Result(CK_RV result);

    std::shared_ptr<Pkcs11Module> m_module;
    CK_SLOT_ID m_slot;
    std::string m_serial;
    CK_SESSION_HANDLE m_session = CK_INVALID_HANDLE;
};

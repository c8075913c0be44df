// FakePkcs11.h - a PKCS#11 module with one token, scripted by the test that has it linked.
#pragma once

#include <p11-kit/pkcs11.h>

#include <map>
#include <set>
#include <string>

using FakeObject = std::map<CK_ATTRIBUTE_TYPE, std::string>;

struct FakeToken {
    bool present = true;
    bool initialised = false;
    std::string serial = "0001";
    std::string pin = "123456";
    int triesLeft = 3;
    CK_FLAGS flags = CKF_LOGIN_REQUIRED | CKF_TOKEN_INITIALIZED | CKF_USER_PIN_INITIALIZED;
    bool writeProtected = false;
    // As some modules do: no length is told behind the first attribute that an object lacks.
    bool stopsAtMissingAttribute = false;
    bool loggedIn = false;
    std::set<CK_SESSION_HANDLE> sessions;
    CK_SESSION_HANDLE lastSession = 0;
    // Objects with CKA_PRIVATE are hidden before login.
    std::map<CK_OBJECT_HANDLE, FakeObject> objects;
    CK_OBJECT_HANDLE lastObject = 0;

    // The function of that name fails with `failure` from now on, each time.
    std::string failingCall;
    CK_RV failure = CKR_OK;
    std::map<std::string, int> calls;

    // What C_Sign gives, and what it was asked.
    std::string signature;
    CK_MECHANISM_TYPE signedBy = 0;
    std::string signedData;

    CK_OBJECT_HANDLE Add(FakeObject object) {
        objects[++lastObject] = std::move(object);
        return lastObject;
    }
    // Ends the sessions and the login, as pulling a token does.
    void Pull() {
        present = false;
        loggedIn = false;
        sessions.clear();
    }
};

// The module's token; a test that begins makes it a new one.
extern "C" __attribute__((visibility("default"))) FakeToken& TheFakeToken();

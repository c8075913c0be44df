// AutomationServer.h - a DLL as the in-process server of one automation class.
#pragma once

#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>

struct AutomationClass {
    const char* id;              // "{2D8C4E07-91BA-4F36-A4D2-7C16E05B3F9A}"
    const wchar_t* description;  // what the registry says of it
    // A new object's `interfaceId`, E_NOINTERFACE where it has none of the kind. Objects can be
    // used from any thread.
    HRESULT (*create)(REFIID interfaceId, void** object);
};

// Each DLL defines its own. DllGetClassObject, DllCanUnloadNow, DllRegisterServer and
// DllUnregisterServer, which the DLL exports, serve this class and no other.
extern const AutomationClass kServedClass;

// Whatever keeps the DLL in use: objects, and locks of the server.
void HoldServer();
void LetServerGo();

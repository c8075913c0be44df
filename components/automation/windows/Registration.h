// Registration.h - a server's class in the registry.
#pragma once

#include "platform/windows/Win32.h"

// Makes this DLL the in-process server of kServedClass, with the threading model Both: for
// all users, or for this user alone where that isn't allowed.
HRESULT RegisterServedClass();

// Removes the class, of all users so far as that is allowed, and of this one. S_OK if it is in
// neither place afterwards.
HRESULT UnregisterServedClass();

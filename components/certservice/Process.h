// Process.h - the contexts of this process and what they share.
#pragma once

#include "components/certservice/CertService.h"

// Makes a context. The first one of the process reads the settings and opens the devices.
CertService* OpenContext();

// The context behind a handle, or null for one that was never opened or is closed.
CertService* FindContext(void* handle);

// Closes a context. With the last one of the process all logins end, and the private keys are
// wiped. False for a handle that FindContext doesn't know.
bool CloseContext(void* handle);

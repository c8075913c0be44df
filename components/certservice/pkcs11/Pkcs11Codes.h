// Pkcs11Codes.h - what the results of a PKCS#11 module mean to the certificate service.
#pragma once

#include <p11-kit/pkcs11.h>

// The ServiceCode for a module's result. A token that is gone, a session that ended with it and a
// slot that vanished are one cause, kServiceKeyRemoved. A user who is logged in already counts as
// success. Whatever has no code of its own is kServiceTokenFailure.
int ServiceCodeOf(CK_RV result);

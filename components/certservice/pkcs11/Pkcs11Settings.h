// Pkcs11Settings.h - what the store says about PKCS#11 modules.
#pragma once

#include <p11-kit/pkcs11.h>

#include <string>
#include <vector>

struct Pkcs11Settings {
    std::vector<std::string> modules;    // Pkcs11Modules: paths, the file system's bytes
    CK_MECHANISM_TYPE sm2Mechanism = 0;  // Pkcs11Sm2Mechanism; 0: none
    CK_KEY_TYPE sm2KeyType = 0;          // Pkcs11Sm2KeyType; 0: any type but RSA
};

// Reads the store anew. An absent value is as above; of equal paths the first counts.
Pkcs11Settings ReadPkcs11Settings();

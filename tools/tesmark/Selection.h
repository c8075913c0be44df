// Selection.h - which certificate and which seal a command works with.
#pragma once

#include <string>

#include "Pin.h"

struct SelectionOptions {
    std::string cert;    // what FindCertificate takes
    std::string serial;  // hexadecimal, as `tesmark list --json` tells it
    std::string seal;    // what FindSeal takes
    PinOptions pin;
};

// --cert, --serial, the PIN, and with `withSeal` --seal.
void BindSelection(CLI::App& command, SelectionOptions& options, bool withSeal);

enum class SealSource {
    kKey,     // a seal in a key, or of a phone
    kOnline,  // the online seal service
    kName,    // none: a picture drawn of the certificate's name
    kText     // none: a picture drawn of a text
};

// What the library has selected for a stamp.
struct SelectedSeal {
    SealSource source = SealSource::kKey;
    std::string certId;
    std::string commonName;  // UTF-8
    std::string keyType;     // "SM2" or "RSA"
    std::string sealFile;    // its name in the key, UTF-8; empty where it is in none
    std::string sealName;    // as the seal tells it, UTF-8; empty without a seal
    std::string picture;
    int mode = 0;  // as GetEsealMode
    double widthMm = 0;
    double heightMm = 0;
};

// Selects certificate and seal in the library, which is up. Without --cert, --serial and --seal the
// library chooses itself and asks in its own dialogs where there is a choice (GetSealInfo), else
// they are looked up and told to it (SetCertSeal), after a scan where a phone is named. With a PIN
// the key is opened. The size is the seal's own, or the picture's at 300 dpi where the seal tells
// none. Throws a Failure; kChoice with the list of what is there where nothing was chosen.
SelectedSeal SelectSeal(const SelectionOptions& options);

// The same for a signature without a seal; of several certificates the library asks for one
// (GetCertType).
struct SelectedCert {
    std::string certId;
    std::string commonName;
    std::string keyType;
    std::string der;
};
SelectedCert SelectCertificate(const SelectionOptions& options);

// The name that the selected seal's file tells; empty if it can't be read. With `mode` as
// GetEsealMode.
std::string NameOfSelectedSeal(int mode);

// The size on the page, of which one that isn't positive is told by nobody: then it is the
// picture's at 300 dpi. Throws a Failure for a picture that can't be measured.
void SetSize(SelectedSeal& selected, int widthMm, int heightMm);

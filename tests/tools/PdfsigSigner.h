// PdfsigSigner.h - a PDF that another program has signed.
#pragma once

#include <string>
#include <vector>

#include "support/Program.h"

// Has pdfsig sign `name` in `folder` as "other.pdf" there, in the field "Other" with the reason
// "Seen", by a new RSA key whose certificate nobody trusts.
inline void SignByPdfsig(const std::string& folder, const std::string& name) {
    ProgramOptions options;
    options.folder = folder;
    const std::vector<std::vector<std::string>> commands = {
        {"/usr/bin/openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", "key.pem",
         "-out", "cert.pem", "-subj", "/CN=Other Signer"},
        {"/usr/bin/openssl", "pkcs12", "-export", "-in", "cert.pem", "-inkey", "key.pem", "-name",
         "other", "-out", "other.p12", "-passout", "pass:x"},
        {"/usr/bin/certutil", "-N", "-d", "sql:.", "--empty-password"},
        {"/usr/bin/pk12util", "-i", "other.p12", "-d", "sql:.", "-W", "x"},
        {"/usr/bin/pdfsig", "-nssdir", "sql:.", "-add-signature", "-nick", "other",
         "-new-signature-field-name", "Other", "-reason", "Seen", name, "other.pdf"}};
    for (const auto& command : commands) RunProgram(command, options);
}

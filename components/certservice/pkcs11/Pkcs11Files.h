// Pkcs11Files.h - the files that stand beside a certificate on its token.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "components/certservice/pkcs11/Pkcs11Token.h"

// A file is a CKO_DATA object whose CKA_LABEL is the file's name. It belongs to the certificate
// whose CKA_ID is its CKA_OBJECT_ID, or is its CKA_APPLICATION written in hexadecimal of lower
// case. Of several with one name, the one that the token lists last counts. Names are GBK.
class Pkcs11Files {
public:
    explicit Pkcs11Files(std::string certificateId) : m_id(std::move(certificateId)) {}

    // In the order of the names' bytes, whatever order the token has.
    int List(Pkcs11Token& token, std::vector<std::string>& names);

    // kServiceNoSuchFile if there is none; `content` is then left alone.
    int Read(Pkcs11Token& token, const std::string& name, std::string& content);

    // Makes the file or replaces it: the new object is written before the old ones are deleted.
    // The object is public, so that it can be read without login; the token may want one for
    // writing (kServicePinUnavailable if nobody has logged in).
    int Write(Pkcs11Token& token, const std::string& name, std::string_view content);

private:
    using Objects = std::map<std::string, std::vector<CK_OBJECT_HANDLE>>;

    int Search(Pkcs11Token& token);
    int SearchBy(Pkcs11Token& token, const Pkcs11Attribute& owner, Objects& objects);
    bool ReadObject(Pkcs11Token& token, CK_OBJECT_HANDLE object, const std::string& name,
                    std::string& content, int& code);

    std::string m_id;
    Objects m_objects;  // as the last search saw them, by the file's name
};

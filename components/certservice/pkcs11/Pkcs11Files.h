// Pkcs11Files.h - the files that stand beside the certificates of one token.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "components/certservice/pkcs11/Pkcs11Token.h"
#include "platform/Clock.h"

// A file is a CKO_DATA object whose CKA_LABEL is the file's name. It belongs to the certificate
// whose CKA_ID is its CKA_OBJECT_ID, or is its CKA_APPLICATION written in hexadecimal of lower
// case. Of several with one name, the one that the token lists last counts. Names are GBK; `id` is
// the certificate's CKA_ID.
//
// A search costs a token more than all the rest, so one search serves each certificate once: who
// goes through the certificates one after another within a second has the files as they were at
// the first.
class Pkcs11Files {
public:
    using Clock = int (*)();
    // `clock` counts milliseconds.
    explicit Pkcs11Files(Clock clock = platform::MillisecondsSinceStart) : m_clock(clock) {}

    // In the order of the names' bytes, whatever order the token has.
    int List(Pkcs11Token& token, const std::string& id, std::vector<std::string>& names);

    // As it is on the token now. kServiceNoSuchFile if there is none; `content` is then left alone.
    int Read(Pkcs11Token& token, const std::string& id, const std::string& name,
             std::string& content);

    // Makes the file or replaces it: the new object is written before the old ones are deleted.
    // The object is public, so that it can be read without login; the token may want one for
    // writing (kServicePinUnavailable if nobody has logged in).
    int Write(Pkcs11Token& token, const std::string& id, const std::string& name,
              std::string_view content);

    // What the last search saw holds no longer.
    void Forget() { m_searched = false; }

private:
    struct Object {
        CK_OBJECT_HANDLE handle;
        std::string name;
        std::string objectId;
        std::string application;

        bool BelongsTo(const std::string& id) const;
    };

    int Search(Pkcs11Token& token);
    static int ReadObject(Pkcs11Token& token, Object& object, std::string* content);
    bool ReadNewest(Pkcs11Token& token, const std::string& id, const std::string& name,
                    std::string& content, int& code) const;

    Clock m_clock;
    bool m_searched = false;
    int m_searchedAt = 0;
    std::set<std::string> m_listed;  // the ids that were served by the last search
    std::vector<Object> m_objects;   // in the order of the token
};

// ServiceTest.h - the certificate service behind its exports, with keys and a trust folder of one
// test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/KeyFolder.h"
#include "components/certservice/ServiceCodes.h"
#include "platform/closed/CertService.h"
#include "support/TemporaryPrefix.h"

constexpr char kPin[] = "12345678";

struct Answer {
    int code = 0;
    std::string data;
    bool operator==(const Answer&) const = default;
};

const unsigned char* Bytes(std::string_view text);
int Size(std::string_view text);

// Asks for the size, then fetches into a buffer of that size. `call` takes (out, outLen).
template <typename Call>
Answer TwoSteps(Call call) {
    int size = 0;
    if (const int code = call(nullptr, &size)) return {code, {}};
    std::string buffer(static_cast<size_t>(size), '\x7F');
    int length = size;
    const int code = call(reinterpret_cast<unsigned char*>(buffer.data()), &length);
    buffer.resize(static_cast<size_t>(length));
    return {code, buffer};
}

// The answer of the openssl program, and what it ended with.
struct ProgramRun {
    int status = -1;
    std::string output;  // both streams
};

// A file of that size, with nothing but zero bytes.
void MakeSparseFile(const std::string& path, std::int64_t size);
void WriteFile(const std::string& path, std::string_view content);
std::string ReadFile(const std::string& path);

class ServiceTest : public testing::Test {
protected:
    ServiceTest();
    ~ServiceTest() override;

    // With the platform's separators; `name` has "/".
    std::string Path(const std::string& name) const { return m_prefix.Below(name); }
    std::string KeyPath(const std::string& certId) const;

    // Runs the openssl program in the folder of Path(); its arguments have no blanks.
    ProgramRun OpenSsl(const std::string& arguments) const;

    // The authority of that kind, trusted.
    DevelopmentCa& Authority(KeyKind kind);
    void Trust(const DevelopmentCa& authority, const std::string& name);

    // Stores a new key with a certificate of `commonName` under kPin; its certId.
    std::string MakeKey(KeyKind kind, const std::string& name = "key",
                        const CertificateRequest& request = {});
    // A certificate of the authority for a key that nobody has.
    std::string MakeCertificate(KeyKind kind, const CertificateRequest& request);

    // A context, closed at the end.
    void* Open();

    Answer Export(void* context, const std::string& certId);
    Answer SignData(void* context, const std::string& certId, std::string_view data);
    Answer SignMessage(void* context, const std::string& certId, std::string_view data);
    Answer SignHash(void* context, const std::string& certId, int algorithm, std::string_view hash);
    Answer Field(void* context, std::string_view certificate, int field);
    int Validate(void* context, std::string_view certificate);
    int SetRevocationList(void* context, std::string_view list);

    TemporaryPrefix m_prefix;
    KeyFolder m_keys;

private:
    std::map<KeyKind, std::unique_ptr<DevelopmentCa>> m_authorities;
    std::vector<void*> m_contexts;
};

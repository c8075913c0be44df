// RoadTest.h - the library through its exports with the open components behind it, nothing stood
// in for: keys and tokens in a prefix of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "TesmarkOpt.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/KeyFolder.h"
#include "components/seallibrary/SealForm.h"
#include "support/TemporaryPrefix.h"

extern const char* const kCertServiceFile;
constexpr char kRoadPin[] = "123456";

// What an export gave in two steps, or the code of the step that failed.
struct Handed {
    int code = 0;
    std::string bytes;
};

// Asks for the size, then fetches into a buffer of that size. `call` takes (out, outLen).
template <typename Call>
Handed InTwoSteps(Call call) {
    int size = 0;
    if (const int code = call(nullptr, &size)) return {code, {}};
    std::string bytes(static_cast<std::size_t>(size), '\x7F');
    int length = size;
    const int code = call(reinterpret_cast<unsigned char*>(bytes.data()), &length);
    if (code == 0) bytes.resize(static_cast<std::size_t>(length));
    return {code, bytes};
}

// A seal of that form, made by a maker whose certificate `maker` issued, for one signer.
std::string MadeSeal(SealForm form, const DevelopmentCa& maker, const std::string& signer);
// A seal file of the old form.
std::string MadeEsSeal();
// The picture that those seals hold.
std::string SealPicture();

// Each test begins with the service registered and not started, nothing selected and no key.
class RoadTest : public testing::Test {
protected:
    RoadTest();
    ~RoadTest() override;

    std::string InPrefix(const std::string& name) const { return m_prefix.Below(name); }
    std::string WriteFile(const std::string& name, const std::string& content) const;
    // The folder of a key.
    std::string KeyPath(const std::string& certId) const;

    // The trusted authority of that kind.
    DevelopmentCa& Authority(KeyKind kind);
    // A key with the PIN kRoadPin and a certificate of `authority`, or else of the trusted one.
    std::string MakeKey(KeyKind kind, const std::string& name, CertificateRequest request = {},
                        const DevelopmentCa* authority = nullptr);
    // Puts a seal for that key into it, made by a maker of the trusted authority.
    void AddSeal(const std::string& certId, SealForm form);
    void AddEsSeal(const std::string& certId, const std::string& fileName = "ESEAL01");

    static int Login(const std::string& certId, const char* pin = kRoadPin);
    static Handed Picture();
    static Handed SignP1(const std::string& data);
    static Handed SignP7(const std::string& data);
    Handed SignP7File(const std::string& path);

    // 0 if `openssl` with these arguments ends well; its output is told otherwise.
    static testing::AssertionResult OpenSsl(const std::vector<std::string>& arguments);
    // `openssl cms -verify` over the file.
    testing::AssertionResult CmsAccepts(const std::string& message, const std::string& path) const;
    // `openssl dgst -verify` with the certificate's public key.
    testing::AssertionResult DigestAccepts(const std::string& signature, const std::string& path,
                                           const std::string& certificate) const;

    TemporaryPrefix m_prefix;
    KeyFolder m_keys;

private:
    std::map<KeyKind, std::unique_ptr<DevelopmentCa>> m_authorities;
};

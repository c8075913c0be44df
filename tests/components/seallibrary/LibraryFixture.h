// LibraryFixture.h - the built seal library with the scripted certificate service behind it.
#pragma once

#include <gtest/gtest.h>

#include "platform/Module.h"
#include "platform/closed/SealLibrary.h"
#include "support/TemporaryPrefix.h"
#include "tests/components/seallibrary/StandInService.h"
#include "tests/components/seallibrary/TestPki.h"

inline const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}
inline int Size(std::string_view text) { return static_cast<int>(text.size()); }

class LibraryFixture : public testing::Test {
protected:
    LibraryFixture();
    ~LibraryFixture() override;

    void GiveKey(const std::string& certId, const TestIdentity& identity);
    // The data's plain hash, as the algorithm of the signer's kind of key wants it.
    static std::string HashFor(const TestIdentity& signer, std::string_view data);
    static const char* AlgorithmFor(const TestIdentity& signer);

    // TVK_Sign with everything as the library passes it. A null `out` asks for the size.
    int Sign(const std::string& certId, const TestIdentity& signer, const std::string& hash,
             const std::string& seal, unsigned char* out, int* outLen);
    // The seal signature of `data`, by a query and a fetch; empty on failure.
    std::string SignData(const std::string& certId, const TestIdentity& signer,
                         const std::string& data, const std::string& seal);
    static int VerifyData(const std::string& signature, const std::string& data);

    TemporaryPrefix m_prefix;
    platform::ModuleHandle m_service = nullptr;
    StandInScript* m_script = nullptr;
    std::string m_property = "/Contents";
    std::string m_time = "2026-06-15T12:00:00";
};

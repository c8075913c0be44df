// SigningTest.h - a certificate to sign with, selected with or without a seal.
#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"

class SigningTest : public LibraryTest {
protected:
    // The calls of the key check, which stand before every signature.
    static constexpr int kCheckCalls = 6;
    // Base64 of "seal file".
    static constexpr char kSeal[] = "c2VhbCBmaWxl";

    SigningTest() : m_certificate(fakes::AddCertificate("label", "A")) {}

    // With a seal of that mode selected, and the service up.
    void Select(int mode) {
        if (mode == 0) {
            SetCurrentCertID("A");
        } else {
            fakes::AddNationalSeal("seal file", "name", "picture");
            fakes::AddFile("A", mode == 2 ? "GBESEAL01" : "SEAL01", "seal file");
            SelectSeal("serial of A", kSeal, mode);
        }
        InitKVLLib();
        fakes::ClearCalls();
        ForgetLog();
    }
    static std::vector<std::string> CallsBehindTheCheck() {
        const auto texts = fakes::CallTexts();
        return {texts.begin() + std::min<std::ptrdiff_t>(kCheckCalls, std::ssize(texts)),
                texts.end()};
    }
    bool Selected() const {
        int length = 0;
        GetSelectedCertId(nullptr, &length);
        return length != 0;
    }

    fakes::Certificate& m_certificate;
};

// SessionTest.h - what tests of the session's exports share.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "fakes/LibraryTest.h"
#include "foundation/StringFailure.h"

class SessionTest : public LibraryTest {
protected:
    // A key with one certificate "cert-1" and one seal beside it.
    static void AddEsKey(const std::string& picture = "es picture") {
        fakes::AddCertificate("label", "cert-1");
        fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal(picture));
    }
    static fakes::NationalSeal& AddGbKey() { return AddNationalKey("GBESEAL01"); }
    static fakes::NationalSeal& AddGmKey() { return AddNationalKey("SEAL01"); }

    static int Query() {
        int length = 0;
        return GetSealInfo(nullptr, &length);
    }

    // As GetSealInfo delivers it: a size query and a fetch.
    static std::string Picture() {
        int length = 0;
        if (GetSealInfo(nullptr, &length) != 0) return "failed";
        return Fetch(length);
    }

    static std::string Fetch(int length) {
        std::string picture(static_cast<std::size_t>(length), '?');
        const int code = GetSealInfo(reinterpret_cast<unsigned char*>(picture.data()), &length);
        return code == 0 ? picture : "failed";
    }

    // The text that GetDragSealPic gives.
    static std::string DragPicture() {
        char* base64 = nullptr;
        if (GetDragSealPic(&base64) != 0) return "failed";
        const std::string text = base64;
        std::free(base64);
        return text;
    }

    static std::string SelectedSeal() {
        int length = 0;
        GetSelectedSeal(nullptr, &length);
        std::string seal(static_cast<std::size_t>(length), '?');
        GetSelectedSeal(reinterpret_cast<unsigned char*>(seal.data()), &length);
        return seal;
    }

    // Checks the certificate as it goes; empty without a selection.
    static std::string SelectedCert() {
        int length = 0;
        GetSelectedCertId(nullptr, &length);
        std::string certId(static_cast<std::size_t>(length), '?');
        const int code =
            GetSelectedCertId(reinterpret_cast<unsigned char*>(certId.data()), &length);
        return code == 0 ? certId : "failed";
    }

    static bool Called(const std::string& function) { return fakes::CountCalls(function) > 0; }

    // The value of the string type's failure that leaves `call`; 0 if none does.
    template <typename Function>
    static std::uint32_t StringFailureOf(Function call) {
        try {
            call();
        } catch (const StringFailure& failure) {
            return failure.Value();
        }
        return 0;
    }

    // The failures but for the copy of a request that has no folder.
    std::vector<std::string> FailuresOfStamp() const {
        std::vector<std::string> failures = Failures();
        std::erase_if(failures, [](const std::string& message) {
            return message.starts_with("[WriteContent2File]:fopen error:");
        });
        return failures;
    }

    // The calls that touch a key's signature or judge a seal.
    static std::vector<std::string> ProbesAndChecks() {
        std::vector<std::string> names;
        for (const std::string& name : fakes::CalledFunctions()) {
            if (name == "SOF_SignData" || name == "TVK_Verify_SESeal" ||
                name == "TVK_GetSealInfo" || name == "TVK_Request_Eseal_Status") {
                names.push_back(name);
            }
        }
        return names;
    }

private:
    static fakes::NationalSeal& AddNationalKey(const std::string& fileName) {
        fakes::AddCertificate("label", "cert-1");
        fakes::AddFile("cert-1", fileName, "national seal");
        return fakes::AddNationalSeal("national seal", "name", "national picture");
    }
};

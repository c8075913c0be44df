// ScanTest.h - what tests of the scan by phone share.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "FlowTest.h"
#include "foundation/Text.h"

class ScanTest : public FlowTest {
protected:
    static constexpr char kScanCert[] = "box/hlvqDev000000000000000000";
    using Files = std::vector<std::pair<std::string, std::string>>;

    // The scan's entry alone, without files.
    ScanTest() { AddScanEntry(); }

    static void AddScanEntry() { fakes::AddCertificate("label", kScanCert); }

    // What the device shows once somebody has scanned.
    static void PhoneLeaves(const Files& files) {
        fakes::On("SOF_Login").Does([files](const fakes::Call&) {
            if (fakes::FindCertificate(kScanCert)->files.empty()) {
                for (const auto& [name, content] : files) fakes::AddFile(kScanCert, name, content);
            }
            return fakes::Answer{};
        });
    }
    static void AddNationalSeal() {
        fakes::AddNationalSeal("national seal", "name", "national picture");
    }
    // The next scan brings this seal alone.
    static void LeaveOneNationalSeal() {
        fakes::ResetWorld();
        AddScanEntry();
        AddNationalSeal();
        PhoneLeaves({{"SEAL01", "national seal"}});
    }
    // The dialog for the seals of a scan, in which the user clicks on the seal at `index`.
    void UserPicks(std::size_t index) {
        g_user.pzmSealTree = [this, index](PzmSealPick* pick) {
            ++m_shown;
            const SealRecord& seal = g_pzmSealItems.at(index);
            g_pzmDialogPick.assign(reinterpret_cast<const char*>(seal.picData),
                                   static_cast<std::size_t>(seal.picLen));
            g_pzmDialogSeal = seal;
            *pick = {g_pzmDialogPick, g_pzmDialogSeal};
            return DialogEnd::Confirmed;
        };
    }
    // The same without a click.
    void UserConfirms() {
        g_user.pzmSealTree = [this](PzmSealPick* pick) {
            ++m_shown;
            *pick = {g_pzmDialogPick, g_pzmDialogSeal};
            return DialogEnd::Confirmed;
        };
    }
    void UserLeaves(DialogEnd end) {
        g_user.pzmSealTree = [this, end](PzmSealPick*) {
            ++m_shown;
            return end;
        };
    }

    // The text in the place of a PIN, for a host of this name.
    static std::string Pin(const std::string& appId) {
        return Base64Encode("{\n   \"appid\" : \"" + appId +
                            "\",\n   \"cardid\" : \"\",\n   \"cardimage\" : \"\",\n"
                            "   \"cardname\" : \"\",\n   \"showselectcertwnd\" : \"1\",\n"
                            "   \"type\" : \"1\"\n}\n");
    }
    // The PIN of the last login.
    static std::string SentPin() {
        std::string pin;
        for (const fakes::Call& call : fakes::Calls()) {
            if (call.function == "SOF_Login") pin = call.arguments[1];
        }
        return pin;
    }
    // The log's failures but for the name of the host, which stands at that level, and for what an
    // enumeration says of a device without files.
    std::vector<std::string> ScanFailures() const {
        std::vector<std::string> failures = Failures();
        std::erase_if(failures, [](const std::string& text) {
            return text.starts_with("g_appId is ") || text == "praseEnumFiles error";
        });
        return failures;
    }

    int m_shown = 0;
};

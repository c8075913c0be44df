// PhoneFixture.h - a phone that the program scans with.
#pragma once

#include <string>

#include "tools/cli/StampFixture.h"

constexpr char kPhoneCertId[] = "HLVQDefaultContainer/hlvqDev000000000000000000";

class PhoneFixture : public StampFixture<CliTest> {
protected:
    void MakePhone(const std::string& person, const std::string& algorithm = "sm2") const {
        const auto outcome = Tesmark({"key", "scan", "--name", person, "--algorithm", algorithm});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    }
    void Bring(const std::string& form, const std::string& name) const {
        MakeSeal(kPhoneCertId, form, name);
    }
    void SetAnswer(const std::string& answer) const {
        ASSERT_EQ(Tesmark({"key", "scan", "--answer", answer}).exitCode, 0);
    }
};

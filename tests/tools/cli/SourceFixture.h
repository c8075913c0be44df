// SourceFixture.h - stamps with seals that aren't in a key.
#pragma once

#include <filesystem>
#include <string>

#include "platform/Files.h"
#include "tests/tools/sealserver/OnlineSeals.h"
#include "tools/cli/StampFixture.h"

class SourceFixture : public StampFixture<CliTest> {
protected:
    void Set(const std::string& name, const std::string& value) const {
        const auto outcome = Tesmark({"config", "set", name, value});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    }
    // The document that a stamp prints.
    Json::Value Stamped(std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments = {"stamp", kContract, m_out, "--pin", "123456"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Json(arguments);
    }
    // A stamp that has to fail, with that exit code and a text on standard error, writes nothing.
    void ExpectRefusal(std::vector<std::string> more, int exitCode, const std::string& text) const {
        more.insert(more.begin(), {"--pin", "123456"});
        const auto outcome = Stamp(more);
        EXPECT_EQ(outcome.exitCode, exitCode) << outcome.error;
        EXPECT_NE(outcome.error.find(text), std::string::npos) << outcome.error;
        EXPECT_TRUE(NothingWritten());
    }
    void ExpectVerified() const {
        const auto outcome = Tesmark({"verify", m_out});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.out << outcome.error;
    }
    void ExpectPdfSigValid() const {
        const std::string verdict = PdfSig();
        EXPECT_NE(verdict.find("Signature is Valid"), std::string::npos) << verdict;
        EXPECT_NE(verdict.find("Total document signed"), std::string::npos) << verdict;
    }
};

// With the sample service running, and in use.
class OnlineFixture : public SourceFixture {
protected:
    OnlineFixture() {
        Set("sWSURL", m_service.Address());
        Set("bSealPosition", "1");
    }

    static std::string CertificateOf(const std::string& key) {
        return FileContent(InKeys(key + "/certificate.pem"));
    }
    // A seal of that form for the key, not in the key.
    std::string TakenSeal(const std::string& key, const std::string& form) const {
        MakeSeal(key, form, key);
        const std::string name = form == "es" ? "ESEAL" : form == "gb2020" ? "GBESEAL" : "SEAL01";
        const std::string path = InKeys(key + "/files/" + name);
        const std::string seal = FileContent(path);
        EXPECT_TRUE(std::filesystem::remove(path));
        return seal;
    }
    std::int64_t Offer(const std::string& key, const std::string& form) {
        return m_service.Offer(CertificateOf(key), TakenSeal(key, form));
    }
    int TriesLeft() const { return Json({"key", "list"})["keys"][0]["triesLeft"].asInt(); }

    OnlineSeals m_service{platform::Utf8FromPath(InPrefix("seals.db"))};
};

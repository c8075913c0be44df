// `tesmark present`.

#include <filesystem>

#include "PhoneFixture.h"

namespace {

class PresentTest : public PhoneFixture {
protected:
    static std::string PemOf(const std::string& name) { return InKeys(name + "/certificate.pem"); }
    std::string DerOf(const std::string& name) const {
        std::string der = InPrefix(name + ".der");
        RunProgram(
            {"/usr/bin/openssl", "x509", "-in", PemOf(name), "-outform", "DER", "-out", der});
        return der;
    }
    int ExitCode(const std::vector<std::string>& more) const {
        std::vector<std::string> arguments = {"present"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Tesmark(arguments).exitCode;
    }
};

TEST_F(PresentTest, TheOnlyCertificateIsPresentAndInUseInPemAndInDer) {
    MakeKey("alice", "sm2");
    for (const std::string& file : {PemOf("alice"), DerOf("alice")}) {
        const Json::Value told = Json({"present", file});
        EXPECT_EQ(told["certId"].asString(), "DevKeys/alice");
        EXPECT_EQ(told["selected"].asString(), "DevKeys/alice");
        EXPECT_TRUE(told["present"].asBool());
        EXPECT_TRUE(told["inUse"].asBool());
        EXPECT_EQ(ExitCode({file}), 0);
    }
}

TEST_F(PresentTest, ACertificateOfNoKeyIsAbsent) {
    MakeKey("alice", "sm2");
    MakeKey("bob", "sm2");
    const std::string bob = DerOf("bob");
    std::filesystem::remove_all(InKeys("bob"));
    const Json::Value told = Json({"present", bob});
    EXPECT_TRUE(told["certId"].isNull());
    EXPECT_FALSE(told["present"].asBool());
    EXPECT_FALSE(told["inUse"].asBool());
    EXPECT_EQ(ExitCode({bob}), 3);
    std::filesystem::remove_all(InKeys("alice"));
    EXPECT_EQ(ExitCode({bob}), 3) << "without any key too";
}

TEST_F(PresentTest, OfSeveralTheOneInUseIsTheOneThatIsNamed) {
    MakeKey("alice", "sm2");
    MakeKey("bob", "sm2");
    EXPECT_EQ(ExitCode({PemOf("alice")}), 5);
    EXPECT_EQ(ExitCode({PemOf("alice"), "--cert", "bob"}), 5);
    EXPECT_EQ(ExitCode({PemOf("alice"), "--cert", "alice"}), 0);
    const Json::Value told = Json({"present", PemOf("alice"), "--cert", "bob"});
    EXPECT_EQ(told["certId"].asString(), "DevKeys/alice");
    EXPECT_EQ(told["selected"].asString(), "DevKeys/bob");
    EXPECT_TRUE(told["present"].asBool());
    EXPECT_FALSE(told["inUse"].asBool());
    EXPECT_TRUE(Json({"present", PemOf("alice")})["selected"].isNull());
}

TEST_F(PresentTest, AFileWithoutACertificateIsToldAsSuch) {
    MakeKey("alice", "sm2");
    WriteFile(InPrefix("f"), "no certificate");
    EXPECT_EQ(ExitCode({InPrefix("f")}), 4);
    EXPECT_EQ(ExitCode({InPrefix("none")}), 4);
    EXPECT_EQ(ExitCode({}), 2);
}

TEST_F(PresentTest, ThePhonesCertificateIsProvenByAScanWhereNothingIsNamed) {
    MakePhone("zhang");
    const std::string pem = PemOf(".scan/zhang");
    SetAnswer("refuse");
    EXPECT_EQ(ExitCode({pem}), 0) << "the only one is in use as it stands";
    MakeKey("alice", "sm2");
    EXPECT_EQ(ExitCode({pem}), 6);
    SetAnswer("accept");
    EXPECT_EQ(ExitCode({pem}), 0);
    EXPECT_EQ(ExitCode({pem, "--cert", "alice"}), 5);
    EXPECT_EQ(ExitCode({pem, "--cert", kPhoneCertId}), 0);
}

}  // namespace

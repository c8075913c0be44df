// `tesmark key`, `seal` and `list`.

#include <filesystem>

#include "CliFixture.h"

namespace {

// Chinese narrow text: UTF-8 as a terminal gives it.
const std::string kCompany = reinterpret_cast<const char*>(u8"北京示例科技有限公司");

class KeysTest : public CliTest {};

TEST_F(KeysTest, ANewKeyIsListedTrustedAndValid) {
    MakeKey("alice", "sm2");
    const Json::Value certificates = Json({"list"})["certificates"];
    ASSERT_EQ(certificates.size(), 1u);
    EXPECT_EQ(certificates[0]["certId"].asString(), "DevKeys/alice");
    EXPECT_EQ(certificates[0]["commonName"].asString(), "alice");
    EXPECT_EQ(certificates[0]["algorithm"].asString(), "SM2");
    EXPECT_TRUE(certificates[0]["problem"].isNull());
}

TEST_F(KeysTest, EveryAlgorithmMakesAKey) {
    for (const char* algorithm : {"sm2", "rsa2048", "rsa3072", "rsa4096"}) {
        MakeKey(algorithm, algorithm);
    }
    EXPECT_EQ(Json({"list"})["certificates"].size(), 4u);
    const auto unknown =
        Tesmark({"key", "new", "--name", "x", "--algorithm", "rsa1024", "--pin", "123456"});
    EXPECT_EQ(unknown.exitCode, 2);
}

TEST_F(KeysTest, AChineseNameStandsInTheCertificate) {
    ASSERT_EQ(
        Tesmark({"key", "new", "--name", kCompany, "--id", "company", "--pin", "123456"}).exitCode,
        0);
    EXPECT_EQ(Json({"list"})["certificates"][0]["commonName"].asString(), kCompany);
}

TEST_F(KeysTest, TheSerialNumberIsTheOneAskedFor) {
    ASSERT_EQ(
        Tesmark({"key", "new", "--name", "a", "--serial", "1234ABCD", "--pin", "123456"}).exitCode,
        0);
    const std::string serial = Json({"list"})["certificates"][0]["serial"].asString();
    EXPECT_TRUE(serial == "1234ABCD" || serial == "1234abcd") << serial;
}

TEST_F(KeysTest, ATakenNameIsRefusedAndTheKeyStays) {
    MakeKey("alice", "sm2");
    const auto again = Tesmark({"key", "new", "--name", "alice", "--pin", "654321"});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_NE(again.error.find("is there already"), std::string::npos) << again.error;
    EXPECT_EQ(Json({"list"})["certificates"].size(), 1u);
}

TEST_F(KeysTest, AnIdThatNamesNoFolderIsAUsageErrorBeforeAnythingIsMade) {
    WriteFile(InPrefix("k.pem"), "not looked at");
    for (const std::string& id :
         {std::string("../y"), std::string("a b"), std::string(".y"), std::string(49, 'a')}) {
        for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
                 {"key", "new", "--name", "a", "--pin", "123456", "--id", id},
                 {"key", "scan", "--name", "a", "--id", id},
                 {"key", "import", InPrefix("k.pem"), "--pin", "123456", "--id", id}}) {
            const auto outcome = Tesmark(command);
            EXPECT_EQ(outcome.exitCode, 2) << command[1] << id << outcome.error;
            EXPECT_NE(outcome.error.find("--id is the name of a key's folder"), std::string::npos)
                << outcome.error;
            EXPECT_NE(outcome.error.find("\"" + id + "\" is none."), std::string::npos);
        }
    }
    EXPECT_FALSE(std::filesystem::exists(InTrust("")));
}

TEST_F(KeysTest, TheTriesLeftAreShown) {
    MakeKey("alice", "sm2");
    EXPECT_EQ(Json({"key", "list"})["keys"][0]["triesLeft"].asInt(), 6);
    WriteFile(InPrefix("f"), "f");
    Tesmark({"sign", InPrefix("f"), "--pin", "000000"});
    EXPECT_EQ(Json({"key", "list"})["keys"][0]["triesLeft"].asInt(), 5);
}

TEST_F(KeysTest, WithoutATerminalAPinHasToBeGiven) {
    ProgramOptions nobodyThere;
    nobodyThere.hasTerminal = false;
    const auto outcome = Tesmark({"key", "new", "--name", "a"}, nobodyThere);
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_NE(outcome.error.find("--pin-file"), std::string::npos) << outcome.error;
}

TEST_F(KeysTest, APinThatIsTooShortOrNotAsciiIsRefused) {
    EXPECT_EQ(Tesmark({"key", "new", "--name", "a", "--pin", "123"}).exitCode, 6);
    EXPECT_EQ(Tesmark({"key", "new", "--name", "a", "--pin", kCompany}).exitCode, 2);
}

TEST_F(KeysTest, APkcs12FileBecomesAKey) {
    const auto openssl = [](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "/usr/bin/openssl");
        const auto outcome = RunProgram(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.error;
    };
    openssl({"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", InPrefix("k.pem"), "-out",
             InPrefix("c.pem"), "-days", "9", "-subj", "/CN=imported"});
    openssl({"pkcs12", "-export", "-inkey", InPrefix("k.pem"), "-in", InPrefix("c.pem"), "-out",
             InPrefix("k.p12"), "-passout", "pass:secret"});
    const std::string file = InPrefix("k.p12");
    const auto wrong = Tesmark({"key", "import", file, "--password", "x", "--pin", "123456"});
    EXPECT_EQ(wrong.exitCode, 6);
    EXPECT_NE(wrong.error.find("The password of " + file + " is wrong, or none was given."),
              std::string::npos)
        << wrong.error;
    EXPECT_EQ(wrong.error.find("PIN"), std::string::npos) << wrong.error;
    const auto lonely = Tesmark({"key", "import", InPrefix("k.pem"), "--pin", "123456"});
    EXPECT_EQ(lonely.exitCode, 4);
    EXPECT_NE(lonely.error.find("No certificate in " + InPrefix("k.pem")), std::string::npos)
        << lonely.error;
    const auto right = Tesmark(
        {"key", "import", file, "--password", "secret", "--id", "imported", "--pin", "123456"});
    ASSERT_EQ(right.exitCode, 0) << right.error;
    const Json::Value entry = Json({"list"})["certificates"][0];
    EXPECT_EQ(entry["certId"].asString(), "DevKeys/imported");
    EXPECT_EQ(entry["problem"].asString(), "not trusted on this machine");
}

TEST_F(KeysTest, AFileWithoutAPrivateKeyIsAFilesFaultAndToldSo) {
    WriteFile(InPrefix("text"), "no key");
    WriteFile(InPrefix("empty"), "");
    for (const std::string& file : {std::string(kContract), InPrefix("text"), InPrefix("empty")}) {
        const auto outcome = Tesmark({"key", "import", file, "--pin", "123456"});
        EXPECT_EQ(outcome.exitCode, 4) << outcome.error;
        EXPECT_NE(outcome.error.find("There is no private key in " + file), std::string::npos)
            << outcome.error;
        EXPECT_EQ(outcome.error.find("damaged"), std::string::npos) << outcome.error;
    }
}

class SealsTest : public CliTest {};

TEST_F(SealsTest, EveryFormIsMadeVerifiedAndListed) {
    MakeKey("alice", "sm2");
    MakeSeal("alice", "gm2014", "one");
    MakeSeal("alice", "gb2020", "two");
    MakeSeal("alice", "es", "three");
    const Json::Value seals = Json({"list"})["certificates"][0]["seals"];
    ASSERT_EQ(seals.size(), 3u);
    for (const Json::Value& seal : seals) EXPECT_TRUE(seal["problem"].isNull()) << seal;
    EXPECT_EQ(seals[0]["file"].asString(), "ESEAL");
    EXPECT_EQ(seals[0]["form"].asString(), "ES");
    EXPECT_TRUE(seals[0]["widthMm"].isNull());
    EXPECT_EQ(seals[1]["file"].asString(), "GBESEAL");
    EXPECT_EQ(seals[1]["form"].asString(), "GB/T 38540");
    EXPECT_EQ(seals[1]["name"].asString(), "two");
    EXPECT_EQ(seals[1]["widthMm"].asInt(), 42);
    EXPECT_EQ(seals[2]["file"].asString(), "SEAL01");
}

TEST_F(SealsTest, AnRsaKeyBearsNationalSealsToo) {
    MakeKey("bob", "rsa2048");
    MakeSeal("bob", "gb2020", "bob");
    EXPECT_TRUE(Json({"list"})["certificates"][0]["seals"][0]["problem"].isNull());
}

TEST_F(SealsTest, AChineseNameComesBackFromEveryForm) {
    MakeKey("alice", "sm2");
    MakeSeal("alice", "gb2020", kCompany);
    MakeSeal("alice", "es", kCompany);
    const Json::Value seals = Json({"list"})["certificates"][0]["seals"];
    EXPECT_EQ(seals.size(), 2u);
    for (const Json::Value& seal : seals) {
        EXPECT_EQ(seal["name"].asString(), kCompany);
    }
}

TEST_F(SealsTest, ASecondSealOfAFormStandsBesideTheFirst) {
    MakeKey("alice", "sm2");
    MakeSeal("alice", "es", "one");
    MakeSeal("alice", "es", "two");
    EXPECT_EQ(Json({"list"})["certificates"][0]["seals"].size(), 2u);
}

TEST_F(SealsTest, APictureOfTheUsersOwnGivesTheSealItsShape) {
    MakeKey("alice", "sm2");
    MakeSeal("alice", "es", "drawn");
    const std::string es = FileContent(InKeys("alice/files/ESEAL"));
    const auto start = es.find("\x89PNG");
    ASSERT_NE(start, std::string::npos) << "the drawn seal is a PNG";
    WriteFile(InPrefix("seal.png"), es.substr(start));
    const Json::Value made =
        Json({"seal", "new", "--name", "p", "--picture", InPrefix("seal.png"), "--width", "30"});
    EXPECT_EQ(made["widthMm"].asInt(), 30);
    EXPECT_EQ(made["heightMm"].asInt(), 30);
}

TEST_F(SealsTest, ASizeThatNoSealHasIsAUsageErrorThatNamesTheOptionAndItsRange) {
    MakeKey("alice", "sm2");
    const auto refused = [this](const char* option, const char* size) {
        const auto outcome = Tesmark({"seal", "new", "--name", "p", option, size});
        EXPECT_EQ(outcome.exitCode, 2) << option << size << outcome.out;
        EXPECT_NE(outcome.error.find(option), std::string::npos) << outcome.error;
        return outcome.error;
    };
    for (const char* size : {"-3", "0", "501", "nan"}) {
        EXPECT_NE(refused("--width", size).find("from 1 to 500 mm"), std::string::npos) << size;
        EXPECT_NE(refused("--height", size).find("from 1 to 500 mm"), std::string::npos) << size;
    }
    EXPECT_NE(refused("--width", "9").find("from 10 to 170 mm"), std::string::npos);
    EXPECT_NE(refused("--height", "171").find("from 10 to 170 mm"), std::string::npos);
    refused("--width", "wide");
    EXPECT_EQ(Json({"list"})["certificates"][0]["seals"].size(), 0u);
    EXPECT_EQ(Json({"seal", "new", "--name", "p", "--width", "10"})["heightMm"].asInt(), 10);
    EXPECT_EQ(Json({"seal", "new", "--name", "p", "--height", "170"})["widthMm"].asInt(), 170);
}

TEST_F(SealsTest, APictureThatIsNoneIsAFilesFault) {
    MakeKey("alice", "sm2");
    WriteFile(InPrefix("text.png"), "no picture");
    const auto outcome = Tesmark({"seal", "new", "--name", "p", "--picture", InPrefix("text.png")});
    EXPECT_EQ(outcome.exitCode, 4) << outcome.error;
}

TEST_F(SealsTest, AnUnknownFormIsAUsageError) {
    MakeKey("alice", "sm2");
    EXPECT_EQ(Tesmark({"seal", "new", "--name", "p", "--form", "ofd"}).exitCode, 2);
}

TEST_F(SealsTest, WithoutAKeyTheWayToOneIsTold) {
    const auto outcome = Tesmark({"seal", "new", "--name", "p"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.error.find("tesmark key new"), std::string::npos) << outcome.error;
}

TEST_F(SealsTest, ADamagedSealIsShownAsDamaged) {
    MakeKey("alice", "sm2");
    MakeSeal("alice", "gb2020", "p");
    const std::string path = InKeys("alice/files/GBESEAL");
    ASSERT_TRUE(std::filesystem::exists(path));
    std::string content = FileContent(path);
    content[content.size() / 2] ^= 1;
    WriteFile(path, content);
    EXPECT_FALSE(Json({"list"})["certificates"][0]["seals"][0]["problem"].isNull());
}

}  // namespace

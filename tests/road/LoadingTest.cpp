#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "components/certservice/ServiceCodes.h"
#include "road/RoadTest.h"
#include "support/Program.h"

namespace {

// Hosts in processes of their own, which load the library by its path.
class LoadingTest : public RoadTest {
protected:
    ProgramOutcome Host(const std::string& command, const std::string& certId = "none",
                        const std::string& pin = kRoadPin, const std::string& further = "",
                        const ProgramOptions& options = {}) const {
        return RunProgram({ROAD_HOST, command, ROAD_LIBRARY, certId, pin, further}, options);
    }

    // The codes that records of failed logins tell, in their order.
    std::vector<int> LoginCodesInLog() const {
        std::ifstream file(InPrefix("Velmora/ESealLog/Fenmoor.log"), std::ios::binary);
        const std::string log{std::istreambuf_iterator<char>(file), {}};
        const std::string mark = "LoginIn error ";
        std::vector<int> codes;
        for (std::size_t at = 0; (at = log.find(mark, at)) != std::string::npos;) {
            at += mark.size();
            codes.push_back(std::atoi(log.c_str() + at));
        }
        return codes;
    }
};

TEST_F(LoadingTest, TheLogTellsWrongPinLockedRemovedAndDamagedApart) {
    const std::string wrong = MakeKey(KeyKind::kSm2, "wrong");
    const std::string locked = MakeKey(KeyKind::kSm2, "locked");
    const std::string damaged = MakeKey(KeyKind::kSm2, "damaged");
    for (int i = 0; i < kPinTries; ++i) m_keys.Login(locked, "wrong");
    WriteFile("keys/damaged/certificate.pem", "no certificate");
    EXPECT_EQ(Host("login", wrong, "wrong").out, "-3050\n");
    EXPECT_EQ(Host("login", locked).out, "-3050\n");
    EXPECT_EQ(Host("login", damaged).out, "-3050\n");
    EXPECT_EQ(Host("login", "DevKeys/none").out, "-3050\n");
    EXPECT_EQ(LoginCodesInLog(),
              (std::vector<int>{kServicePinWrong, kServiceKeyLocked, kServiceCertificateDamaged,
                                kServiceNoSuchCertificate}));
}

TEST_F(LoadingTest, ThePinStandsNowhereInTheLog) {
    const std::string pin = "s3cr3t-and-long";
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    EXPECT_EQ(Host("login", certId, pin).out, "-3050\n");
    EXPECT_EQ(Host("sign", certId).out, "0\n");
    std::ifstream file(InPrefix("Velmora/ESealLog/Fenmoor.log"), std::ios::binary);
    const std::string log{std::istreambuf_iterator<char>(file), {}};
    ASSERT_NE(log.find("LoginIn"), std::string::npos);
    EXPECT_EQ(log.find(pin), std::string::npos);
    EXPECT_EQ(log.find(kRoadPin), std::string::npos);
}

TEST_F(LoadingTest, LoadingSigningAndUnloadingLeavesNothingBehind) {
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    const ProgramOutcome host = Host("loop", certId, kRoadPin, "50");
    ASSERT_EQ(host.exitCode, 0) << host.error;
    long heap = 0;
    int objects = -1;
    int descriptors = -1;
    ASSERT_EQ(std::sscanf(host.out.c_str(), "heap %ld objects %d descriptors %d", &heap, &objects,
                          &descriptors),
              3)
        << host.out;
    EXPECT_EQ(objects, 0);
    EXPECT_EQ(descriptors, 0);
    // The heap's own bookkeeping wanders by some hundred bytes a round; a certificate or a key that
    // stayed behind would be thousands. What is smaller the leak check of the sanitizers finds.
    EXPECT_LT(heap, 64 * 1024);
}

TEST_F(LoadingTest, AProcessMayEndWithoutUnInit) {
    for (const KeyKind kind : {KeyKind::kSm2, KeyKind::kRsa}) {
        const std::string certId = MakeKey(kind, kind == KeyKind::kSm2 ? "sm2" : "rsa");
        const ProgramOutcome host = Host("leave", certId);
        EXPECT_EQ(host.exitCode, 0) << host.error;
        EXPECT_EQ(host.out, "0\n");
    }
}

TEST_F(LoadingTest, ASealLibraryThatIsLoadedAlreadyTakesTheOpenOnesPlace) {
    const ProgramOutcome host = Host("beside", "none", "none", ROAD_OTHER_SEAL_LIBRARY);
    EXPECT_EQ(host.exitCode, 0) << host.error;
    EXPECT_EQ(host.out, "the other TVK_Initialize\n");
}

TEST_F(LoadingTest, ASealLibraryThatTheLoaderFindsFirstTakesTheOpenOnesPlace) {
    const std::string folder = std::filesystem::path(ROAD_OTHER_SEAL_LIBRARY).parent_path();
    ProgramOptions options;
    options.environment = {{"LD_LIBRARY_PATH", folder}};
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    const ProgramOutcome host = Host("login", certId, kRoadPin, "", options);
    EXPECT_EQ(host.exitCode, 0) << host.error;
    EXPECT_TRUE(host.out.starts_with("the other TVK_Initialize\n")) << host.out;
}

TEST_F(LoadingTest, TheOpenSealLibraryIsUsedWhereThereIsNoOther) {
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    EXPECT_EQ(Host("sign", certId).out, "0\n");
}

TEST_F(LoadingTest, TheServicesPathMayHaveBytesOfAnyEncoding) {
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    const std::string utf8 = "\xE8\xAF\x81\xE4\xB9\xA6 service";
    for (const std::string& folder : {std::string("证书"), utf8}) {
        const std::string path = InPrefix(folder) + "/libKVLAppCOM.so";
        std::filesystem::create_directory(InPrefix(folder));
        std::filesystem::copy_file(kCertServiceFile, path);
        m_prefix.RegisterCertService(path);
        EXPECT_EQ(Host("sign", certId).out, "0\n") << folder;
        std::filesystem::remove(path);
        EXPECT_NE(Host("login", certId).out, "0\n") << folder;
    }
}

}  // namespace

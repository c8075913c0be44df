#include <filesystem>

#include "road/LoadingTest.h"

namespace {

using LoadingOnLinux = LoadingTest;

TEST_F(LoadingOnLinux, ASealLibraryThatTheLoaderFindsFirstTakesTheOpenOnesPlace) {
    const std::string folder = std::filesystem::path(ROAD_OTHER_SEAL_LIBRARY).parent_path();
    ProgramOptions options;
    options.environment = {{"LD_LIBRARY_PATH", folder}};
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    const ProgramOutcome host = Host("login", certId, kRoadPin, "", options);
    EXPECT_EQ(host.exitCode, 0) << host.error;
    EXPECT_TRUE(host.out.starts_with("the other TVK_Initialize\n")) << host.out;
}

TEST_F(LoadingOnLinux, TheServicesPathMayHaveBytesOfAnyEncoding) {
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

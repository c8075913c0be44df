#include <windows.h>

#include <cstdlib>
#include <filesystem>

#include "road/LoadingTest.h"

namespace {

using LoadingOnWindows = LoadingTest;

TEST_F(LoadingOnWindows, ASealLibraryThatTheLoaderFindsFirstTakesTheOpenOnesPlace) {
    const std::string folder =
        std::filesystem::path(ROAD_OTHER_SEAL_LIBRARY).parent_path().string();
    ProgramOptions options;
    options.environment = {{"PATH", folder + ";" + std::getenv("PATH")}};
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    const ProgramOutcome host = Host("login", certId, kRoadPin, "", options);
    EXPECT_EQ(host.exitCode, 0) << host.error;
    EXPECT_TRUE(host.out.starts_with("the other TVK_Initialize\n")) << host.out;
}

TEST_F(LoadingOnWindows, TheServicesPathMayBeChinese) {
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    const std::string path = InPrefix("证书/服务.dll");
    ASSERT_TRUE(CreateDirectoryA(InPrefix("证书").c_str(), nullptr));
    ASSERT_TRUE(CopyFileA(kCertServiceFile, path.c_str(), TRUE));
    m_prefix.RegisterCertService(path);
    EXPECT_EQ(Host("sign", certId).out, "0\n");
    ASSERT_TRUE(DeleteFileA(path.c_str()));
    EXPECT_NE(Host("login", certId).out, "0\n");
}

}  // namespace

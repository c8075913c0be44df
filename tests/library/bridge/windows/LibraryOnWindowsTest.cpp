// The library as a Windows host meets it: narrow texts of the code page, text-mode lines, modules.
#include <gmock/gmock.h>
#include <windows.h>
// After the system's own header.
#include <psapi.h>

#include <algorithm>
#include <fstream>

#include "ExportCalls.h"
#include "fakes/LibraryTest.h"
#include "fakes/LogHome.h"
#include "fakes/OpenHandles.h"
#include "foundation/Text.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char kFileName[] = "合同 印章.pdf";

// The service's own way to a file: the C library's.
fakes::Answer ContentOfFile(const fakes::Call& call) {
    fakes::Answer answer;
    answer.output = ReadFileToString(call.arguments[1]);
    answer.result = answer.output.empty() ? fakes::kNoSuchFile : 0;
    return answer;
}

class LibraryOnWindows : public LibraryTest {
protected:
    // Another copy of the library in the process for one start and end of the service.
    int StartWith(const std::string& path) {
        const HMODULE library = LoadLibraryA(path.c_str());
        if (library == nullptr) return -1;
        const int result = Call(library, "InitKVLLib");
        Call(library, "UnInitKVLLib");
        FreeLibrary(library);
        return result;
    }
    // A call that leaves records in the log and starts nothing.
    bool LogsFrom(const std::string& path) {
        const HMODULE library = LoadLibraryA(path.c_str());
        if (library == nullptr) return false;
        ForgetLog();
        reinterpret_cast<decltype(&SetContentSignCertId)>(reinterpret_cast<void*>(
            GetProcAddress(library, "SetContentSignCertId")))(AsBytes("cert-1"), 6);
        FreeLibrary(library);
        return !Log().empty();
    }
    std::string CopyOf(const std::string& file, const std::string& name) const {
        EXPECT_NE(CopyFileA(file.c_str(), m_prefix.Below(name).c_str(), TRUE), 0);
        return m_prefix.Below(name);
    }
    std::string WrittenFile() const {
        std::ofstream(m_prefix.Below(kFileName), std::ios::binary) << "content";
        return m_prefix.Below(kFileName);
    }

private:
    static int Call(HMODULE library, const char* name) {
        return reinterpret_cast<int (*)()>(
            reinterpret_cast<void*>(GetProcAddress(library, name)))();
    }
};

std::size_t PrivateBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

TEST_F(LibraryOnWindows, EveryLineOfTheLogEndsWithACarriageReturnAndALineFeed) {
    ASSERT_EQ(InitKVLLib(), 0);
    const std::string text = ReadFileToString(fakes::LogPath());
    std::size_t lines = 0;
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
        ++lines;
        ASSERT_GT(at, 0u);
        EXPECT_EQ(text[at - 1], '\r');
    }
    EXPECT_EQ(lines, Log().size());
    EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), static_cast<std::ptrdiff_t>(lines));
}

TEST_F(LibraryOnWindows, AServiceInAFolderWithAChineseNameIsFoundAndToldInTheCodePage) {
    ASSERT_NE(CreateDirectoryA(m_prefix.Below("证书服务").c_str(), nullptr), 0);
    const std::string path = CopyOf(fakes::ServicePath(), "证书服务/KVLAppCOM.dll");
    m_prefix.RegisterCertService(path);
    EXPECT_EQ(InitKVLLib(), 0);
    EXPECT_THAT(Log(), Contains("8 KVLAppCOM.dll path : " + path));
    EXPECT_THAT(path, HasSubstr("\xD6\xA4\xCA\xE9\xB7\xFE\xCE\xF1"));
}

TEST_F(LibraryOnWindows, AFileWithAChineseNameIsHashed) {
    fakes::On("SOF_HashFile").Does(ContentOfFile);
    OutPair out(32);
    ASSERT_EQ(GetFileHash("SM3", WrittenFile().c_str(), nullptr, 0, out.buffer, &out.length), 0);
    EXPECT_EQ(out.Bytes(), "content");
}

TEST_F(LibraryOnWindows, AFileWithAChineseNameIsSigned) {
    fakes::AddCertificate("label", "A");
    SetCurrentCertID("A");
    ASSERT_EQ(InitKVLLib(), 0);
    fakes::On("SOF_HashFile").Does(ContentOfFile);
    OutPair out(400);
    ASSERT_EQ(P7SignBigFile(WrittenFile().c_str(), AsBytes(""), 0, out.buffer, &out.length), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_SignHashMessage"), ElementsAre(HasSubstr("7 \"content\"")));
}

TEST_F(LibraryOnWindows, ALibraryWithoutTheSuffixFindsTheServiceBesideItInItsOwnLettersAlone) {
    m_prefix.RegisterCertService("c:\\nowhere\\KVLAppCOM.dll");
    CopyOf(fakes::ServicePath(), "KVLAppCOM.dll");
    EXPECT_EQ(StartWith(CopyOf(LIBRARY_FILE, "TesmarkOpt.dll")), 0);
    ASSERT_NE(DeleteFileA(m_prefix.Below("TesmarkOpt.dll").c_str()), 0);
    EXPECT_EQ(StartWith(CopyOf(LIBRARY_FILE, "tesmarkopt.DLL")), TESMARK_SERVICE_NOT_FOUND);
}

// Starting the service reads a key in a view of its own, and Wine keeps such a handle.
TEST_F(LibraryOnWindows, LoadingAndUnloadingLeavesNoHandles) {
    const std::string copy = CopyOf(LIBRARY_FILE, "TesmarkOpt_x64.dll");
    ASSERT_TRUE(LogsFrom(copy));
    const int before = CountOpenHandles();
    ASSERT_GT(before, 0);
    for (int i = 0; i < 10; ++i) ASSERT_TRUE(LogsFrom(copy));
    EXPECT_EQ(CountOpenHandles(), before);
}

// The system's count of pages grows by some 13,000 bytes a round, whatever is called; a certificate
// or a picture that stayed behind at each call would be more.
TEST_F(LibraryOnWindows, LoadingAndUnloadingLeavesNoMemoryOfTheLibrarys) {
    constexpr std::size_t kRounds = 50, kRuntimes = 20'000;
    const std::string copy = CopyOf(LIBRARY_FILE, "TesmarkOpt_x64.dll");
    for (int i = 0; i < 3; ++i) ASSERT_EQ(StartWith(copy), 0);
    const std::size_t before = PrivateBytes();
    ASSERT_GT(before, 0u);
    for (std::size_t i = 0; i < kRounds; ++i) ASSERT_EQ(StartWith(copy), 0);
    EXPECT_LT(PrivateBytes(), before + kRounds * kRuntimes);
}

}  // namespace

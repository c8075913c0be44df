// Finding, binding and starting the certificate service, and what goes with it.
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

#include "fakes/LibraryTest.h"
#include "foundation/Registry.h"
#include "platform/Files.h"
#include "platform/Module.h"
#include "platform/RegistryStore.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const std::string kServiceName = platform::ModuleFileName("KVLAppCOM");
const std::string kNowhere = "/nowhere/" + kServiceName;

// The process's working directory, given back at the end.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const std::string& folder)
        : m_before(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~WorkingDirectory() { std::filesystem::current_path(m_before); }

private:
    std::filesystem::path m_before;
};

// A copy of the library beside the one that the program has, unloaded at the end.
class SecondLibrary {
public:
    SecondLibrary(const std::string& folder, const char* stem) {
        const std::string path = folder + "/" + platform::ModuleFileName(stem);
        std::filesystem::copy_file(LIBRARY_FILE, path);
        m_module = platform::LoadModule(path.c_str());
    }
    ~SecondLibrary() { platform::FreeModule(m_module); }

    int Call(const char* name) const {
        auto* const function = reinterpret_cast<int (*)()>(platform::FindSymbol(m_module, name));
        if (function == nullptr) throw std::runtime_error(std::string("no ") + name);
        return function();
    }

private:
    platform::ModuleHandle m_module;
};

class InitialisationTest : public LibraryTest {
protected:
    // Leaves nothing that names the service's file.
    void UnregisterService() const {
        const CRegistry server(platform::OpenRegistryKey(
            platform::RegistryRoot::ClassesRoot,
            "CLSID\\{7B1D40E2-6C55-4A9E-9F10-5E2C8D3A71B4}\\InprocServer32",
            platform::RegistryAccess::AllAccess));
        ASSERT_TRUE(platform::DeleteRegistryValue(server.key, ""));
    }

    std::string CopyService(const std::string& folder) const {
        std::filesystem::create_directories(folder);
        const std::string path = folder + "/" + kServiceName;
        std::filesystem::copy_file(fakes::ServicePath(), path);
        return path;
    }
    // For a test after which the file stays loaded.
    void RegisterCopyOfService() const {
        m_prefix.RegisterCertService(CopyService(m_prefix.Path() + "/copy"));
    }
};

TEST_F(InitialisationTest, StartsTheServiceThenTheSealLibraryThenConfiguresIt) {
    EXPECT_EQ(InitKVLLib(), 0);
    EXPECT_THAT(fakes::CallTexts(), ElementsAre("SOF_Initialize()", "TVK_Initialize()",
                                                "TVK_SetConfig(0, \"\", 0, 0)"));
    EXPECT_THAT(Log(), ElementsAre("8 [KVLInitialize]: begin",
                                   "8 KVLAppCOM.dll path : " + fakes::ServicePath(),
                                   "8 [KVLInitialize]: ok"));
}

TEST_F(InitialisationTest, ASecondStartAfterSuccessDoesNothing) {
    ASSERT_EQ(InitKVLLib(), 0);
    fakes::ClearCalls();
    ForgetLog();
    EXPECT_EQ(InitKVLLib(), 0);
    EXPECT_THAT(fakes::Calls(), IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(InitialisationTest, HandsTheMachinesSettingsToTheSealLibrary) {
    m_prefix.SetText("sEsealStateUrl", "http://192.0.2.7/status");
    m_prefix.SetNumber("ReqEsealStatus", 1);
    m_prefix.SetNumber("bSignWithTimeStamp", 5);
    ASSERT_EQ(InitKVLLib(), 0);
    EXPECT_THAT(fakes::CallTexts("TVK_SetConfig"),
                ElementsAre("TVK_SetConfig(1, \"http://192.0.2.7/status\", 23, 5)"));
}

TEST_F(InitialisationTest, AnAddressOf199CharactersIsReadWholeAndALongerOneIsAbsent) {
    m_prefix.SetText("sEsealStateUrl", std::string(199, 'u'));
    ASSERT_EQ(InitKVLLib(), 0);
    EXPECT_EQ(fakes::Calls().back().arguments[2], "199");
    UnInitKVLLib();
    m_prefix.SetText("sEsealStateUrl", std::string(200, 'u'));
    fakes::ClearCalls();
    EXPECT_EQ(InitKVLLib(), 0);
    EXPECT_THAT(fakes::CallTexts("TVK_SetConfig"), ElementsAre("TVK_SetConfig(0, \"\", 0, 0)"));
}

TEST_F(InitialisationTest, AChangedSettingCountsFromTheNextStartOn) {
    ASSERT_EQ(InitKVLLib(), 0);
    m_prefix.SetNumber("ReqEsealStatus", 1);
    EXPECT_EQ(InitKVLLib(), 0);
    EXPECT_EQ(fakes::CountCalls("TVK_SetConfig"), 1);
    UnInitKVLLib();
    ASSERT_EQ(InitKVLLib(), 0);
    EXPECT_THAT(fakes::CallTexts("TVK_SetConfig"),
                ElementsAre("TVK_SetConfig(0, \"\", 0, 0)", "TVK_SetConfig(1, \"\", 0, 0)"));
}

TEST_F(InitialisationTest, TheResultOfTheConfigurationIsIgnored) {
    fakes::On("TVK_SetConfig").Returns(9);
    EXPECT_EQ(InitKVLLib(), 0);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(InitialisationTest, AMissingServiceIsTriedTwiceAndToldFromTheSecondAttempt) {
    m_prefix.RegisterCertService(m_prefix.Path() + "/" + kServiceName);
    EXPECT_EQ(InitKVLLib(), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_THAT(fakes::Calls(), IsEmpty());
    const std::string path = "8 KVLAppCOM.dll path : " + m_prefix.Path() + "/" + kServiceName;
    EXPECT_THAT(Log(),
                ElementsAre("8 [KVLInitialize]: begin", path, "8 [KVLInitialize]: begin", path));
}

TEST_F(InitialisationTest, AServiceFileThatCannotBeLoadedIsLikeAMissingOne) {
    m_prefix.RegisterCertService(fakes::ServicePath(fakes::Service::NoLibrary));
    EXPECT_EQ(InitKVLLib(), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_THAT(fakes::Calls(), IsEmpty());
}

TEST_F(InitialisationTest, AServiceThatFailsToStartIsUnloadedAndTriedAgain) {
    fakes::On("SOF_Initialize").Returns(17);
    EXPECT_EQ(InitKVLLib(), TESMARK_SERVICE_FAILED);
    EXPECT_THAT(fakes::CallTexts(), ElementsAre("SOF_Initialize()", "SOF_Initialize()"));
    EXPECT_THAT(Errors(), ElementsAre("[KVLInitialize]: failed,error:17",
                                      "[KVLInitialize]: failed,error:17"));
    EXPECT_EQ(fakes::ServiceLoads(), 2);
    EXPECT_EQ(fakes::ServiceUnloads(), 2);
}

TEST_F(InitialisationTest, AServiceThatStartsAtTheSecondAttemptIsUp) {
    fakes::On("SOF_Initialize").ReturnsAt(1, 17);
    EXPECT_EQ(InitKVLLib(), 0);
    EXPECT_THAT(fakes::CalledFunctions(),
                ElementsAre("SOF_Initialize", "SOF_Initialize", "TVK_Initialize", "TVK_SetConfig"));
}

TEST_F(InitialisationTest, AFailedSealLibraryPassesItsCodeAndLeavesTheServiceUnfinalised) {
    RegisterCopyOfService();
    fakes::On("TVK_Initialize").Returns(23);
    EXPECT_EQ(InitKVLLib(), 23);
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAre("SOF_Initialize", "TVK_Initialize",
                                                      "SOF_Initialize", "TVK_Initialize"));
    EXPECT_EQ(fakes::ServiceUnloads(), 0);
    EXPECT_THAT(Log(), Not(Contains("8 [KVLInitialize]: ok")));
}

TEST_F(InitialisationTest, ANewAttemptAfterAFailedSealLibraryStartsFromTheBeginning) {
    RegisterCopyOfService();
    fakes::On("TVK_Initialize").ReturnsAt(1, 23);
    EXPECT_EQ(InitKVLLib(), 0);
    EXPECT_THAT(fakes::CalledFunctions(),
                ElementsAre("SOF_Initialize", "TVK_Initialize", "SOF_Initialize", "TVK_Initialize",
                            "TVK_SetConfig"));
    EXPECT_EQ(fakes::CountCalls("SOF_Finalize"), 0);
}

TEST_F(InitialisationTest, AServiceWithoutATimeStampCallBindsAllTheSame) {
    m_prefix.RegisterCertService(fakes::ServicePath(fakes::Service::WithoutTsGenReq));
    EXPECT_EQ(InitKVLLib(), 0);
}

TEST_F(InitialisationTest, TheEndFinalisesAndUnloadsTheServiceThenReleasesTheSealLibrary) {
    ASSERT_EQ(InitKVLLib(), 0);
    fakes::ClearCalls();
    ForgetLog();
    EXPECT_EQ(UnInitKVLLib(), 0);
    EXPECT_THAT(fakes::CallTexts(), ElementsAre("SOF_Finalize(ctx)", "TVK_Release()"));
    EXPECT_EQ(fakes::ServiceUnloads(), 1);
    EXPECT_THAT(Log(), ElementsAre("8 [KVLUnInitialize]: begin", "8 [KVLUnInitialize]: ok"));
}

TEST_F(InitialisationTest, TheEndOfAServiceThatNeverCameUpTriesOnceToStartIt) {
    fakes::On("SOF_Initialize").Returns(17);
    EXPECT_EQ(UnInitKVLLib(), 0);
    EXPECT_THAT(fakes::CallTexts(), ElementsAre("SOF_Initialize()"));
}

TEST_F(InitialisationTest, TheEndOfAServiceThatComesUpForItEndsItAtOnce) {
    EXPECT_EQ(UnInitKVLLib(), 0);
    EXPECT_THAT(fakes::CalledFunctions(),
                ElementsAre("SOF_Initialize", "TVK_Initialize", "TVK_SetConfig", "SOF_Finalize",
                            "TVK_Release"));
}

TEST_F(InitialisationTest, TheEndLeavesTheSelection) {
    fakes::AddCertificate("label", "cert-1");
    SetCurrentCertID("cert-1");
    ASSERT_EQ(InitKVLLib(), 0);
    UnInitKVLLib();
    int length = 0;
    EXPECT_EQ(GetSelectedCertId(nullptr, &length), 0);
    EXPECT_EQ(length, 6);
}

TEST_F(InitialisationTest, AnAddressEndsAtItsFirstZeroByte) {
    m_prefix.SetText("sEsealStateUrl", std::string("http://a\0b", 10));
    ASSERT_EQ(InitKVLLib(), 0);
    EXPECT_THAT(fakes::CallTexts("TVK_SetConfig"),
                ElementsAre("TVK_SetConfig(0, \"http://a\", 8, 0)"));
}

TEST_F(InitialisationTest, WithoutARegisteredFileTheInstallationFolderIsAskedWithItsOwnSeparators) {
    UnregisterService();
    const std::string separator(1, platform::PathSeparator());
    const std::string folder = m_prefix.Path() + separator;
    m_prefix.RegisterInstallation(folder);
    CopyService(folder + "Program");
    EXPECT_EQ(InitKVLLib(), 0);
    EXPECT_EQ(Log()[1], "8 KVLAppCOM.dll path : " + folder + separator + "Program" + separator +
                            kServiceName);
}

TEST_F(InitialisationTest, WithoutAnyEntryTheBareNameIsTriedInTheWorkingDirectoryAlone) {
    UnregisterService();
    {
        const WorkingDirectory elsewhere(m_prefix.Path());
        EXPECT_EQ(InitKVLLib(), TESMARK_SERVICE_NOT_FOUND);
    }
    CopyService(m_prefix.Path() + "/here");
    const WorkingDirectory here(m_prefix.Path() + "/here");
    ForgetLog();
    EXPECT_EQ(InitKVLLib(), 0);
    EXPECT_EQ(Log()[1], "8 KVLAppCOM.dll path : " + kServiceName);
}

TEST_F(InitialisationTest, AServiceBesideALibraryOfThisNameIsNotLookedFor) {
    m_prefix.RegisterCertService(kNowhere);
    CopyService(m_prefix.Path());
    const SecondLibrary library(m_prefix.Path(), "TesmarkOpt_x64");
    EXPECT_EQ(library.Call("InitKVLLib"), TESMARK_SERVICE_NOT_FOUND);
}

TEST_F(InitialisationTest, ARegisteredFileThatIsMissingGivesWayToTheModulesFolderNotToInstallPath) {
    m_prefix.RegisterCertService(kNowhere);
    m_prefix.RegisterInstallation(m_prefix.Path() + "/installed");
    CopyService(m_prefix.Path() + "/installed/Program");
    EXPECT_EQ(InitKVLLib(), TESMARK_SERVICE_NOT_FOUND);

    CopyService(m_prefix.Path());
    const SecondLibrary library(m_prefix.Path(), "TesmarkOpt");
    EXPECT_EQ(library.Call("InitKVLLib"), 0);
    EXPECT_EQ(fakes::CountCalls("SOF_Initialize"), 1);
    library.Call("UnInitKVLLib");
}

}  // namespace

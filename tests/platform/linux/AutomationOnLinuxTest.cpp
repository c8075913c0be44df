#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "RegisteredClasses.h"
#include "support/TemporaryPrefix.h"

using namespace platform;

namespace {

bool IsLoaded(const std::string& path) {
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (module != nullptr) dlclose(module);
    return module != nullptr;
}

class AutomationOnLinux : public testing::Test {
protected:
    std::string Registered(const std::string& name) const {
        const std::string path = m_prefix.Below(name);
        std::filesystem::copy_file(ENGINE_STAND_IN, path);
        RegisterClassAt(kEngineClass, path);
        return path;
    }

    TemporaryPrefix m_prefix;
};

TEST_F(AutomationOnLinux, TheLibraryIsLoadedForAsLongAsTheObjectIsHeld) {
    const std::string path = Registered("engine.so");
    const AutomationObject object = CreateAutomationControl(IdOf(kEngineClass));
    ASSERT_NE(object, nullptr);
    EXPECT_TRUE(IsLoaded(path));
    ReleaseAutomationObject(object);
    EXPECT_FALSE(IsLoaded(path));
}

TEST_F(AutomationOnLinux, ALibraryWithoutTheMethodIsLetGo) {
    const std::string path = Registered("engine.so");
    EXPECT_EQ(CreateAutomationObject(IdOf(kEngineClass), kEngineInterface, "NoMethod"), nullptr);
    EXPECT_FALSE(IsLoaded(path));
}

TEST_F(AutomationOnLinux, ThePathIsTheFileSystemsBytes) {
    Registered("\xE5\x8D\xB0.so");
    const AutomationObject object = CreateAutomationControl(IdOf(kEngineClass));
    EXPECT_NE(object, nullptr);
    ReleaseAutomationObject(object);
}

TEST_F(AutomationOnLinux, NothingNeedsToBeInitialized) {
    EXPECT_EQ(InitializeAutomation(), 0);
    UninitializeAutomation();
    UninitializeAutomation();
}

}  // namespace

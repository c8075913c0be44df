// The engine's file as the automation of this platform calls it.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/closed/TimeStampEngine.h"
#include "support/TemporaryPrefix.h"

namespace {

class EngineOnLinux : public testing::Test {
protected:
    EngineOnLinux() : m_file(dlopen(ENGINE_FILE, RTLD_NOW | RTLD_LOCAL)) {}
    ~EngineOnLinux() override {
        if (m_file != nullptr) dlclose(m_file);
    }
    decltype(&CreateTS) Function() const {
        return reinterpret_cast<decltype(&CreateTS)>(dlsym(m_file, "CreateTS"));
    }

    TemporaryPrefix m_prefix;
    void* m_file;
};

TEST_F(EngineOnLinux, WithoutAPlaceForTheResultTheCallFails) {
    ASSERT_NE(m_file, nullptr) << dlerror();
    EXPECT_LT(Function()("", nullptr), 0);
}

TEST_F(EngineOnLinux, AFailureIsANullResultAndNoFailedCall) {
    ASSERT_NE(m_file, nullptr) << dlerror();
    for (const char* const request : {static_cast<const char*>(nullptr), "", "rubbish"}) {
        char before = 'x';
        char* response = &before;
        EXPECT_EQ(Function()(request, &response), 0);
        EXPECT_EQ(response, nullptr);
    }
}

}  // namespace

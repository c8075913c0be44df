#include <gtest/gtest.h>

#include <string>

#include "RegisteredClasses.h"
#include "platform/Module.h"
#include "platform/windows/Win32.h"
#include "support/TemporaryPrefix.h"
// After the system's own header.
#include <objbase.h>

using namespace platform;

namespace {

constexpr auto kNoInterface = static_cast<std::int32_t>(0x80004002);

// On a thread that has not entered COM before the test.
class AutomationOnWindows : public testing::Test {
protected:
    AutomationOnWindows() {
        UnregisterClasses();
        for (const char* const id : {kEngineClass, kPlainClass, kMuteClass, kExceptionClass}) {
            RegisterClassAt(id, ENGINE_STAND_IN);
        }
    }
    ~AutomationOnWindows() override {
        ReleaseAutomationObject(m_object);
        while (IsInitialized()) CoUninitialize();
        UnregisterClasses();
    }
    static HRESULT Apartment(APTTYPE& type) {
        APTTYPEQUALIFIER qualifier;
        return CoGetApartmentType(&type, &qualifier);
    }
    static bool IsInitialized() {
        APTTYPE type;
        return Apartment(type) == S_OK;
    }
    AutomationObject Engine(const char* classId) {
        return m_object =
                   CreateAutomationObject(IdOf(classId), kEngineInterface, "of no importance");
    }
    AutomationObject Control(const char* classId) {
        return m_object = CreateAutomationControl(IdOf(classId));
    }
    void Release() {
        ReleaseAutomationObject(m_object);
        m_object = nullptr;
    }
    // Of an engine's library that is loaded.
    static long HeldReferences() {
        const HMODULE module = GetModuleHandleA(ENGINE_STAND_IN);
        const auto held = reinterpret_cast<long (*)()>(FindSymbol(module, "HeldReferences"));
        return held != nullptr ? held() : -1;
    }

    TemporaryPrefix m_prefix;
    AutomationObject m_object = nullptr;
};

TEST_F(AutomationOnWindows, AThreadEntersASingleThreadedApartment) {
    ASSERT_FALSE(IsInitialized());
    EXPECT_EQ(InitializeAutomation(), S_OK);
    APTTYPE type;
    ASSERT_EQ(Apartment(type), S_OK);
    EXPECT_TRUE(type == APTTYPE_STA || type == APTTYPE_MAINSTA);
}

TEST_F(AutomationOnWindows, EachInitializationCountsUntilItIsTakenBack) {
    EXPECT_EQ(InitializeAutomation(), S_OK);
    EXPECT_EQ(InitializeAutomation(), S_FALSE);
    UninitializeAutomation();
    EXPECT_TRUE(IsInitialized());
    UninitializeAutomation();
    EXPECT_FALSE(IsInitialized());
}

TEST_F(AutomationOnWindows, NothingElseChangesTheCount) {
    ASSERT_EQ(InitializeAutomation(), S_OK);
    ASSERT_NE(Engine(kEngineClass), nullptr);
    CallAutomation(m_object, "CreateTS", {"a"});
    CallAutomation(m_object, "CreateTS", {"fail"});
    Release();
    EXPECT_EQ(CreateAutomationControl(IdOf(kPlainClass)), nullptr);
    EXPECT_TRUE(IsInitialized());
    UninitializeAutomation();
    EXPECT_FALSE(IsInitialized());
}

TEST_F(AutomationOnWindows, AnObjectIsLetGoAfterComToo) {
    ASSERT_EQ(InitializeAutomation(), S_OK);
    ASSERT_NE(Engine(kEngineClass), nullptr);
    UninitializeAutomation();
    ASSERT_FALSE(IsInitialized());
    EXPECT_EQ(HeldReferences(), 1) << "the engine's code has gone";
    Release();
    EXPECT_LE(HeldReferences(), 0);
}

TEST_F(AutomationOnWindows, AReleasedObjectsCodeGoesWithCom) {
    ASSERT_EQ(InitializeAutomation(), S_OK);
    ASSERT_NE(Engine(kEngineClass), nullptr);
    ASSERT_NE(GetModuleHandleA(ENGINE_STAND_IN), nullptr);
    Release();
    UninitializeAutomation();
    EXPECT_EQ(GetModuleHandleA(ENGINE_STAND_IN), nullptr);
}

TEST_F(AutomationOnWindows, AMultiThreadedApartmentIsLeftAsItIs) {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(InitializeAutomation(), static_cast<std::int32_t>(RPC_E_CHANGED_MODE));
    APTTYPE type;
    ASSERT_EQ(Apartment(type), S_OK);
    EXPECT_EQ(type, APTTYPE_MTA);
    CoUninitialize();
    EXPECT_FALSE(IsInitialized());
}

TEST_F(AutomationOnWindows, WithoutComThereIsNoObject) {
    EXPECT_EQ(Engine(kEngineClass), nullptr);
    EXPECT_EQ(Control(kEngineClass), nullptr);
}

TEST_F(AutomationOnWindows, AClassThatIsNoControlIsOnlyAnEngine) {
    InitializeAutomation();
    EXPECT_EQ(Control(kPlainClass), nullptr);
    EXPECT_EQ(HeldReferences(), 0);
    EXPECT_NE(Engine(kPlainClass), nullptr);
}

TEST_F(AutomationOnWindows, AnEngineThatCantDispatchFailsTheLookUp) {
    InitializeAutomation();
    EXPECT_EQ(Control(kMuteClass), nullptr);
    ASSERT_NE(Engine(kMuteClass), nullptr);
    const AutomationResult result = CallAutomation(m_object, "CreateTS", {"a"});
    EXPECT_EQ(result.failure, AutomationFailure::NoMethod);
    EXPECT_EQ(result.status, kNoInterface);
}

TEST_F(AutomationOnWindows, AnExceptionTellsTheMethodsOwnStatus) {
    InitializeAutomation();
    ASSERT_NE(Engine(kExceptionClass), nullptr);
    const AutomationResult result = CallAutomation(m_object, "CreateTS", {"fail"});
    EXPECT_EQ(result.failure, AutomationFailure::Failed);
    EXPECT_EQ(result.status, -7);
}

TEST_F(AutomationOnWindows, ACallOfTheWrongArgumentsHasTheEnginesStatus) {
    InitializeAutomation();
    ASSERT_NE(Control(kEngineClass), nullptr);
    const AutomationResult result = CallAutomation(m_object, "CreateTS", {1});
    EXPECT_EQ(result.failure, AutomationFailure::Failed);
    EXPECT_EQ(result.status, static_cast<std::int32_t>(DISP_E_BADPARAMCOUNT));
}

TEST_F(AutomationOnWindows, AResultThatIsNoStringIsNull) {
    InitializeAutomation();
    ASSERT_NE(Engine(kPlainClass), nullptr);
    const AutomationResult result = CallAutomation(m_object, "CreateTS", {"a"});
    EXPECT_EQ(result.failure, AutomationFailure::None);
    EXPECT_FALSE(result.text.has_value());
}

TEST_F(AutomationOnWindows, AnObjectHoldsOneReferenceUntilItIsReleased) {
    InitializeAutomation();
    ASSERT_NE(Control(kEngineClass), nullptr);
    EXPECT_EQ(HeldReferences(), 1);
    CallAutomation(m_object, "GetPersonalEsealByXML", {"a", "b"});
    CallAutomation(m_object, "NoMethod", {});
    EXPECT_EQ(HeldReferences(), 1);
    Release();
    EXPECT_EQ(HeldReferences(), 0);
}

}  // namespace

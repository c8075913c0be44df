// The engine as a COM server.

#include <gtest/gtest.h>

#include <string>

#include "components/automation/RegisteredClass.h"
#include "components/timestamp/windows/ComObject.h"
#include "platform/closed/TimeStampEngine.h"
#include "platform/windows/WideText.h"
#include "support/TemporaryPrefix.h"

namespace {

using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
using CanUnloadNow = HRESULT(WINAPI*)();

GUID ClassId() {
    GUID id{};
    CLSIDFromString(platform::WideFrom(CP_UTF8, kTimeStampEngineClass).c_str(), &id);
    return id;
}

std::string ClassKey() { return std::string("Software\\Classes\\CLSID\\") + kTimeStampEngineClass; }

std::string Value(HKEY root, const std::string& key, const char* name) {
    char text[MAX_PATH] = {};
    DWORD size = sizeof text;
    const LSTATUS status =
        RegGetValueA(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
    return status == ERROR_SUCCESS ? text : "absent";
}

class EngineOnWindows : public testing::Test {
protected:
    EngineOnWindows() : m_file(LoadLibraryA(ENGINE_FILE)) {
        CoInitialize(nullptr);
        UnregisterClassFile(ENGINE_FILE, kTimeStampEngineClass);
    }
    ~EngineOnWindows() override {
        if (m_engine != nullptr) m_engine->Release();
        if (m_factory != nullptr) m_factory->Release();
        UnregisterClassFile(ENGINE_FILE, kTimeStampEngineClass);
        CoUninitialize();
        if (m_file != nullptr) FreeLibrary(m_file);
    }
    template <typename Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(m_file, name)));
    }
    HRESULT MakeEngine() {
        void* object = nullptr;
        const HRESULT status =
            CoCreateInstance(ClassId(), nullptr, CLSCTX_INPROC_SERVER, kEngineInterfaceId, &object);
        m_engine = static_cast<IEngine*>(object);
        return status;
    }
    HRESULT MakeFactory() {
        void* object = nullptr;
        const HRESULT status =
            Find<GetClassObject>("DllGetClassObject")(ClassId(), IID_IClassFactory, &object);
        m_factory = static_cast<IClassFactory*>(object);
        return status;
    }

    TemporaryPrefix m_prefix;
    HMODULE m_file;
    IEngine* m_engine = nullptr;
    IClassFactory* m_factory = nullptr;
};

TEST_F(EngineOnWindows, TheRegistrationNamesTheFileAndItsThreads) {
    ASSERT_TRUE(RegisterClassFile(ENGINE_FILE, kTimeStampEngineClass));
    const std::string server = ClassKey() + "\\InprocServer32";
    char path[MAX_PATH] = {};
    GetModuleFileNameA(m_file, path, sizeof path);
    EXPECT_EQ(Value(HKEY_LOCAL_MACHINE, server, nullptr), path);
    EXPECT_EQ(Value(HKEY_LOCAL_MACHINE, server, "ThreadingModel"), "Both");
}

TEST_F(EngineOnWindows, ItsRemovalLeavesNothingAndCanBeRepeated) {
    ASSERT_TRUE(RegisterClassFile(ENGINE_FILE, kTimeStampEngineClass));
    EXPECT_TRUE(UnregisterClassFile(ENGINE_FILE, kTimeStampEngineClass));
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        HKEY key = nullptr;
        EXPECT_EQ(RegOpenKeyExA(root, ClassKey().c_str(), 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    }
    EXPECT_TRUE(UnregisterClassFile(ENGINE_FILE, kTimeStampEngineClass));
    EXPECT_EQ(MakeEngine(), REGDB_E_CLASSNOTREG);
}

TEST_F(EngineOnWindows, OneObjectAnswersToAllThreeInterfaces) {
    ASSERT_TRUE(RegisterClassFile(ENGINE_FILE, kTimeStampEngineClass));
    ASSERT_EQ(MakeEngine(), S_OK);
    for (const GUID& id : {IID_IUnknown, IID_IDispatch, kEngineInterfaceId}) {
        void* object = nullptr;
        ASSERT_EQ(m_engine->QueryInterface(id, &object), S_OK);
        EXPECT_EQ(object, m_engine);
        m_engine->Release();
    }
    void* object = this;
    EXPECT_EQ(m_engine->QueryInterface(IID_IPersist, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

TEST_F(EngineOnWindows, TheMethodOfTheTableGivesNullOnFailure) {
    ASSERT_TRUE(RegisterClassFile(ENGINE_FILE, kTimeStampEngineClass));
    ASSERT_EQ(MakeEngine(), S_OK);
    BSTR response = reinterpret_cast<BSTR>(this);
    EXPECT_EQ(m_engine->CreateTS(nullptr, &response), S_OK);
    EXPECT_EQ(response, nullptr);
    EXPECT_EQ(m_engine->CreateTS(nullptr, nullptr), E_POINTER);
}

TEST_F(EngineOnWindows, TheMethodIsFoundByItsNameAlone) {
    ASSERT_TRUE(RegisterClassFile(ENGINE_FILE, kTimeStampEngineClass));
    ASSERT_EQ(MakeEngine(), S_OK);
    std::wstring right = L"createts";
    std::wstring wrong = L"CreateTSA";
    LPOLESTR name = right.data();
    DISPID method = DISPID_UNKNOWN;
    EXPECT_EQ(m_engine->GetIDsOfNames(IID_NULL, &name, 1, 1024, &method), S_OK);
    EXPECT_NE(method, DISPID_UNKNOWN);
    name = wrong.data();
    EXPECT_EQ(m_engine->GetIDsOfNames(IID_NULL, &name, 1, 1024, &method), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(method, DISPID_UNKNOWN);
}

TEST_F(EngineOnWindows, ACallOfAnotherShapeIsRefused) {
    ASSERT_TRUE(RegisterClassFile(ENGINE_FILE, kTimeStampEngineClass));
    ASSERT_EQ(MakeEngine(), S_OK);
    VARIANT text{};
    text.vt = VT_BSTR;
    VARIANT result{};
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    DISPPARAMS one{&text, nullptr, 1, 0};
    const auto call = [&](DISPID method, WORD flags, DISPPARAMS& parameters) {
        return m_engine->Invoke(method, IID_NULL, 1024, flags, &parameters, &result, nullptr,
                                nullptr);
    };
    EXPECT_EQ(call(1, DISPATCH_METHOD, one), S_OK);
    EXPECT_EQ(result.vt, VT_BSTR);
    EXPECT_EQ(result.bstrVal, nullptr);
    EXPECT_EQ(call(1, DISPATCH_METHOD, none), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(call(1, DISPATCH_PROPERTYGET, one), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(call(2, DISPATCH_METHOD, one), DISP_E_MEMBERNOTFOUND);
}

TEST_F(EngineOnWindows, TheServerKnowsItsOwnClassAndIsNoPartOfAnother) {
    void* object = this;
    EXPECT_EQ(Find<GetClassObject>("DllGetClassObject")(IID_IPersist, IID_IClassFactory, &object),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    ASSERT_EQ(MakeFactory(), S_OK);
    EXPECT_EQ(m_factory->CreateInstance(m_factory, IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
}

TEST_F(EngineOnWindows, TheServerStaysAsLongAsSomebodyHoldsIt) {
    const auto canUnload = Find<CanUnloadNow>("DllCanUnloadNow");
    EXPECT_EQ(canUnload(), S_OK);
    ASSERT_EQ(MakeFactory(), S_OK);
    EXPECT_EQ(canUnload(), S_FALSE);
    void* object = nullptr;
    ASSERT_EQ(m_factory->CreateInstance(nullptr, kEngineInterfaceId, &object), S_OK);
    m_engine = static_cast<IEngine*>(object);
    m_factory->Release();
    m_factory = nullptr;
    EXPECT_EQ(canUnload(), S_FALSE);
    m_engine->Release();
    m_engine = nullptr;
    EXPECT_EQ(canUnload(), S_OK);
}

}  // namespace

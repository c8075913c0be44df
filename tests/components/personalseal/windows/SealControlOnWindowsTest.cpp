// The control as a COM object.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "components/automation/RegisteredClass.h"
#include "components/personalseal/SealControlCodes.h"
#include "platform/closed/PersonalSealControl.h"
#include "platform/windows/WideText.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>
#include <oleidl.h>

namespace {

GUID ClassId() {
    GUID id{};
    CLSIDFromString(platform::WideFrom(CP_UTF8, kPersonalSealControlClass).c_str(), &id);
    return id;
}

// A container's site, which does something once when it is let go. Nobody else ends it.
class Site final : public IOleClientSite {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --m_references;
        const auto atEnd = left == 0 ? std::exchange(m_atEnd, nullptr) : nullptr;
        if (atEnd) atEnd();
        return left;
    }
    HRESULT STDMETHODCALLTYPE SaveObject() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ShowObject() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

    ULONG References() const { return m_references; }
    void AtEnd(std::function<void()> step) { m_atEnd = std::move(step); }

private:
    ULONG m_references = 0;
    std::function<void()> m_atEnd;
};

class SealControlOnWindows : public testing::Test {
protected:
    SealControlOnWindows() {
        CoInitialize(nullptr);
        EXPECT_TRUE(RegisterClassFile(CONTROL_FILE, kPersonalSealControlClass));
        void* object = nullptr;
        EXPECT_EQ(CoCreateInstance(ClassId(), nullptr, 23, IID_IDispatch, &object), S_OK);
        m_control = static_cast<IDispatch*>(object);
    }
    ~SealControlOnWindows() override {
        LetGo();
        UnregisterClassFile(CONTROL_FILE, kPersonalSealControlClass);
        CoUninitialize();
    }
    bool AskForOle() {
        void* object = nullptr;
        if (m_control == nullptr) return false;
        const HRESULT status = m_control->QueryInterface(IID_IOleObject, &object);
        m_ole = static_cast<IOleObject*>(object);
        return status == S_OK;
    }
    void LetGo() {
        if (m_ole != nullptr) std::exchange(m_ole, nullptr)->Release();
        if (m_control != nullptr) std::exchange(m_control, nullptr)->Release();
    }
    DISPID Method(const wchar_t* name) {
        std::wstring text = name;
        LPOLESTR names = text.data();
        DISPID method = DISPID_UNKNOWN;
        m_control->GetIDsOfNames(IID_NULL, &names, 1, 1024, &method);
        return method;
    }

    IDispatch* m_control = nullptr;
    IOleObject* m_ole = nullptr;
};

TEST_F(SealControlOnWindows, TheObjectIsOneWhateverItsInterface) {
    ASSERT_TRUE(AskForOle());
    void* first = nullptr;
    void* second = nullptr;
    ASSERT_EQ(m_control->QueryInterface(IID_IUnknown, &first), S_OK);
    ASSERT_EQ(m_ole->QueryInterface(IID_IUnknown, &second), S_OK);
    EXPECT_EQ(first, second);
    static_cast<IUnknown*>(first)->Release();
    static_cast<IUnknown*>(second)->Release();
    void* back = nullptr;
    ASSERT_EQ(m_ole->QueryInterface(IID_IDispatch, &back), S_OK);
    EXPECT_EQ(back, m_control);
    m_control->Release();
    EXPECT_EQ(m_control->QueryInterface(IID_IOleWindow, &back), E_NOINTERFACE);
    EXPECT_EQ(back, nullptr);
}

TEST_F(SealControlOnWindows, AsAnOleObjectItTellsItsClassAndThatItShowsNothing) {
    ASSERT_TRUE(AskForOle());
    CLSID classId{};
    EXPECT_EQ(m_ole->GetUserClassID(&classId), S_OK);
    EXPECT_TRUE(classId == ClassId());
    DWORD status = 0;
    EXPECT_EQ(m_ole->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
    EXPECT_NE(status & OLEMISC_INVISIBLEATRUNTIME, 0u);
    LPOLESTR name = nullptr;
    ASSERT_EQ(m_ole->GetUserType(USERCLASSTYPE_FULL, &name), S_OK);
    EXPECT_STREQ(name, L"Velmora personal seal control");
    CoTaskMemFree(name);
    IOleClientSite* site = nullptr;
    EXPECT_EQ(m_ole->GetClientSite(&site), S_OK);
    EXPECT_EQ(site, nullptr);
    EXPECT_EQ(m_ole->Close(OLECLOSE_NOSAVE), S_OK);
}

TEST_F(SealControlOnWindows, TheSiteIsKeptUntilAnotherComesOrTheObjectGoes) {
    ASSERT_TRUE(AskForOle());
    Site first;
    Site second;
    EXPECT_EQ(m_ole->SetClientSite(&first), S_OK);
    EXPECT_EQ(m_ole->SetClientSite(&first), S_OK);
    EXPECT_EQ(first.References(), 1u);
    IOleClientSite* told = nullptr;
    EXPECT_EQ(m_ole->GetClientSite(&told), S_OK);
    EXPECT_EQ(told, &first);
    EXPECT_EQ(first.References(), 2u);
    first.Release();
    EXPECT_EQ(m_ole->SetClientSite(&second), S_OK);
    EXPECT_EQ(first.References(), 0u);
    LetGo();
    EXPECT_EQ(second.References(), 0u);
}

TEST_F(SealControlOnWindows, ASiteThatIsLetGoMayCallBack) {
    ASSERT_TRUE(AskForOle());
    Site first;
    Site second;
    Site third;
    IOleClientSite* told = nullptr;
    first.AtEnd([&] {
        m_ole->GetClientSite(&told);
        m_ole->SetClientSite(&third);
    });
    m_ole->SetClientSite(&first);
    m_ole->SetClientSite(&second);
    EXPECT_EQ(told, &second);
    EXPECT_EQ(second.References(), 1u) << "what was told to the site";
    EXPECT_EQ(third.References(), 1u) << "the site's own choice stays";
    LetGo();
    EXPECT_EQ(third.References(), 0u);
}

TEST_F(SealControlOnWindows, TheFileIsInUseUntilTheObjectsLastPartHasGone) {
    ASSERT_TRUE(AskForOle());
    const HMODULE file = GetModuleHandleA(CONTROL_FILE);
    const auto canUnload = reinterpret_cast<HRESULT(WINAPI*)()>(
        reinterpret_cast<void*>(GetProcAddress(file, "DllCanUnloadNow")));
    ASSERT_NE(canUnload, nullptr);
    Site site;
    HRESULT atEnd = S_OK;
    site.AtEnd([&] { atEnd = canUnload(); });
    m_ole->SetClientSite(&site);
    LetGo();
    EXPECT_EQ(site.References(), 0u);
    EXPECT_EQ(atEnd, S_FALSE);
}

TEST_F(SealControlOnWindows, WhatNeedsAWindowOrADocumentIsRefused) {
    ASSERT_TRUE(AskForOle());
    EXPECT_TRUE(FAILED(m_ole->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, nullptr, nullptr)));
    IEnumOLEVERB* verbs = reinterpret_cast<IEnumOLEVERB*>(this);
    EXPECT_EQ(m_ole->EnumVerbs(&verbs), OLEOBJ_E_NOVERBS);
    EXPECT_EQ(verbs, nullptr);
    DWORD connection = 7;
    EXPECT_EQ(m_ole->Advise(nullptr, &connection), OLE_E_ADVISENOTSUPPORTED);
    EXPECT_EQ(connection, 0u);
    SIZEL size{};
    EXPECT_TRUE(FAILED(m_ole->GetExtent(DVASPECT_CONTENT, &size)));
}

TEST_F(SealControlOnWindows, ARefusalTellsItsCodeAndItsMeaning) {
    VARIANT arguments[3] = {};
    arguments[0].vt = VT_BSTR;
    arguments[0].bstrVal = SysAllocString(L"x");
    arguments[1].vt = VT_BSTR;
    arguments[2].vt = VT_I4;
    arguments[2].lVal = 7;
    DISPPARAMS parameters{arguments, nullptr, 3, 0};
    VARIANT result{};
    EXCEPINFO exception{};
    ASSERT_NE(m_control, nullptr);
    EXPECT_EQ(m_control->Invoke(Method(L"GetPicByContent"), IID_NULL, 1024, DISPATCH_METHOD,
                                &parameters, &result, &exception, nullptr),
              DISP_E_EXCEPTION);
    EXPECT_EQ(exception.scode, kSealBadKind);
    EXPECT_STREQ(exception.bstrDescription, L"There is no such kind of picture.");
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    VariantClear(&arguments[0]);
}

TEST_F(SealControlOnWindows, AnArgumentOfAnotherTypeIsChangedIfItCanBe) {
    VARIANT arguments[3] = {};
    arguments[0].vt = VT_I4;  // text1
    arguments[0].lVal = 2026;
    arguments[1].vt = VT_BSTR;
    arguments[2].vt = VT_BSTR;
    arguments[2].bstrVal = SysAllocString(L"0");
    DISPPARAMS parameters{arguments, nullptr, 3, 0};
    VARIANT result{};
    ASSERT_NE(m_control, nullptr);
    const DISPID method = Method(L"getpicbycontent");
    EXPECT_EQ(m_control->Invoke(method, IID_NULL, 1024, DISPATCH_METHOD, &parameters, &result,
                                nullptr, nullptr),
              S_OK);
    EXPECT_EQ(result.vt, VT_BSTR);
    VariantClear(&result);
    VariantClear(&arguments[2]);
    arguments[2].vt = VT_UNKNOWN;
    arguments[2].punkVal = nullptr;
    UINT wrong = 7;
    EXPECT_TRUE(FAILED(m_control->Invoke(method, IID_NULL, 1024, DISPATCH_METHOD, &parameters,
                                         &result, nullptr, &wrong)));
    EXPECT_EQ(wrong, 2u);
}

}  // namespace

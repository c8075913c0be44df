// The methods of the personal seal control's stand-in behind IDispatch, served within the process.
// It knows those that its library has.
#include "platform/closed/PersonalSealControl.h"
#include "platform/windows/WideText.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>
#include <oleidl.h>

#include <cstdlib>
#include <string>

#include "fakes/DrawnPictures.h"
#include "fakes/Script.h"

namespace {

long g_references = 0;

struct Method {
    const char* name;
    const char* kinds;  // of its arguments: t a text, n a number
};

constexpr Method kMethods[] = {{"GetPersonalEsealByXML", "tt"},
                               {"GetPersonalEsealByCertInfo", "tnn"},
                               {"GetPersonalEsealByContentWithXML", "tt"},
                               {"GetPicByContent", "ntt"}};
constexpr DISPID kByCertInfo = 1;
constexpr DISPID kByContent = 3;

FARPROC Function(const char* name) {
    HMODULE own = nullptr;
    GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCSTR>(&g_references), &own);
    return GetProcAddress(own, name);
}

class Arguments {
public:
    explicit Arguments(const DISPPARAMS& parameters) : m_parameters(parameters) {}
    bool Match(const std::string& kinds) const {
        if (m_parameters.cNamedArgs != 0 || m_parameters.cArgs != kinds.size()) return false;
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            if (At(i).vt != (kinds[i] == 't' ? VT_BSTR : VT_I4)) return false;
        }
        return true;
    }
    int Number(std::size_t index) const { return At(index).lVal; }
    std::string Text(std::size_t index) const {
        const BSTR text = At(index).bstrVal;
        return text != nullptr ? platform::NarrowFrom(CP_UTF8, text) : "(null)";
    }

private:
    const VARIANT& At(std::size_t index) const {
        return m_parameters.rgvarg[m_parameters.cArgs - 1 - index];
    }
    const DISPPARAMS& m_parameters;
};

template <typename... Values>
int CallFunction(const Method& method, char** picture, Values... values) {
    using Typed = int (*)(Values..., char**);
    return reinterpret_cast<Typed>(reinterpret_cast<void*>(Function(method.name)))(values...,
                                                                                   picture);
}

HRESULT CallMethod(DISPID index, const Arguments& given, char** picture) {
    const Method& method = kMethods[index];
    if (!given.Match(method.kinds)) return DISP_E_BADPARAMCOUNT;
    if (index == kByCertInfo) {
        return CallFunction(method, picture, given.Text(0).c_str(), given.Number(1),
                            given.Number(2));
    }
    if (index == kByContent) {
        return CallFunction(method, picture, given.Number(0), given.Text(1).c_str(),
                            given.Text(2).c_str());
    }
    return CallFunction(method, picture, given.Text(0).c_str(), given.Text(1).c_str());
}

void Give(char* text, VARIANT& result) {
    result.vt = VT_BSTR;
    result.bstrVal =
        text != nullptr ? SysAllocString(platform::WideFrom(CP_UTF8, text).c_str()) : nullptr;
    std::free(text);
}

class Control : public IDispatch {
public:
    virtual ~Control() = default;

    HRESULT WINAPI QueryInterface(REFIID id, void** object) override {
        *object = Has(id) ? this : nullptr;
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG WINAPI AddRef() override {
        ++g_references;
        return ++m_references;
    }
    ULONG WINAPI Release() override {
        --g_references;
        const ULONG left = --m_references;
        if (left == 0) delete this;
        return left;
    }
    HRESULT WINAPI GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT WINAPI GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    HRESULT WINAPI GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                 DISPID* method) override {
        if (id != IID_NULL || count != 1 || locale != 1024) return E_INVALIDARG;
        const std::string name = platform::NarrowFrom(CP_UTF8, names[0]);
        for (DISPID i = 0; i < static_cast<DISPID>(std::size(kMethods)); ++i) {
            *method = i;
            if (name == kMethods[i].name && Function(kMethods[i].name) != nullptr) return S_OK;
        }
        *method = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT WINAPI Invoke(DISPID method, REFIID id, LCID locale, WORD flags, DISPPARAMS* parameters,
                          VARIANT* result, EXCEPINFO*, UINT*) override {
        if (id != IID_NULL || locale != 1024 || flags != DISPATCH_METHOD) return E_INVALIDARG;
        char* picture = nullptr;
        const HRESULT status = CallMethod(method, Arguments(*parameters), &picture);
        Give(picture, *result);
        return status;
    }

private:
    // Of IOleObject nothing but its presence is of use.
    static bool Has(REFIID id) {
        if (id == IID_IOleObject) return fakes::On(fakes::kIsControl).Apply({}, {}).result == 0;
        return id == IID_IUnknown || id == IID_IDispatch;
    }

    ULONG m_references = 0;
};

class Factory : public IClassFactory {
public:
    virtual ~Factory() = default;

    HRESULT WINAPI QueryInterface(REFIID id, void** object) override {
        *object = id == IID_IUnknown || id == IID_IClassFactory ? this : nullptr;
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG WINAPI AddRef() override { return ++m_references; }
    ULONG WINAPI Release() override {
        const ULONG left = --m_references;
        if (left == 0) delete this;
        return left;
    }
    HRESULT WINAPI CreateInstance(IUnknown* outer, REFIID id, void** object) override {
        *object = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        auto* const control = new Control;
        control->AddRef();
        const HRESULT status = control->QueryInterface(id, object);
        control->Release();
        return status;
    }
    HRESULT WINAPI LockServer(BOOL) override { return S_OK; }

private:
    ULONG m_references = 0;
};

}  // namespace

extern "C" {

HRESULT WINAPI DllGetClassObject(REFCLSID, REFIID id, void** object) {
    auto* const factory = new Factory;
    factory->AddRef();
    const HRESULT status = factory->QueryInterface(id, object);
    factory->Release();
    return status;
}

HRESULT WINAPI DllCanUnloadNow() { return g_references == 0 ? S_OK : S_FALSE; }

// All that callers hold of all objects.
long HeldReferences() { return g_references; }
}

// The stand-in engine's methods behind IDispatch, served within the process.

#include "platform/windows/WideText.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>
#include <oleidl.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "RegisteredClasses.h"
#include "StandInEngine.h"

namespace {

using platform::NarrowFrom;
using platform::WideFrom;

long g_references = 0;

bool Is(const GUID& guid, const platform::AutomationId& id) {
    return std::memcmp(&guid, &id, sizeof guid) == 0;
}

bool IsClass(const GUID& guid, const char* text) {
    GUID parsed;
    return CLSIDFromString(WideFrom(CP_ACP, text).c_str(), &parsed) == S_OK && parsed == guid;
}

constexpr const wchar_t* kMethods[] = {L"CreateTS", L"GetPersonalEsealByXML",
                                       L"GetPersonalEsealByCertInfo", L"GetPicByContent",
                                       L"GetNothing"};

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
    // In UTF-8, null for a null string; it lasts as long as `storage`.
    const char* Text(std::size_t index, std::string& storage) const {
        if (At(index).bstrVal == nullptr) return nullptr;
        storage = NarrowFrom(CP_UTF8, At(index).bstrVal);
        return storage.c_str();
    }

private:
    const VARIANT& At(std::size_t index) const {
        return m_parameters.rgvarg[m_parameters.cArgs - 1 - index];
    }
    const DISPPARAMS& m_parameters;
};

HRESULT CallMethod(DISPID method, const Arguments& given, char** result) {
    std::string first;
    std::string second;
    constexpr const char* kKinds[] = {"t", "tt", "tnn", "ntt", ""};
    if (!given.Match(kKinds[method])) return DISP_E_BADPARAMCOUNT;
    switch (method) {
        case 0: return CreateTS(given.Text(0, first), result);
        case 1: return GetPersonalEsealByXML(given.Text(0, first), given.Text(1, second), result);
        case 2:
            return GetPersonalEsealByCertInfo(given.Text(0, first), given.Number(1),
                                              given.Number(2), result);
        case 3:
            return GetPicByContent(given.Number(0), given.Text(1, first), given.Text(2, second),
                                   result);
        default: return GetNothing(result);
    }
}

void Give(char* text, VARIANT& result) {
    result.vt = VT_BSTR;
    result.bstrVal = text != nullptr ? SysAllocString(WideFrom(CP_UTF8, text).c_str()) : nullptr;
    std::free(text);
}

void MakeNumber(VARIANT& result) {
    VariantClear(&result);
    result.vt = VT_I4;
    result.lVal = 7;
}

HRESULT Raise(HRESULT status, EXCEPINFO& exception) {
    exception = {};
    exception.bstrSource = SysAllocString(L"engine");
    exception.bstrDescription = SysAllocString(L"it failed");
    exception.scode = status;
    return DISP_E_EXCEPTION;
}

class Engine : public IDispatch {
public:
    explicit Engine(const GUID& classId)
        : m_control(!IsClass(classId, kPlainClass)),
          m_dispatches(!IsClass(classId, kMuteClass)),
          m_raises(IsClass(classId, kExceptionClass)) {}
    virtual ~Engine() = default;

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
        *method = DISPID_UNKNOWN;
        for (DISPID i = 0; i < static_cast<DISPID>(std::size(kMethods)); ++i) {
            if (std::wstring(names[0]) == kMethods[i]) *method = i;
        }
        return *method == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
    }
    HRESULT WINAPI Invoke(DISPID method, REFIID id, LCID locale, WORD flags, DISPPARAMS* parameters,
                          VARIANT* result, EXCEPINFO* exception, UINT*) override {
        if (id != IID_NULL || locale != 1024 || flags != DISPATCH_METHOD) return E_INVALIDARG;
        char* text = nullptr;
        const HRESULT status = CallMethod(method, Arguments(*parameters), &text);
        Give(text, *result);
        if (!m_control) MakeNumber(*result);
        return FAILED(status) && m_raises ? Raise(status, *exception) : status;
    }

private:
    // Of IOleObject nothing but its presence is of use.
    bool Has(REFIID id) const {
        if (id == IID_IDispatch) return m_dispatches;
        if (id == IID_IOleObject) return m_control;
        return id == IID_IUnknown || Is(id, kEngineInterface);
    }

    ULONG m_references = 0;
    bool m_control;
    bool m_dispatches;
    bool m_raises;
};

class Factory : public IClassFactory {
public:
    explicit Factory(const GUID& classId) : m_classId(classId) {}
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
        auto* const engine = new Engine(m_classId);
        engine->AddRef();
        const HRESULT status = engine->QueryInterface(id, object);
        engine->Release();
        return status;
    }
    HRESULT WINAPI LockServer(BOOL) override { return S_OK; }

private:
    GUID m_classId;
    ULONG m_references = 0;
};

}  // namespace

extern "C" {

HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
    auto* const factory = new Factory(classId);
    factory->AddRef();
    const HRESULT status = factory->QueryInterface(id, object);
    factory->Release();
    return status;
}

HRESULT WINAPI DllCanUnloadNow() { return g_references == 0 ? S_OK : S_FALSE; }

// All that callers hold of all objects.
long HeldReferences() { return g_references; }
}

// What COM and regsvr32 look up in the DLL.

#include <cstring>
#include <new>

#include "components/timestamp/windows/ComObject.h"
#include "components/timestamp/windows/Registration.h"
#include "platform/closed/TimeStampEngine.h"
#include "platform/windows/WideText.h"

namespace {

// There is one for the DLL's whole life, and nobody counts its references.
class Factory final : public IClassFactory {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        const bool known = id == IID_IUnknown || id == IID_IClassFactory;
        *object = known ? this : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override {
        HoldServer();
        return 2;
    }
    ULONG STDMETHODCALLTYPE Release() override {
        LetServerGo();
        return 1;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        return outer != nullptr ? CLASS_E_NOAGGREGATION : CreateEngine(id, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        lock != FALSE ? HoldServer() : LetServerGo();
        return S_OK;
    }
};

bool IsEngineClass(REFCLSID classId) {
    GUID engine;
    const std::wstring text = platform::WideFrom(CP_UTF8, kTimeStampEngineClass);
    return CLSIDFromString(text.c_str(), &engine) == S_OK && engine == classId;
}

}  // namespace

extern "C" {

HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
    static Factory factory;
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return IsEngineClass(classId) ? factory.QueryInterface(id, object) : CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT WINAPI DllCanUnloadNow() { return IsServerHeld() ? S_FALSE : S_OK; }

HRESULT WINAPI DllRegisterServer() { return RegisterEngine(); }

HRESULT WINAPI DllUnregisterServer() { return UnregisterEngine(); }
}

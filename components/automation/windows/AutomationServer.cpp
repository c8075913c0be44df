#include "components/automation/windows/AutomationServer.h"

#include <atomic>

#include "components/automation/windows/Registration.h"
#include "platform/windows/WideText.h"

namespace {

std::atomic<long> g_held = 0;

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
        return outer != nullptr ? CLASS_E_NOAGGREGATION : kServedClass.create(id, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        lock != FALSE ? HoldServer() : LetServerGo();
        return S_OK;
    }
};

bool IsServed(REFCLSID classId) {
    GUID served;
    const std::wstring text = platform::WideFrom(CP_UTF8, kServedClass.id);
    return CLSIDFromString(text.c_str(), &served) == S_OK && served == classId;
}

}  // namespace

void HoldServer() { ++g_held; }

void LetServerGo() { --g_held; }

// What COM and regsvr32 look up in the DLL.
extern "C" {

HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
    static Factory factory;
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return IsServed(classId) ? factory.QueryInterface(id, object) : CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT WINAPI DllCanUnloadNow() { return g_held != 0 ? S_FALSE : S_OK; }

HRESULT WINAPI DllRegisterServer() { return RegisterServedClass(); }

HRESULT WINAPI DllUnregisterServer() { return UnregisterServedClass(); }
}

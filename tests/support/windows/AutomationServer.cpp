#include "support/windows/AutomationServer.h"

#include <cstdlib>

#include "platform/windows/WideText.h"

namespace {

// The locale and the interface that the library names.
constexpr LCID kLocale = 1024;

long g_references = 0;

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
        AutomationObject* const made = MakeAutomationObject(m_classId);
        made->AddRef();
        const HRESULT status = made->QueryInterface(id, object);
        made->Release();
        return status;
    }
    HRESULT WINAPI LockServer(BOOL) override { return S_OK; }

private:
    GUID m_classId;
    ULONG m_references = 0;
};

}  // namespace

AutomationArguments::AutomationArguments(const DISPPARAMS& parameters)
    : m_parameters(parameters), m_texts(parameters.cArgs) {
    for (std::size_t i = 0; i < m_texts.size(); ++i) {
        if (At(i).vt != VT_BSTR || At(i).bstrVal == nullptr) continue;
        m_texts[i] = platform::NarrowFrom(CP_UTF8, At(i).bstrVal);
    }
}

bool AutomationArguments::Match(const std::string& kinds) const {
    if (m_parameters.cNamedArgs != 0 || m_parameters.cArgs != kinds.size()) return false;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        if (At(i).vt != (kinds[i] == 't' ? VT_BSTR : VT_I4)) return false;
    }
    return true;
}

const char* AutomationArguments::Text(std::size_t index) const {
    return At(index).bstrVal != nullptr ? m_texts[index].c_str() : nullptr;
}

// They come in the reverse order.
const VARIANT& AutomationArguments::At(std::size_t index) const {
    return m_parameters.rgvarg[m_parameters.cArgs - 1 - index];
}

void GiveText(char* text, VARIANT& result) {
    result.vt = VT_BSTR;
    result.bstrVal =
        text != nullptr ? SysAllocString(platform::WideFrom(CP_UTF8, text).c_str()) : nullptr;
    std::free(text);
}

HRESULT WINAPI AutomationObject::QueryInterface(REFIID id, void** object) {
    *object = Has(id) ? this : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG WINAPI AutomationObject::AddRef() {
    ++g_references;
    return ++m_references;
}

ULONG WINAPI AutomationObject::Release() {
    --g_references;
    const ULONG left = --m_references;
    if (left == 0) delete this;
    return left;
}

HRESULT WINAPI AutomationObject::GetTypeInfoCount(UINT* count) {
    *count = 0;
    return S_OK;
}

HRESULT WINAPI AutomationObject::GetTypeInfo(UINT, LCID, ITypeInfo**) { return DISP_E_BADINDEX; }

HRESULT WINAPI AutomationObject::GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                               DISPID* method) {
    if (id != IID_NULL || count != 1 || locale != kLocale) return E_INVALIDARG;
    *method = FindMethod(platform::NarrowFrom(CP_UTF8, names[0]));
    return *method == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT WINAPI AutomationObject::Invoke(DISPID method, REFIID id, LCID locale, WORD flags,
                                        DISPPARAMS* parameters, VARIANT* result,
                                        EXCEPINFO* exception, UINT*) {
    if (id != IID_NULL || locale != kLocale || flags != DISPATCH_METHOD) return E_INVALIDARG;
    return Call(method, AutomationArguments(*parameters), *result, *exception);
}

extern "C" {

HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
    auto* const factory = new Factory(classId);
    factory->AddRef();
    const HRESULT status = factory->QueryInterface(id, object);
    factory->Release();
    return status;
}

HRESULT WINAPI DllCanUnloadNow() { return g_references == 0 ? S_OK : S_FALSE; }

long HeldReferences() { return g_references; }
}

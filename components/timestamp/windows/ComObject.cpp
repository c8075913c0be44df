#include "components/timestamp/windows/ComObject.h"

#include <atomic>
#include <new>
#include <string>

#include "components/timestamp/Engine.h"
#include "platform/windows/WideText.h"

namespace {

constexpr DISPID kCreateTs = 1;

std::atomic<long> g_held = 0;

// An automation string of a value that is one or can be made one.
class TextArgument {
public:
    explicit TextArgument(const VARIANT& value) {
        VariantInit(&m_text);
        m_status = VariantChangeType(&m_text, const_cast<VARIANT*>(&value), 0, VT_BSTR);
    }
    ~TextArgument() { VariantClear(&m_text); }
    TextArgument(const TextArgument&) = delete;
    TextArgument& operator=(const TextArgument&) = delete;

    HRESULT Status() const { return m_status; }
    BSTR Get() const { return m_text.bstrVal; }

private:
    VARIANT m_text;
    HRESULT m_status;
};

class Engine final : public IEngine {
public:
    Engine() { HoldServer(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        const bool known = id == IID_IUnknown || id == IID_IDispatch || id == kEngineInterfaceId;
        *object = known ? static_cast<IEngine*>(this) : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --m_references;
        if (left == 0) delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (count == nullptr) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        if (info != nullptr) *info = nullptr;
        return DISP_E_BADINDEX;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID method, REFIID id, LCID, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                                     UINT* wrong) override;
    HRESULT STDMETHODCALLTYPE CreateTS(BSTR request, BSTR* response) override;

private:
    ~Engine() { LetServerGo(); }

    std::atomic<ULONG> m_references = 1;
};

// The method's parameters have no names to be known by.
HRESULT Engine::GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    if (id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
    for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
    if (lstrcmpiW(names[0], L"CreateTS") == 0) ids[0] = kCreateTs;
    return count == 1 && ids[0] == kCreateTs ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT Engine::Invoke(DISPID method, REFIID id, LCID, WORD flags, DISPPARAMS* parameters,
                       VARIANT* result, EXCEPINFO*, UINT* wrong) {
    if (id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (method != kCreateTs || (flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
    if (parameters == nullptr) return E_POINTER;
    if (parameters->cNamedArgs != 0) return DISP_E_NONAMEDARGS;
    if (parameters->cArgs != 1) return DISP_E_BADPARAMCOUNT;
    const TextArgument request(parameters->rgvarg[0]);
    if (FAILED(request.Status())) {
        if (wrong != nullptr) *wrong = 0;
        return request.Status();
    }
    BSTR response = nullptr;
    const HRESULT status = CreateTS(request.Get(), &response);
    if (result == nullptr) {
        SysFreeString(response);
        return status;
    }
    VariantInit(result);
    result->vt = VT_BSTR;
    result->bstrVal = response;
    return status;
}

// No exception may leave a method.
HRESULT Engine::CreateTS(BSTR request, BSTR* response) {
    if (response == nullptr) return E_POINTER;
    *response = nullptr;
    try {
        const std::wstring_view text(request != nullptr ? request : L"");
        const auto made = CreateTimeStamp(platform::NarrowFrom(CP_UTF8, text));
        if (made) *response = SysAllocString(platform::WideFrom(CP_UTF8, *made).c_str());
        return !made || *response != nullptr ? S_OK : E_OUTOFMEMORY;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace

HRESULT CreateEngine(REFIID id, void** object) {
    auto* const engine = new (std::nothrow) Engine;
    if (engine == nullptr) return E_OUTOFMEMORY;
    const HRESULT status = engine->QueryInterface(id, object);
    engine->Release();
    return status;
}

void HoldServer() { ++g_held; }

void LetServerGo() { --g_held; }

bool IsServerHeld() { return g_held != 0; }

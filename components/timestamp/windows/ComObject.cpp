#include "components/timestamp/windows/ComObject.h"

#include <new>
#include <string>

#include "components/automation/windows/AutomationObject.h"
#include "components/timestamp/Engine.h"
#include "platform/closed/TimeStampEngine.h"
#include "platform/windows/WideText.h"

namespace {

constexpr AutomationMethod kMethods[] = {{L"CreateTS", 1}};

class Engine final : public CAutomationObject<IEngine> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        const bool known = id == IID_IUnknown || id == IID_IDispatch || id == kEngineInterfaceId;
        *object = known ? static_cast<IEngine*>(this) : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE CreateTS(BSTR request, BSTR* response) override;

private:
    std::span<const AutomationMethod> Methods() const override { return kMethods; }
    HRESULT Call(DISPID, const CAutomationCall& call) override {
        std::string request;
        const HRESULT status = call.Text(0, request);
        return FAILED(status) ? status : call.Give(CreateTimeStamp(request));
    }
};

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

const AutomationClass kServedClass = {kTimeStampEngineClass, L"Velmora time-stamp engine",
                                      &CreateObject<Engine>};

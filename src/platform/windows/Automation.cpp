#include "platform/Automation.h"

#include <cstring>
#include <memory>
#include <vector>

#include "platform/windows/AutomationText.h"
#include "platform/windows/WideText.h"
#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>
#include <oleidl.h>

namespace platform {

struct AutomationObjectState {
    IUnknown* object;
    HMODULE code;  // null if no module holds it, as with a proxy's own
};

namespace {

constexpr DWORD kAnyContext = 23;
constexpr LCID kLocale = 1024;
constexpr std::size_t kMostArguments = 3;

static_assert(sizeof(AutomationId) == sizeof(GUID));

GUID Native(const AutomationId& id) {
    GUID guid;
    std::memcpy(&guid, &id, sizeof guid);
    return guid;
}

bool Store(HRESULT status, const GUID& guid, AutomationId& id) {
    if (FAILED(status)) return false;
    std::memcpy(&id, &guid, sizeof guid);
    return true;
}

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};

// Automation values that are cleared in the end, in the order in which a call takes them.
class Values {
public:
    explicit Values(std::size_t count) : m_values(count) {
        for (VARIANT& value : m_values) VariantInit(&value);
    }
    ~Values() {
        for (VARIANT& value : m_values) VariantClear(&value);
    }
    Values(const Values&) = delete;
    Values& operator=(const Values&) = delete;

    std::size_t Count() const { return m_values.size(); }
    VARIANT& operator[](std::size_t index) { return m_values[index]; }
    DISPPARAMS Parameters() {
        return {m_values.data(), nullptr, static_cast<UINT>(m_values.size()), 0};
    }

private:
    std::vector<VARIANT> m_values;
};

bool SetText(VARIANT& value, const char* text) {
    value.vt = VT_BSTR;
    value.bstrVal = nullptr;
    if (text == nullptr) return true;
    value.bstrVal = MakeAutomationText(text);
    return value.bstrVal != nullptr;
}

bool SetArgument(VARIANT& value, const AutomationArgument& argument) {
    if (const auto* const text = std::get_if<const char*>(&argument)) return SetText(value, *text);
    value.vt = VT_I4;
    value.lVal = std::get<std::int32_t>(argument);
    return true;
}

// A call takes them from the last to the first.
bool SetArguments(Values& values, std::initializer_list<AutomationArgument> arguments) {
    std::size_t index = arguments.size();
    for (const AutomationArgument& argument : arguments) {
        if (!SetArgument(values[--index], argument)) return false;
    }
    return true;
}

HRESULT FindMethod(IDispatch& object, const char* name, DISPID& method) {
    std::wstring wide = WideFrom(CP_ACP, name);
    LPOLESTR names = wide.data();
    return object.GetIDsOfNames(IID_NULL, &names, 1, kLocale, &method);
}

// What the method itself gave, for an engine that tells it.
HRESULT OwnStatus(EXCEPINFO& exception) {
    if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return FAILED(exception.scode) ? exception.scode : DISP_E_EXCEPTION;
}

HRESULT Invoke(IDispatch& object, DISPID method, Values& arguments, VARIANT& result) {
    DISPPARAMS parameters = arguments.Parameters();
    EXCEPINFO exception{};
    const HRESULT status = object.Invoke(method, IID_NULL, kLocale, DISPATCH_METHOD, &parameters,
                                         &result, &exception, nullptr);
    return status == DISP_E_EXCEPTION ? OwnStatus(exception) : status;
}

AutomationResult Failure(AutomationFailure failure, HRESULT status) {
    return {failure, static_cast<std::int32_t>(status), std::nullopt};
}

AutomationResult Success(const VARIANT& value) {
    AutomationResult result;
    if (value.vt == VT_BSTR && value.bstrVal != nullptr) {
        result.text = NarrowFrom(CP_ACP, std::wstring_view(value.bstrVal));
    }
    return result;
}

AutomationResult Call(IDispatch& object, const char* name, Values& arguments) {
    DISPID method = DISPID_UNKNOWN;
    const HRESULT found = FindMethod(object, name, method);
    if (FAILED(found)) return Failure(AutomationFailure::NoMethod, found);
    if (arguments.Count() > kMostArguments) {
        return Failure(AutomationFailure::Failed, DISP_E_BADPARAMCOUNT);
    }
    Values result(1);
    const HRESULT status = Invoke(object, method, arguments, result[0]);
    return FAILED(status) ? Failure(AutomationFailure::Failed, status) : Success(result[0]);
}

// COM unloads a class's library with the last of its apartments, whether objects live or not. So
// each object holds the module in which its Release, the third of every interface, stands.
HMODULE HoldCode(IUnknown* object) {
    const void* const release = (*reinterpret_cast<void***>(object))[2];
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, static_cast<LPCSTR>(release),
                       &module);
    return module;
}

AutomationObject Create(const GUID& classId, const GUID& interfaceId) {
    void* object = nullptr;
    const HRESULT status = CoCreateInstance(classId, nullptr, kAnyContext, interfaceId, &object);
    if (FAILED(status) || object == nullptr) return nullptr;
    auto* const unknown = static_cast<IUnknown*>(object);
    return new AutomationObjectState{unknown, HoldCode(unknown)};
}

}  // namespace

std::int32_t InitializeAutomation() { return static_cast<std::int32_t>(CoInitialize(nullptr)); }

void UninitializeAutomation() { CoUninitialize(); }

bool ParseClassId(const char* text, AutomationId& id) {
    if (text == nullptr) return false;
    GUID guid;
    return Store(CLSIDFromString(WideFrom(CP_ACP, text).c_str(), &guid), guid, id);
}

bool ParseInterfaceId(const char* text, AutomationId& id) {
    if (text == nullptr) return false;
    GUID guid;
    return Store(IIDFromString(WideFrom(CP_ACP, text).c_str(), &guid), guid, id);
}

AutomationObject CreateAutomationObject(const AutomationId& classId,
                                        const AutomationId& interfaceId, const char*) {
    return Create(Native(classId), Native(interfaceId));
}

AutomationObject CreateAutomationControl(const AutomationId& classId) {
    const AutomationObject object = Create(Native(classId), IID_IDispatch);
    if (object == nullptr) return nullptr;
    void* control = nullptr;
    if (SUCCEEDED(object->object->QueryInterface(IID_IOleObject, &control)) && control != nullptr) {
        static_cast<IUnknown*>(control)->Release();
        return object;
    }
    ReleaseAutomationObject(object);
    return nullptr;
}

void ReleaseAutomationObject(AutomationObject object) {
    if (object == nullptr) return;
    object->object->Release();
    if (object->code != nullptr) FreeLibrary(object->code);
    delete object;
}

AutomationResult CallAutomation(AutomationObject object, const char* method,
                                std::initializer_list<AutomationArgument> arguments) {
    if (object == nullptr) return Failure(AutomationFailure::NoMethod, E_POINTER);
    Values values(arguments.size());
    if (!SetArguments(values, arguments)) {
        return Failure(AutomationFailure::NoText, E_OUTOFMEMORY);
    }
    void* dispatch = nullptr;
    const HRESULT status = object->object->QueryInterface(IID_IDispatch, &dispatch);
    if (FAILED(status)) return Failure(AutomationFailure::NoMethod, status);
    const std::unique_ptr<IDispatch, Releaser> callable(static_cast<IDispatch*>(dispatch));
    return Call(*callable, method, values);
}

}  // namespace platform

// The stand-in engine's methods as COM classes.
#include <cstring>
#include <string>

#include "support/windows/AutomationServer.h"
// After the system's own header.
#include "RegisteredClasses.h"
#include "StandInEngine.h"
#include "platform/windows/WideText.h"

namespace {

bool Is(const GUID& guid, const platform::AutomationId& id) {
    return std::memcmp(&guid, &id, sizeof guid) == 0;
}

bool IsClass(const GUID& guid, const char* text) {
    GUID parsed;
    return CLSIDFromString(platform::WideFrom(CP_ACP, text).c_str(), &parsed) == S_OK &&
           parsed == guid;
}

constexpr const char* kMethods[] = {"CreateTS", "GetPersonalEsealByXML",
                                    "GetPersonalEsealByCertInfo", "GetPicByContent", "GetNothing"};

HRESULT CallMethod(DISPID method, const AutomationArguments& given, char** result) {
    constexpr const char* kKinds[] = {"t", "tt", "tnn", "ntt", ""};
    if (!given.Match(kKinds[method])) return DISP_E_BADPARAMCOUNT;
    switch (method) {
        case 0: return CreateTS(given.Text(0), result);
        case 1: return GetPersonalEsealByXML(given.Text(0), given.Text(1), result);
        case 2:
            return GetPersonalEsealByCertInfo(given.Text(0), given.Number(1), given.Number(2),
                                              result);
        case 3: return GetPicByContent(given.Number(0), given.Text(1), given.Text(2), result);
        default: return GetNothing(result);
    }
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

class Engine : public AutomationObject {
public:
    explicit Engine(const GUID& classId)
        : m_control(!IsClass(classId, kPlainClass)),
          m_dispatches(!IsClass(classId, kMuteClass)),
          m_raises(IsClass(classId, kExceptionClass)) {}

private:
    // Of IOleObject nothing but its presence is of use.
    bool Has(REFIID id) const override {
        if (id == IID_IDispatch) return m_dispatches;
        if (id == IID_IOleObject) return m_control;
        return id == IID_IUnknown || Is(id, kEngineInterface);
    }
    DISPID FindMethod(const std::string& name) const override {
        for (DISPID i = 0; i < static_cast<DISPID>(std::size(kMethods)); ++i) {
            if (name == kMethods[i]) return i;
        }
        return DISPID_UNKNOWN;
    }
    HRESULT Call(DISPID method, const AutomationArguments& given, VARIANT& result,
                 EXCEPINFO& exception) override {
        char* text = nullptr;
        const HRESULT status = CallMethod(method, given, &text);
        GiveText(text, result);
        if (!m_control) MakeNumber(result);
        return FAILED(status) && m_raises ? Raise(status, exception) : status;
    }

    bool m_control;
    bool m_dispatches;
    bool m_raises;
};

}  // namespace

AutomationObject* MakeAutomationObject(REFCLSID classId) { return new Engine(classId); }

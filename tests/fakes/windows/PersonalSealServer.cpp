// The methods of the personal seal control's stand-in as a COM class. It knows those that its
// library has.
#include "platform/closed/PersonalSealControl.h"

#include <string>

#include "fakes/DrawnPictures.h"
#include "fakes/Script.h"
#include "support/windows/AutomationServer.h"

namespace {

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
        reinterpret_cast<LPCSTR>(&Function), &own);
    return GetProcAddress(own, name);
}

template <typename... Values>
int CallFunction(const Method& method, char** picture, Values... values) {
    using Typed = int (*)(Values..., char**);
    return reinterpret_cast<Typed>(reinterpret_cast<void*>(Function(method.name)))(values...,
                                                                                   picture);
}

HRESULT CallMethod(DISPID index, const AutomationArguments& given, char** picture) {
    const Method& method = kMethods[index];
    if (!given.Match(method.kinds)) return DISP_E_BADPARAMCOUNT;
    const auto text = [&given](std::size_t place) {
        const char* const value = given.Text(place);
        return value != nullptr ? value : "(null)";
    };
    if (index == kByCertInfo) {
        return CallFunction(method, picture, text(0), given.Number(1), given.Number(2));
    }
    if (index == kByContent) {
        return CallFunction(method, picture, given.Number(0), text(1), text(2));
    }
    return CallFunction(method, picture, text(0), text(1));
}

class Control : public AutomationObject {
private:
    // Of IOleObject nothing but its presence is of use.
    bool Has(REFIID id) const override {
        if (id == IID_IOleObject) return fakes::On(fakes::kIsControl).Apply({}, {}).result == 0;
        return id == IID_IUnknown || id == IID_IDispatch;
    }
    DISPID FindMethod(const std::string& name) const override {
        for (DISPID i = 0; i < static_cast<DISPID>(std::size(kMethods)); ++i) {
            if (name == kMethods[i].name && Function(kMethods[i].name) != nullptr) return i;
        }
        return DISPID_UNKNOWN;
    }
    HRESULT Call(DISPID method, const AutomationArguments& given, VARIANT& result,
                 EXCEPINFO&) override {
        char* picture = nullptr;
        const HRESULT status = CallMethod(method, given, &picture);
        GiveText(picture, result);
        return status;
    }
};

}  // namespace

AutomationObject* MakeAutomationObject(REFCLSID) { return new Control; }

#include <cstdint>
#include <string>

#include "components/automation/windows/AutomationObject.h"
#include "components/personalseal/PersonalSeal.h"
#include "components/personalseal/SealControlCodes.h"
#include "components/personalseal/windows/OleObject.h"
#include "foundation/Text.h"
#include "platform/closed/PersonalSealControl.h"

namespace {

// The order of kMethods.
enum Method : DISPID {
    kByXml = 1,
    kByCertInfo,
    kByContentWithXml,
    kPicByContent,
};

constexpr AutomationMethod kMethods[] = {{L"GetPersonalEsealByXML", 2},
                                         {L"GetPersonalEsealByCertInfo", 3},
                                         {L"GetPersonalEsealByContentWithXML", 2},
                                         {L"GetPicByContent", 3}};

const wchar_t* Meaning(int code) {
    switch (code) {
        case kSealNoText: return L"The text is empty.";
        case kSealLongText: return L"The text is too long.";
        case kSealBadText: return L"The text can't be read.";
        case kSealBadSettings: return L"The settings can't be used.";
        case kSealBadSize: return L"The picture's size is out of range, or the text doesn't fit.";
        case kSealBadKind: return L"There is no such kind of picture.";
        case kSealNoFont: return L"No font of this machine has a character of the text.";
        default: return L"The picture can't be drawn.";
    }
}

HRESULT Answer(const CAutomationCall& call, int code, const std::string& png) {
    if (code != kSealDrawn) return call.Fail(code, kServedClass.description, Meaning(code));
    return call.Give(Base64Encode(png));
}

HRESULT Styled(const CAutomationCall& call) {
    std::string settings;
    std::string text;
    std::string png;
    HRESULT status = call.Text(0, settings);
    if (SUCCEEDED(status)) status = call.Text(1, text);
    return FAILED(status) ? status : Answer(call, DrawStyledSeal(settings, text, png), png);
}

HRESULT Name(const CAutomationCall& call) {
    std::string text;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::string png;
    HRESULT status = call.Text(0, text);
    if (SUCCEEDED(status)) status = call.Number(1, width);
    if (SUCCEEDED(status)) status = call.Number(2, height);
    return FAILED(status) ? status : Answer(call, DrawNameSeal(text, width, height, png), png);
}

HRESULT Content(const CAutomationCall& call) {
    std::int32_t kind = 0;
    std::string text2;
    std::string text1;
    std::string png;
    HRESULT status = call.Number(0, kind);
    if (SUCCEEDED(status)) status = call.Text(1, text2);
    if (SUCCEEDED(status)) status = call.Text(2, text1);
    return FAILED(status) ? status : Answer(call, DrawContentPicture(kind, text2, text1, png), png);
}

class Control final : public CAutomationObject<IDispatch, CWindowlessOleObject> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (id == IID_IUnknown || id == IID_IDispatch) *object = static_cast<IDispatch*>(this);
        if (id == IID_IOleObject) *object = static_cast<IOleObject*>(this);
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

private:
    std::span<const AutomationMethod> Methods() const override { return kMethods; }
    HRESULT Call(DISPID method, const CAutomationCall& call) override {
        switch (method) {
            case kByXml:
            case kByContentWithXml: return Styled(call);
            case kByCertInfo: return Name(call);
            case kPicByContent: return Content(call);
            default: return DISP_E_MEMBERNOTFOUND;
        }
    }
};

}  // namespace

const AutomationClass kServedClass = {kPersonalSealControlClass, L"Velmora personal seal control",
                                      &CreateObject<Control>};

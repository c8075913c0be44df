#include "components/automation/windows/AutomationCall.h"

#include "platform/windows/WideText.h"

HRESULT FindMethod(std::span<const AutomationMethod> methods, REFIID id, LPOLESTR* names,
                   UINT count, DISPID* ids) {
    if (id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
    for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
    for (std::size_t i = 0; i < methods.size(); ++i) {
        if (lstrcmpiW(names[0], methods[i].name) == 0) ids[0] = static_cast<DISPID>(i + 1);
    }
    return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT CheckCall(std::span<const AutomationMethod> methods, DISPID method, REFIID id, WORD flags,
                  const DISPPARAMS* parameters) {
    if (id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    const bool known = method >= 1 && static_cast<std::size_t>(method) <= methods.size();
    if (!known || (flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
    if (parameters == nullptr) return E_POINTER;
    if (parameters->cNamedArgs != 0) return DISP_E_NONAMEDARGS;
    const UINT expected = methods[static_cast<std::size_t>(method) - 1].arguments;
    return parameters->cArgs == expected ? S_OK : DISP_E_BADPARAMCOUNT;
}

HRESULT CAutomationCall::Change(UINT index, VARTYPE type, VARIANT& value) const {
    // They stand in reverse.
    const UINT place = m_parameters.cArgs - 1 - index;
    VariantInit(&value);
    const HRESULT status = VariantChangeType(&value, &m_parameters.rgvarg[place], 0, type);
    if (FAILED(status) && m_wrong != nullptr) *m_wrong = place;
    return status;
}

HRESULT CAutomationCall::Text(UINT index, std::string& utf8) const {
    VARIANT value;
    const HRESULT status = Change(index, VT_BSTR, value);
    if (FAILED(status)) return status;
    try {
        const std::wstring_view text(value.bstrVal != nullptr ? value.bstrVal : L"");
        utf8 = platform::NarrowFrom(CP_UTF8, text);
    } catch (...) {
        VariantClear(&value);
        throw;
    }
    return VariantClear(&value);
}

HRESULT CAutomationCall::Number(UINT index, std::int32_t& number) const {
    VARIANT value;
    const HRESULT status = Change(index, VT_I4, value);
    if (SUCCEEDED(status)) number = value.lVal;
    return status;
}

HRESULT CAutomationCall::Give(const std::optional<std::string>& utf8) const {
    if (m_result == nullptr) return S_OK;
    VariantInit(m_result);
    m_result->vt = VT_BSTR;
    m_result->bstrVal = nullptr;
    if (!utf8) return S_OK;
    m_result->bstrVal = SysAllocString(platform::WideFrom(CP_UTF8, *utf8).c_str());
    return m_result->bstrVal != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT CAutomationCall::Fail(HRESULT code, const wchar_t* source,
                              const wchar_t* description) const {
    if (m_exception != nullptr) {
        *m_exception = {};
        m_exception->scode = code;
        m_exception->bstrSource = SysAllocString(source);
        m_exception->bstrDescription = SysAllocString(description);
    }
    return DISP_E_EXCEPTION;
}

// AutomationCall.h - the calls that reach an object through IDispatch.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>

// A plain method. Its DISPID is its place in the object's list, counted from 1.
struct AutomationMethod {
    const wchar_t* name;
    UINT arguments;
};

// GetIDsOfNames: methods by their names without regard to case; parameters have no names.
HRESULT FindMethod(std::span<const AutomationMethod> methods, REFIID id, LPOLESTR* names,
                   UINT count, DISPID* ids);

// Is this a call of one of the methods, without named arguments and with as many as it has? S_OK,
// or what Invoke gives for it.
HRESULT CheckCall(std::span<const AutomationMethod> methods, DISPID method, REFIID id, WORD flags,
                  const DISPPARAMS* parameters);

// A call that passed the check. Arguments are counted from 0 in the order of the declaration.
class CAutomationCall {
public:
    CAutomationCall(const DISPPARAMS& parameters, VARIANT* result, EXCEPINFO* exception,
                    UINT* wrong)
        : m_parameters(parameters), m_result(result), m_exception(exception), m_wrong(wrong) {}

    // The argument, made text (UTF-8, up to the zero character, a null string empty) or a number
    // if it isn't. What can't be made one gives a negative status, and Invoke's caller is told
    // which argument it is.
    HRESULT Text(UINT index, std::string& utf8) const;
    HRESULT Number(UINT index, std::int32_t& number) const;

    // The method's result: a string of UTF-8 text, none a null string. S_OK.
    HRESULT Give(const std::optional<std::string>& utf8) const;
    // The method's failure: DISP_E_EXCEPTION, with `code` and what `source` says of it.
    HRESULT Fail(HRESULT code, const wchar_t* source, const wchar_t* description) const;

private:
    HRESULT Change(UINT index, VARTYPE type, VARIANT& value) const;

    const DISPPARAMS& m_parameters;
    VARIANT* m_result;
    EXCEPINFO* m_exception;
    UINT* m_wrong;
};

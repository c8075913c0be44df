// AutomationServer.h - a stand-in of an automation engine behind IDispatch, served within the
// process. A library that is linked with it has the entries of a COM server and names its objects.
#pragma once

#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>
#include <oleidl.h>

#include <cstddef>
#include <string>
#include <vector>

// The arguments of one call, counted from 0 in the order of the method's declaration.
class AutomationArguments {
public:
    explicit AutomationArguments(const DISPPARAMS& parameters);
    AutomationArguments(const AutomationArguments&) = delete;
    AutomationArguments& operator=(const AutomationArguments&) = delete;

    // Whether they are as many and of these kinds: t a text, n a number; none of them by its name.
    bool Match(const std::string& kinds) const;
    int Number(std::size_t index) const { return At(index).lVal; }
    // In UTF-8, null for a null string; it lasts as long as this. Only of a text.
    const char* Text(std::size_t index) const;

private:
    const VARIANT& At(std::size_t index) const;

    const DISPPARAMS& m_parameters;
    std::vector<std::string> m_texts;
};

// Makes a UTF-8 text of the C heap the result of a call, and frees it; a null one is a null string.
void GiveText(char* text, VARIANT& result);

// Counted together with all others of the library; gone with its last reference.
class AutomationObject : public IDispatch {
public:
    virtual ~AutomationObject() = default;

    HRESULT WINAPI QueryInterface(REFIID id, void** object) override;
    ULONG WINAPI AddRef() override;
    ULONG WINAPI Release() override;
    HRESULT WINAPI GetTypeInfoCount(UINT* count) override;
    HRESULT WINAPI GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    // Both refuse a question in another form than the one that the library puts.
    HRESULT WINAPI GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                 DISPID* method) override;
    HRESULT WINAPI Invoke(DISPID method, REFIID id, LCID locale, WORD flags, DISPPARAMS* parameters,
                          VARIANT* result, EXCEPINFO* exception, UINT* wrong) override;

private:
    virtual bool Has(REFIID id) const = 0;
    // DISPID_UNKNOWN if there is none.
    virtual DISPID FindMethod(const std::string& name) const = 0;
    virtual HRESULT Call(DISPID method, const AutomationArguments& given, VARIANT& result,
                         EXCEPINFO& exception) = 0;

    ULONG m_references = 0;
};

// What the library serves: a new object of this class, with no reference yet.
AutomationObject* MakeAutomationObject(REFCLSID classId);

extern "C" {
// All that callers hold of all objects.
long HeldReferences();
}

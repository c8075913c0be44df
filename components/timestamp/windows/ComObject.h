// ComObject.h - the engine as a COM object.
#pragma once

#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>

// {5A0E71C3-3B28-46D9-8E4F-12C9D6F47A30}
inline constexpr GUID kEngineInterfaceId{
    0x5A0E71C3, 0x3B28, 0x46D9, {0x8E, 0x4F, 0x12, 0xC9, 0xD6, 0xF4, 0x7A, 0x30}};

// The engine's interface: CreateTS at the seventh place of the table, and by its name through
// IDispatch. There is no type library.
class IEngine : public IDispatch {
public:
    // A request in Base64 in, the response in Base64 out: a null string, and S_OK, where there is
    // none. The caller frees it.
    virtual HRESULT STDMETHODCALLTYPE CreateTS(BSTR request, BSTR* response) = 0;
};

// OleObject.h - IOleObject of an object without a window, a document or verbs.
#pragma once

#include "platform/windows/Win32.h"
// After the system's own header.
#include <oleauto.h>
#include <oleidl.h>

// A control is known by this interface. It keeps the site that it is given, tells its class and
// that it shows nothing, and can be closed; whatever needs a window, a moniker, stored data, an
// extent, verbs or advice is refused by the code that the interface has for it.
class CWindowlessOleObject : public IOleObject {
public:
    HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) override;
    HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** site) override;
    HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Close(DWORD) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** moniker) override;
    HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject** data) override;
    HRESULT STDMETHODCALLTYPE DoVerb(LONG, LPMSG, IOleClientSite*, LONG, HWND, LPCRECT) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB** verbs) override;
    HRESULT STDMETHODCALLTYPE Update() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE IsUpToDate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* classId) override;
    HRESULT STDMETHODCALLTYPE GetUserType(DWORD, LPOLESTR* name) override;
    HRESULT STDMETHODCALLTYPE SetExtent(DWORD, SIZEL*) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE GetExtent(DWORD, SIZEL*) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE Advise(IAdviseSink*, DWORD* connection) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD) override { return OLE_E_NOCONNECTION; }
    HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA** advice) override;
    HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD, DWORD* status) override;
    HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

protected:
    ~CWindowlessOleObject();

private:
    IOleClientSite* m_site = nullptr;
};

#include "components/personalseal/windows/OleObject.h"

#include <cwchar>
#include <string>
#include <utility>

#include "components/automation/windows/AutomationServer.h"
#include "platform/windows/WideText.h"
// After the system's own header.
#include <objbase.h>

namespace {

// Null goes out with a refusal.
template <typename Interface>
HRESULT Refuse(HRESULT status, Interface** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return status;
}

}  // namespace

CWindowlessOleObject::~CWindowlessOleObject() { CWindowlessOleObject::SetClientSite(nullptr); }

// A site that is let go may call back at once.
HRESULT CWindowlessOleObject::SetClientSite(IOleClientSite* site) {
    if (site != nullptr) site->AddRef();
    IOleClientSite* const former = std::exchange(m_site, site);
    if (former != nullptr) former->Release();
    return S_OK;
}

HRESULT CWindowlessOleObject::GetClientSite(IOleClientSite** site) {
    if (site == nullptr) return E_POINTER;
    *site = m_site;
    if (m_site != nullptr) m_site->AddRef();
    return S_OK;
}

HRESULT CWindowlessOleObject::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    return Refuse(E_NOTIMPL, moniker);
}

HRESULT CWindowlessOleObject::GetClipboardData(DWORD, IDataObject** data) {
    return Refuse(E_NOTIMPL, data);
}

HRESULT CWindowlessOleObject::EnumVerbs(IEnumOLEVERB** verbs) {
    return Refuse(OLEOBJ_E_NOVERBS, verbs);
}

HRESULT CWindowlessOleObject::GetUserClassID(CLSID* classId) {
    if (classId == nullptr) return E_POINTER;
    return CLSIDFromString(platform::WideFrom(CP_UTF8, kServedClass.id).c_str(), classId);
}

HRESULT CWindowlessOleObject::GetUserType(DWORD, LPOLESTR* name) {
    if (name == nullptr) return E_POINTER;
    const std::size_t size = (std::wcslen(kServedClass.description) + 1) * sizeof(wchar_t);
    *name = static_cast<LPOLESTR>(CoTaskMemAlloc(size));
    if (*name == nullptr) return E_OUTOFMEMORY;
    std::wmemcpy(*name, kServedClass.description, size / sizeof(wchar_t));
    return S_OK;
}

HRESULT CWindowlessOleObject::Advise(IAdviseSink*, DWORD* connection) {
    if (connection == nullptr) return E_POINTER;
    *connection = 0;
    return OLE_E_ADVISENOTSUPPORTED;
}

HRESULT CWindowlessOleObject::EnumAdvise(IEnumSTATDATA** advice) {
    return Refuse(OLE_E_ADVISENOTSUPPORTED, advice);
}

HRESULT CWindowlessOleObject::GetMiscStatus(DWORD, DWORD* status) {
    if (status == nullptr) return E_POINTER;
    *status = OLEMISC_INVISIBLEATRUNTIME | OLEMISC_NOUIACTIVATE;
    return S_OK;
}

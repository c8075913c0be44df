// AutomationObject.h - what every automation object of a server has in common.
#pragma once

#include <atomic>
#include <new>

#include "components/automation/windows/AutomationCall.h"
#include "components/automation/windows/AutomationServer.h"

class CServerHold {
public:
    CServerHold() { HoldServer(); }
    ~CServerHold() { LetServerGo(); }
    CServerHold(const CServerHold&) = delete;
    CServerHold& operator=(const CServerHold&) = delete;
};

// An object with these interfaces, of which one is IDispatch or has it as its base. It counts its
// references, from 1 on, and holds the server until all its parts have gone, whose ends may call
// what others made. There is no type library.
template <typename... Interfaces>
class CAutomationObject : private CServerHold, public Interfaces... {
public:
    CAutomationObject() = default;
    CAutomationObject(const CAutomationObject&) = delete;
    CAutomationObject& operator=(const CAutomationObject&) = delete;

    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --m_references;
        if (left == 0) delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (count == nullptr) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        if (info != nullptr) *info = nullptr;
        return DISP_E_BADINDEX;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) override {
        return FindMethod(Methods(), id, names, count, ids);
    }
    // No exception may leave it.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID method, REFIID id, LCID, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* wrong) override {
        const HRESULT status = CheckCall(Methods(), method, id, flags, parameters);
        if (FAILED(status)) return status;
        try {
            return Call(method, CAutomationCall(*parameters, result, exception, wrong));
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }

protected:
    virtual ~CAutomationObject() = default;

    virtual std::span<const AutomationMethod> Methods() const = 0;
    // May throw std::bad_alloc.
    virtual HRESULT Call(DISPID method, const CAutomationCall& call) = 0;

private:
    std::atomic<ULONG> m_references = 1;
};

// AutomationClass::create for objects of a type with a constructor without arguments.
template <typename Object>
HRESULT CreateObject(REFIID interfaceId, void** object) {
    auto* const made = new (std::nothrow) Object;
    if (made == nullptr) return E_OUTOFMEMORY;
    const HRESULT status = made->QueryInterface(interfaceId, object);
    made->Release();
    return status;
}

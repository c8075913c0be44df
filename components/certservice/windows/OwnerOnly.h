// OwnerOnly.h - the rights of what the certificate service makes.
#pragma once

// After the system's own header.
#include "platform/windows/Win32.h"

// Rights for this process's user alone, none inherited; with `everybody`, all others may read. What
// is made inside a folder of these gets the same. Where the system can't tell the user, Get() is
// null, which means the folder's own rights.
class OwnerOnly {
public:
    explicit OwnerOnly(bool everybody = false);
    ~OwnerOnly();
    OwnerOnly(const OwnerOnly&) = delete;
    OwnerOnly& operator=(const OwnerOnly&) = delete;

    SECURITY_ATTRIBUTES* Get() {
        return m_attributes.lpSecurityDescriptor ? &m_attributes : nullptr;
    }

private:
    SECURITY_ATTRIBUTES m_attributes{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

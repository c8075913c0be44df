// LockedStore.h - the machine's settings as a process without rights on them finds them.
#pragma once

#include "support/TemporaryPrefix.h"

// While this lives no key of the product's machine-wide settings can be opened with all access, nor
// be made; values set before stay unseen.
class LockedStore {
public:
    explicit LockedStore(const TemporaryPrefix& prefix);
    ~LockedStore();
    LockedStore(const LockedStore&) = delete;
    LockedStore& operator=(const LockedStore&) = delete;

private:
    std::string m_file;  // where the store is one
};

// KVLOpt.h - the certificate service's file, loaded at run time, and the table of its entry points.
#pragma once

#include "platform/Module.h"
#include "platform/closed/CertService.h"

// A library that is loaded at run time.
class DynamicDLL {
public:
    virtual ~DynamicDLL() = default;
    virtual int LoadEntries(int load);
};

// Bound after construction, with `module` set, or unbound with everything null: that is the only
// report of a failure. A name that the file lacks leaves its pointer null, without a word.
class CKVLOpt : public DynamicDLL {
public:
    explicit CKVLOpt(const char* filename);
    ~CKVLOpt() override;
    CKVLOpt(const CKVLOpt&) = delete;
    CKVLOpt& operator=(const CKVLOpt&) = delete;

    // Takes every entry point from the module, or clears them all for 0. Always 1.
    int LoadEntries(int load) override;

    platform::ModuleHandle module = nullptr;

#define DECLARE_ENTRY(name) decltype(&::name) name = nullptr;
    CERT_SERVICE_ENTRIES(DECLARE_ENTRY)
#undef DECLARE_ENTRY
};

#include "bridge/KVLOpt.h"

#include <string_view>

namespace {

// Looked up behind the entry that follows it in the table, and still stored in its own place.
constexpr std::string_view kLateEntry = "SOF_EncryptDataEx";
constexpr std::string_view kBeforeLateEntry = "SOF_DecryptData";

}  // namespace

int DynamicDLL::LoadEntries(int) { return 0; }

CKVLOpt::CKVLOpt(const char* filename) {
    platform::ClearLastError();
    module = platform::LoadModule(filename);
    CKVLOpt::LoadEntries(module != nullptr ? 1 : 0);
}

CKVLOpt::~CKVLOpt() {
    if (module != nullptr) platform::FreeModule(module);
    module = nullptr;
    CKVLOpt::LoadEntries(0);
}

int CKVLOpt::LoadEntries(int load) {
    const auto take = [this, load](auto& entry, const char* symbol) {
        void* const address = load != 0 ? platform::FindSymbol(module, symbol) : nullptr;
        entry = reinterpret_cast<std::remove_reference_t<decltype(entry)>>(address);
    };
#define TAKE_ENTRY(name)                        \
    if (#name != kLateEntry) take(name, #name); \
    if (#name == kBeforeLateEntry) take(SOF_EncryptDataEx, kLateEntry.data());
    CERT_SERVICE_ENTRIES(TAKE_ENTRY)
#undef TAKE_ENTRY
    return 1;
}

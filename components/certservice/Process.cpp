#include "components/certservice/Process.h"

#include <openssl/crypto.h>

#include <algorithm>

#include "components/certservice/KeyFolder.h"
#include "components/certservice/Places.h"
#include "components/certservice/ScanDevice.h"
#include "components/certservice/pinentry/PinEntry.h"
#include "components/certservice/pkcs11/Pkcs11Device.h"

namespace {

using Contexts = std::vector<std::unique_ptr<CertService>>;

// Null while no context is open. A host that ends without closing its contexts leaves them to the
// system: no destructor of ours runs at the end of the process.
Contexts* g_contexts = nullptr;

std::shared_ptr<ServiceProcess> MakeProcess() {
    std::vector<std::unique_ptr<KeyDevice>> devices = OpenPkcs11Devices();
    devices.insert(devices.begin(), std::make_unique<KeyFolder>(KeyFolderPath()));
    devices.push_back(std::make_unique<ScanDevice>(KeyFolderPath()));
    return std::shared_ptr<ServiceProcess>(new ServiceProcess{
        KeyRing(std::move(devices), MakePinEntry()), TrustStore(TrustFolderPath())});
}

Contexts::iterator Find(void* handle) {
    return std::find_if(g_contexts->begin(), g_contexts->end(),
                        [handle](const auto& context) { return context.get() == handle; });
}

}  // namespace

CertService* OpenContext() {
    if (g_contexts) {
        g_contexts->push_back(std::make_unique<CertService>(g_contexts->front()->Process()));
        return g_contexts->back().get();
    }
    // A host may close its last context from a handler at exit, behind OpenSSL's own.
    OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
    auto contexts = std::make_unique<Contexts>();
    contexts->push_back(std::make_unique<CertService>(MakeProcess()));
    g_contexts = contexts.release();
    return g_contexts->back().get();
}

CertService* FindContext(void* handle) {
    if (!g_contexts) return nullptr;
    const auto found = Find(handle);
    return found == g_contexts->end() ? nullptr : found->get();
}

bool CloseContext(void* handle) {
    if (!FindContext(handle)) return false;
    g_contexts->erase(Find(handle));
    if (!g_contexts->empty()) return true;
    delete g_contexts;
    g_contexts = nullptr;
    return true;
}

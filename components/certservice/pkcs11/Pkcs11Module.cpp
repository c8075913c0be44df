#include "components/certservice/pkcs11/Pkcs11Module.h"

#include <atomic>
#include <cstdlib>
#include <map>
#include <mutex>

#include "platform/Module.h"

namespace {

using OpenModules = std::map<const CK_FUNCTION_LIST*, std::weak_ptr<Pkcs11Module>>;

std::mutex g_mutex;
// Null while no module is open. No destructor of the process's end takes it away, so a holder may
// let go as late as it likes; the last one does, so nothing stays where the service is unloaded.
OpenModules* g_opened = nullptr;

// With the mutex held, like the two below.
std::shared_ptr<Pkcs11Module> FindOpened(const CK_FUNCTION_LIST* functions) {
    if (!g_opened) return nullptr;
    const auto found = g_opened->find(functions);
    return found == g_opened->end() ? nullptr : found->second.lock();
}

void Remember(const CK_FUNCTION_LIST* functions, const std::shared_ptr<Pkcs11Module>& module) {
    if (!g_opened) g_opened = new OpenModules;
    (*g_opened)[functions] = module;
}

void Forget(const CK_FUNCTION_LIST* functions) {
    if (!g_opened) return;
    const auto found = g_opened->find(functions);
    if (found != g_opened->end() && found->second.expired()) g_opened->erase(found);
    if (!g_opened->empty()) return;
    delete g_opened;
    g_opened = nullptr;
}

std::atomic<bool> g_processEnds = false;

// Registered behind the handlers that the module has just registered, so it runs before them.
void WatchProcessEnd() {
    std::atexit([] { g_processEnds = true; });
}

CK_FUNCTION_LIST* FunctionsOf(platform::ModuleHandle library) {
    const auto getFunctionList =
        reinterpret_cast<CK_C_GetFunctionList>(platform::FindSymbol(library, "C_GetFunctionList"));
    CK_FUNCTION_LIST* functions = nullptr;
    if (!getFunctionList || getFunctionList(&functions) != CKR_OK) return nullptr;
    return functions;
}

CK_RV Initialise(CK_FUNCTION_LIST* functions) {
    CK_C_INITIALIZE_ARGS arguments{};
    arguments.flags = CKF_OS_LOCKING_OK;
    return functions->C_Initialize(&arguments);
}

}  // namespace

std::shared_ptr<Pkcs11Module> Pkcs11Module::Open(const std::string& path) {
    const platform::ModuleHandle library = platform::LoadModule(path.c_str());
    if (!library) return nullptr;
    CK_FUNCTION_LIST* const functions = FunctionsOf(library);
    if (!functions) {
        platform::FreeModule(library);
        return nullptr;
    }
    const std::lock_guard lock(g_mutex);
    if (auto module = FindOpened(functions)) return module;
    const CK_RV result = Initialise(functions);
    if (result != CKR_OK && result != CKR_CRYPTOKI_ALREADY_INITIALIZED) return nullptr;
    WatchProcessEnd();
    auto module = std::make_shared<Pkcs11Module>(functions, result == CKR_OK);
    Remember(functions, module);
    return module;
}

bool Pkcs11Module::ProcessEnds() { return g_processEnds; }

Pkcs11Module::~Pkcs11Module() {
    const std::lock_guard lock(g_mutex);
    if (m_finalise && !ProcessEnds()) m_functions->C_Finalize(nullptr);
    Forget(m_functions);
}

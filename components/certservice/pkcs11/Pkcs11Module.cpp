#include "components/certservice/pkcs11/Pkcs11Module.h"

#include <atomic>
#include <cstdlib>
#include <map>
#include <mutex>

#include "platform/Module.h"

namespace {

struct OpenModules {
    std::mutex mutex;
    std::map<CK_FUNCTION_LIST*, std::weak_ptr<Pkcs11Module>> modules;
};

// Never destroyed: a holder may let go as late as it likes.
OpenModules& Opened() {
    static auto* const opened = new OpenModules;
    return *opened;
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
    const std::lock_guard lock(Opened().mutex);
    std::weak_ptr<Pkcs11Module>& known = Opened().modules[functions];
    if (auto module = known.lock()) return module;
    const CK_RV result = Initialise(functions);
    if (result != CKR_OK && result != CKR_CRYPTOKI_ALREADY_INITIALIZED) return nullptr;
    WatchProcessEnd();
    auto module = std::make_shared<Pkcs11Module>(functions, result == CKR_OK);
    known = module;
    return module;
}

bool Pkcs11Module::ProcessEnds() { return g_processEnds; }

Pkcs11Module::~Pkcs11Module() {
    const std::lock_guard lock(Opened().mutex);
    if (m_finalise && !ProcessEnds()) m_functions->C_Finalize(nullptr);
}

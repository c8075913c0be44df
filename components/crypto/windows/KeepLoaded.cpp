#include "components/crypto/KeepLoaded.h"

#include <windows.h>

void KeepLoaded(const void* function) {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       static_cast<const char*>(function), &module);
}

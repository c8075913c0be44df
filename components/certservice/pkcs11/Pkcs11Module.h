// Pkcs11Module.h - one PKCS#11 module, loaded and initialised.
#pragma once

#include <p11-kit/pkcs11.h>

#include <memory>
#include <string>

// A module is initialised once however many hold it, and finalised when the last holder lets go,
// unless somebody else in the process had initialised it before. It stays loaded until the process
// ends, since modules leave exit handlers behind.
class Pkcs11Module {
public:
    // Null if `path` (the file system's bytes) can't be loaded, is no PKCS#11 module, or fails in
    // C_Initialize. May be called from any thread.
    static std::shared_ptr<Pkcs11Module> Open(const std::string& path);

    Pkcs11Module(CK_FUNCTION_LIST* functions, bool finalise)
        : m_functions(functions), m_finalise(finalise) {}
    ~Pkcs11Module();
    Pkcs11Module(const Pkcs11Module&) = delete;
    Pkcs11Module& operator=(const Pkcs11Module&) = delete;

    // True once exit handlers run: a module may have taken itself down by then, and none may be
    // called. Letting go of a module is harmless even so.
    static bool ProcessEnds();

    const CK_FUNCTION_LIST* Functions() const { return m_functions; }

private:
    const CK_FUNCTION_LIST* m_functions;
    bool m_finalise;
};

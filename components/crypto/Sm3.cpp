#include "components/crypto/Sm3.h"

#include "components/crypto/KeepLoaded.h"

namespace {

// The host may have set libgcrypt up for itself; then it stays as it is. It never gives back what
// it takes when it is set up, so a host that loads and unloads us would lose that each time.
bool SetUpLibgcrypt() {
    KeepLoaded(reinterpret_cast<const void*>(&gcry_check_version));
    if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P)) return true;
    if (!gcry_check_version(nullptr)) return false;
    gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
    return true;
}

}  // namespace

Sm3::Sm3() {
    static const bool ready = SetUpLibgcrypt();
    if (!ready || gcry_md_open(&m_hash, GCRY_MD_SM3, 0) != 0) m_hash = nullptr;
}

Sm3::~Sm3() {
    if (m_hash) gcry_md_close(m_hash);
}

void Sm3::Update(std::string_view data) {
    if (m_hash) gcry_md_write(m_hash, data.data(), data.size());
}

std::string Sm3::Finish() {
    if (!m_hash) return {};
    const unsigned char* hash = gcry_md_read(m_hash, GCRY_MD_SM3);
    if (!hash) return {};
    return std::string(reinterpret_cast<const char*>(hash), gcry_md_get_algo_dlen(GCRY_MD_SM3));
}

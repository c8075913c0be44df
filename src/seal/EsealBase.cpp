#include "seal/EsealBase.h"

CEsealBase::CEsealBase(const unsigned char* seal, int sealLen)
    : m_sealData(reinterpret_cast<const char*>(seal), static_cast<std::size_t>(sealLen)) {}

int CEsealBase::PraseEseal(unsigned char*, int*) { return 0; }

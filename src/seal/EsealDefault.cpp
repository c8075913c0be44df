#include "TesmarkOpt.h"
#include "seal/EsHeader.h"
#include "seal/EsealBase.h"
#include "seal/PictureDelivery.h"

int CEsealDefalult::PraseEseal(unsigned char* picBuffer, int* picLength) {
    const auto header = ReadEsHeader(m_sealData);
    if (!header) return TESMARK_SEAL_FORMAT;
    DeliverPicture(header->picture, picBuffer, picLength);
    m_sealName = header->name;
    return 0;
}

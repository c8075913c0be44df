#include "foundation/Logger.h"
#include "seal/EsealBase.h"
#include "seal/EsealNational.h"
#include "seal/PictureDelivery.h"

// A picture that was delivered stays delivered when the name can't be read.
int CEsealGB::PraseEseal(unsigned char* picBuffer, int* picLength) {
    TESMARK_LOG_SCOPE("CEsealGB::PraseEseal");
    CBuffer picture;
    if (const int code = ReadNationalPicture(m_sealData, picture, &m_picWidth, &m_picHeight)) {
        TESMARK_LOG(kLogError, "TVK_Get_Pic_From_Eseal error:%d", code);
        return code;
    }
    DeliverPicture(picture.View(), picBuffer, picLength);
    if (const int code = ReadNationalName(m_sealData, "(国办)", m_sealName)) {
        TESMARK_LOG(kLogError, "TVK_Get_SealName_From_Eseal error:%d", code);
        return code;
    }
    return 0;
}

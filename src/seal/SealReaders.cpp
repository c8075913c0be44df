#include "seal/SealReaders.h"

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "foundation/Text.h"
#include "seal/EsHeader.h"
#include "seal/EsealNational.h"

namespace {

// The bytes with one zero byte behind them.
CBuffer CopyToHeap(std::string_view bytes) {
    CBuffer copy(bytes.size() + 1);
    if (!copy) return copy;
    bytes.copy(copy.Text(), bytes.size());
    *copy.LengthPointer() = static_cast<int>(bytes.size());
    return copy;
}

}  // namespace

int ReadSealPicEs(std::string seal, CBuffer& picture) {
    const auto header = ReadEsHeader(seal);
    if (!header) return TESMARK_NOT_AN_ES_FILE;
    picture = CopyToHeap(header->picture);
    return picture ? 0 : TESMARK_NO_MEMORY;
}

int ReadSealPicV3(std::string seal, CBuffer& picture, int* width, int* height) {
    CBuffer read;
    if (const int code = ReadNationalPicture(seal, read, width, height)) {
        TESMARK_LOG(kLogError, "TVK_Get_Pic_From_Eseal error:%d", code);
        return code;
    }
    TESMARK_LOG(kLogDebug, "read V3 pic success");
    picture = CopyToHeap(read.View());
    return picture ? 0 : TESMARK_NO_MEMORY;
}

int GetSealPicBase64(const unsigned char* picture, int pictureLen, char** base64) {
    const std::string text = Base64EncodeBytes(picture, static_cast<unsigned int>(pictureLen));
    *base64 = reinterpret_cast<char*>(CopyToHeap(text).Release());
    return 0;
}

#include "session/SealStatus.h"

#include "TesmarkOpt.h"
#include "bridge/TwoStep.h"
#include "platform/closed/SealLibrary.h"

namespace {

// Reads the first and the fifth field; the nine others share one length that nobody reads.
int ReadStatusFields(std::string_view seal, CBuffer& field1, CBuffer& field5) {
    int ignored = 0;
    return TVK_GetSealInfo(reinterpret_cast<const unsigned char*>(seal.data()),
                           static_cast<int>(seal.size()), field1.Data(), field1.LengthPointer(),
                           nullptr, &ignored, nullptr, &ignored, nullptr, &ignored, field5.Data(),
                           field5.LengthPointer(), nullptr, &ignored, nullptr, &ignored, nullptr,
                           &ignored, nullptr, &ignored, nullptr, &ignored, nullptr, &ignored);
}

}  // namespace

int RequestSealStatus(std::string_view seal, bool& permitted) {
    permitted = false;
    CBuffer field1;
    CBuffer field5;
    int result = ReadStatusFields(seal, field1, field5);
    if (result != 0 || field1.Length() <= 0 || field5.Length() <= 0) return result;
    const int size1 = field1.Length();
    const int size5 = field5.Length();
    field1 = AllocateAnswer(size1, 1);
    field5 = AllocateAnswer(size5, 1);
    if (!field1 || !field5) return TESMARK_NO_MEMORY;
    result = ReadStatusFields(seal, field1, field5);
    if (result != 0) return result;
    CutAnswer(field1, size1, 1);
    CutAnswer(field5, size5, 1);
    result = TVK_Request_Eseal_Status(field1.Data(), field1.Length(), field5.Data(),
                                      field5.Length(), 0, 0);
    permitted = result == 0;
    return result;
}

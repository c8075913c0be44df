// The stand-in of the seal library.
#include "platform/closed/SealLibrary.h"

#include <cstring>
#include <utility>

#include "fakes/Recorder.h"
#include "fakes/World.h"

using fakes::Answer;
using fakes::Call;
using fakes::NationalSeal;
using fakes::Recorder;

namespace {

constexpr std::size_t kInfoFields = 11;

// `give` fills the answer from the seal that is the call's first argument.
template <typename Give>
fakes::Handler FromSeal(Give give) {
    return [give](const Call& call) {
        Answer answer;
        const NationalSeal* const seal = fakes::FindNationalSeal(call.arguments[0]);
        if (seal == nullptr) {
            answer.result = fakes::kUnknownSeal;
        } else {
            give(*seal, answer);
        }
        return answer;
    };
}

Answer SealSignature(const Call& call) {
    Answer answer;
    answer.output = "seal signature by " + call.arguments[0];
    return answer;
}

}  // namespace

int TVK_Initialize(void) { return Recorder("TVK_Initialize").Finish(); }

int TVK_Release(void) { return Recorder("TVK_Release").Finish(); }

int TVK_SetConfig(int reqStatus, const char* url, int urlLen, int signWithTimeStamp) {
    Recorder recorder("TVK_SetConfig");
    recorder.Number(reqStatus).Text(url).Number(urlLen).Number(signWithTimeStamp);
    return recorder.Finish();
}

int TVK_SetConfigEx(int kind, const unsigned char* data, int dataLen) {
    return Recorder("TVK_SetConfigEx").Number(kind).Bytes(data, dataLen).Finish();
}

int TVK_Sign(const unsigned char* certId, int certIdLen, const unsigned char* property,
             int propertyLen, const unsigned char* oid, int oidLen, const unsigned char* hash,
             int hashLen, const unsigned char* time, int timeLen, const unsigned char* seal,
             int sealLen, unsigned char* out, int* outLen) {
    Recorder recorder("TVK_Sign");
    recorder.Bytes(certId, certIdLen).Bytes(property, propertyLen).Bytes(oid, oidLen);
    recorder.Bytes(hash, hashLen).Bytes(time, timeLen).Bytes(seal, sealLen).Output(out, outLen);
    return recorder.Finish(SealSignature);
}

int TVK_Verify_SES_Sign(const unsigned char* signature, int signatureLen,
                        const unsigned char* dataBase64, int dataBase64Len) {
    Recorder recorder("TVK_Verify_SES_Sign");
    return recorder.Bytes(signature, signatureLen).Bytes(dataBase64, dataBase64Len).Finish();
}

int TVK_Verify_SES_Sign_BigFile(const unsigned char* signature, int signatureLen,
                                const char* filePath) {
    Recorder recorder("TVK_Verify_SES_Sign_BigFile");
    return recorder.Bytes(signature, signatureLen).Text(filePath).Finish();
}

int TVK_Get_Sign_Cert_From_SIG(const unsigned char* signatureBase64, int signatureBase64Len,
                               unsigned char* out, int* outLen) {
    Recorder recorder("TVK_Get_Sign_Cert_From_SIG");
    return recorder.Bytes(signatureBase64, signatureBase64Len).Output(out, outLen).Finish();
}

int TVK_Check_CRL_Time(const unsigned char* crl, int crlLen, const unsigned char* serial,
                       int serialLen, const unsigned char* time, int timeLen) {
    Recorder recorder("TVK_Check_CRL_Time");
    return recorder.Bytes(crl, crlLen).Bytes(serial, serialLen).Bytes(time, timeLen).Finish();
}

int TVK_Verify_SESeal(const unsigned char* seal, int sealLen) {
    return Recorder("TVK_Verify_SESeal")
        .Bytes(seal, sealLen)
        .Finish(FromSeal(
            [](const NationalSeal& known, Answer& answer) { answer.result = known.verifyResult; }));
}

int TVK_GetSealInfo(const unsigned char* seal, int sealLen, unsigned char* field1, int* field1Len,
                    unsigned char* field2, int* field2Len, unsigned char* field3, int* field3Len,
                    unsigned char* field4, int* field4Len, unsigned char* field5, int* field5Len,
                    unsigned char* field6, int* field6Len, unsigned char* field7, int* field7Len,
                    unsigned char* field8, int* field8Len, unsigned char* field9, int* field9Len,
                    unsigned char* field10, int* field10Len, unsigned char* field11,
                    int* field11Len) {
    const std::pair<unsigned char*, int*> pairs[kInfoFields] = {
        {field1, field1Len}, {field2, field2Len},   {field3, field3Len},  {field4, field4Len},
        {field5, field5Len}, {field6, field6Len},   {field7, field7Len},  {field8, field8Len},
        {field9, field9Len}, {field10, field10Len}, {field11, field11Len}};
    Recorder recorder("TVK_GetSealInfo");
    recorder.Bytes(seal, sealLen);
    for (const auto& [field, length] : pairs) recorder.Output(field, length);
    Answer answer = recorder.FinishWithAnswer(FromSeal([](const NationalSeal& known, Answer& give) {
        give.fields = known.fields;
        give.output = known.fields[0];
    }));
    if (answer.result != 0) return answer.result;
    answer.fields.resize(kInfoFields);
    for (std::size_t i = 1; i < kInfoFields; ++i) {
        const auto& [field, length] = pairs[i];
        const int size = static_cast<int>(answer.fields[i].size());
        if (field != nullptr && size > *length) return fakes::kBufferTooSmall;
        if (field != nullptr && size > 0) std::memcpy(field, answer.fields[i].data(), size);
        *length = size;
    }
    return 0;
}

int TVK_Request_Eseal_Status(const unsigned char* field1, int field1Len,
                             const unsigned char* field5, int field5Len, std::uint64_t zero1,
                             std::uint64_t zero2) {
    Recorder recorder("TVK_Request_Eseal_Status");
    recorder.Bytes(field1, field1Len).Bytes(field5, field5Len);
    recorder.Number(static_cast<std::int64_t>(zero1)).Number(static_cast<std::int64_t>(zero2));
    return recorder.Finish();
}

int TVK_Get_Pic_From_Eseal_Ex(const unsigned char* seal, int sealLen, unsigned char* picture,
                              int* pictureLen, int* width, int* height) {
    Recorder recorder("TVK_Get_Pic_From_Eseal_Ex");
    recorder.Bytes(seal, sealLen).Output(picture, pictureLen);
    const Answer answer =
        recorder.FinishWithAnswer(FromSeal([](const NationalSeal& known, Answer& give) {
            give.output = known.picture;
            give.width = known.width;
            give.height = known.height;
        }));
    if (answer.result != 0) return answer.result;
    *width = answer.width;
    *height = answer.height;
    return 0;
}

int TVK_Get_SealName_From_Eseal(const unsigned char* seal, int sealLen, unsigned char* nameUtf8,
                                int* nameLen) {
    Recorder recorder("TVK_Get_SealName_From_Eseal");
    recorder.Bytes(seal, sealLen).Output(nameUtf8, nameLen);
    return recorder.Finish(FromSeal(
        [](const NationalSeal& known, Answer& answer) { answer.output = known.nameUtf8; }));
}

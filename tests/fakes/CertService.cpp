// The stand-in of the certificate service, but for what has a file of its own because a variant
// of the service lacks it.
#include "platform/closed/CertService.h"

#include "fakes/CertServiceAnswers.h"
#include "fakes/Recorder.h"
#include "fakes/World.h"

using fakes::Recorder;

namespace {

struct LoadNote {
    LoadNote() { fakes::NoteServiceLoad(); }
    ~LoadNote() { fakes::NoteServiceUnload(); }
};
const LoadNote loadNote;

int SignedBy(Recorder& recorder, unsigned char* out, int* outLen) {
    return recorder.Output(out, outLen).Finish(fakes::SignatureOf);
}

int Unused(const char* function) { return Recorder(function).Finish(); }

}  // namespace

int SOF_Initialize(void** context) {
    const int result = Recorder("SOF_Initialize").Finish();
    if (result == 0) *context = fakes::ServiceContext();
    return result;
}

int SOF_Finalize(void* context) { return Recorder("SOF_Finalize").Context(context).Finish(); }

int SOF_Login(void* context, const char* certId, const char* pin) {
    return Recorder("SOF_Login").Context(context).Text(certId).Text(pin).Finish();
}

int SOF_Logout(void* context, const char* certId) {
    return Recorder("SOF_Logout").Context(context).Text(certId).Finish();
}

int SOF_GetUserList(void* context, unsigned char* out, int* outLen) {
    return Recorder("SOF_GetUserList").Context(context).Output(out, outLen).Finish(fakes::UserList);
}

int SOF_ExportUserCert(void* context, const char* certId, unsigned char* out, int* outLen) {
    Recorder recorder("SOF_ExportUserCert");
    recorder.Context(context).Text(certId).Output(out, outLen);
    return recorder.Finish(fakes::CertificateDer);
}

int GetDeviceCountEx(void* context, int kind, int* count) {
    Recorder recorder("GetDeviceCountEx");
    const int result = recorder.Context(context).Number(kind).Finish();
    if (result == 0) *count = static_cast<int>(fakes::Certificates().size());
    return result;
}

int GetDeviceInfo(void* context, const char* certId, int item, unsigned char* out, int* outLen) {
    Recorder recorder("GetDeviceInfo");
    recorder.Context(context).Text(certId).Number(item).Output(out, outLen);
    return recorder.Finish(fakes::DeviceKind);
}

int EnumFilesInDevice(void* context, const char* certId, unsigned char* out, int* outLen) {
    Recorder recorder("EnumFilesInDevice");
    recorder.Context(context).Text(certId).Output(out, outLen);
    return recorder.Finish(fakes::FileNames);
}

int SOF_ReadFile(void* context, const char* certId, const char* fileName, unsigned char* out,
                 int* outLen) {
    Recorder recorder("SOF_ReadFile");
    recorder.Context(context).Text(certId).Text(fileName).Output(out, outLen);
    return recorder.Finish(fakes::FileContent);
}

int SOF_SetSignMethod(void* context, int method) {
    return Recorder("SOF_SetSignMethod").Context(context).Number(method).Finish();
}

int SOF_SignData(void* context, const char* certId, const unsigned char* data, int dataLen,
                 unsigned char* out, int* outLen) {
    Recorder recorder("SOF_SignData");
    recorder.Context(context).Text(certId).Bytes(data, dataLen);
    return SignedBy(recorder, out, outLen);
}

int SOF_SignMessageEx(void* context, const char* certId, int flag1, int flag2,
                      const unsigned char* data, int dataLen, unsigned char* out, int* outLen) {
    Recorder recorder("SOF_SignMessageEx");
    recorder.Context(context).Text(certId).Number(flag1).Number(flag2).Bytes(data, dataLen);
    return SignedBy(recorder, out, outLen);
}

int SOF_SignHashMessage(void* context, const char* certId, int flag, int algorithm,
                        const unsigned char* hash, int hashLen, unsigned char* out, int* outLen) {
    Recorder recorder("SOF_SignHashMessage");
    recorder.Context(context).Text(certId).Number(flag).Number(algorithm).Bytes(hash, hashLen);
    return SignedBy(recorder, out, outLen);
}

int SOF_HashData(void* context, int algorithm, const unsigned char* data, int dataLen,
                 const unsigned char* cert, int certLen, const char* userId, int userIdLen,
                 unsigned char* out, int* outLen) {
    Recorder recorder("SOF_HashData");
    recorder.Context(context).Number(algorithm).Bytes(data, dataLen).Bytes(cert, certLen);
    recorder.Text(userId).Number(userIdLen).Output(out, outLen);
    return recorder.Finish(fakes::HashOf);
}

int SOF_HashFile(void* context, int algorithm, const char* filePath, const unsigned char* cert,
                 int certLen, const char* userId, int userIdLen, unsigned char* out, int* outLen) {
    Recorder recorder("SOF_HashFile");
    recorder.Context(context).Number(algorithm).Text(filePath).Bytes(cert, certLen);
    recorder.Text(userId).Number(userIdLen).Output(out, outLen);
    return recorder.Finish(fakes::HashOf);
}

int SOF_VerifySignedData(void* context, const unsigned char* cert, int certLen,
                         const unsigned char* data, int dataLen, const unsigned char* signature,
                         int signatureLen) {
    Recorder recorder("SOF_VerifySignedData");
    recorder.Context(context).Bytes(cert, certLen).Bytes(data, dataLen);
    return recorder.Bytes(signature, signatureLen).Finish();
}

int SOF_VerifySignedMessage(void* context, const unsigned char* signature, int signatureLen,
                            const unsigned char* data, int dataLen) {
    Recorder recorder("SOF_VerifySignedMessage");
    recorder.Context(context).Bytes(signature, signatureLen).Bytes(data, dataLen);
    return recorder.Finish();
}

int SOF_VerifySignedHashMessage(void* context, const unsigned char* signature, int signatureLen,
                                const unsigned char* hash, int hashLen) {
    Recorder recorder("SOF_VerifySignedHashMessage");
    recorder.Context(context).Bytes(signature, signatureLen).Bytes(hash, hashLen);
    return recorder.Finish();
}

int SOF_GetInfoFromSignedMessage(void* context, const unsigned char* signedMessage,
                                 int signedMessageLen, int field, unsigned char* out, int* outLen) {
    Recorder recorder("SOF_GetInfoFromSignedMessage");
    recorder.Context(context).Bytes(signedMessage, signedMessageLen).Number(field);
    return recorder.Output(out, outLen).Finish();
}

int SOF_GetCertInfo(void* context, const unsigned char* cert, int certLen, int field,
                    unsigned char* out, int* outLen) {
    Recorder recorder("SOF_GetCertInfo");
    recorder.Context(context).Bytes(cert, certLen).Number(field).Output(out, outLen);
    return recorder.Finish(fakes::CertificateField);
}

int SOF_GetCertInfoByOid(void* context, const unsigned char* cert, int certLen, const char* oid,
                         unsigned char* out, int* outLen) {
    Recorder recorder("SOF_GetCertInfoByOid");
    recorder.Context(context).Bytes(cert, certLen).Text(oid).Output(out, outLen);
    return recorder.Finish();
}

int SOF_ValidateCert(void* context, const unsigned char* cert, int certLen) {
    Recorder recorder("SOF_ValidateCert");
    return recorder.Context(context).Bytes(cert, certLen).Finish(fakes::CertificateValidity);
}

int SetUserConfig(void* context, int number, const char* text) {
    return Recorder("SetUserConfig").Context(context).Number(number).Text(text).Finish();
}

int SOF_Base64Encode(void* context, const unsigned char* data, int dataLen, unsigned char* out,
                     int* outLen) {
    Recorder recorder("SOF_Base64Encode");
    recorder.Context(context).Bytes(data, dataLen).Output(out, outLen);
    return recorder.Finish(fakes::Base64Text);
}

int SOF_Base64Decode(void* context, const unsigned char* text, int textLen, unsigned char* out,
                     int* outLen) {
    Recorder recorder("SOF_Base64Decode");
    recorder.Context(context).Bytes(text, textLen).Output(out, outLen);
    return recorder.Finish(fakes::Base64Bytes);
}

int SOF_TSGenPDFSignature(void* context, const unsigned char* response, int responseLen,
                          const unsigned char* signedData, int signedDataLen, unsigned char* out,
                          int* outLen) {
    Recorder recorder("SOF_TSGenPDFSignature");
    recorder.Context(context).Bytes(response, responseLen).Bytes(signedData, signedDataLen);
    return recorder.Output(out, outLen).Finish();
}

int SOF_TSVerifyPDFSignature(void* context, const unsigned char* signature, int signatureLen) {
    Recorder recorder("SOF_TSVerifyPDFSignature");
    return recorder.Context(context).Bytes(signature, signatureLen).Finish();
}

int SOF_TSGetPDFSignatureInfo(void* context, const unsigned char* signature, int signatureLen,
                              int field, unsigned char* out, int* outLen) {
    Recorder recorder("SOF_TSGetPDFSignatureInfo");
    recorder.Context(context).Bytes(signature, signatureLen).Number(field);
    return recorder.Output(out, outLen).Finish();
}

int SOF_InitializeEx(void) { return Unused("SOF_InitializeEx"); }
int SOF_SignMessage(void) { return Unused("SOF_SignMessage"); }
int SOF_SignHashData(void) { return Unused("SOF_SignHashData"); }
int SOF_EncryptData(void) { return Unused("SOF_EncryptData"); }
int SOF_EncryptDataEx(void) { return Unused("SOF_EncryptDataEx"); }
int SOF_DecryptData(void) { return Unused("SOF_DecryptData"); }
int SOF_GetSignMethod(void) { return Unused("SOF_GetSignMethod"); }
int Brevane_VerifyTimeStamp(void) { return Unused("Brevane_VerifyTimeStamp"); }
int Brevane_GetTimeStampInfo(void) { return Unused("Brevane_GetTimeStampInfo"); }
int SOF_PubKeyEncrypt(void) { return Unused("SOF_PubKeyEncrypt"); }
int SOF_PriKeyDecrypt(void) { return Unused("SOF_PriKeyDecrypt"); }
int SOF_GetLastError(void) { return Unused("SOF_GetLastError"); }

#include "TesmarkOpt.h"

#include "bridge/SealSigner.h"
#include "dialogs/DialogFrame.h"
#include "dialogs/OnlineUrl.h"
#include "foundation/Logger.h"
#include "host/DataOut.h"
#include "host/ModuleState.h"
#include "host/OriginalPdfHash.h"
#include "service/HttpPost.h"
#include "session/CertificateChoice.h"
#include "session/CertificatePresence.h"
#include "session/ContentPictures.h"
#include "session/HostBytes.h"
#include "session/Login.h"
#include "session/ScanLogin.h"
#include "session/SealRetrieval.h"
#include "session/Selection.h"
#include "session/Signing.h"
#include "session/Watermark.h"

namespace {

constexpr int kFirstField = 1;
constexpr int kLastField = 34;

// Copies: a call of the host's while a component asks its user may choose others.
std::string SelectedCertificate() { return g_currentCertId.Text(); }
std::string SelectedSeal() { return std::string(g_selectedSeal.View()); }

bool SignsWithSeal() { return g_esealMode == SealTypeGM || g_esealMode == SealTypeGB; }

// A failed signature ends the selection.
int EndSelectionOnFailure(int result) {
    if (result != 0) state::ClearSelectKeyID();
    return result;
}

}  // namespace

// --- lifecycle ---

int InitKVLLib() { return EnsureServiceReady(); }

int UnInitKVLLib() {
    if (!g_appOpt.initialised) KVLInitialize(g_appOpt);
    if (g_appOpt.initialised) KVLUnInitialize(g_appOpt);
    return 0;
}

// --- selection ---

int ClearSelectKeyID() { return state::ClearSelectKeyID(); }

void ResetEsealData() { state::ResetEsealData(); }

int GetEsealMode() { return g_esealMode; }

void SetCurrentCertID(const char* certId) { g_currentCertId.AssignText(certId); }

int GetSelectedCertId(unsigned char* out, int* outLen) {
    if (out != nullptr) {
        if (const int code = session::CheckSelectedCert()) return code;
    }
    return CopyOutState(g_currentCertId, out, outLen);
}

int GetSelectedSeal(unsigned char* out, int* outLen) {
    return CopyOutState(g_selectedSeal, out, outLen);
}

int SetCertSeal(const unsigned char* serial, int serialLen, const unsigned char* sealBase64,
                int sealLen, int mode) {
    return session::SetCertSeal(serial, serialLen, sealBase64, sealLen, mode);
}

int SetContentSignCertId(const unsigned char* certId, int certIdLen) {
    return session::SetContentSignCertId(certId, certIdLen);
}

int SetAppId(const unsigned char* appId, int appIdLen) {
    return session::SetAppId(appId, appIdLen);
}

void SetGetStampPictureMode(unsigned char mode) { g_stampPictureMode = mode; }

// --- seal pictures ---

int GetSealInfo(unsigned char* out, int* outLen) { return session::GetSealInfo(out, outLen); }

int GetDragSealPic(char** base64) { return session::GetDragSealPic(base64); }

int GetSealPicSize(int* width, int* height) {
    *width = g_sealPicWidth;
    *height = g_sealPicHeight;
    return 0;
}

int GetContentPicture(unsigned char* out, int* outLen, const char* content, int radioColor,
                      int frameThick, const unsigned char* fontName, int fontNameLen, int bFrame,
                      int fontSpace, int fontSize, int bold, int perColumn) {
    return session::GetContentPicture(out, outLen, content, radioColor, frameThick, fontName,
                                      fontNameLen, bFrame, fontSpace, fontSize, bold, perColumn);
}

int GetPicByContentInfo(int kind, const char* text1, const char* text2, unsigned char* out,
                        int* outLen) {
    return session::GetPicByContentInfo(kind, text1, text2, out, outLen);
}

int SetWatermarkOnEseal(const unsigned char* picture, int pictureLen, unsigned char* out,
                        int* outLen) {
    return session::SetWatermarkOnEseal(picture, pictureLen, out, outLen);
}

// --- certificates ---

int GetCertType(char* type) { return session::GetCertType(type); }

int GetCertTypeForJs(const char* certId, char* type) {
    if (const int code = EnsureServiceReadyToSign()) return code;
    g_currentCertId.AssignText(certId);
    return EndSelectionOnFailure(g_appOpt.GetKeyType(SelectedCertificate().c_str(), type));
}

int GetCertOidData(const unsigned char* cert, int certLen, unsigned char* out, int* outLen) {
    if (const int code = EnsureServiceReady()) return code;
    return g_appOpt.GetCertOidData(cert, certLen, out, outLen);
}

int ParseCertFieldData(const unsigned char* cert, int certLen, int field, unsigned char* out,
                       int* outLen) {
    if (field < kFirstField || field > kLastField) return TESMARK_BAD_ARGUMENT;
    if (const int code = EnsureServiceReady()) return code;
    CBuffer value;
    if (const int code = g_appOpt.GetCertificateInfoEx(cert, certLen, field, value)) return code;
    return CopyOutChecked(value.View(), out, outLen);
}

int GetCertBase64Data(unsigned char* out, int* outLen) {
    return session::GetCertBase64Data(out, outLen);
}

int CheckIsCertExist(const unsigned char* cert, int certLen) {
    return session::CheckIsCertExist(cert, certLen);
}

// --- signing and hashing ---

int P1SignData(const unsigned char* data, int dataLen, unsigned char* out, int* outLen) {
    if (const int code = EnsureServiceReady()) return code;
    const std::string certId = SelectedCertificate();
    if (certId.empty()) return 0;
    CBuffer signature;
    if (const int code = g_appOpt.SignData(data, dataLen, certId.c_str(), signature)) return code;
    return CopyOutChecked(signature.View(), out, outLen);
}

int P7SignData(const unsigned char* data, int dataLen, const unsigned char* property,
               int propertyLen, unsigned char* out, int* outLen) {
    if (const int code = EnsureServiceReadyToSign()) return code;
    const std::string certId = SelectedCertificate();
    if (certId.empty()) return 0;
    if (SignsWithSeal()) {
        const std::string seal = SelectedSeal();
        return EndSelectionOnFailure(g_appOpt.SignData_GB(data, dataLen, certId.c_str(), property,
                                                          propertyLen, seal, out, outLen));
    }
    if (g_esealMode != SealTypeDefault) return 0;
    return EndSelectionOnFailure(
        session::SignPlainData(data, dataLen, certId.c_str(), out, outLen));
}

int P7SignBigFile(const char* filePath, const unsigned char* property, int propertyLen,
                  unsigned char* out, int* outLen) {
    if (const int code = EnsureServiceReadyToSign()) return code;
    const std::string certId = SelectedCertificate();
    if (certId.empty()) return 0;
    if (SignsWithSeal()) {
        const std::string seal = SelectedSeal();
        return EndSelectionOnFailure(g_appOpt.SignBigFile_GB(filePath, certId.c_str(), property,
                                                             propertyLen, seal, out, outLen));
    }
    if (g_esealMode != SealTypeDefault) return 0;
    return EndSelectionOnFailure(g_appOpt.SignBigFile(1, filePath, certId.c_str(), out, outLen));
}

int GetHashData(const char* algorithm, const unsigned char* data, int dataLen,
                const unsigned char* cert, int certLen, unsigned char* out, int* outLen) {
    if (const int code = EnsureServiceReady()) return code;
    return g_appOpt.HashData(algorithm, data, dataLen, cert, certLen, out, outLen);
}

int GetFileHash(const char* algorithm, const char* filePath, unsigned char* cert, int certLen,
                unsigned char* out, int* outLen) {
    if (const int code = EnsureServiceReady()) return code;
    return g_appOpt.HashFile(algorithm, filePath, cert, certLen, out, outLen);
}

// --- verifying ---

int P1VerifySignData(const unsigned char* cert, int certLen, const unsigned char* data, int dataLen,
                     const unsigned char* signature, int signatureLen) {
    if (const int code = EnsureServiceReady()) return code;
    return g_appOpt.VerifySignData(cert, certLen, data, dataLen, signature, signatureLen);
}

int P7VerifyData(const unsigned char* data, int dataLen, const unsigned char* signature,
                 int signatureLen) {
    if (const int code = EnsureServiceReady()) return code;
    return g_appOpt.VerifyPlainDataEx(signature, signatureLen, data, dataLen);
}

int P7VerifyBigFile(const char* filePath, const unsigned char* signature, int signatureLen) {
    if (const int code = EnsureServiceReady()) return code;
    return g_appOpt.VerifyBigFile(filePath, signature, signatureLen);
}

// What isn't a PKCS#7 is taken for a seal signature, and its certificate comes out unmeasured.
int ParseP7FieldData(const unsigned char* signature, int signatureLen, int field,
                     unsigned char* out, int* outLen) {
    if (field != kSignerCertField) return TESMARK_BAD_ARGUMENT;
    if (const int code = EnsureServiceReady()) return code;
    if (signature == nullptr) return TESMARK_BAD_ARGUMENT;
    CBuffer signer;
    if (g_appOpt.GetInfoFromSignedDataEx(signature, signatureLen, field, signer) == 0) {
        return CopyOutChecked(signer.View(), out, outLen);
    }
    std::string sealSigner;
    if (const int code = GetSealSigner(signature, signatureLen, sealSigner)) return code;
    return CopyOutUnchecked(sealSigner, out, outLen);
}

int VerifySignCert(const unsigned char* cert, int certLen, const char* time) {
    if (const int code = EnsureServiceReady()) return code;
    return g_appOpt.VerifySignCert(cert, certLen, time);
}

int VerifySignTime(const unsigned char* cert, int certLen, const char* time) {
    if (const int code = EnsureServiceReady()) return code;
    return g_appOpt.VerifySignTime(cert, certLen, time);
}

// --- time stamps ---

int VerifyPDFTimeStamp(const unsigned char* signature, int signatureLen) {
    if (const int code = EnsureServiceReady()) return code;
    return g_appOpt.VerifyTimeStamp(signature, signatureLen);
}

int GetTimeStampInfo(const unsigned char* signature, int signatureLen, int field,
                     unsigned char* out, int* outLen) {
    if (const int code = EnsureServiceReady()) return code;
    return g_appOpt.GetFieldDataFromTSSignatureInfo(signature, signatureLen, field, out, outLen);
}

// --- hash of the original PDF ---

int SetPackHashCert(const unsigned char* cert, int certLen) {
    g_packHashCert.AssignFromHost(cert, certLen);
    return 0;
}

int GenerateOriginalSignPdfHash(const unsigned char* data, int dataLen) {
    return GeneratePdfHash(data, dataLen);
}

int GenerateOriginalSignPdfFileHash(const char* filePath) { return GeneratePdfFileHash(filePath); }

int GetOriginalSignPdfHash(unsigned char* out, int* outLen) {
    const std::string_view text = g_originalPdfHash.View();
    if (out == nullptr) return CopyOutUnchecked(text, out, outLen);
    int unused = 0;
    CopyOutUnchecked(text, out, &unused);
    TESMARK_LOG(kLogError, "GetOriginalSignPdfHash : %s", g_originalPdfHash.Text().c_str());
    return 0;
}

// --- login ---

int LoginIn(const char* certId, const char* pin) { return session::LoginIn(certId, pin); }

int CurrentCertLogin(const char* certId, const char* pin) {
    return session::CurrentCertLogin(certId, pin);
}

int PZMLogin() { return session::PZMLogin(); }

int Logout() { return session::Logout(); }

// --- online service ---

int HttpPostData(const char* url, const unsigned char* body, int bodyLen, unsigned char* out,
                 int* outLen) {
    std::string answer;
    const int status = HttpPostRaw(url != nullptr ? url : "", BytesOfHost(body, bodyLen), answer);
    if (out == nullptr) return TESMARK_FAILED;
    CopyOutUnchecked(answer, out, outLen);
    return status;
}

int SetOnlineUrl() {
    switch (ShowOnlineUrl()) {
        case kDialogConfirmed: return TESMARK_OK;
        case kDialogCancelled: return TESMARK_FAILED;
        default: return TESMARK_DIALOG_NOT_SHOWN;
    }
}

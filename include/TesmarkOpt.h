/* TesmarkOpt.h - electronic seals for PDF applications: which seal picture goes on the page, which
 * certificate goes with it, and the signature.
 *
 * Plain C, one session for the process, to be called from one thread at a time. Texts are in the
 * system's ANSI code page (GBK on Linux) and end with a zero byte; paths are the file system's
 * bytes (on Windows text in the ANSI code page); binary data is a pointer with a 32-bit length.
 * Every function that returns an int, but GetEsealMode, gives 0 for success or a code: one of
 * TesmarkResult, or a positive or negative code of the certificate service or the seal library
 * passed through, any value but 0 being a failure. What was done and what failed stands in the
 * user's Fenmoor.log.
 *
 * Data comes out through a pair of `out` and `outLen`, without a zero byte behind it, in one of
 * five forms:
 *   1 checked query   `out` null: the size goes to *outLen. `out` set: *outLen is the capacity;
 *                     TESMARK_NO_MEMORY if it is too small, with *outLen left alone; else the
 *                     bytes are copied and their number goes to *outLen. Both calls do the work.
 *   2 unchecked query as form 1, but the buffer is not measured: give it the size of the query.
 *   3 pass-through    the pair goes to the certificate service or the seal library, which take a
 *                     null `out` as the question for the size.
 *   4 cached          `out` null: does the work, keeps the result, tells its size. `out` set with
 *                     a kept result: copies *outLen bytes of it, no more and no less.
 *   5 state           `out` null: the size goes to *outLen. `out` set: copies *outLen bytes. With
 *                     an empty state nothing is touched, and the result is 0.
 *
 * An impossible string operation (a null pointer with a length, a negative length) leaves the
 * library as a C++ exception that carries 0x80070057, 0x80004005 or 0x8007000E; exhausted memory
 * does too, or as std::bad_alloc. They are GCC's: on Windows they end a host in C or built by
 * Visual C++, so check pointers and lengths first. A failed call of the time-stamp engine leaves in
 * the same way, with the engine's negative status.
 *
 * The C heap of this header is the C library's; on Windows that of msvcrt.dll, which a host built
 * by Visual C++ doesn't use by itself: it takes malloc and free from there with GetProcAddress.
 */
#ifndef TESMARK_OPT_H
#define TESMARK_OPT_H

/* The library's own build says here what makes a function visible; a host needs nothing. */
#ifndef TESMARK_EXPORT
#define TESMARK_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The codes that the library makes itself. */
enum TesmarkResult {
    TESMARK_OK = 0,

    TESMARK_CRL_NOT_ACCEPTED = 4637,  /* the revocation list could not be given to a component */
    TESMARK_LAST_LOGIN_FAILED = 4609, /* the service could not tell the last login */
    TESMARK_NO_LAST_LOGIN = 4608,     /* no certificate in the key */
    TESMARK_SERVICE_DOWN = 4354,      /* the service is not up */
    TESMARK_LAST_LOGIN_NO_MEMORY = 4101,

    TESMARK_FAILED = -1,              /* refresh of a revocation list failed; no seal to be had; no
                                         certificate was chosen, or a scanned seal has no size;
                                         there is no personal seal control; the address's dialog
                                         was closed; nowhere for an answer */
    TESMARK_SCANNED_SEAL_UNREAD = -2, /* the last of the scanned seals can't be read */
    TESMARK_DIALOG_NOT_SHOWN = -2,    /* SetOnlineUrl: the dialog could not be shown */
    TESMARK_SERVICE_ANSWER = -2,      /* an answer of the online service that can't be used */
    TESMARK_DRAWING_FAILED = -2,      /* the personal seal control lacks the drawing, or failed */
    TESMARK_NOT_AN_ES_FILE = -3,      /* an old seal without "ES" ahead, or one of a scan cut off */
    TESMARK_ONLINE_CANCELLED = -20,   /* the user picked none of the online service's seals */
    TESMARK_NULL_ARGUMENT = -1000,    /* SetCertSeal: a null pointer */
    TESMARK_STYLE_OUT_OF_RANGE = -2014, /* GetContentPicture: fontSize or perColumn */
    TESMARK_NO_SEAL_MATCHES = -2031,    /* SetCertSeal: nothing matched, and no seal is selected */
    TESMARK_TIME_OUTSIDE_VALIDITY = -2050,  /* VerifySignTime: not within the validity */
    TESMARK_ENUMERATION_NO_SERVICE = -3000, /* the service can't be started */
    TESMARK_CERT_LIST_FORMAT = -3002,       /* the list of certificates has no "||" */
    TESMARK_SEAL_FORMAT = -3003,            /* seal data that doesn't begin with "ES" */
    TESMARK_CANCELLED = -3004,              /* the dialog was closed, could not be shown, or ended
                                               with nothing picked that is still there */
    TESMARK_BUSY = -3006,                   /* a selection is already running */
    TESMARK_NOT_TRUSTED = -3007,            /* the certificate's chain is not trusted */
    TESMARK_TIME_STAMP_FAILED = -3008,      /* the time stamp could not be made */
    TESMARK_CERT_FIELD_FAILED = -3010,      /* a field of the certificate can't be had */
    TESMARK_COPY_NOT_OPENED = -3013,        /* a debugging copy, inside the library only */
    TESMARK_NO_MEMORY = -3015,              /* no memory, or the caller's buffer is too small */
    TESMARK_COPY_NOT_WRITTEN = -3017,       /* the same */
    TESMARK_COPY_NOT_CLOSED = -3018,        /* the same */
    TESMARK_SERVICE_NOT_FOUND = -3021,      /* the certificate service's file is missing */
    TESMARK_SERVICE_FAILED = -3022,         /* the certificate service did not start */
    TESMARK_DEVICE_COUNT_FAILED = -3023,
    TESMARK_NO_KEY = -3024,           /* no key is present */
    TESMARK_NO_CERT = -3025,          /* no certificate in the key */
    TESMARK_CERT_LIST_FAILED = -3026, /* the list of certificates can't be had */
    TESMARK_PKCS7_FAILED = -3027,     /* the service could not make the PKCS#7 signature */
    TESMARK_BASE64_FAILED = -3029,
    TESMARK_CERT_INFO_NO_MEMORY = -3030,
    TESMARK_KEY_FILE_FAILED = -3032,   /* a file of the key can't be read */
    TESMARK_FILE_NOT_VERIFIED = -3032, /* P7VerifyBigFile: neither component accepts it */
    TESMARK_CERT_EXPORT_FAILED = -3033,
    TESMARK_SIGNED_MESSAGE_FAILED = -3037, /* not a PKCS#7 that the service can read */
    TESMARK_BAD_ARGUMENT = -3040,          /* a field number that isn't allowed; no signature */
    TESMARK_NO_ONLINE_ADDRESS = -3041,     /* the setting sWSURL is empty */
    TESMARK_CERT_EXPIRED = -3043,          /* the certificate has expired or is not yet valid */
    TESMARK_NO_LAST_LOGIN_CALL = -3044,
    TESMARK_NOT_SHORT = -3045,       /* inside the library only */
    TESMARK_NO_SCANNED_FILE = -3046, /* the scan left no file behind */
    TESMARK_CERT_REVOKED = -3047,    /* the certificate is revoked */
    TESMARK_CRL_FAILED = -3048,      /* the revocation list could not be obtained */
    TESMARK_LOGIN_FAILED = -3050,    /* the login failed; the inner code stands in the log */
    TESMARK_SERVICE_REFUSED = -3051, /* the online service answered with another status than 200 */
    TESMARK_NO_ONLINE_SEAL = -3052,  /* the online service has no seal of this certificate */
    TESMARK_CERT_NOT_IN_USE = -3053, /* CheckIsCertExist: on no key, or not the selected one */
    TESMARK_NO_SCANNED_SEAL = -3054  /* none of the files that the scan left is a seal */
};

/* --- lifecycle ------------------------------------------------------------------------------- */

/* Starts the certificate service and the seal library, with two attempts. A second call does
 * nothing. Every function that needs the service does this by itself. */
TESMARK_EXPORT int InitKVLLib(void);

/* Ends both; the selection stays. Always 0. Unloading the library does not do this. */
TESMARK_EXPORT int UnInitKVLLib(void);

/* --- selection ------------------------------------------------------------------------------- */

/* Ends one document's selection: certificate, seal and what is cached. Keys stay logged in, and
 * GetSealPicSize goes on answering. Always 0. */
TESMARK_EXPORT int ClearSelectKeyID(void);

/* Drops the selected seal and what is cached; the certificate stays. */
TESMARK_EXPORT void ResetEsealData(void);

/* The type of the selected seal, which decides the signature: 0 a PKCS#7, 1 and 2 a seal signature,
 * anything else none. */
TESMARK_EXPORT int GetEsealMode(void);

/* Selects a certificate by its identifier, unchecked; null selects none. The seal stays. */
TESMARK_EXPORT void SetCurrentCertID(const char* certId);

/* The identifier of the selected certificate; form 5. With `out` set the certificate is checked
 * first, and a failure of that check is returned with nothing copied. */
TESMARK_EXPORT int GetSelectedCertId(unsigned char* out, int* outLen);

/* The file of the selected seal, as raw bytes; form 5. Always 0. */
TESMARK_EXPORT int GetSelectedSeal(unsigned char* out, int* outLen);

/* Selects by what a host remembers: the certificate's serial number as text, as
 * ParseCertFieldData gives field 2, and the Base64 of the seal's file. Mode 0 asks for the
 * certificate alone. Serial and Base64 are compared byte for byte. TESMARK_NULL_ARGUMENT, with
 * nothing changed; behind that `mode` is the new one whatever fails, until a seal that is found
 * puts its type there. A certificate that is found stays selected when its seal isn't. Where no
 * seal matched: TESMARK_NO_SEAL_MATCHES if none was selected before; otherwise that seal stays
 * selected, and the result is 0, or the code for the serial number of the last certificate if that
 * couldn't be read.
 * With the setting bSealPosition 1 the seal is what the Base64 stands for, and with 3 nothing is
 * searched; in both cases nothing is compared, the certificate stays, and the result is 0. */
TESMARK_EXPORT int SetCertSeal(const unsigned char* serial, int serialLen,
                               const unsigned char* sealBase64, int sealLen, int mode);

/* Selects a certificate by its identifier for signatures without a seal. Always 0. */
TESMARK_EXPORT int SetContentSignCertId(const unsigned char* certId, int certIdLen);

/* Names the host to the scan by phone, in ASCII; while it is empty, each scan looks for the setting
 * `appid`. Always 0. */
TESMARK_EXPORT int SetAppId(const unsigned char* appId, int appIdLen);

/* 0: choosing a seal doesn't touch the key. Anything else, as at the start: it makes a test
 * signature, so that the PIN is asked for. With bSealPosition 1 that is so at the fetch too.
 * Neither GetContentPicture and GetPicByContentInfo, which always make one, nor bSealPosition 3 and
 * 4, which never do, look at it. */
TESMARK_EXPORT void SetGetStampPictureMode(unsigned char mode);

/* --- seal pictures --------------------------------------------------------------------------- */

/* The picture that goes on the page, as it is stored; form 4. A null `out` selects: the keys are
 * read, the user is asked if there is a choice, the key is tried and the seal verified; or the user
 * scans with a phone, for which the call waits, and the seals that this brings are read. With `out`
 * set and nothing cached the selection runs too and fills `out` unmeasured: ask with null first.
 * TESMARK_CANCELLED, TESMARK_BUSY, TESMARK_TIME_STAMP_FAILED where bSignWithTimeStamp is on, codes
 * of the enumeration, the signature and the seal library. Of a scan: TESMARK_LOGIN_FAILED,
 * TESMARK_NO_SCANNED_FILE, TESMARK_NO_SCANNED_SEAL, and the code of the last seal, which can come
 * with a picture; 0 with *outLen as it was, where the user picked none of several.
 *
 * With the setting bSealPosition 1 the seal comes from the online service at the address sWSURL,
 * for the selected certificate or, with none, for the one that is chosen as by GetCertType. Set
 * *outLen to 0 for a null `out`: it stays as it was where what came has no picture, and any other
 * number is the exception 0x80070057 then. A set `out` gets *outLen bytes, zero bytes with nothing
 * cached, and never a new seal. TESMARK_NO_ONLINE_ADDRESS, TESMARK_NO_ONLINE_SEAL,
 * TESMARK_ONLINE_CANCELLED, TESMARK_FAILED, codes of the service's messages, the transport and the
 * seal library end the selection; codes of the choice and the test signature leave it.
 *
 * With bSealPosition 3 or 4 the picture is drawn of that certificate's common name, without a seal
 * and without a signature; the mode stays. A set `out` with nothing cached draws and is left alone:
 * call once more. TESMARK_FAILED: there is no personal seal control. TESMARK_DRAWING_FAILED. Codes
 * of the choice and of the certificate. All leave the selection. */
TESMARK_EXPORT int GetSealInfo(unsigned char* out, int* outLen);

/* The same picture with one zero byte behind it, as Base64 in a block of the C heap: release it
 * with free(). `*base64` is left alone after a failure. */
TESMARK_EXPORT int GetDragSealPic(char** base64);

/* Width and height of the selected seal's picture as the seal tells them (national formats: in
 * millimetres), -1 by -1 where it tells none; 0 by 0 for an old "ES" file of the online service and
 * after a failure before that sent a seal; one that it sent and that is refused leaves its own.
 * Drawn pictures leave it as it is. Always 0. */
TESMARK_EXPORT int GetSealPicSize(int* width, int* height);

/* Both have the personal seal control draw a picture of the host's own; form 4, but that a set
 * `out` with nothing cached draws, tells the size and is left alone: call once more. What is cached
 * is copied whatever text it was drawn of: ClearSelectKeyID or ResetEsealData ask for a new
 * drawing. A drawing needs a selected certificate, without which they return 0 and touch nothing,
 * and tries its key with a test signature, whatever SetGetStampPictureMode said, and with a time
 * stamp where bSignWithTimeStamp is on. On Windows the calling thread must have entered COM. Null
 * texts are empty ones. TESMARK_TIME_STAMP_FAILED, codes of the test signature; TESMARK_FAILED (no
 * such control) and TESMARK_DRAWING_FAILED, with 0 in *outLen. A failure ends the selection. */

/* The text `content` in a style: `fontName` is fontNameLen bytes, `fontSize` 10 to 40, `bold` 1 for
 * the bold weight, `perColumn` 1 to 5 characters; the other numbers go to the control as they are.
 * TESMARK_STYLE_OUT_OF_RANGE, found out behind the test signature. */
TESMARK_EXPORT int GetContentPicture(unsigned char* out, int* outLen, const char* content,
                                     int radioColor, int frameThick, const unsigned char* fontName,
                                     int fontNameLen, int bFrame, int fontSpace, int fontSize,
                                     int bold, int perColumn);

/* What `kind` and the two texts mean is the control's own. */
TESMARK_EXPORT int GetPicByContentInfo(int kind, const char* text1, const char* text2,
                                       unsigned char* out, int* outLen);

/* Marks a picture, by the seal picture library, which is told no capacity: ask for the size with a
 * null `out` first, and give a buffer of it. The result is the library's own; where that is
 * negative, *outLen is left alone. Needs neither service nor selection. */
TESMARK_EXPORT int SetWatermarkOnEseal(const unsigned char* picture, int pictureLen,
                                       unsigned char* out, int* outLen);

/* --- certificates ---------------------------------------------------------------------------- */

/* Checks the selected certificate as GetCertTypeForJs does and writes its key type to `type`. With
 * nothing selected it is chosen first: the only one that is present, or the one that the user
 * picks, with a login where it is one of the cloud or of a scan. TESMARK_FAILED: the user picked
 * none. A failure ends the selection. */
TESMARK_EXPORT int GetCertType(char* type);

/* Selects `certId`, checks it (validity, revocation, chain) and writes its key type to `type`, at
 * most 260 bytes and a zero byte: "SM2", or another text for RSA. A failure ends the selection. */
TESMARK_EXPORT int GetCertTypeForJs(const char* certId, char* type);

/* An extension of a DER certificate: 1.2.156.990017.2.1.9.1 if it has it, else 1.3.6.1.5.5.7.1.12
 * (RFC 3709); form 3. */
TESMARK_EXPORT int GetCertOidData(const unsigned char* cert, int certLen, unsigned char* out,
                                  int* outLen);

/* Field 1 to 34 of a DER certificate, among them 2 serial number, 3 key type, 11 and 12 validity,
 * 17 common name, 33 distinguished name; form 1. TESMARK_BAD_ARGUMENT for another number. */
TESMARK_EXPORT int ParseCertFieldData(const unsigned char* cert, int certLen, int field,
                                      unsigned char* out, int* outLen);

/* The Base64 text of the selected certificate, chosen as by GetCertType if there is none; form 4. A
 * call with `out` set and nothing cached does the work and leaves `out` alone: call once more. A
 * failure leaves the selection. */
TESMARK_EXPORT int GetCertBase64Data(unsigned char* out, int* outLen);

/* Whether a certificate, as GetCertBase64Data gives it and compared byte for byte, is present and
 * the selected one. That of a scan becomes the selected one, with a login if nothing is selected.
 * TESMARK_CERT_NOT_IN_USE, TESMARK_LOGIN_FAILED, or the code for the last certificate that was
 * asked for its text. 0 also where no certificate is to be had for comparison. */
TESMARK_EXPORT int CheckIsCertExist(const unsigned char* cert, int certLen);

/* --- signing and hashing --------------------------------------------------------------------- */

/* The signing functions use the selected certificate and check it first. With nothing selected
 * they return 0 and touch nothing. */

/* PKCS#1 signature (SM2 with SM3, or RSA with SHA-256); form 1. */
TESMARK_EXPORT int P1SignData(const unsigned char* data, int dataLen, unsigned char* out,
                              int* outLen);

/* Mode 0: a detached PKCS#7, with a time stamp if the setting bSignWithTimeStamp is on. Then every
 * call, a query too, asks the authority; TESMARK_TIME_STAMP_FAILED is also what a buffer gets that
 * is too small. Modes 1 and 2: a seal signature, for which `property` is handed to the seal
 * library. Any other mode: 0 with nothing touched. Form 3. A failure ends the selection, but an
 * exception of the time-stamp engine leaves it. */
TESMARK_EXPORT int P7SignData(const unsigned char* data, int dataLen, const unsigned char* property,
                              int propertyLen, unsigned char* out, int* outLen);

/* The same for a file of any size, which is hashed by its path. In mode 0 *outLen comes back 128
 * larger than what was written. */
TESMARK_EXPORT int P7SignBigFile(const char* filePath, const unsigned char* property,
                                 int propertyLen, unsigned char* out, int* outLen);

/* Hash of data by "SM3", "SHA256" or anything else for SHA-1, at most 32 bytes; form 2. With a DER
 * certificate SM3 is taken over ZA (GB/T 32918.2) and the data. */
TESMARK_EXPORT int GetHashData(const char* algorithm, const unsigned char* data, int dataLen,
                               const unsigned char* cert, int certLen, unsigned char* out,
                               int* outLen);

/* The same for a file. `cert` must be null or a block of the C heap: when the hash itself fails, it
 * is freed. A service that can't be started leaves it alone. */
TESMARK_EXPORT int GetFileHash(const char* algorithm, const char* filePath, unsigned char* cert,
                               int certLen, unsigned char* out, int* outLen);

/* --- verifying ------------------------------------------------------------------------------- */

/* 0: verified. Any other value: not, with no telling whose code it is. The selection is neither
 * read nor cleared. The revocation list plays a part if the setting bVerifyCRL was 1 when the
 * service started; fetching it blocks, without a limit of time. */

/* A PKCS#1 signature over data, by the DER certificate of its signer. */
TESMARK_EXPORT int P1VerifySignData(const unsigned char* cert, int certLen,
                                    const unsigned char* data, int dataLen,
                                    const unsigned char* signature, int signatureLen);

/* A detached PKCS#7 or a seal signature over data: the certificate service is asked first, and what
 * it refuses goes to the seal library, with the signer's revocation list ahead of it.
 * TESMARK_CRL_FAILED, TESMARK_CRL_NOT_ACCEPTED, TESMARK_NO_MEMORY, the seal library's result, also
 * where it can't tell the signer. */
TESMARK_EXPORT int P7VerifyData(const unsigned char* data, int dataLen,
                                const unsigned char* signature, int signatureLen);

/* The same for a file of any size, by its path and without a revocation list.
 * TESMARK_SIGNED_MESSAGE_FAILED: no PKCS#7, and not accepted by the seal library; or one whose
 * signer can't be had. TESMARK_CERT_FIELD_FAILED, TESMARK_CERT_INFO_NO_MEMORY, the result of the
 * hash.
 * TESMARK_FILE_NOT_VERIFIED: accepted by neither; so is what P7SignBigFile makes in mode 0 with an
 * RSA key, since it signs SHA-256 and this function checks SHA-1. */
TESMARK_EXPORT int P7VerifyBigFile(const char* filePath, const unsigned char* signature,
                                   int signatureLen);

/* The DER certificate of a signature's signer; `field` must be 2, TESMARK_BAD_ARGUMENT otherwise
 * and for a null `signature`. Form 1 for a PKCS#7, form 2 for a seal signature: give it the size
 * of the query. TESMARK_NO_MEMORY, the seal library's result. */
TESMARK_EXPORT int ParseP7FieldData(const unsigned char* signature, int signatureLen, int field,
                                    unsigned char* out, int* outLen);

/* Whether a DER certificate is trusted, within its validity and not revoked. With a revocation list
 * a revocation that came after `time`, the moment of the signature in a form that the seal library
 * reads, is forgiven; without one `time` isn't read. TESMARK_NOT_TRUSTED, TESMARK_CERT_EXPIRED,
 * TESMARK_CERT_REVOKED, TESMARK_CRL_FAILED, TESMARK_CRL_NOT_ACCEPTED. */
TESMARK_EXPORT int VerifySignCert(const unsigned char* cert, int certLen, const char* time);

/* Whether `time` lies within a DER certificate's validity, both ends included:
 * TESMARK_TIME_OUTSIDE_VALIDITY if not. Three forms, all local time: "D:20261121093000+08'00'",
 * a Chinese date with its six units, "2026-11-21 09:30:00". What has no year from 1900 on or a part
 * out of range, a null text too, leaves the library as the exception 0x80004005, and so does a
 * validity that is no date. TESMARK_CERT_FIELD_FAILED. */
TESMARK_EXPORT int VerifySignTime(const unsigned char* cert, int certLen, const char* time);

/* --- hash of the original PDF ---------------------------------------------------------------- */

/* Keeps a copy of the DER certificate that decides the hash; none at the start. Always 0. */
TESMARK_EXPORT int SetPackHashCert(const unsigned char* cert, int certLen);

/* Hashes the PDF's bytes, or its file by its path, and keeps the Base64 of the hash until the next
 * time: SHA-1 without a certificate or with one of key type "RSA", else SM3 over ZA (GB/T 32918.2)
 * and the data. Codes of ParseCertFieldData, after which the hash kept is the old one, and those of
 * the hash itself, after which it is that of 64 zero bytes. When the hash of a file fails, the
 * certificate is gone: set it anew. */
TESMARK_EXPORT int GenerateOriginalSignPdfHash(const unsigned char* data, int dataLen);
TESMARK_EXPORT int GenerateOriginalSignPdfFileHash(const char* filePath);

/* The Base64 text of that hash, nothing before the first; form 2, but that a fetch leaves *outLen
 * as it was. Always 0. */
TESMARK_EXPORT int GetOriginalSignPdfHash(unsigned char* out, int* outLen);

/* --- time stamps ----------------------------------------------------------------------------- */

/* Verifies the time stamp in a PKCS#7 signature, as P7SignData makes it where the setting
 * bSignWithTimeStamp is on. The result is the certificate service's own. */
TESMARK_EXPORT int VerifyPDFTimeStamp(const unsigned char* signature, int signatureLen);

/* A field of that time stamp, by the certificate service's own numbers; form 3. The result is the
 * service's too. */
TESMARK_EXPORT int GetTimeStampInfo(const unsigned char* signature, int signatureLen, int field,
                                    unsigned char* out, int* outLen);

/* --- login ----------------------------------------------------------------------------------- */

/* Opens a key with its PIN; LoginIn selects the certificate too, if that worked. */
TESMARK_EXPORT int LoginIn(const char* certId, const char* pin);
TESMARK_EXPORT int CurrentCertLogin(const char* certId, const char* pin);

/* Waits for a scan by phone on the device's own certificate. The selection stays.
 * TESMARK_LOGIN_FAILED. */
TESMARK_EXPORT int PZMLogin(void);

/* Ends the login of a scan if its certificate is selected, else those of all keys, and then the
 * selection. The result is that of the last key. Where the keys can't be listed, that code comes
 * back and the selection stays. */
TESMARK_EXPORT int Logout(void);

/* --- online seal service --------------------------------------------------------------------- */

/* Asks the user for the service's address, which he can try there, and stores it whole in the
 * setting sWSURL; the result is 0 also where it can't be written. Where the setting bSealPosition
 * is another than 1, the dialog says that it isn't to be configured, and 0 has stored nothing.
 * TESMARK_FAILED: the user closed the dialog. TESMARK_DIALOG_NOT_SHOWN. */
TESMARK_EXPORT int SetOnlineUrl(void);

/* One HTTP POST of `body` to `url` by the transport of the online seal service, with bytes as they
 * are both ways; blocks for as long as the transport takes. `out` is not measured: it has to hold
 * whatever the service answers, and gets it without a zero byte behind; *outLen becomes the number
 * of bytes, 0 after a failure. There is no query for the size: with `out` null the exchange is made
 * all the same, its answer is lost, and the result is TESMARK_FAILED. Otherwise the result is the
 * transport's own status. Needs no certificate service. */
TESMARK_EXPORT int HttpPostData(const char* url, const unsigned char* body, int bodyLen,
                                unsigned char* out, int* outLen);

#ifdef __cplusplus
}
#endif

#endif /* TESMARK_OPT_H */

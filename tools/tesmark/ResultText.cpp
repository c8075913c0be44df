#include "ResultText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>

#include "components/certservice/ServiceCodes.h"
#include "components/seallibrary/SealCodes.h"
#include "components/transport/TransportCodes.h"
#include "include/TesmarkOpt.h"

namespace {

struct Meaning {
    int code;
    ExitCode exitCode;
    const char* text;
};

using enum ExitCode;

constexpr auto kLibrary = std::to_array<Meaning>({
    {TESMARK_OK, kOk, "all went well"},
    {TESMARK_CRL_NOT_ACCEPTED, kFailed, "the revocation list could not be given to a component"},
    {TESMARK_LAST_LOGIN_FAILED, kFailed, "the certificate service could not tell the last login"},
    {TESMARK_NO_LAST_LOGIN, kSetup, "there is no certificate in the key"},
    {TESMARK_SERVICE_DOWN, kSetup, "the certificate service is not up"},
    {TESMARK_LAST_LOGIN_NO_MEMORY, kFailed, "there is not enough memory"},
    {TESMARK_FAILED, kFailed,
     "the revocation list could not be refreshed, or no seal was to be had"},
    {TESMARK_NOT_AN_ES_FILE, kFailed, "the seal's file doesn't begin with \"ES\", or is cut off"},
    {TESMARK_NULL_ARGUMENT, kFailed, "an argument is missing"},
    {TESMARK_NO_SEAL_MATCHES, kFailed, "no certificate with that seal is on any key"},
    {TESMARK_ENUMERATION_NO_SERVICE, kSetup, "the certificate service can't be started"},
    {TESMARK_CERT_LIST_FORMAT, kFailed, "the certificate service's list can't be read"},
    {TESMARK_SEAL_FORMAT, kFailed, "the seal's file doesn't begin with \"ES\", or is cut off"},
    {TESMARK_CANCELLED, kChoice, "the selection was cancelled, or its dialog could not be shown"},
    {TESMARK_BUSY, kFailed, "a selection is already running"},
    {TESMARK_NOT_TRUSTED, kFailed, "the certificate's chain is not trusted on this machine"},
    {TESMARK_TIME_STAMP_FAILED, kFailed, "the time stamp could not be made"},
    {TESMARK_CERT_FIELD_FAILED, kFailed, "a field of the certificate can't be read"},
    {TESMARK_NO_MEMORY, kFailed, "there is not enough memory, or a buffer was too small"},
    {TESMARK_SERVICE_NOT_FOUND, kSetup, "the certificate service's file was not found"},
    {TESMARK_SERVICE_FAILED, kSetup, "the certificate service did not start"},
    {TESMARK_DEVICE_COUNT_FAILED, kFailed, "the keys could not be counted"},
    {TESMARK_NO_KEY, kSetup, "no key is present"},
    {TESMARK_NO_CERT, kSetup, "there is no certificate in any key"},
    {TESMARK_CERT_LIST_FAILED, kFailed, "the list of certificates can't be had"},
    {TESMARK_PKCS7_FAILED, kFailed, "the certificate service could not make the signature"},
    {TESMARK_BASE64_FAILED, kFailed, "the certificate service could not encode the certificate"},
    {TESMARK_CERT_INFO_NO_MEMORY, kFailed, "the certificate can't be decoded, or memory ran out"},
    {TESMARK_KEY_FILE_FAILED, kFailed,
     "a file of the key can't be read, or no component accepts a file's signature"},
    {TESMARK_CERT_EXPORT_FAILED, kFailed, "the certificate can't be read from its key"},
    {TESMARK_BAD_ARGUMENT, kFailed, "a field number is out of range"},
    {TESMARK_SIGNED_MESSAGE_FAILED, kFailed, "this is not a PKCS#7 that can be read"},
    {TESMARK_TIME_OUTSIDE_VALIDITY, kFailed,
     "the signing time lies outside the validity of the certificate"},
    {TESMARK_CERT_EXPIRED, kFailed, "the certificate has expired or is not yet valid"},
    {TESMARK_NO_LAST_LOGIN_CALL, kSetup,
     "the certificate service is too old to tell the last login"},
    {TESMARK_NOT_SHORT, kFailed, "the short way does not apply"},
    {TESMARK_CERT_REVOKED, kFailed, "the certificate is revoked"},
    {TESMARK_CRL_FAILED, kFailed, "the revocation list could not be obtained"},
    {TESMARK_NO_SCANNED_FILE, kFailed, "the scan brought no file"},
    {TESMARK_SCANNED_SEAL_UNREAD, kFailed,
     "a seal that the scan or the online service brought can't be read, or nothing was drawn"},
    {TESMARK_ONLINE_CANCELLED, kChoice, "none of the online service's seals was picked"},
    {TESMARK_STYLE_OUT_OF_RANGE, kFailed, "a size of the picture's style is out of range"},
    {TESMARK_NO_ONLINE_ADDRESS, kSetup, "the online seal service has no address"},
    {TESMARK_SERVICE_REFUSED, kFailed, "the online seal service refused"},
    {TESMARK_NO_ONLINE_SEAL, kFailed, "the online seal service has no seal of this certificate"},
    {TESMARK_CERT_NOT_IN_USE, kFailed, "the certificate is on no key, or not the selected one"},
    {TESMARK_NO_SCANNED_SEAL, kFailed, "none of the files that the scan brought is a seal"},
    {TESMARK_LOGIN_FAILED, kPin, "the login to the key failed"},
});

constexpr auto kService = std::to_array<Meaning>({
    {kServiceUnknownFailure, kFailed, "the certificate service failed and told no cause"},
    {kServiceNotSupported, kFailed, "the certificate service doesn't offer this"},
    {kServiceBadArgument, kFailed, "the certificate service refused an argument"},
    {kServiceBufferTooSmall, kFailed, "a buffer was too small"},
    {kServiceNotInitialised, kSetup, "the certificate service is not up"},
    {kServiceNoSuchCertificate, kFailed, "no key bears that certificate"},
    {kServiceKeyRemoved, kSetup, "the key was pulled, or its folder is gone"},
    {kServiceNoSuchFile, kFailed, "the key has no file of that name"},
    {kServiceKeyDamaged, kFailed, "the key's record is damaged"},
    {kServicePinWrong, kPin, "the PIN is wrong"},
    {kServiceKeyLocked, kPin, "the key is locked after too many wrong PINs"},
    {kServicePinCancelled, kPin, "the PIN entry was closed"},
    {kServicePinUnavailable, kPin, "the PIN is needed and no program can ask for it"},
    {kServiceCertificateDamaged, kFailed, "the certificate is damaged"},
    {kServiceNoSuchField, kFailed, "the certificate doesn't have that field"},
    {kServiceSignatureInvalid, kFailed, "the signature is not valid"},
    {kServiceMessageDamaged, kFailed, "this is not a PKCS#7 that can be read"},
    {kServiceDigestMismatch, kFailed, "the signature was made over other data"},
    {kServiceAlgorithmUnknown, kFailed, "the algorithm is unknown, or doesn't fit the key"},
    {kServiceSignerMissing, kFailed, "the signature lacks its signer's certificate"},
    {kServiceSignerUnfit, kFailed, "the signer's certificate is not for signatures"},
    {kServiceDataAmbiguous, kFailed,
     "a signature of such data would be one of something else as well"},
    {kServiceTimeStampMissing, kFailed, "the signature carries no time stamp"},
    {kServiceTimeStampRefused, kFailed, "the time-stamp authority granted no stamp"},
    {kServiceTimeStampDamaged, kFailed, "this is no time stamp that can be read"},
    {kServiceTimeStampMismatch, kFailed, "the time stamp is over something else"},
    {kServiceTimeStampCertificateMissing, kFailed,
     "the time stamp lacks its authority's certificate"},
    {kServiceTimeStampAlgorithmUnknown, kFailed, "the time stamp's algorithm is unknown"},
    {kServiceTimeStampDigestMismatch, kFailed,
     "the time stamp tells something else than was signed"},
    {kServiceTimeStampSignatureInvalid, kFailed, "the time stamp's signature is not valid"},
    {kServiceTimeStampCertificateUnbound, kFailed,
     "the time stamp names another certificate than its authority's"},
    {kServiceTimeStampPurpose, kFailed, "the authority's certificate is not for time stamps"},
    {kServiceTimeStampUntrusted, kFailed,
     "the time-stamp authority is not trusted on this machine"},
    {kServiceTimeStampExpired, kFailed, "the time-stamp authority's certificate has expired"},
    {kServiceTimeStampNotYetValid, kFailed,
     "the time-stamp authority's certificate is not yet valid"},
    {kServiceTimeStampRevoked, kFailed, "the time-stamp authority's certificate is revoked"},
    {kServiceTimeStampIssuerRevoked, kFailed,
     "the certificate of the time-stamp authority's issuer is revoked"},
    {kServiceTimeStampRevocationUndecided, kFailed,
     "whether the time-stamp authority is revoked can't be told"},
    {kServiceScanNeeded, kPin, "it needs a scan by phone first"},
    {kServiceScanNotBase64, kFailed, "the scan's request is not Base64"},
    {kServiceScanNotJson, kFailed, "the scan's request is not a JSON object"},
    {kServiceScanMemberMissing, kFailed, "the scan's request lacks a member"},
    {kServiceScanMemberKind, kFailed, "a member of the scan's request is no text"},
    {kServiceScanMemberSurplus, kFailed, "the scan's request has a member too many"},
    {kServiceScanMemberValue, kFailed, "a member of the scan's request has another text"},
    {kServiceScanRefused, kPin, "the scan was refused on the phone"},
    {kServiceScanUnanswered, kPin, "nobody answered the scan on the phone"},
    {kServiceFileUnreadable, kFile, "the file can't be opened or read"},
    {kServiceRevocationListDamaged, kFailed, "the revocation list is damaged"},
    {kServiceTokenFailure, kFailed, "the token's module reports a failure of its own"},
    {kServiceNetworkFailure, kFailed, "the network can't be reached"},
});

constexpr auto kSeal = std::to_array<Meaning>({
    {kSealBadArgument, kFailed, "the seal library refused an argument"},
    {kSealBufferTooSmall, kFailed, "a buffer was too small"},
    {kSealNotSupported, kFailed, "the seal library doesn't offer this"},
    {kSealTooLarge, kFailed, "the seal or the signature is too large"},
    {kSealServiceMissing, kSetup, "the seal library can't load the certificate service"},
    {kSealServiceIncomplete, kSetup, "the certificate service lacks an entry point"},
    {kSealDamaged, kFailed, "the seal is damaged, or no seal at all"},
    {kSealMakerCertificateDamaged, kFailed, "the seal maker's certificate is damaged"},
    {kSealMakerSignatureInvalid, kFailed, "the seal maker's signature on the seal is not valid"},
    {kSealMakerNotTrusted, kFailed, "the seal maker's certificate is not trusted on this machine"},
    {kSealMakerExpired, kFailed,
     "the seal maker's certificate was not valid when it made the seal"},
    {kSealMakerRevoked, kFailed, "the seal maker's certificate is revoked"},
    {kSealNotYetValid, kFailed, "the seal is not yet valid"},
    {kSealExpired, kFailed, "the seal has expired"},
    {kSealSignerNotListed, kFailed, "the certificate is not one of those that the seal names"},
    {kSealPictureUnusable, kFailed, "the seal's picture can't be shown"},
    {kSealSignatureDamaged, kFailed, "this is not a seal signature that can be read"},
    {kSealTimeUnreadable, kFailed, "the seal signature tells no time of signing"},
    {kSealDigestMismatch, kFailed, "the seal signature was made over other data"},
    {kSealSignatureInvalid, kFailed, "the seal signature's value is not valid"},
    {kSealSignerCertificateDamaged, kFailed, "the signer's certificate is damaged"},
    {kSealSignerNotTrusted, kFailed, "the signer's certificate is not trusted on this machine"},
    {kSealSignerExpired, kFailed, "the signer's certificate was not valid at the time of signing"},
    {kSealSignerRevoked, kFailed, "the signer's certificate was revoked at the time of signing"},
    {kSealFileUnreadable, kFile, "the signed file can't be read"},
    {kSealAlgorithmMismatch, kFailed, "the signature algorithm doesn't fit the signer's key"},
    {kSealPropertyNotAscii, kFailed, "the seal signature's property text is not ASCII"},
    {kSealServiceSignatureBad, kFailed,
     "the certificate service made a signature that is not valid"},
    {kSealRevocationListDamaged, kFailed, "the revocation list is damaged"},
    {kSealRevocationListForeign, kFailed, "the revocation list is not of the signer's issuer"},
    {kSealRevokedBefore, kFailed, "the certificate was already revoked at that time"},
    {kSealSerialNotListed, kFailed, "the revocation list doesn't name that certificate"},
    {kSealTimeStampDamaged, kFailed, "the seal's time stamp can't be read"},
    {kSealTimeStampForeign, kFailed, "the seal's time stamp belongs to something else"},
    {kSealTimeStampInvalid, kFailed, "the seal's time stamp is not valid"},
    {kSealTimeStampAuthorityUnfit, kFailed, "the time-stamp authority's certificate doesn't fit"},
    {kSealTimeStampNotTrusted, kFailed,
     "the time-stamp authority's certificate is not trusted on this machine"},
    {kSealTimeStampAuthorityExpired, kFailed,
     "the time-stamp authority's certificate was not valid at that time"},
    {kSealTimeStampRevoked, kFailed, "the time-stamp authority's certificate is revoked"},
    {kSealNoStatusService, kSetup, "there is no service to ask for the seal's status"},
});

constexpr auto kTransport = std::to_array<Meaning>({
    {kTransportBadArgument, kFailed, "the transport refused an argument"},
    {kTransportUnknownName, kFailed, "the transport doesn't know a setting's name"},
    {kTransportNoServer, kSetup, "the transport was told no address"},
    {kTransportNotSupported, kFailed, "the transport doesn't offer this"},
    {kTransportTooLarge, kFailed, "the request is too large"},
    {kTransportNoLibrary, kSetup, "libcurl can't be had"},
    {kTransportNoResponse, kFailed, "there is no answer"},
    {kTransportStaleHandle, kFailed, "the exchange is gone"},
    {kTransportAlreadySent, kFailed, "the request was sent before"},
    {kTransportTooMany, kFailed, "too many exchanges are under way"},
    {kTransportNoMemory, kFailed, "there is not enough memory"},
    {kTransportBadAddress, kSetup, "the address is none of http or https, or has no host"},
    {kTransportBadSetting, kSetup, "ServiceCaFile can't be read, or ServiceProxy is none"},
    {kTransportNoHost, kFailed, "the server's or the proxy's name isn't known"},
    {kTransportNoConnection, kFailed, "nobody listens there, or a firewall is between"},
    {kTransportTimeout, kFailed, "the server has not answered in time"},
    {kTransportTls, kFailed, "no TLS connection came about"},
    {kTransportUntrusted, kFailed, "the server's certificate isn't trusted, or is another host's"},
    {kTransportBroken, kFailed, "the connection ended before the answer did"},
    {kTransportBadAnswer, kFailed, "what answers there speaks no HTTP that can be read"},
    {kTransportAnswerTooLarge, kFailed, "the answer is larger than ServiceLargestAnswer"},
    {kTransportFailed, kFailed, "the exchange failed"},
    {kTransportRedirected, kFailed, "the server sends on to another address"},
    {kTransportNeedsLogin, kFailed, "the server, or the proxy, wants a login"},
    {kTransportRefused, kFailed, "the server refuses, or knows no such address"},
    {kTransportServerError, kFailed, "the server tells a failure of its own"},
});

const Meaning* Find(int code) {
    for (const std::span<const Meaning> table :
         {std::span<const Meaning>(kLibrary), std::span<const Meaning>(kService),
          std::span<const Meaning>(kSeal), std::span<const Meaning>(kTransport)}) {
        const auto found = std::find_if(table.begin(), table.end(),
                                        [code](const Meaning& row) { return row.code == code; });
        if (found != table.end()) return &*found;
    }
    return nullptr;
}

}  // namespace

std::string ResultText(int code) {
    const Meaning* meaning = Find(code);
    return meaning ? meaning->text : "a code of a component that has no text here";
}

std::string ResultNumber(int code) {
    if (code < 0x10000) return std::to_string(code);
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%08X", static_cast<unsigned int>(code));
    return text.data();
}

ExitCode ExitCodeFor(int code) {
    const Meaning* meaning = Find(code);
    return meaning ? meaning->exitCode : kFailed;
}

bool HidesInnerCode(int code) {
    return code == TESMARK_LOGIN_FAILED || code == TESMARK_PKCS7_FAILED ||
           code == TESMARK_CERT_LIST_FAILED || code == TESMARK_CERT_EXPORT_FAILED ||
           code == TESMARK_KEY_FILE_FAILED || code == TESMARK_TIME_STAMP_FAILED ||
           code == TESMARK_CERT_FIELD_FAILED || code == TESMARK_SERVICE_FAILED;
}

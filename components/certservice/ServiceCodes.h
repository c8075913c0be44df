// ServiceCodes.h - the results of the certificate service, one cause to a code.
#pragma once

// docs/certservice.md lists them with what to do about each.
enum ServiceCode : int {
    kServiceOk = 0,
    kServiceUnknownFailure = 0x0B000001,
    kServiceNotSupported = 0x0B000002,
    kServiceBadArgument = 0x0B000003,
    kServiceBufferTooSmall = 0x0B000004,
    kServiceNotInitialised = 0x0B000005,
    kServiceNoSuchCertificate = 0x0B000010,  // no key bears that certId
    kServiceKeyRemoved = 0x0B000011,         // the token was pulled, or its folder is gone
    kServiceNoSuchFile = 0x0B000012,         // no file of that name in the key
    kServiceKeyDamaged = 0x0B000013,         // the key's record can't be read
    kServicePinWrong = 0x0B000020,
    kServiceKeyLocked = 0x0B000021,       // too many wrong PINs
    kServicePinCancelled = 0x0B000022,    // the user closed the PIN entry
    kServicePinUnavailable = 0x0B000023,  // nobody has logged in and no pinentry can ask
    kServiceCertificateDamaged = 0x0B000030,
    kServiceNoSuchField = 0x0B000031,
    kServiceSignatureInvalid = 0x0B000040,
    kServiceMessageDamaged = 0x0B000041,  // no PKCS#7 that can be read
    kServiceDigestMismatch = 0x0B000042,
    kServiceAlgorithmUnknown = 0x0B000043,
    kServiceSignerMissing = 0x0B000044,  // the message lacks its signer's certificate
    kServiceSignerUnfit = 0x0B000045,    // its certificate isn't one for signatures
    kServiceDataAmbiguous = 0x0B000046,  // a signature of such data would be one of others too
    kServiceFileUnreadable = 0x0B000050,
    kServiceRevocationListDamaged = 0x0B000051,
    kServiceTokenFailure = 0x0B000060,  // the token's module reports a failure of its own
    kServiceNetworkFailure = 0x0B000070,
    // Time stamps, in the order in which their parts are judged; but validity comes last.
    kServiceTimeStampMissing = 0x0B000080,             // the signature carries none
    kServiceTimeStampRefused = 0x0B000081,             // the authority granted none
    kServiceTimeStampDamaged = 0x0B000082,             // no token that can be read
    kServiceTimeStampMismatch = 0x0B000083,            // it is over something else: the imprint
    kServiceTimeStampCertificateMissing = 0x0B000084,  // the token lacks its authority's
    kServiceTimeStampAlgorithmUnknown = 0x0B000085,
    kServiceTimeStampDigestMismatch = 0x0B000086,  // what it tells isn't what was signed
    kServiceTimeStampSignatureInvalid = 0x0B000087,
    kServiceTimeStampCertificateUnbound = 0x0B000088,  // it names another certificate, or none
    kServiceTimeStampPurpose = 0x0B000089,             // the certificate isn't one for time stamps
    kServiceTimeStampUntrusted = 0x0B00008A,
    kServiceTimeStampExpired = 0x0B00008B,
    kServiceTimeStampNotYetValid = 0x0B00008C,
    kServiceTimeStampRevoked = 0x0B00008D,
    kServiceTimeStampIssuerRevoked = 0x0B00008E,
    kServiceTimeStampRevocationUndecided = 0x0B00008F,
    // The scan by phone: what the request lacks, in the order in which it is looked at, then what
    // the phone said to it.
    kServiceScanNeeded = 0x0B000090,  // nobody has scanned, and what is asked needs it
    kServiceScanNotBase64 = 0x0B000091,
    kServiceScanNotJson = 0x0B000092,
    kServiceScanMemberMissing = 0x0B000093,
    kServiceScanMemberKind = 0x0B000094,  // it is no string
    kServiceScanMemberSurplus = 0x0B000095,
    kServiceScanMemberValue = 0x0B000096,
    kServiceScanRefused = 0x0B000097,
    kServiceScanUnanswered = 0x0B000098,
};

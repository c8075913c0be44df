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
    kServiceFileUnreadable = 0x0B000050,
    kServiceRevocationListDamaged = 0x0B000051,
    kServiceTokenFailure = 0x0B000060,  // the token's module reports a failure of its own
    kServiceNetworkFailure = 0x0B000070,
};

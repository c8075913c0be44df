// SealCodes.h - the results of the seal library, one cause to a code.
#pragma once

// docs/seallibrary.md lists them with what to do about each. Where the certificate service fails
// while it exports or judges a certificate, signs or takes a revocation list, its own code comes
// through.
enum SealCode : int {
    kSealOk = 0,
    kSealBadArgument = 0x0C000001,
    kSealBufferTooSmall = 0x0C000002,  // the length needed has been told
    kSealNotSupported = 0x0C000003,
    kSealTooLarge = 0x0C000004,  // over the limits of SealLimits.h
    kSealNoMemory = 0x0C000005,

    // The certificate service.
    kSealServiceMissing = 0x0C000010,     // its file isn't there or can't be loaded
    kSealServiceIncomplete = 0x0C000011,  // it lacks an entry point that is needed
    kSealServiceFailed = 0x0C000012,      // a negative code while it came up, or an empty answer

    // The seal.
    kSealDamaged = 0x0C000020,  // no seal that can be read
    kSealMakerCertificateDamaged = 0x0C000021,
    kSealMakerSignatureInvalid = 0x0C000022,  // or an algorithm that doesn't fit the maker's key
    kSealMakerNotTrusted = 0x0C000023,
    kSealMakerExpired = 0x0C000024,  // not valid when the seal was made
    kSealMakerRevoked = 0x0C000025,
    kSealNotYetValid = 0x0C000026,
    kSealExpired = 0x0C000027,
    kSealSignerNotListed = 0x0C000028,  // the certificate isn't one of those that the seal names
    kSealPictureUnusable = 0x0C000029,  // no picture, none that can be shown, or without a size

    // The seal signature.
    kSealSignatureDamaged = 0x0C000040,  // no seal signature that can be read
    kSealTimeUnreadable = 0x0C000041,    // it tells no time of signing
    kSealDigestMismatch = 0x0C000042,    // made over other data
    kSealSignatureInvalid = 0x0C000043,  // or an algorithm that doesn't fit the signer's key
    kSealSignerCertificateDamaged = 0x0C000044,
    kSealSignerNotTrusted = 0x0C000045,
    kSealSignerExpired = 0x0C000046,  // not valid at the time of signing
    kSealSignerRevoked = 0x0C000047,  // at the time of signing or before it
    kSealFileUnreadable = 0x0C000048,

    // Making a seal signature.
    kSealAlgorithmMismatch = 0x0C000050,    // the algorithm asked for doesn't fit the signer's key
    kSealPropertyNotAscii = 0x0C000051,     // the form has an IA5String in its place
    kSealServiceSignatureBad = 0x0C000052,  // what the service made doesn't verify

    // Revocation lists.
    kSealRevocationListDamaged = 0x0C000060,
    kSealRevokedBefore = 0x0C000061,          // revoked at the given time or before it
    kSealSerialNotListed = 0x0C000062,        // nothing to compare the given time with
    kSealRevocationListForeign = 0x0C000063,  // not of the signer's issuer

    // The seal's status.
    kSealNoStatusService = 0x0C000070,  // no address is set
    kSealStatusBadAddress = 0x0C000071,
    kSealStatusUnreachable =
        0x0C000072,                     // no connection, none that is trusted, or no answer in time
    kSealStatusBadAnswer = 0x0C000073,  // an answer that tells no status
    kSealStatusUnknown = 0x0C000074,    // the service doesn't know the seal
    kSealStatusSuspended = 0x0C000075,
    kSealStatusReplaced = 0x0C000076,  // the service knows another seal by this number

    // The time stamp of a seal or of a seal signature.
    kSealTimeStampDamaged = 0x0C000080,  // no token that can be read, or one without a certificate
    kSealTimeStampForeign = 0x0C000081,  // over something else than this signature
    kSealTimeStampInvalid = 0x0C000082,  // the token's signature is wrong, or an algorithm is unfit
    kSealTimeStampAuthorityUnfit = 0x0C000083,  // not the certificate named, or not for time stamps
    kSealTimeStampNotTrusted = 0x0C000084,
    kSealTimeStampAuthorityExpired = 0x0C000085,  // not valid at the token's time
    kSealTimeStampRevoked = 0x0C000086,
};

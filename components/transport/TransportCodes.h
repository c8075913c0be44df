// TransportCodes.h - the statuses of the transport, one cause to a code.
#pragma once

enum TransportCode : int {
    kTransportOk = 0,
    // The caller's.
    kTransportBadArgument = 0x0E000001,   // a null pointer, a negative length, a forbidden header
    kTransportUnknownName = 0x0E000002,   // a configuration name other than "ServerHost"
    kTransportNoServer = 0x0E000003,      // the configuration ended without an address
    kTransportNotSupported = 0x0E000004,  // a method other than 2
    kTransportTooLarge = 0x0E000005,      // the request's body
    kTransportNoLibrary = 0x0E000006,     // libcurl can't be had
    kTransportNoResponse = 0x0E000007,    // there is none: not sent, under way, or failed
    kTransportStaleHandle = 0x0E000008,   // never given out, or released by now
    kTransportAlreadySent = 0x0E000009,   // the request's exchange is under way or over
    kTransportTooMany = 0x0E00000A,       // contexts with an exchange under way, or requests
    kTransportNoMemory = 0x0E00000B,
    kTransportBadAddress = 0x0E00000C,  // neither http nor https, no host, an impossible port
    kTransportBadSetting = 0x0E00000D,  // CaFile can't be read
    // The way there.
    kTransportNoHost = 0x0E000010,        // the server's or the proxy's name isn't known
    kTransportNoConnection = 0x0E000011,  // nobody listens, or nothing gets through
    kTransportTimeout = 0x0E000012,
    kTransportTls = 0x0E000013,        // no TLS connection came about
    kTransportUntrusted = 0x0E000014,  // the server's certificate isn't trusted, or another host's
    kTransportBroken = 0x0E000015,     // reset, or at its end before the whole answer was there
    // The answer.
    kTransportBadAnswer = 0x0E000016,  // no HTTP, an endless head, or a compressed body
    kTransportAnswerTooLarge = 0x0E000017,
    kTransportFailed = 0x0E00001F,      // libcurl failed in another way
    kTransportRedirected = 0x0E000020,  // HTTP 3xx: never followed
    kTransportNeedsLogin = 0x0E000021,  // HTTP 401 and 407
    kTransportRefused = 0x0E000022,     // HTTP 4xx of another number
    kTransportServerError = 0x0E000023  // HTTP 5xx
};

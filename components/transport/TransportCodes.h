// TransportCodes.h - the statuses of the transport, one cause to a code.
#pragma once

enum TransportCode : int {
    kTransportOk = 0,
    kTransportBadArgument = 0x0E000001,   // a null pointer or a negative length
    kTransportUnknownName = 0x0E000002,   // a configuration name other than "ServerHost"
    kTransportNoServer = 0x0E000003,      // the configuration ended without an address
    kTransportNotSupported = 0x0E000004,  // a method other than 2
    kTransportTooLarge = 0x0E000005,
    kTransportNotAvailable = 0x0E000006,  // requests can't be sent yet
    kTransportNoResponse = 0x0E000007,    // asked for before a request has been answered
};

// KeyProbe.h - what makes the certificate service ask for the PIN before a picture is handed over.
#pragma once

#include <string>

// Signs the one byte "1" with the certificate, whose checks stand before it, and throws the
// signature away. 0 or a code of CAppOpt::SignData, of which nothing is logged here.
int SignProbe(const std::string& certId);

// Has a time stamp made over the same byte. 0, or -3008 with the inner code in the log.
int StampProbe();

// CertCheck.h - what the certificate service is asked about a certificate by several operations.
#pragma once

#include <string>

#include "bridge/AppOpt.h"

// All need the service to be up. Certificates are DER.

// The key type, up to its first zero byte. The service's result; a failure is logged.
int QueryKeyType(const CAppOpt& appOpt, const unsigned char* cert, int certLen,
                 std::string& keyType);

// The start and end of validity as the service writes them (CutCertTime reads them). 0, or -3010
// with the failure logged.
int QueryValidity(const CAppOpt& appOpt, const unsigned char* cert, int certLen, std::string& start,
                  std::string& end);

// The code for a value of SOF_ValidateCert that refuses the certificate: -3007, -3043, -3047. 0 for
// any other value.
int RefusalOf(int verdict);

// The revocation list that the certificate names. 0 with a list that isn't empty, or -3048 with the
// cause logged.
int ObtainCrl(CAppOpt& appOpt, const unsigned char* cert, int certLen, std::string& crl);

// The same, and the list is handed to the service. 4637 with the cause logged if it didn't take it.
int ObtainCrlForService(CAppOpt& appOpt, const unsigned char* cert, int certLen, std::string& crl);

// CertificateText.h - what a certificate says, field by field, as text.
#pragma once

#include <openssl/x509.h>

#include <string>

constexpr int kFirstCertificateField = 1;
constexpr int kLastCertificateField = 34;

// The field's text in GBK, as the table of docs/certservice.md numbers them; what the certificate
// doesn't say is empty. Times are local time, YYYYMMDDhhmmss. kServiceNoSuchField for another
// number, kServiceCertificateDamaged if that part of the certificate can't be read.
int CertificateField(X509* certificate, int field, std::string& text);

// The value of the extension `oid` (in digits and dots) in DER, without the OCTET STRING around it;
// empty if the certificate hasn't got it. kServiceBadArgument for what is no object identifier.
int CertificateExtension(X509* certificate, const char* oid, std::string& der);

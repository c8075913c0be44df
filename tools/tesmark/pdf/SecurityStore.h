// SecurityStore.h - the document security store of a PDF (ISO 32000-2, 12.8.4.3): certificates and
// what tells of their revocation, kept for whoever validates its signatures.
#pragma once

#include <qpdf/QPDF.hh>
#include <string>

// /VRI, /Certs, /CRLs or /OCSPs, the entries that hold something.
bool IsSecurityStoreKey(const std::string& key);

// Each entry in which the stores differ is one of the standard's, and of its form in `now`, or has
// a maker's prefix (ISO 32000-2, annex E). Either may be null: a store may come and go.
bool SecurityStoreGrew(QPDFObjectHandle before, QPDFObjectHandle now);

// Both are lists of streams, or both are what /VRI is.
bool SecurityStoreEntryGrew(QPDFObjectHandle before, QPDFObjectHandle now);

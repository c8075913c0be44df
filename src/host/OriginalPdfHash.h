// OriginalPdfHash.h - the hash of a PDF's bytes before it is packed for signing, kept in the module
// state between its making and its fetch.
#pragma once

// Both choose the hash by g_packHashCert: SHA-1 without one and for the key type "RSA", else SM3
// over ZA and the data. The result is that of EnsureServiceReady, of the field's query (which leave
// the kept hash alone; -3015 for a key type of more than 32 bytes) or of HashData or HashFile,
// after which the Base64 of the hash is kept: that of 64 zero bytes after their failure.

int GeneratePdfHash(const unsigned char* data, int dataLen);

// The file is read by its path. A failed hash costs g_packHashCert, which is empty afterwards.
int GeneratePdfFileHash(const char* filePath);

// PassPhrase.h - that OpenSSL asks nobody for a pass phrase.
#pragma once

// Gives none, so that reading fails. For every PEM_read_bio_...: one without a callback asks on the
// terminal of the process, and waits there, whenever the bytes say that they are encrypted, as any
// block from anywhere may, a certificate's and a revocation list's too.
int NoPassPhrase(char* buffer, int size, int encrypting, void* user);

// ErrorMark.h - OpenSSL's error queue as it was.
#pragma once

#include <openssl/err.h>

// Takes back at its end the errors that this thread's calls of OpenSSL have left since its
// beginning. What stood in the queue before stays there, for the host that put it there.
class ErrorMark {
public:
    ErrorMark() { ERR_set_mark(); }
    ~ErrorMark() { ERR_pop_to_mark(); }
    ErrorMark(const ErrorMark&) = delete;
    ErrorMark& operator=(const ErrorMark&) = delete;
};

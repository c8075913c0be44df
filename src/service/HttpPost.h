// HttpPost.h - one exchange with the online seal service: an HTTP POST through the transport.
#pragma once

#include <string>

// `url` is the whole address ("http://", host, "/QelmServlet"), handed over as it stands. Each call
// is an exchange of its own: no retry, no time limit but the transport's, and the calling thread
// waits. 0, or the transport's status of the first of these that failed, with `answer` untouched:
// making the context, ending its configuration, making the request, the exchange. No other failure
// is seen; without an answer's bytes the answer is empty. The transport has no call to release what
// it made for an exchange.

// `body` and `answer` are ANSI text; UTF-8 goes over the wire. The status of each step is logged,
// the address isn't.
int HttpPost(const std::string& url, const std::string& body, std::string& answer);

// The same for bytes as they are, and without a word in the log.
int HttpPostRaw(const std::string& url, const std::string& body, std::string& answer);

// ServiceAddress.h - the address of the online seal service, and asking who answers there.
#pragma once

#include <string>

// Why no online seal service is asked at `url` (UTF-8), as a clause; empty for
// http(s)://HOST[/PATH]/QelmServlet that the library reads whole. Nothing is looked up.
std::string FaultOfServiceAddress(const std::string& url);

// The same for the status of seals: http(s)://HOST, and any path.
std::string FaultOfStatusAddress(const std::string& url);

// True where the library's dialog for the address shows all that `url` tells but for the scheme and
// the service's own path, and stores it as it was; it knows http://HOST[/PATH]/QelmServlet alone.
bool IsKeptByDialog(const std::string& url);

struct Greeting {
    std::string status;   // STATUSCODE of the answer, printable; empty where it has none
    std::string message;  // MESSAGE, the same
};

// Says hello to the service, by one exchange of the library's transport that the caller waits for.
// Throws a Failure where no answer comes, or one that refuses or is no service's.
Greeting GreetService(const std::string& url);

// Web.h - a request to the administrator's page and the answer to it, whatever carries them.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

struct WebRequest {
    std::string method;  // "GET" or "POST"
    std::string path;    // decoded, without the query
    std::string address;
    std::string session;                        // the cookie's value; empty without one
    std::map<std::string, std::string> query;   // decoded
    std::map<std::string, std::string> fields;  // of a form, files as their bytes
};

struct WebReply {
    int status = 200;
    std::string type = "text/html; charset=utf-8";
    std::string body{};
    std::vector<std::pair<std::string, std::string>> headers{};
    std::string note{};  // for the access log, ASCII
};

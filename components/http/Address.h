// Address.h - the addresses of authorities and proxies: how they may be told, and what makes them
// usable.
#pragma once

#include <string>

// `url` without user, password, query and fragment, as it may be told.
std::string ToldAddress(const std::string& url);

// `text`, one address or several with ";" or white space between them, with "***" in the place of
// every password in front of a host. All else stays.
std::string WithoutPasswords(const std::string& text);

// What keeps an authority from being asked at `url`, as a clause; empty where its form is right:
// http or https, a host, a port from 1 to 65535 where one is named. Nothing is looked up.
std::string FaultOfAddress(const std::string& url);

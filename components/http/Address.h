// Address.h - the addresses of authorities and proxies: how they may be told, and what makes them
// usable.
#pragma once

#include <string>
#include <vector>

// The addresses of `text`, which have ";", white space or zero bytes between them.
std::vector<std::string> SplitAddresses(const std::string& text);

// `url` without user, password, query and fragment, as it may be told.
std::string ToldAddress(const std::string& url);

// `text`, one address or several as above, with "***" in the place of every password in front of a
// host. All else stays. A password that isn't percent-encoded as it must be is a password here,
// and in ToldAddress, as far as the "@" shows where it ends.
std::string WithoutPasswords(const std::string& text);

// What keeps an authority from being asked at `url`, as a clause; empty where its form is right:
// http or https, a host, a port from 1 to 65535 where one is named, nowhere a blank or a control
// character. Nothing is looked up.
std::string FaultOfAddress(const std::string& url);

// The same of a proxy, which is reached over HTTP, HTTPS or SOCKS, and over HTTP where it tells no
// scheme.
std::string FaultOfProxy(const std::string& proxy);

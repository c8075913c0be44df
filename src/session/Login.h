// Login.h - opening a key with a PIN that the host has got itself, and closing all keys.
#pragma once

// The work of the exports of these names; their contracts stand in TesmarkOpt.h.
namespace session {

int LoginIn(const char* certId, const char* pin);
int CurrentCertLogin(const char* certId, const char* pin);
int Logout();

}  // namespace session

// ServiceSettings.h - values of the certificate service's own key in the store.
#pragma once

#include <string>

// Throw if the store can't be written.
void SetServicePath(const char* name, const std::string& path);
void SetServiceNumber(const char* name, unsigned int number);

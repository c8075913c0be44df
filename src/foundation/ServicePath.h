// ServicePath.h - where the certificate service's file is.
#pragma once

#include <string>

// The registered file, or the one below the installation folder, or its bare name.
std::string get_kvl_path();

// Puts the path beside the module "TesmarkOpt" in place of `result`. Without such a module, or if
// its path doesn't bear that name, `result` stays as it was.
void GetKvlPathBesideModule(std::string& result);

// The two together, in the order of use: the first that exists. Empty if neither does. `first`
// receives what get_kvl_path gave, for the log.
std::string LocateCertService(std::string* first = nullptr);

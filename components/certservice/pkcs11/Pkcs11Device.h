// Pkcs11Device.h - keys on tokens, reached through the makers' PKCS#11 modules.
#pragma once

#include <memory>
#include <vector>

#include "components/certservice/KeyDevice.h"

// One device for each module that the setting Pkcs11Modules names and that can be loaded; a module
// that can't is left out. Empty without the setting. The tokens behind a module may come and go
// during the device's life.
std::vector<std::unique_ptr<KeyDevice>> OpenPkcs11Devices();

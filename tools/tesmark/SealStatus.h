// SealStatus.h - whether a seal that was named may be used, by the seal status service.
#pragma once

#include "SealFile.h"

// The library asks where it chooses a seal, and not for one that its host names: this asks as it
// does, by the setting ReqEsealStatus and for seals of GB/T 38540 alone. Throws a Failure unless
// the seal library, which is up, permits the use. May wait for the service.
void CheckSealStatus(const SealFile& seal);

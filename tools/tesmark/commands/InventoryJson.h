// InventoryJson.h - certificates and seals for scripts.
#pragma once

#include <json/value.h>

#include <vector>

#include "Inventory.h"

// An array of certificates, each with its array "seals". Names and times as texts, "problem" null
// where all is well, codes only where there is one.
Json::Value InventoryJson(const std::vector<CertificateEntry>& certificates);
Json::Value CertificateJson(const CertificateEntry& certificate);
Json::Value SealJson(const SealFile& seal);

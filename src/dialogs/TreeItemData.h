// TreeItemData.h - what stands behind a node of the tree of certificates and seals.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

struct TreeItemData {
    std::int32_t certIndex = 0;  // the certificate's place in the list of g_certEsealOpt
    std::int32_t sealValue = 0;  // of a certificate the number of its seals, else the seal's place
    std::int32_t isCert = 0;     // 1 for a certificate
    std::int32_t scanMode = 0;   // of a certificate its own, else 0
};

// Owns the data of all nodes while the dialog is open; empty otherwise.
extern std::vector<std::unique_ptr<TreeItemData>> g_dialogSealItems;

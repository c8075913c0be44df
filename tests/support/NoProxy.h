// NoProxy.h - no proxy of the environment's comes between a test and its servers.
#pragma once

#include <memory>
#include <vector>

#include "support/Environment.h"

// As long as it lives.
class NoProxy {
public:
    NoProxy() {
        for (const char* const name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy",
                                       "ALL_PROXY", "no_proxy", "NO_PROXY"}) {
            m_saved.push_back(std::make_unique<SavedVariable>(name));
            ClearVariable(name);
        }
    }

private:
    std::vector<std::unique_ptr<SavedVariable>> m_saved;
};

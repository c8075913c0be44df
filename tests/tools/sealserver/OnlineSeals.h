// OnlineSeals.h - the sample online seal service with a database of its own, and what it gives out.
#pragma once

#include <string>

#include "support/NoProxy.h"
#include "tests/tools/sealserver/RunningServer.h"
#include "tools/sealserver/Administration.h"
#include "tools/sealserver/SealStore.h"

// Serves until the end of the test; no proxy comes between.
class OnlineSeals {
public:
    // Makes the file of the database.
    explicit OnlineSeals(const std::string& database)
        : m_store(database), m_running({}, m_store, "") {}

    // The whole one, as the setting sWSURL has it.
    std::string Address() const { return m_running.Address() + kServicePath; }

    // Gives out `seal` for `certificate`, in PEM or DER; the seal's id.
    std::int64_t Offer(const std::string& certificate, const std::string& seal) {
        return EnterSeal(m_store, EnterCertificate(m_store, certificate, "", ""), {seal, "", ""});
    }
    void Suspend(std::int64_t seal) { m_store.SetSuspended(seal, true); }

private:
    NoProxy m_noProxy;
    SealStore m_store;
    RunningServer m_running;
};

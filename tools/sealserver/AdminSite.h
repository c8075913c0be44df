// AdminSite.h - the administrator's page: login, certificates, seals.
#pragma once

#include "tools/sealserver/Sessions.h"
#include "tools/sealserver/Web.h"

class SealStore;

// The name of the cookie; its value is WebRequest::session.
constexpr char kSessionCookie[] = "sealserver-session";

// For several threads at a time. Without a session only the login, the style sheet and the icon are
// answered; the password's hash is the store's setting "password", and without one nobody gets in.
// Every POST but the login carries the session's form token in the field "token". A change is
// answered by 303 to the page that shows it, a refused one by that page with the reason.
class AdminSite {
public:
    // `encrypted`: browsers reach it by HTTPS alone, so the cookie is for that alone.
    AdminSite(SealStore& store, Sessions::Clock clock, bool encrypted)
        : m_store(store), m_sessions(std::move(clock)), m_encrypted(encrypted) {}

    // Throws what the store throws.
    WebReply Answer(const WebRequest& request);

private:
    struct Route;

    WebReply Login(const WebRequest& request);
    WebReply Logout(const Session& session);
    WebReply ChangePassword(const WebRequest& request, const Session& session);

    WebReply Show(const Route& route, const WebRequest& request, const Session& session);
    WebReply ShowCertificates(const Session& session, const std::string& done,
                              const std::string& fault);
    WebReply ShowCertificate(std::int64_t id, const Session& session, const std::string& done,
                             const std::string& fault);
    WebReply ShowSeal(std::int64_t id, const Session& session, const std::string& done);
    WebReply ShowRemoval(const Route& route, const Session& session);
    WebReply SealBytes(const Route& route);

    WebReply Change(const Route& route, const WebRequest& request, const Session& session);
    WebReply AddCertificate(const WebRequest& request, const Session& session);
    WebReply AddSeal(std::int64_t certificate, const WebRequest& request, const Session& session);
    WebReply ChangeSeal(const Route& route, const Session& session);

    SealStore& m_store;
    Sessions m_sessions;
    bool m_encrypted;
};

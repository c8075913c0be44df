#include "tools/sealserver/AdminSite.h"

#include <algorithm>
#include <cstdlib>

#include "tools/sealserver/AdminPages.h"
#include "tools/sealserver/Administration.h"
#include "tools/sealserver/Html.h"
#include "tools/sealserver/Password.h"
#include "tools/sealserver/SealStore.h"

// "/seals/7/remove" is kind "seals", id 7, action "remove".
struct AdminSite::Route {
    explicit Route(const std::string& path) {
        std::string* const parts[] = {&kind, &number, &action, &rest};
        std::size_t begin = 1;
        for (std::string* const part : parts) {
            if (begin > path.size()) break;
            const std::size_t end = part == &rest ? path.npos : path.find('/', begin);
            *part = path.substr(begin, end - begin);
            if (end == path.npos) break;
            begin = end + 1;
        }
        const bool isNumber = !number.empty() && number.size() < 18 &&
                              number.find_first_not_of("0123456789") == number.npos;
        if (isNumber) id = std::atoll(number.c_str());
        valid = rest.empty() && (number.empty() || isNumber);
    }

    std::string kind;
    std::string number;
    std::string action;
    std::string rest;
    std::int64_t id = 0;
    bool valid = false;
};

namespace {

constexpr int kBadRequest = 400;
constexpr int kForbidden = 403;
constexpr int kNotFound = 404;
constexpr int kTooMany = 429;

// What the page that follows a change says; the address carries the word alone.
struct Done {
    const char* word;
    const char* text;
};
constexpr Done kDone[] = {
    {"added", "Added."},
    {"removed", "Removed."},
    {"suspended", "The seal is suspended: it is given out no more, and its status says so."},
    {"resumed", "The seal is in use again."},
    {"logged-out", "You are logged out."},
    {"password", "The password is changed. Log in with the new one."},
};

std::string DoneText(const WebRequest& request) {
    const auto asked = request.query.find("done");
    if (asked == request.query.end()) return {};
    const auto* const known = std::find_if(std::begin(kDone), std::end(kDone),
                                           [&](const Done& d) { return asked->second == d.word; });
    return known == std::end(kDone) ? std::string() : known->text;
}

WebReply Redirect(const std::string& place, std::string note = "") {
    return {303, "text/plain; charset=utf-8", "", {{"Location", place}}, std::move(note)};
}

WebReply PageReply(int status, const PageFrame& frame, const std::string& content) {
    WebReply reply;
    reply.status = status;
    reply.body = Page(frame, content);
    return reply;
}

WebReply NotFound(const Session& session) {
    return PageReply(kNotFound, {"Not found", session.formToken, "", "There is no such page."}, "");
}

WebReply LoginPage(int status, const std::string& done, const std::string& fault) {
    return PageReply(status, {"Log in", "", done, fault}, LoginContent());
}

std::string FieldOf(const WebRequest& request, const char* name) {
    const auto found = request.fields.find(name);
    return found == request.fields.end() ? std::string() : found->second;
}

WebReply Resource(const char* type, const char* content) {
    return {200, type, content, {{"Cache-Control", "max-age=3600"}}, ""};
}

}  // namespace

WebReply AdminSite::Answer(const WebRequest& request) {
    if (request.path == "/style.css") return Resource("text/css; charset=utf-8", kStyleSheet);
    if (request.path == "/icon.svg") return Resource("image/svg+xml", kIcon);
    const bool isPost = request.method == "POST";
    if (isPost && request.path == "/login") return Login(request);
    const auto session = m_sessions.Find(request.session, m_store.Setting("password"));
    if (request.path == "/login")
        return session ? Redirect("/certificates") : LoginPage(200, DoneText(request), "");
    if (!session)
        return isPost ? LoginPage(kForbidden, "", "Your session has ended. Log in again.")
                      : Redirect("/login");
    if (request.path == "/") return Redirect("/certificates");
    const Route route(request.path);
    if (!route.valid) return NotFound(*session);
    if (!isPost) return Show(route, request, *session);
    if (!EqualSecrets(FieldOf(request, "token"), session->formToken))
        return PageReply(kForbidden,
                         {"Refused", session->formToken, "",
                          "The form isn't one of this session. Go back and load its page anew."},
                         "");
    return Change(route, request, *session);
}

WebReply AdminSite::Login(const WebRequest& request) {
    if (!m_sessions.MayTry(request.address)) {
        WebReply reply = LoginPage(kTooMany, "", "Too many attempts. Wait a quarter of an hour.");
        reply.headers.emplace_back("Retry-After", std::to_string(kAttemptSeconds));
        reply.note = "login refused";
        return reply;
    }
    const std::string password = FieldOf(request, "password");
    const std::string kept = m_store.Setting("password");
    if (password.size() > kLongestPassword || !PasswordMatches(password, kept)) {
        WebReply reply = LoginPage(kForbidden, "", "The password is wrong.");
        reply.note = "login failed";
        return reply;
    }
    const Session session = m_sessions.Begin(request.address, kept);
    WebReply reply = Redirect("/certificates", "login");
    reply.headers.emplace_back("Set-Cookie", std::string(kSessionCookie) + "=" + session.token +
                                                 "; Path=/; HttpOnly; SameSite=Strict" +
                                                 (m_encrypted ? "; Secure" : ""));
    return reply;
}

WebReply AdminSite::Logout(const Session& session) {
    m_sessions.End(session.token);
    WebReply reply = Redirect("/login?done=logged-out", "logout");
    reply.headers.emplace_back("Set-Cookie", std::string(kSessionCookie) +
                                                 "=; Path=/; HttpOnly; SameSite=Strict; Max-Age=0");
    return reply;
}

// The current password counts as a login's attempt, so that a session left open doesn't give it
// away.
WebReply AdminSite::ChangePassword(const WebRequest& request, const Session& session) {
    const std::string current = FieldOf(request, "current");
    const std::string chosen = FieldOf(request, "new");
    std::string fault;
    if (chosen.size() < kShortestPassword || chosen.size() > kLongestPassword)
        fault = "The new password is too short or too long.";
    else if (chosen != FieldOf(request, "again"))
        fault = "The two new passwords differ.";
    else if (!m_sessions.MayTry(request.address))
        fault = "Too many attempts. Wait a quarter of an hour.";
    else if (current.size() > kLongestPassword ||
             !PasswordMatches(current, m_store.Setting("password")))
        fault = "The current password is wrong.";
    if (!fault.empty())
        return PageReply(kBadRequest, {"Password", session.formToken, "", fault},
                         PasswordContent(session.formToken));
    m_store.SetSetting("password", HashPassword(chosen));
    return Redirect("/login?done=password", "password changed");
}

WebReply AdminSite::Show(const Route& route, const WebRequest& request, const Session& session) {
    const std::string done = DoneText(request);
    if (route.action == "remove") return ShowRemoval(route, session);
    if (route.kind == "seals" && !route.action.empty()) return SealBytes(route);
    if (!route.action.empty()) return NotFound(session);
    if (route.kind == "certificates" && route.number.empty())
        return ShowCertificates(session, done, "");
    if (route.kind == "certificates") return ShowCertificate(route.id, session, done, "");
    if (route.kind == "seals") return ShowSeal(route.id, session, done);
    if (route.kind == "password" && route.number.empty())
        return PageReply(200, {"Password", session.formToken, "", ""},
                         PasswordContent(session.formToken));
    return NotFound(session);
}

WebReply AdminSite::ShowCertificates(const Session& session, const std::string& done,
                                     const std::string& fault) {
    std::vector<CertificateEntry> entries;
    for (StoredCertificate& certificate : m_store.Certificates()) {
        const auto seals = m_store.Seals(certificate.id);
        const auto suspended = std::count_if(seals.begin(), seals.end(),
                                             [](const StoredSeal& seal) { return seal.suspended; });
        entries.push_back(
            {std::move(certificate), seals.size(), static_cast<std::size_t>(suspended)});
    }
    return PageReply(fault.empty() ? 200 : kBadRequest,
                     {"Certificates", session.formToken, done, fault},
                     CertificatesContent(entries, session.formToken));
}

WebReply AdminSite::ShowCertificate(std::int64_t id, const Session& session,
                                    const std::string& done, const std::string& fault) {
    const auto certificate = m_store.Certificate(id);
    if (!certificate) return NotFound(session);
    return PageReply(fault.empty() ? 200 : kBadRequest,
                     {"Certificate " + certificate->serial, session.formToken, done, fault},
                     CertificateContent(*certificate, m_store.Seals(id), session.formToken));
}

WebReply AdminSite::ShowSeal(std::int64_t id, const Session& session, const std::string& done) {
    const auto seal = m_store.Seal(id);
    const auto certificate = seal ? m_store.Certificate(seal->certificate) : std::nullopt;
    const auto offered = seal ? ReadOfferedSeal(seal->file) : std::nullopt;
    if (!certificate || !offered) return NotFound(session);
    return PageReply(200, {seal->name, session.formToken, done, ""},
                     SealContent(*seal, *offered, *certificate, session.formToken));
}

WebReply AdminSite::ShowRemoval(const Route& route, const Session& session) {
    const std::string place = "/" + route.kind + "/" + route.number;
    std::string what;
    if (route.kind == "seals") {
        const auto seal = m_store.Seal(route.id);
        if (seal) what = "Seal " + seal->number + ", " + seal->name + ".";
    } else if (route.kind == "certificates") {
        const auto certificate = m_store.Certificate(route.id);
        if (certificate)
            what = "Certificate " + certificate->serial + ", " + certificate->name +
                   ", with all its seals.";
    }
    if (what.empty()) return NotFound(session);
    return PageReply(200, {"Remove?", session.formToken, "", ""},
                     RemovalContent(what, place + "/remove", place, session.formToken));
}

WebReply AdminSite::SealBytes(const Route& route) {
    WebReply missing{kNotFound, "text/plain; charset=utf-8", "There is no such file.\n", {}, ""};
    const auto seal = m_store.Seal(route.id);
    if (!seal) return missing;
    if (route.action == "file")
        return {200,
                "application/octet-stream",
                seal->file,
                {{"Content-Disposition",
                  "attachment; filename=\"seal-" + std::to_string(seal->id) + ".bin\""}},
                ""};
    const auto offered = ReadOfferedSeal(seal->file);
    const std::string type = offered ? PictureType(offered->picture) : std::string();
    if (route.action != "picture" || type.empty()) return missing;
    return {200, type, offered->picture, {}, ""};
}

WebReply AdminSite::Change(const Route& route, const WebRequest& request, const Session& session) {
    if (route.kind == "logout") return Logout(session);
    if (route.kind == "password" && route.number.empty()) return ChangePassword(request, session);
    if (route.kind == "certificates" && route.number.empty())
        return AddCertificate(request, session);
    if (route.kind == "certificates" && route.action == "seals")
        return AddSeal(route.id, request, session);
    if (route.kind == "certificates" && route.action == "remove") {
        m_store.RemoveCertificate(route.id);
        return Redirect("/certificates?done=removed", "certificate removed");
    }
    if (route.kind == "seals") return ChangeSeal(route, session);
    return NotFound(session);
}

WebReply AdminSite::AddCertificate(const WebRequest& request, const Session& session) {
    try {
        const std::int64_t id =
            EnterCertificate(m_store, FieldOf(request, "file"), FieldOf(request, "serial"),
                             FieldOf(request, "name"));
        return Redirect("/certificates/" + std::to_string(id) + "?done=added", "certificate added");
    } catch (const Refusal& refusal) {
        return ShowCertificates(session, "", refusal.what());
    }
}

WebReply AdminSite::AddSeal(std::int64_t certificate, const WebRequest& request,
                            const Session& session) {
    try {
        const std::int64_t seal = EnterSeal(
            m_store, certificate,
            {FieldOf(request, "file"), FieldOf(request, "number"), FieldOf(request, "name")});
        // The seal's own page has the warning.
        const std::string place = WarningAboutSeal(m_store, seal).empty()
                                      ? "/certificates/" + std::to_string(certificate)
                                      : "/seals/" + std::to_string(seal);
        return Redirect(place + "?done=added", "seal added");
    } catch (const Refusal& refusal) {
        return ShowCertificate(certificate, session, "", refusal.what());
    }
}

WebReply AdminSite::ChangeSeal(const Route& route, const Session& session) {
    const auto seal = m_store.Seal(route.id);
    if (!seal) return NotFound(session);
    const std::string place = "/certificates/" + std::to_string(seal->certificate) + "?done=";
    if (route.action == "remove") {
        m_store.RemoveSeal(route.id);
        return Redirect(place + "removed", "seal removed");
    }
    if (route.action == "suspend") {
        m_store.SetSuspended(route.id, true);
        return Redirect(place + "suspended", "seal suspended");
    }
    if (route.action == "resume") {
        m_store.SetSuspended(route.id, false);
        return Redirect(place + "resumed", "seal resumed");
    }
    return NotFound(session);
}

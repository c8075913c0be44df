// Sessions.h - who is logged in to the administrator's page, and who has tried too often.
#pragma once

#include <ctime>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

struct Session {
    std::string token;      // in the cookie
    std::string formToken;  // in every form of the page
    std::string password;   // what was kept of the password at the login
    std::time_t begun = 0;
    std::time_t used = 0;
};

// A session ends after half an hour without a request, after eight hours in any case, with the
// process, and once another password is kept, whoever has set it. At most kMostSessions stand; a
// further one takes the place of the one used longest ago.
constexpr std::time_t kIdleSeconds = 30 * 60;
constexpr std::time_t kSessionSeconds = 8 * 60 * 60;
constexpr std::size_t kMostSessions = 32;

// After five attempts without success from one address within a quarter of an hour a further one is
// refused, whatever the password, until the first of them is a quarter of an hour old.
constexpr std::size_t kMostAttempts = 5;
constexpr std::time_t kAttemptSeconds = 15 * 60;

// For several threads at a time.
class Sessions {
public:
    using Clock = std::function<std::time_t()>;

    explicit Sessions(Clock clock) : m_clock(std::move(clock)) {}

    // To be asked before a password is looked at: counts the attempt. False if it is refused.
    bool MayTry(const std::string& address);
    // The password was right, by what is kept of it: the address's attempts are forgotten.
    Session Begin(const std::string& address, const std::string& password);
    // The session of that token, used now; none if it has ended. `password` is what is kept of the
    // password by now.
    std::optional<Session> Find(const std::string& token, const std::string& password);
    void End(const std::string& token);

private:
    bool HasEnded(const Session& session, std::time_t now) const;
    void MakeRoom(std::time_t now);

    Clock m_clock;
    std::mutex m_mutex;
    std::map<std::string, Session> m_sessions;
    std::map<std::string, std::deque<std::time_t>> m_attempts;
};

#include "tools/sealserver/Sessions.h"

#include <algorithm>

#include "tools/sealserver/Password.h"

namespace {

constexpr std::size_t kTokenBytes = 32;
constexpr std::size_t kMostAddresses = 4096;

void DropOld(std::deque<std::time_t>& attempts, std::time_t now) {
    while (!attempts.empty() && now - attempts.front() >= kAttemptSeconds) attempts.pop_front();
}

}  // namespace

bool Sessions::MayTry(const std::string& address) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::time_t now = m_clock();
    for (auto& entry : m_attempts) DropOld(entry.second, now);
    std::erase_if(m_attempts, [](const auto& entry) { return entry.second.empty(); });
    // Many addresses at a time are an attack, and then nobody gets in.
    if (m_attempts.size() >= kMostAddresses && !m_attempts.contains(address)) return false;
    std::deque<std::time_t>& attempts = m_attempts[address];
    if (attempts.size() >= kMostAttempts) return false;
    attempts.push_back(now);
    return true;
}

bool Sessions::HasEnded(const Session& session, std::time_t now) const {
    return now - session.used >= kIdleSeconds || now - session.begun >= kSessionSeconds;
}

void Sessions::MakeRoom(std::time_t now) {
    std::erase_if(m_sessions, [&](const auto& entry) { return HasEnded(entry.second, now); });
    if (m_sessions.size() < kMostSessions) return;
    m_sessions.erase(std::min_element(
        m_sessions.begin(), m_sessions.end(),
        [](const auto& left, const auto& right) { return left.second.used < right.second.used; }));
}

Session Sessions::Begin(const std::string& address, const std::string& password) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_attempts.erase(address);
    const std::time_t now = m_clock();
    MakeRoom(now);
    const Session session{RandomHex(kTokenBytes), RandomHex(kTokenBytes), password, now, now};
    m_sessions[session.token] = session;
    return session;
}

std::optional<Session> Sessions::Find(const std::string& token, const std::string& password) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_sessions.find(token);
    if (found == m_sessions.end()) return std::nullopt;
    const std::time_t now = m_clock();
    if (HasEnded(found->second, now) || found->second.password != password) {
        m_sessions.erase(found);
        return std::nullopt;
    }
    found->second.used = now;
    return found->second;
}

void Sessions::End(const std::string& token) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_sessions.erase(token);
}

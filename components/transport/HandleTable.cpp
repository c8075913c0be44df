#include "components/transport/HandleTable.h"

#include <algorithm>

namespace {

// A request's number is its context's with its own place in the lowest bits.
constexpr std::uintptr_t kStep = kMostRequests + 1;
static_assert((kStep & (kStep - 1)) == 0);

std::uintptr_t NumberOf(void* handle) { return reinterpret_cast<std::uintptr_t>(handle); }
void* HandleOf(std::uintptr_t number) { return reinterpret_cast<void*>(number); }

bool IsUnderWay(const TransportContext& context) {
    return std::any_of(context.requests.begin(), context.requests.end(), [](const auto& request) {
        return request.second.state == RequestState::kUnderWay;
    });
}

}  // namespace

void* CHandleTable::MakeContext() {
    const std::thread::id caller = std::this_thread::get_id();
    std::erase_if(m_contexts, [caller](const auto& entry) {
        return entry.second.reader == caller && !IsUnderWay(entry.second);
    });
    if (m_contexts.size() >= kMostContexts && !ReleaseOldest(nullptr)) return nullptr;
    TransportContext& made = m_contexts[m_last + kStep];
    made.lastUse = ++m_uses;
    m_last += kStep;
    return HandleOf(m_last);
}

void* CHandleTable::MakeRequest(void* context) {
    TransportContext* const owner = FindContext(context);
    if (owner == nullptr || owner->requests.size() >= kMostRequests) return nullptr;
    const std::uintptr_t number = NumberOf(context) + owner->requests.size() + 1;
    owner->requests.try_emplace(number);
    return HandleOf(number);
}

TransportContext* CHandleTable::FindContext(void* context) {
    const auto found = m_contexts.find(NumberOf(context));
    return found == m_contexts.end() ? nullptr : &found->second;
}

TransportContext* CHandleTable::OwnerOf(void* request) {
    return FindContext(HandleOf(NumberOf(request) / kStep * kStep));
}

HttpRequest* CHandleTable::FindRequest(void* request) {
    TransportContext* const owner = OwnerOf(request);
    if (owner == nullptr) return nullptr;
    const auto found = owner->requests.find(NumberOf(request));
    return found == owner->requests.end() ? nullptr : &found->second;
}

void CHandleTable::MakeRoom(std::size_t bytes, void* request) {
    const TransportContext* const kept = OwnerOf(request);
    while (HeldBytes() + bytes > kMostHeldBytes && ReleaseOldest(kept)) continue;
}

void CHandleTable::Finish(void* request, int result, std::string answer) {
    MakeRoom(answer.size(), request);
    HttpRequest& sent = *FindRequest(request);
    sent.state = RequestState::kOver;
    sent.result = result;
    sent.answer = std::move(answer);
    OwnerOf(request)->lastUse = ++m_uses;
}

void CHandleTable::MarkRead(void* request) {
    TransportContext& owner = *OwnerOf(request);
    owner.reader = std::this_thread::get_id();
    owner.lastUse = ++m_uses;
}

bool CHandleTable::ReleaseOldest(const TransportContext* kept) {
    auto oldest = m_contexts.end();
    for (auto entry = m_contexts.begin(); entry != m_contexts.end(); ++entry) {
        const TransportContext& context = entry->second;
        if (&context == kept || IsUnderWay(context)) continue;
        const bool isOlder = oldest == m_contexts.end() || context.lastUse < oldest->second.lastUse;
        if (isOlder) oldest = entry;
    }
    if (oldest == m_contexts.end()) return false;
    m_contexts.erase(oldest);
    return true;
}

std::size_t CHandleTable::HeldBytes() const {
    std::size_t bytes = 0;
    for (const auto& entry : m_contexts) {
        for (const auto& request : entry.second.requests) {
            bytes += request.second.body.size() + request.second.answer.size();
        }
    }
    return bytes;
}

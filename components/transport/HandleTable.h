// HandleTable.h - the contexts and requests that the transport has given out, and when they end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <thread>

#include "components/transport/HttpRequest.h"

constexpr std::size_t kMostContexts = 256;
constexpr std::size_t kMostRequests = 15;  // of one context
constexpr std::size_t kMostHeldBytes = 256 << 20;

struct TransportContext {
    std::string address{};
    int fault = 0;  // the first step of the configuration that failed
    std::map<std::uintptr_t, HttpRequest> requests{};
    std::thread::id reader{};    // who read an answer last
    std::uintptr_t lastUse = 0;  // the larger the later
};

// Callers release nothing, so the table does. A context goes, with its requests,
// - when the thread that read an answer of it begins another context;
// - when it is the oldest, kMostContexts are there and one more is begun;
// - when it is the oldest, and bodies and answers together would have more than kMostHeldBytes.
// The oldest is the one that was begun, had an exchange end or an answer read the longest ago: an
// answer that was slow to come isn't old when it comes. A context with an exchange under way stays
// in any case. Handles are numbers, used only once and never followed as pointers. What Find gives
// stays in its place until the context goes. Not locked: its user does that.
class CHandleTable {
public:
    // Null if all kMostContexts have an exchange under way.
    void* MakeContext();
    // Null if `context` isn't there or has all its requests.
    void* MakeRequest(void* context);

    // Null if there is none (any more).
    TransportContext* FindContext(void* context);
    HttpRequest* FindRequest(void* request);
    // The context that a request belongs to; null if there is none.
    TransportContext* OwnerOf(void* request);

    // Lets old contexts go until `bytes` more have room, all but the owner of `request`.
    void MakeRoom(std::size_t bytes, void* request);

    // The exchange of `request`, which is there, has ended so; room for the answer is made.
    void Finish(void* request, int result, std::string answer);
    // The calling thread reads the answer of `request`, which is there.
    void MarkRead(void* request);

private:
    bool ReleaseOldest(const TransportContext* kept);
    std::size_t HeldBytes() const;

    std::map<std::uintptr_t, TransportContext> m_contexts;
    std::uintptr_t m_last = 0;
    std::uintptr_t m_uses = 0;
};

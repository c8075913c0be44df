// SideWork.h - work in pieces that another core may do while this one goes on.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>

#include "platform/SideThread.h"

// What is left when the result is wanted two threads do, so it hardly takes longer than without a
// thread where all cores are busy and that one is slow to begin.
class CSideWork {
public:
    // Calls `piece` for each number below `count`, from two threads.
    CSideWork(std::size_t count, std::function<void(std::size_t)> piece);
    // Pieces that nobody has begun are never done; for one that has begun this waits.
    ~CSideWork() { m_next = m_count; }
    CSideWork(const CSideWork&) = delete;
    CSideWork& operator=(const CSideWork&) = delete;

    // Starts the thread, if the system has one. At most once.
    void Begin();
    // When this returns all pieces are done. Throws what one of them threw.
    void Finish();

private:
    void RunPieces();
    void Run(std::size_t number);

    const std::size_t m_count;
    const std::function<void(std::size_t)> m_piece;
    std::atomic<std::size_t> m_next = 0;
    // Not waited for as an atomic: where the system has no such wait GCC 12's library loses a
    // wake-up that comes between its look at the number and its sleep.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::size_t m_done = 0;
    std::atomic_flag m_hasFailed;
    std::exception_ptr m_failure;
    platform::SideThread m_thread;  // before the others go, it has ended
};

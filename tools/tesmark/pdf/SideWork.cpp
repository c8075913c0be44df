#include "pdf/SideWork.h"

#include <utility>

CSideWork::CSideWork(std::size_t count, std::function<void(std::size_t)> piece)
    : m_count(count), m_piece(std::move(piece)) {}

void CSideWork::Begin() {
    m_thread.Start([this] { RunPieces(); });
}

void CSideWork::Finish() {
    RunPieces();
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_done == m_count; });
    }
    if (m_failure) std::rethrow_exception(m_failure);
}

void CSideWork::RunPieces() {
    for (std::size_t number = m_next++; number < m_count; number = m_next++) {
        Run(number);
        const std::lock_guard lock(m_mutex);
        if (++m_done == m_count) m_changed.notify_one();
    }
}

void CSideWork::Run(std::size_t number) {
    try {
        m_piece(number);
    } catch (...) {
        if (!m_hasFailed.test_and_set()) m_failure = std::current_exception();
    }
}

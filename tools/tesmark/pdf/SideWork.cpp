#include "pdf/SideWork.h"

#include <utility>

CSideWork::CSideWork(std::size_t count, std::function<void(std::size_t)> piece)
    : m_count(count), m_piece(std::move(piece)) {}

void CSideWork::Begin() {
    m_thread.Start([this] { RunPieces(); });
}

void CSideWork::Finish() {
    RunPieces();
    for (std::size_t done = m_done; done != m_count; done = m_done) m_done.wait(done);
    if (m_failure) std::rethrow_exception(m_failure);
}

void CSideWork::RunPieces() {
    for (std::size_t number = m_next++; number < m_count; number = m_next++) {
        Run(number);
        if (++m_done == m_count) m_done.notify_one();
    }
}

void CSideWork::Run(std::size_t number) {
    try {
        m_piece(number);
    } catch (...) {
        if (!m_hasFailed.test_and_set()) m_failure = std::current_exception();
    }
}

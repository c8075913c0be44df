// DocumentBytes.h - the bytes of a document that signatures sign.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <future>
#include <memory>
#include <string>
#include <string_view>

#include "pdf/PdfSignature.h"

// Reads the document once, whatever the number of its signatures, on a thread of its own where the
// system has one to give: the reading goes on while others find out what is signed. Takes memory of
// the document's size. For one thread.
class CDocumentBytes {
public:
    // Begins to read, but not what is no regular file, or has more than `limit` bytes; of that
    // there are no signed bytes.
    CDocumentBytes(std::string path, std::uint64_t limit);
    // Breaks off the reading.
    ~CDocumentBytes();
    CDocumentBytes(const CDocumentBytes&) = delete;
    CDocumentBytes& operator=(const CDocumentBytes&) = delete;

    // What a signature with a sound range signs, in one piece; stands until the next call. False
    // if the file can't be read, or was shorter than the range when it was read.
    bool Signed(const PdfSignature& signature, std::string_view& bytes);

private:
    struct Gap {
        std::size_t start = 0;
        std::size_t end = 0;
        std::size_t documentEnd = 0;
        std::string content;
    };

    void Read(const std::string& path);
    bool MovesHead() const;
    std::string_view CloseGap();
    void OpenGap();

    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size = 0;
    Gap m_gap;  // that was closed by the last call
    std::atomic<bool> m_stopped = false;
    std::future<void> m_reading;  // before the others go, its thread has ended
};

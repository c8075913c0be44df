// DocumentBytes.h - the bytes of a document that signatures sign.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "pdf/PdfSignature.h"
#include "platform/FileView.h"

// A document as it stands in its file, opened once for all that is found out about it. Its bytes
// aren't copied, but for those that have to move where a gap is closed. For one thread,
// but for the bytes of Whole(), which others may read as long as they stand.
class CDocumentBytes {
public:
    explicit CDocumentBytes(const std::string& path);

    // False for what is no regular file, or can't be read; it has no bytes.
    bool IsOpen() const { return m_view.IsOpen(); }
    // All of it; stands until Signed is called.
    std::string_view Whole();
    // What a signature with a sound range signs, in one piece; stands until the next call. False
    // if the document is shorter than the range.
    bool Signed(const PdfSignature& signature, std::string_view& bytes);

private:
    struct Gap {
        std::size_t start = 0;
        std::size_t end = 0;
        std::size_t documentEnd = 0;
        std::string content;
    };

    bool MovesHead() const;
    std::string_view CloseGap();
    void OpenGap();

    platform::FileView m_view;
    Gap m_gap;  // that was closed by the last call
};

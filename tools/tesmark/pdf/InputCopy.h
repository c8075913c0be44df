// InputCopy.h - the input's copy beside the output, with which the output begins.
#pragma once

#include <cstdint>
#include <future>
#include <optional>
#include <string>

#include "pdf/FileState.h"
#include "pdf/WorkFile.h"

// From this size on a copy takes longer than what it costs to make it on a thread of its own.
inline constexpr std::uint64_t kLargeInput = 8 * 1024 * 1024;

// Made at its end (Finish), or ahead while other things are done (Begin). Either way it is a copy
// of the input as it was when this object was made.
class CInputCopy {
public:
    // Looks at the input and writes nothing.
    CInputCopy(std::string inputPath, const std::string& outputPath);
    // Removes the file unless it has become the output. A copy that is under way is broken off.
    ~CInputCopy();
    CInputCopy(const CInputCopy&) = delete;
    CInputCopy& operator=(const CInputCopy&) = delete;

    // Worth a Begin?
    bool IsLarge() const { return m_before && m_before->size >= kLargeInput; }
    // Whatever the names of the two are, links followed.
    bool OutputIsInput() const;

    // Starts a thread that makes the copy; what it meets is told by Finish. At most once. Nothing
    // where the output is the input. Between this and the end of this object a process that is
    // killed leaves the file behind.
    void Begin();
    // Waits for the copy, or makes it now. At most once. Throws CPdfFailure: kInputChanged if the
    // input isn't what it was at the start, so call it when nothing of it is to be read any more;
    // kOutputUnwritable.
    CWorkFile& Finish();

private:
    bool Make();

    std::string m_input;
    std::string m_output;
    std::optional<FileState> m_before;
    CWorkFile m_file;
    std::future<bool> m_made;  // before m_file goes, its thread has ended
};

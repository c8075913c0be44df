// WorkFile.h - the file beside an output in which it is made, and which becomes it at the end.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

// Paths are the file system's bytes; operations give false with a sentence in Problem(), UTF-8,
// when the system refuses. Never larger in
// memory than a few pages, but for ReadAll.
class CWorkFile {
public:
    // `outputPath` is where it will end; a link there is followed.
    explicit CWorkFile(std::string outputPath);
    // Removes the file unless it has become the output.
    ~CWorkFile();
    CWorkFile(const CWorkFile&) = delete;
    CWorkFile& operator=(const CWorkFile&) = delete;

    // Makes the empty file. Refuses an output that is there and is no regular file, or may not be
    // written.
    bool Create();
    // Puts the first `size` bytes of `inputPath` at its start: sharing the blocks where the file
    // system can, else copying in the kernel. False as well if the input is shorter now.
    bool CopyFrom(const std::string& inputPath, std::uint64_t size);
    // From any thread: a copy that is under way gives up within a few milliseconds, with false, and
    // a later one at once.
    void Stop() { m_stopped = true; }
    // Over what is there, and on behind its end.
    bool WriteAt(std::uint64_t offset, std::string_view bytes);
    bool ReadAll(std::string& bytes);
    // From any thread: has the system begin to bring to the disk what was written so far, so that
    // there is little to wait for at the end. Until that is done, whoever else waits for the same
    // disk waits longer. Never fails; does nothing where the system can't be asked for it.
    void BeginWriting();
    // Waits until everything is on the disk and gives the file the output's name, in one step. It
    // has the rights of an output that it replaces.
    bool BecomeOutput();

    const std::string& Path() const { return m_path; }
    const std::string& Problem() const { return m_problem; }

private:
    // A descriptor, or on Windows a handle.
    using File = std::intptr_t;
    static constexpr File kNoFile = -1;

    // With the system's reason, or with another one.
    bool Fail(const char* what);
    bool Fail(const char* what, const std::string& why);
    bool CheckOutput();
    // Nobody can tell it ahead.
    std::string NameBesideOutput() const;
    bool CopyBytes(File input, std::uint64_t size);
    void Close();

    std::string m_output;
    std::string m_path;
    std::string m_problem;
    File m_file = kNoFile;
    int m_mode = -1;  // of the output that is replaced, where rights are bits
    std::uint64_t m_size = 0;
    std::atomic<bool> m_stopped = false;
};

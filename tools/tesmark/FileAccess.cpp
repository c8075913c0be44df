#include "FileAccess.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "Failure.h"
#include "Output.h"
#include "PathText.h"
#include "StandardOutput.h"
#include "Terminal.h"
#include "pdf/FileState.h"
#include "pdf/WorkFile.h"
#include "platform/Files.h"

namespace {

namespace fs = std::filesystem;

Failure Unreadable(const std::string& path, const std::string& why) {
    return {ExitCode::kFile, "The file can't be read: " + path + " (" + why + ")."};
}

Failure Unwritable(const std::string& path, const std::string& why) {
    return {ExitCode::kFile, "The output can't be written: " + path + " (" + why + ")."};
}

std::string ReadStandardInput(std::uint64_t limit) {
    std::string content{std::istreambuf_iterator<char>(std::cin), {}};
    if (content.size() > limit) {
        throw Failure{ExitCode::kFile, "Standard input has more than " + SizeText(limit) + "."};
    }
    return content;
}

}  // namespace

void CheckIsNoStream(const std::string& path) {
    if (path != "-") return;
    throw Failure{ExitCode::kUsage,
                  "A file is needed here, and \"-\" is standard input or output.",
                  {},
                  "  a file of that name is \"./-\""};
}

std::uint64_t CheckReadable(const std::string& path) {
    CheckIsNoStream(path);
    std::error_code error;
    if (fs::is_directory(FileAt(path), error)) throw Unreadable(path, "it is a folder");
    errno = 0;
    const std::ifstream file(FileAt(path), std::ios::binary);
    if (!file) throw Unreadable(path, std::strerror(errno));
    const auto size = fs::file_size(FileAt(path), error);
    return error ? 0 : size;
}

std::string ReadWholeFile(const std::string& path, std::uint64_t limit) {
    if (path == "-") return ReadStandardInput(limit);
    const std::uint64_t size = CheckReadable(path);
    if (size > limit) throw Unreadable(path, "it has more than " + SizeText(limit));
    std::ifstream file(FileAt(path), std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(file), {}};
    if (file.bad()) throw Unreadable(path, "reading failed");
    return content;
}

void CheckIsNotInput(const std::string& output, const std::string& input) {
    FileState written;
    FileState read;
    if (output == "-" || input == "-" || !ReadFileState(platform::PathFromUtf8(output), written) ||
        !ReadFileState(platform::PathFromUtf8(input), read) || !written.IsSameFile(read)) {
        return;
    }
    throw Failure{ExitCode::kFile,
                  "The output must be another file than the input: " + output + "."};
}

void WriteWholeFile(const std::string& path, std::string_view content) {
    if (path == "-") {
        std::FILE* const output = StandardOutput();
        const std::size_t written = std::fwrite(content.data(), 1, content.size(), output);
        if (std::fflush(output) == 0 && written == content.size()) return;
        throw Unwritable("standard output", "writing failed");
    }
    CWorkFile file(platform::PathFromUtf8(path));
    const bool isWritten = file.Create() && file.WriteAt(0, content);
    if (InterruptGuard::Interrupted()) {
        throw Failure{ExitCode::kInterrupted, "Interrupted; nothing was written."};
    }
    if (!isWritten || !file.BecomeOutput()) throw Failure{ExitCode::kFile, file.Problem()};
}

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

// A name that nobody else uses, in the same folder, so that a rename does.
std::string NameBeside(const std::string& path) {
    for (int i = 0; i < 1000; ++i) {
        std::string name = path + ".part" + std::to_string(i);
        if (!fs::exists(fs::symlink_status(FileAt(name)))) return name;
    }
    throw Unwritable(path, "too many unfinished files beside it");
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
    const fs::path part = FileAt(NameBeside(path));
    errno = 0;
    std::ofstream file(part, std::ios::binary | std::ios::trunc);
    if (!file) throw Unwritable(path, std::strerror(errno));
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    std::error_code error;
    if (file && !InterruptGuard::Interrupted()) {
        fs::rename(part, FileAt(path), error);
        if (!error) return;
    }
    std::error_code ignored;
    fs::remove(part, ignored);
    if (InterruptGuard::Interrupted()) {
        throw Failure{ExitCode::kInterrupted, "Interrupted; nothing was written."};
    }
    throw Unwritable(path, error ? error.message() : "writing failed");
}

// Library.h - the library's exports as the commands use them: failures are thrown, texts and bytes
// are strings.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

// The library is up while it lives. Throws a setup Failure if it can't be started.
class LibrarySession {
public:
    LibrarySession();
    ~LibrarySession();
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;
};

// Where the library logs; empty if the system tells no folder. The file's own bytes.
std::string LogPath();

// Remembers the end of the log, so that what a failed call wrote behind it can be read.
class LogMark {
public:
    LogMark();
    // The last code of a component among the records since then; 0 if there is none. The library
    // puts a code of its own in place of some, and tells theirs in the log alone.
    int InnerCode() const;
    // What the time-stamp engine told of its last failure since then, in UTF-8; empty if it told of
    // none.
    std::string TimeStampFault() const;

private:
    std::ifstream Records() const;

    long long m_size;
};

// Throws a Failure with `sentence`, unless `code` is 0. Where the code hides another one, that one
// is told; of a time stamp that failed also what the engine told, of others ResultHint.
void CheckResult(int code, const std::string& sentence, const LogMark& mark);

// Opens the key; the certificate is selected then. Throws a Failure that tells a wrong PIN from a
// locked key where the log does, and then the tries that are left, if they are known.
void LogIn(const std::string& certId, const std::string& pin);

// Waits for a scan by phone. The selection stays. Throws a Failure that tells why it came to
// nothing where the log does.
void Scan();

// The certificate that is selected; empty if none is.
std::string SelectedCertificate();

// The file of the seal that is selected. Throws a Failure where the library doesn't give it out.
std::string SelectedSealFile();

// A signature by what is selected: a PKCS#7, or a seal signature with `property`, of data or of a
// file by its path, the file system's bytes. Without what a service may leave behind the DER. A
// code, with `signature` empty, on failure.
int MakeSignature(std::string_view data, const std::string& property, std::string& signature);
int MakeFileSignature(const std::string& path, const std::string& property, std::string& signature);
// PKCS#1.
int MakeRawSignature(std::string_view data, std::string& signature);

// The length of the DER element at the start of `bytes`, header included; 0 if there is none whose
// end lies within them.
std::size_t DerLength(std::string_view bytes);

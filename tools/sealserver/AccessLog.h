// AccessLog.h - one line for each request that the server has answered.
#pragma once

#include <fstream>
#include <functional>
#include <mutex>
#include <string>

struct AccessRecord {
    std::string address;
    std::string method;
    std::string target;  // as it came in
    int status = 0;
    std::size_t bytes = 0;  // of the answer's body
    std::string note;       // what the service or the login did; may be empty
};

// "2026-11-22T00:12:30Z 127.0.0.1 POST /QelmServlet 200 231 GetSealList 200 2". What isn't
// printable ASCII is written as %XX, so that a line is one request whatever was sent. Bodies,
// passwords and cookies are never written.
std::string AccessLine(const AccessRecord& record, std::time_t now);

// For several threads at a time; each line is in the file when Write comes back, unless the system
// refused to take it: then that line is lost, and no later one.
class AccessLog {
public:
    // Appends to the file, which is made for its owner alone if there is none; an empty path:
    // nothing is written. Throws std::runtime_error if it can't be opened.
    explicit AccessLog(const std::string& path);
    void Write(const AccessRecord& record);

private:
    std::mutex m_mutex;
    std::ofstream m_file;
};

// AnswerHead.h - what is read of the head of an HTTP answer.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Heads of one exchange have no more, those of redirects included.
constexpr std::size_t kLargestHead = 1 << 16;

class CAnswerHead {
public:
    // Takes one line, with its line end or without. A status line begins the head of one more
    // answer: after a redirect, or a question for a password. False once there are more than
    // kLargestHead bytes; the line then isn't read.
    bool Take(std::string_view line);

    bool IsNew() const { return m_isNew; }  // the line just taken was a status line
    // The empty line behind the newest head has come. libcurl takes a connection that ends within a
    // head for the end of an answer without a body.
    bool IsWhole() const { return m_isWhole; }
    int Status() const { return m_status; }
    // Of the last Content-Type, in lower case and without its parameters; empty without one.
    const std::string& Type() const { return m_type; }
    // Whether any Content-Encoding but "identity" is told, so that the body isn't what it stands
    // for.
    bool IsEncoded() const { return m_isEncoded; }

private:
    std::size_t m_size = 0;
    bool m_isNew = false;
    bool m_isWhole = false;
    int m_status = 0;
    std::string m_type;
    bool m_isEncoded = false;
};

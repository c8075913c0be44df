// Host.h - the library's end of a conversation with the dialog program, played by a test.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>

class Host {
public:
    // Takes the descriptors over; they may be the same. `meanwhile` is called again and again while
    // nothing comes.
    Host(
        int input, int output, std::function<void()> meanwhile = [] {});
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // One line of these fields.
    void Say(std::initializer_list<std::string> fields);
    // The next line without its line feed. Empty if the program has closed its end, or says nothing
    // for ten seconds.
    std::string Hear();
    // Drops lines up to the first that begins with `word`, and returns that one.
    std::string HearUpTo(const std::string& word);
    // What has come and wasn't heard, after `meanwhile` has had its time.
    std::string Unheard();
    // Ends the program's input.
    void Leave();

private:
    bool Take(int milliseconds);

    int m_input;
    int m_output;
    std::function<void()> m_meanwhile;
    std::string m_bytes;
    bool m_ended = false;
};

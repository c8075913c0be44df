// ProgramStart.h - what the program settles with its platform before it does anything.
#pragma once

#include <string>
#include <vector>

// One, for as long as main() runs. From then on the standard streams carry bytes as they are, a
// console that is one of them shows UTF-8, and it is given back as it was at the end.
class ProgramStart {
public:
    ProgramStart(int argumentCount, char** arguments);
    ~ProgramStart();
    ProgramStart(const ProgramStart&) = delete;
    ProgramStart& operator=(const ProgramStart&) = delete;

    // The command line's words, the program's name first. UTF-8 on Windows whatever the code page;
    // elsewhere the bytes as they were typed. Valid as long as this object.
    const std::vector<const char*>& Arguments() const { return m_arguments; }

private:
    std::vector<std::string> m_texts;
    std::vector<const char*> m_arguments;
    unsigned int m_formerCodePage = 0;  // of the console's output; 0: not changed
};

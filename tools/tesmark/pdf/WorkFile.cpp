#include "pdf/WorkFile.h"

#include <random>

#include "platform/Files.h"

bool CWorkFile::Fail(const char* what, const std::string& why) {
    m_problem = "\"" + platform::Utf8FromPath(m_output) + "\" " + what + ": " + why + ".";
    return false;
}

std::string CWorkFile::NameBesideOutput() const {
    static constexpr char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::string name = m_output + ".";
    for (int i = 0; i < 8; ++i) name += kLetters[random() % (sizeof kLetters - 1)];
    return name;
}

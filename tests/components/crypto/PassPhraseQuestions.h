// PassPhraseQuestions.h - counts what OpenSSL would ask on the terminal of the process.
#pragma once

#include <openssl/ui.h>

#include <string>
#include <string_view>

// A block of PEM that says it is encrypted; whoever reads it is asked for the pass phrase.
inline std::string EncryptedPem(std::string_view kind) {
    const std::string name(kind);
    return "-----BEGIN " + name +
           "-----\nProc-Type: 4,ENCRYPTED\n"
           "DEK-Info: AES-128-CBC,00112233445566778899AABBCCDDEEFF\n\n"
           "MIIBAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA\n-----END " +
           name + "-----\n";
}

// Stands in the terminal's place while it lives and answers nothing.
class PassPhraseQuestions {
public:
    PassPhraseQuestions()
        : m_before(UI_get_default_method()), m_method(UI_create_method("questions")) {
        g_count = 0;
        UI_method_set_reader(m_method, [](UI*, UI_STRING*) {
            ++g_count;
            return 0;
        });
        UI_set_default_method(m_method);
    }
    ~PassPhraseQuestions() {
        UI_set_default_method(m_before);
        UI_destroy_method(m_method);
    }
    PassPhraseQuestions(const PassPhraseQuestions&) = delete;
    PassPhraseQuestions& operator=(const PassPhraseQuestions&) = delete;

    int Count() const { return g_count; }

private:
    static inline int g_count = 0;
    const UI_METHOD* m_before;
    UI_METHOD* m_method;
};

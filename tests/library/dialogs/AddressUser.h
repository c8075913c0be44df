// AddressUser.h - the user in front of the dialog of the online service's address, as the built
// library shows it: in a window of the system's, or by a program that takes the place of those that
// show dialogs.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dialogs/Resource.h"
#include "support/TemporaryPrefix.h"

// Does the acts in their order in each such dialog while this lives, and answers every box. One at
// a time.
class AddressUser {
public:
    // A text into the field, or else a button; kClose is the close box.
    struct Act {
        std::string text;
        int button = 0;
    };
    static constexpr int kClose = -1;
    static Act Types(const std::string& text) { return {text, 0}; }
    static Act Presses(int button) { return {"", button}; }

    AddressUser(const TemporaryPrefix& prefix, std::vector<Act> acts);
    ~AddressUser();
    AddressUser(const AddressUser&) = delete;
    AddressUser& operator=(const AddressUser&) = delete;

    // What was seen, in GBK, to be asked when the dialog has ended.
    struct Seen {
        int dialogs = 0;
        std::string field;  // at the opening
        bool toldDisabled = false;
        std::vector<std::string> boxes;  // "<style> <caption>: <text>"
    };
    Seen Look() const;

private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};

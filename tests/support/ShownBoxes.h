// ShownBoxes.h - the message boxes that the user gets to see.
#pragma once

#include <memory>
#include <string>

// Answers every box that the calling thread shows while this lives with its first button. One at a
// time.
class ShownBoxes {
public:
    ShownBoxes();
    ~ShownBoxes();
    ShownBoxes(const ShownBoxes&) = delete;
    ShownBoxes& operator=(const ShownBoxes&) = delete;

    // Captions and texts of all boxes so far in UTF-8; to be asked once. Empty if there was none.
    std::string Take();

private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};

#include "support/ShownBoxes.h"

#include <gtest/gtest.h>

// Without a window system a box is a line on standard error that waits for nobody.
class ShownBoxes::Watch {
public:
    Watch() { testing::internal::CaptureStderr(); }
    ~Watch() {
        if (!m_taken) testing::internal::GetCapturedStderr();
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    std::string Take() {
        m_taken = true;
        return testing::internal::GetCapturedStderr();
    }

private:
    bool m_taken = false;
};

ShownBoxes::ShownBoxes() : m_watch(std::make_unique<Watch>()) {}

ShownBoxes::~ShownBoxes() = default;

std::string ShownBoxes::Take() { return m_watch->Take(); }

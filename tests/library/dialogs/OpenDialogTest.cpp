#include <gtest/gtest.h>

#include "platform/Dialog.h"

namespace {

class Unasked : public platform::DialogProcedure {
public:
    void OnOpen(platform::DialogWindow& window) override {
        ADD_FAILURE() << "opened";
        window.End(0);
    }
};

TEST(OpenDialogTest, ADialogOfAModuleThatIsNotLoadedCannotBeShown) {
    Unasked procedure;
    EXPECT_EQ(platform::OpenDialog("TesmarkOpt_other", 101, procedure), platform::kDialogNotShown);
}

}  // namespace

// DialogEnd.h - how a dialog with a tree of seals ended, for those who open it.
#pragma once

// Any end that is neither of the other two counts as Failed.
enum class DialogEnd : int {
    Failed = 0,     // could not be shown
    Confirmed = 1,  // with OK
    Closed = 2,
};

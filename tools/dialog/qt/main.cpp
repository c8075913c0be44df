// tesmark-dialog: shows one dialog or one message box of the library, which it speaks with over
// standard input and output.
#include <signal.h>
#include <unistd.h>

#include <QApplication>

#include "tools/dialog/qt/Conversation.h"

int main(int count, char** arguments) {
    // The library's end is told by the input's, not by a signal.
    signal(SIGPIPE, SIG_IGN);
    QApplication application(count, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    const Conversation conversation(STDIN_FILENO, STDOUT_FILENO,
                                    [](int exitCode) { QApplication::exit(exitCode); });
    return QApplication::exec();
}

// tesmark-dialog: shows one dialog or one message box of the library, which it speaks with over
// standard input and output.
#include <signal.h>
#include <unistd.h>

#include <QApplication>

#include "tools/dialog/CommandLine.h"
#include "tools/dialog/qt/Conversation.h"

int main(int count, char** arguments) {
    // Before anything wants a display.
    const auto answered = AnswerPerson(count, arguments, "tesmark-dialog",
                                       "shows a dialog of the electronic seal library in a window");
    if (answered) return *answered;
    // The library's end is told by the input's, not by a signal.
    signal(SIGPIPE, SIG_IGN);
    QApplication application(count, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    const Conversation conversation(STDIN_FILENO, STDOUT_FILENO,
                                    [](int exitCode) { QApplication::exit(exitCode); });
    return QApplication::exec();
}

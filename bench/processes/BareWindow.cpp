// The least that a program with Qt's widgets can show: a window with one word in it. Tells on
// standard output when it has been painted, and ends.
#include <unistd.h>

#include <QApplication>
#include <QLabel>
#include <QTimer>

namespace {

class Word : public QLabel {
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent* event) override {
        QLabel::paintEvent(event);
        QTimer::singleShot(0, [] {
            constexpr char kShown[] = "shown\n";
            _exit(write(STDOUT_FILENO, kShown, sizeof kShown - 1) < 0);
        });
    }
};

}  // namespace

int main(int count, char** arguments) {
    QApplication application(count, arguments);
    Word word(u"确定"_qs);
    word.show();
    return QApplication::exec();
}

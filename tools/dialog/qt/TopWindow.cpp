#include "tools/dialog/qt/TopWindow.h"

#include <QCloseEvent>
#include <QCursor>
#include <QEventLoop>
#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QStyle>
#include <QTimer>

namespace {

constexpr Qt::WindowFlags kFlags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                   Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                                   Qt::WindowStaysOnTopHint;

constexpr int kLongestWait = 1000;  // milliseconds

QScreen& ScreenOfTheUser() {
    QScreen* const screen = QGuiApplication::screenAt(QCursor::pos());
    return screen != nullptr ? *screen : *QGuiApplication::primaryScreen();
}

QPoint Middle(const QRect& area, const QSize& size) {
    const QSize around = (area.size() - size).expandedTo({0, 0});
    return area.topLeft() + QPoint(around.width() / 2, around.height() / 2);
}

}  // namespace

TopWindow::TopWindow(const QString& title) : QDialog(nullptr, kFlags) {
    setWindowTitle(title);
    setAccessibleName(title);
}

void TopWindow::LayOut() {
    QScreen& screen = ScreenOfTheUser();
    setScreen(&screen);
    ensurePolished();
    const QRect area = screen.availableGeometry();
    // The frame is the window manager's and isn't known before the window is there. The style's own
    // is about as large.
    const int side = style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const QSize frame(2 * side, side + style()->pixelMetric(QStyle::PM_TitleBarHeight));
    const QSize hint = sizeHint().boundedTo(area.size() - frame);
    // What stands on one line has two in a narrower window.
    resize(hint.expandedTo({0, layout()->totalHeightForWidth(hint.width())}));
    move(Middle(area, size()));
    // A layout inside of another widget would wait for the window to be shown.
    layout()->activate();
    for (QWidget* const child : findChildren<QWidget*>()) {
        if (child->layout() != nullptr) child->layout()->activate();
    }
}

void TopWindow::ShowToUser() {
    QEventLoop loop;
    m_onPainted = [&loop] { loop.quit(); };
    QTimer::singleShot(kLongestWait, &loop, &QEventLoop::quit);
    show();
    activateWindow();
    loop.exec(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    m_onPainted = [] {};
    KeepOnScreen();
}

// Now that the frame is known.
void TopWindow::KeepOnScreen() {
    const QRect area = screen()->availableGeometry();
    const QSize frame = frameGeometry().size() - size();
    resize(size().boundedTo(area.size() - frame));
    const QRect bounds = frameGeometry();
    const QPoint furthest = area.bottomRight() - QPoint(bounds.width() - 1, bounds.height() - 1);
    const QPoint corner(qMax(area.left(), qMin(bounds.left(), furthest.x())),
                        qMax(area.top(), qMin(bounds.top(), furthest.y())));
    if (corner != bounds.topLeft()) move(corner);
}

void TopWindow::reject() { onEscape(); }

void TopWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    onClose();
}

bool TopWindow::event(QEvent* event) {
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::Paint) m_onPainted();
    return handled;
}

#include "tools/dialog/qt/TextField.h"

#include <QEvent>
#include <QGuiApplication>

namespace {

// So that a line that reports the text stays within what the protocol allows.
constexpr int kLongest = 16'000;

}  // namespace

TextField::TextField(QWidget* parent) : QLineEdit(parent) { setMaxLength(kLongest); }

// An address is longer than what toolkits give a field by themselves.
QSize TextField::sizeHint() const {
    QSize size = QLineEdit::sizeHint();
    size.rwidth() = 18 * fontMetrics().height();
    return size;
}

QSize TextField::minimumSizeHint() const {
    QSize size = QLineEdit::minimumSizeHint();
    size.rwidth() = 5 * fontMetrics().height();
    return size;
}

void TextField::TellDisabled() {
    m_looksDisabled = true;
    LookDisabled();
}

// The session can change between light and dark while the dialog is open.
void TextField::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && m_looksDisabled) LookDisabled();
    QLineEdit::changeEvent(event);
}

void TextField::LookDisabled() {
    const QPalette session = QGuiApplication::palette();
    QPalette colours = palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        for (const auto role : {QPalette::Text, QPalette::Base}) {
            colours.setColor(group, role, session.color(QPalette::Disabled, role));
        }
    }
    setPalette(colours);
}

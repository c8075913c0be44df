#include "tools/dialog/qt/TextField.h"

#include <QEvent>
#include <QGuiApplication>
#include <QValidator>
#include <string_view>

#include "platform/linux/dialogprogram/Utf8.h"

namespace {

class Fitting final : public QValidator {
public:
    Fitting(int capacity, QObject* parent) : QValidator(parent), m_capacity(capacity) {}

    State validate(QString& text, int&) const override {
        const QByteArray bytes = text.toUtf8();
        const std::string_view typed(bytes.data(), static_cast<std::size_t>(bytes.size()));
        const bool fits = platform::FrontWithin(typed, m_capacity).size() == typed.size();
        return fits ? Acceptable : Invalid;
    }

private:
    int m_capacity;
};

}  // namespace

// The length cuts what is pasted, as far as it is ASCII; what is too long even then isn't taken.
TextField::TextField(int capacity, QWidget* parent) : QLineEdit(parent) {
    setMaxLength(capacity);
    setValidator(new Fitting(capacity, this));
}

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

#include "tools/dialog/qt/MessageWindow.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <optional>

namespace {

// In units of the height of a line.
constexpr int kWidest = 34;

// The fourth hexadecimal digit from the right but one; other values have no icon.
std::optional<QStyle::StandardPixmap> IconOf(int style) {
    switch (style & 0xF0) {
        case 0x10: return QStyle::SP_MessageBoxCritical;
        case 0x20: return QStyle::SP_MessageBoxQuestion;
        case 0x30: return QStyle::SP_MessageBoxWarning;
        case 0x40: return QStyle::SP_MessageBoxInformation;
        default: return {};
    }
}

// As large as its text wants to be, up to a width at which lines are still easy to read.
class TextArea : public QScrollArea {
public:
    TextArea(const QString& text, QWidget* parent) : QScrollArea(parent), m_label(new QLabel) {
        m_label->setText(text);
        m_label->setTextFormat(Qt::PlainText);
        m_label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        m_label->setAccessibleName(text);
        const int widest = kWidest * fontMetrics().height();
        const int natural = m_label->sizeHint().width();
        m_label->setWordWrap(natural > widest);
        m_size.setWidth(qMin(natural, widest));
        m_size.setHeight(m_label->wordWrap() ? m_label->heightForWidth(m_size.width())
                                             : m_label->sizeHint().height());
        setWidget(m_label);
        setWidgetResizable(true);
        setFrameShape(QFrame::NoFrame);
    }

    QSize sizeHint() const override { return m_size + QSize(1, 1); }
    QSize minimumSizeHint() const override {
        return m_size.boundedTo({8 * fontMetrics().height(), 2 * fontMetrics().height()});
    }

private:
    QLabel* m_label;
    QSize m_size;
};

}  // namespace

MessageWindow::MessageWindow(int style, const QString& caption, const QString& text)
    : TopWindow(caption) {
    setAccessibleDescription(text);
    auto* const ok = new QPushButton(u"确定"_qs, this);
    ok->setAccessibleName(ok->text());
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] { onAnswered(); });
    onEscape = onClose = [this] { onAnswered(); };

    auto* const grid = new QGridLayout(this);
    if (const auto kind = IconOf(style)) {
        auto* const icon = new QLabel(this);
        const int size = this->style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
        icon->setPixmap(this->style()->standardIcon(*kind, nullptr, this).pixmap(size));
        grid->addWidget(icon, 0, 0, Qt::AlignTop);
    }
    grid->addWidget(new TextArea(text, this), 0, 1);
    grid->addWidget(ok, 1, 0, 1, 2, Qt::AlignRight);
    grid->setRowStretch(0, 1);
    grid->setColumnStretch(1, 1);
    LayOut();
}

#include "tools/dialog/qt/LabelList.h"

#include <QKeyEvent>
#include <QListView>
#include <QProxyStyle>
#include <QScrollBar>

#include "tools/dialog/qt/ToolTip.h"

namespace {

constexpr int kShownCharacters = 32;

// Some styles open a list as a menu, which can't be scrolled sideways.
class ListStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        if (hint == SH_ComboBox_Popup) return 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
};

class OpenList : public QListView {
public:
    explicit OpenList(QWidget* parent) : QListView(parent) {
        setTextElideMode(Qt::ElideNone);
        setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        switch (event->key()) {
            case Qt::Key_Left:
                horizontalScrollBar()->triggerAction(QScrollBar::SliderSingleStepSub);
                return;
            case Qt::Key_Right:
                horizontalScrollBar()->triggerAction(QScrollBar::SliderSingleStepAdd);
                return;
            default: QListView::keyPressEvent(event);
        }
    }
};

}  // namespace

LabelList::LabelList(QWidget* parent) : QComboBox(parent) {
    auto* const style = new ListStyle;
    style->setParent(this);
    setStyle(style);
    setView(new OpenList(this));
    // The list box has taken that away.
    view()->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(kShownCharacters);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &QComboBox::currentTextChanged, this,
            [this](const QString& text) { setToolTip(WrappedToolTip(text)); });
}

void LabelList::Append(const QString& text) {
    // The widget would select its first row by itself.
    const int selected = currentIndex();
    addItem(text);
    setCurrentIndex(selected);
    setItemData(count() - 1, WrappedToolTip(text), Qt::ToolTipRole);
}

#include "tools/dialog/qt/Group.h"

#include <QStyleOptionGroupBox>
#include <QStylePainter>

void Group::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionGroupBox option;
    initStyleOption(&option);
    option.subControls = QStyle::SC_GroupBoxLabel;
    painter.drawComplexControl(QStyle::CC_GroupBox, option);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.rect = contentsRect();
    frame.frameShape = QFrame::StyledPanel;
    frame.lineWidth = 1;
    frame.state |= QStyle::State_Sunken;
    painter.drawPrimitive(QStyle::PE_Frame, frame);
}

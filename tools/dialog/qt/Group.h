// Group.h - a heading over a control that has a frame of its own.
#pragma once

#include <QGroupBox>

// The usual frame of a group is a picture in some styles, and loading it brings in every picture
// format that the machine has: a tenth of the time in which a dialog comes up.
class Group : public QGroupBox {
public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent* event) override;
};

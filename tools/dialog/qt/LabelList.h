// LabelList.h - a drop-down list that takes no free text.
#pragma once

#include <QComboBox>

// Where a label is wider than the list, the whole of it is in a tool tip, and the open list scrolls
// sideways, by the arrow keys too.
class LabelList : public QComboBox {
public:
    explicit LabelList(QWidget* parent);

    // A new last row. No row is selected before one is chosen.
    void Append(const QString& text);
};

// TextField.h - an edit field that can be told that it is disabled, and isn't.
#pragma once

#include <QLineEdit>

class TextField : public QLineEdit {
public:
    // Takes no text of more than `capacity` bytes, as FrontWithin counts them.
    TextField(int capacity, QWidget* parent);

    // Looks disabled from now on and stays usable.
    void TellDisabled();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;

private:
    void LookDisabled();

    bool m_looksDisabled = false;
};

// TextField.h - an edit field that can be told that it is disabled, and isn't.
#pragma once

#include <QLineEdit>

class TextField : public QLineEdit {
public:
    explicit TextField(QWidget* parent);

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

#include "tools/dialog/qt/Arrangement.h"

#include <QDialog>
#include <QGridLayout>
#include <QLabel>

#include "dialogs/Resource.h"

namespace {

using Controls = std::vector<QWidget*>;

QHBoxLayout* ButtonsRow(QWidget* ok, QWidget* cancel) {
    auto* const row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

void ArrangeList(QDialog& dialog, const Controls& controls) {
    auto* const column = new QVBoxLayout(&dialog);
    column->addWidget(controls[2]);
    column->addStretch();
    column->addLayout(ButtonsRow(controls[0], controls[1]));
}

void ArrangeAddress(QDialog& dialog, const Controls& controls) {
    QWidget* const field = controls[2];
    auto* const address = new QHBoxLayout;
    for (QWidget* const each : {controls[3], controls[4], field, controls[5]})
        address->addWidget(each);

    auto* const form = static_cast<QLabel*>(controls[6]);
    form->setWordWrap(true);
    field->setAccessibleDescription(form->text());
    auto* const test = new QHBoxLayout;
    test->addWidget(form, 1);
    test->addWidget(controls[7]);

    auto* const column = new QVBoxLayout(&dialog);
    column->addLayout(address);
    column->addLayout(test);
    column->addStretch();
    column->addLayout(ButtonsRow(controls[0], controls[1]));
}

void ArrangeTree(QDialog& dialog, const Controls& controls) {
    QWidget* const group = controls[4];
    auto* const inside = new QVBoxLayout(group);
    inside->addWidget(controls[3]);

    auto* const grid = new QGridLayout(&dialog);
    grid->addWidget(controls[2], 0, 0, 2, 1);
    grid->addWidget(group, 0, 1);
    grid->addLayout(ButtonsRow(controls[0], controls[1]), 1, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(0, 1);
}

}  // namespace

void Arrange(QDialog& dialog, int templateId, const Controls& controls) {
    switch (templateId) {
        case TESMARK_DIALOG_ONLINE_URL: ArrangeAddress(dialog, controls); break;
        case TESMARK_DIALOG_SEAL_TREE: ArrangeTree(dialog, controls); break;
        default: ArrangeList(dialog, controls);
    }
}

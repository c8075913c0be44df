#include "tools/dialog/qt/DialogWidget.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>

#include "dialogs/Resource.h"
#include "tools/dialog/qt/Arrangement.h"
#include "tools/dialog/qt/Group.h"
#include "tools/dialog/qt/LabelList.h"
#include "tools/dialog/qt/Preview.h"
#include "tools/dialog/qt/ScreenPixels.h"
#include "tools/dialog/qt/SealTree.h"
#include "tools/dialog/qt/TextField.h"

namespace {

// The templates have no caption, but a window without one is nothing in a list of windows, nor to
// somebody who doesn't see it. This is the caption of the library's message boxes.
constexpr char16_t kTitle[] = u"电子签章";

QString TextOf(const platform::TemplateControl& control) {
    return QString::fromUtf8(control.text.data(), static_cast<qsizetype>(control.text.size()));
}

// What a control is for, where the template has no word on it.
QString NameOf(const platform::TemplateControl& control) {
    switch (control.id) {
        case TESMARK_CERT_LIST: return u"证书"_qs;
        case TESMARK_ONLINE_SEAL_LIST:
        case TESMARK_SEAL_TREE: return u"请选择印章"_qs;
        case TESMARK_URL_FIELD: return u"URL地址"_qs;
        case TESMARK_SEAL_PREVIEW: return u"印章预览"_qs;
        default: return TextOf(control);
    }
}

}  // namespace

// The tabulator key goes through the controls in the order of their making; the first has the focus
// at the beginning.
DialogWidget::DialogWidget(const platform::DialogTemplate& dialog)
    : TopWindow(QString::fromUtf16(kTitle)) {
    onEscape = [this] { onButton(TESMARK_BUTTON_CANCEL); };
    std::vector<QWidget*> controls;
    for (const platform::TemplateControl& control : dialog.controls) {
        controls.push_back(Make(control));
        controls.back()->setAccessibleName(NameOf(control));
        if (control.id != platform::kNoControl) m_controls[control.id] = controls.back();
    }
    Arrange(*this, dialog.id, controls);
    LayOut();
}

// While the controls go they may still tell something, and nobody is there any more.
DialogWidget::~DialogWidget() {
    onNode = [](int, int) {};
    qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
}

QWidget* DialogWidget::Make(const platform::TemplateControl& control) {
    const QString text = TextOf(control);
    switch (control.kind) {
        case platform::ControlKind::DefaultButton:
        case platform::ControlKind::Button: return MakeButton(control.id, text);
        case platform::ControlKind::List: return MakeList(control.id);
        case platform::ControlKind::Edit: return MakeField(control);
        case platform::ControlKind::Tree: return MakeTree(control.id);
        case platform::ControlKind::Surface: return new Preview(this);
        case platform::ControlKind::Group: return new Group(text, this);
        case platform::ControlKind::Label: break;
    }
    return new QLabel(text, this);
}

QWidget* DialogWidget::MakeButton(int number, const QString& text) {
    auto* const button = new QPushButton(text, this);
    button->setDefault(number == TESMARK_BUTTON_OK);
    connect(button, &QPushButton::clicked, this, [this, number] { onButton(number); });
    return button;
}

QWidget* DialogWidget::MakeList(int number) {
    auto* const list = new LabelList(this);
    connect(list, &QComboBox::currentIndexChanged, this,
            [this, number](int row) { onRow(number, row); });
    return list;
}

QWidget* DialogWidget::MakeField(const platform::TemplateControl& control) {
    auto* const field = new TextField(control.capacity, this);
    connect(field, &QLineEdit::textChanged, this,
            [this, number = control.id](const QString& text) { onText(number, text); });
    return field;
}

QWidget* DialogWidget::MakeTree(int number) {
    auto* const tree = new SealTree(this);
    connect(tree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this, tree, number] { onNode(number, tree->Selected()); });
    return tree;
}

template <class Control>
Control* DialogWidget::Find(int number) const {
    const auto found = m_controls.find(number);
    return found == m_controls.end() ? nullptr : dynamic_cast<Control*>(found->second);
}

void DialogWidget::AppendRow(int list, const QString& text) {
    if (auto* const control = Find<LabelList>(list)) control->Append(text);
}

void DialogWidget::SelectRow(int list, int row) {
    if (auto* const control = Find<LabelList>(list)) control->setCurrentIndex(row);
}

void DialogWidget::SetText(int control, const QString& text) {
    if (auto* const field = Find<TextField>(control)) {
        field->setText(text);
        field->setCursorPosition(0);
    }
    if (auto* const preview = Find<Preview>(control)) preview->SetText(text);
}

void DialogWidget::TellDisabled(int field) {
    if (auto* const control = Find<TextField>(field)) control->TellDisabled();
}

void DialogWidget::AppendNode(int tree, int parent, const QString& text) {
    if (auto* const control = Find<SealTree>(tree)) control->Append(parent, text);
}

void DialogWidget::ExpandNode(int tree, int node) {
    if (auto* const control = Find<SealTree>(tree)) control->Expand(node);
}

void DialogWidget::Fill(int surface, const QColor& colour) {
    if (auto* const control = Find<Preview>(surface)) control->Fill(colour);
}

void DialogWidget::Draw(int surface, const QImage& picture, const QRect& place) {
    if (auto* const control = Find<Preview>(surface)) control->Draw(picture, place);
}

std::map<int, QSize> DialogWidget::Surfaces() const {
    std::map<int, QSize> surfaces;
    for (const auto& [number, control] : m_controls) {
        if (const auto* const preview = dynamic_cast<const Preview*>(control))
            surfaces[number] = preview->Surface();
    }
    return surfaces;
}

QRect DialogWidget::Bounds() const { return ToPixels(frameGeometry(), *screen()); }

std::optional<QRect> DialogWidget::WorkArea() const {
    if (QGuiApplication::platformName().startsWith(u"wayland")) return {};
    return ToPixels(screen()->availableGeometry(), *screen());
}

void DialogWidget::MoveTo(const QPoint& corner) { move(FromPixels(corner, *screen())); }

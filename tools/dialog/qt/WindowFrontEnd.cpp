#include "tools/dialog/qt/WindowFrontEnd.h"

#include <QImage>
#include <algorithm>

#include "tools/dialog/qt/DialogWidget.h"
#include "tools/dialog/qt/MessageWindow.h"

namespace {

QRect FromRectangle(const platform::Rectangle& rectangle) {
    return {QPoint(rectangle.left, rectangle.top),
            QSize(rectangle.right - rectangle.left, rectangle.bottom - rectangle.top)};
}

platform::Rectangle ToRectangle(const QRect& rectangle) {
    return {rectangle.left(), rectangle.top(), rectangle.left() + rectangle.width(),
            rectangle.top() + rectangle.height()};
}

QImage ToImage(const platform::Picture& picture) {
    QImage image(picture.width, picture.height, QImage::Format_RGB32);
    const auto width = static_cast<std::size_t>(picture.width);
    for (int row = 0; row < picture.height; ++row) {
        const auto* const first = picture.pixels.data() + static_cast<std::size_t>(row) * width;
        // The format has no transparency, but blends as if the pixels told that they are opaque.
        std::transform(first, first + width, reinterpret_cast<QRgb*>(image.scanLine(row)),
                       [](platform::Colour colour) { return colour | 0xFF000000; });
    }
    return image;
}

}  // namespace

WindowFrontEnd::WindowFrontEnd() = default;
WindowFrontEnd::~WindowFrontEnd() = default;

void WindowFrontEnd::ReportTo(DialogTalk& talk, std::function<void()> answered) {
    m_talk = &talk;
    m_answered = std::move(answered);
}

FrontEnd::Placement WindowFrontEnd::Build(const platform::DialogTemplate& dialog) {
    m_dialog = std::make_unique<DialogWidget>(dialog);
    Listen();
    Placement placement;
    placement.bounds = ToRectangle(m_dialog->Bounds());
    if (const auto area = m_dialog->WorkArea()) placement.workArea = ToRectangle(*area);
    for (const auto& [control, size] : m_dialog->Surfaces())
        placement.surfaces.push_back({control, size.width(), size.height()});
    return placement;
}

void WindowFrontEnd::Listen() {
    m_dialog->onRow = [this](int list, int row) { m_talk->PickedRow(list, row); };
    m_dialog->onText = [this](int control, const QString& text) {
        m_talk->Typed(control, text.toStdString());
    };
    m_dialog->onButton = [this](int button) {
        TellSurfaces();
        m_talk->Pressed(button);
    };
    m_dialog->onNode = [this](int tree, int node) {
        TellSurfaces();
        m_talk->PickedNode(tree, node);
    };
    m_dialog->onClose = [this] {
        TellSurfaces();
        m_talk->ClosedWindow();
    };
}

// Not at each step of a resize: a window on its way to a screen of another scale isn't resized at
// all, though its surface is.
void WindowFrontEnd::TellSurfaces() {
    for (const auto& [control, size] : m_dialog->Surfaces())
        m_talk->Resized(control, size.width(), size.height());
}

void WindowFrontEnd::Show() { m_dialog->ShowToUser(); }

void WindowFrontEnd::ShowMessage(int style, const std::string& caption, const std::string& text) {
    m_message = std::make_unique<MessageWindow>(style, QString::fromStdString(caption),
                                                QString::fromStdString(text));
    m_message->onAnswered = [this] {
        m_talk->Answered();
        m_answered();
    };
    m_message->ShowToUser();
}

void WindowFrontEnd::AppendRow(int list, const std::string& text) {
    m_dialog->AppendRow(list, QString::fromStdString(text));
}

void WindowFrontEnd::SelectRow(int list, int row) { m_dialog->SelectRow(list, row); }

void WindowFrontEnd::SetText(int control, const std::string& text) {
    m_dialog->SetText(control, QString::fromStdString(text));
}

void WindowFrontEnd::TellDisabled(int control) { m_dialog->TellDisabled(control); }

void WindowFrontEnd::AppendNode(int tree, int parent, int, const std::string& text) {
    m_dialog->AppendNode(tree, parent, QString::fromStdString(text));
}

void WindowFrontEnd::ExpandNode(int tree, int node) { m_dialog->ExpandNode(tree, node); }

void WindowFrontEnd::Fill(int control, platform::Colour colour) {
    m_dialog->Fill(control, QColor::fromRgb(colour));
}

void WindowFrontEnd::Draw(int control, const platform::Picture& picture,
                          const platform::Rectangle& place) {
    m_dialog->Draw(control, ToImage(picture), FromRectangle(place));
}

void WindowFrontEnd::Move(int left, int top) { m_dialog->MoveTo({left, top}); }

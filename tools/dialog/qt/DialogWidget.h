// DialogWidget.h - a dialog of one of the templates, as its conversation sees it.
#pragma once

#include <QRect>
#include <map>
#include <optional>
#include <vector>

#include "platform/linux/dialogprogram/Templates.h"
#include "tools/dialog/qt/TopWindow.h"

class QImage;
class QLabel;

// Controls go by their number in the template. An operation on one that isn't there, or that is of
// another kind, does nothing and gives nothing. Rows count from 0, nodes from 1. What is done here
// is no act of the user's, but for a text or a row, which are told as if they were.
class DialogWidget : public TopWindow {
public:
    explicit DialogWidget(const platform::DialogTemplate& dialog);
    ~DialogWidget() override;

    // What the user does, with the number of the control.
    std::function<void(int)> onButton = [](int) {};
    std::function<void(int, int)> onRow = [](int, int) {};
    std::function<void(int, const QString&)> onText = [](int, const QString&) {};
    // The node that is selected now, 0: none.
    std::function<void(int, int)> onNode = [](int, int) {};

    void AppendRow(int list, const QString& text);
    void SelectRow(int list, int row);
    void SetText(int control, const QString& text);
    void TellDisabled(int field);
    void AppendNode(int tree, int parent, const QString& text);
    void ExpandNode(int tree, int node);
    void Fill(int surface, const QColor& colour);
    void Draw(int surface, const QImage& picture, const QRect& place);

    // Each control that can be painted, with its size. In pixels of the screen, as all that
    // follows.
    std::map<int, QSize> Surfaces() const;
    QRect Bounds() const;
    // What of the screen windows may cover. Nothing where a program can't place its windows.
    std::optional<QRect> WorkArea() const;
    void MoveTo(const QPoint& corner);

private:
    template <class Control>
    Control* Find(int number) const;
    QWidget* Make(const platform::TemplateControl& control);
    QWidget* MakeButton(int number, const QString& text);
    QWidget* MakeList(int number);
    QWidget* MakeField(const platform::TemplateControl& control);
    QWidget* MakeTree(int number);

    std::map<int, QWidget*> m_controls;
};

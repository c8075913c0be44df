// Preview.h - the surface that shows the seal that is picked, or a word about what is picked.
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <QString>
#include <QWidget>
#include <optional>

// What is painted stays, whatever covers the window. All sizes and places are pixels of the screen,
// whatever the scale: a picture at its own size has one pixel of the screen for each of its own.
class Preview : public QWidget {
public:
    explicit Preview(QWidget* parent);

    // What there is to paint on.
    QSize Surface() const;

    // Hides what was painted. Assistive technology is told the text as the description.
    void SetText(const QString& text);
    // Paints the whole surface. Hides text and picture.
    void Fill(const QColor& colour);
    // Scaled to fill `place` as long as the surface keeps its size. On one of another size the
    // picture stands in the middle at its own size if it is smaller both ways, and otherwise fills
    // the surface.
    void Draw(const QImage& picture, const QRect& place);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect Place() const;
    void PaintPicture(QPainter& painter) const;

    QString m_text;
    std::optional<QColor> m_fill;
    QImage m_picture;
    QSize m_ownSize;
    QRect m_place;
    QSize m_placeSurface;
};

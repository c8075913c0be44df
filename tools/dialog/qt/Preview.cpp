#include "tools/dialog/qt/Preview.h"

#include <QPaintEvent>
#include <QPainter>

#include "tools/dialog/qt/ToolTip.h"

Preview::Preview(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize Preview::Surface() const {
    const qreal scale = devicePixelRatio();
    return {static_cast<int>(width() * scale), static_cast<int>(height() * scale)};
}

void Preview::SetText(const QString& text) {
    m_text = text;
    m_fill.reset();
    m_picture = QImage();
    setAccessibleDescription(text);
    setToolTip(WrappedToolTip(text));
    update();
}

void Preview::Fill(const QColor& colour) {
    m_fill = colour;
    m_picture = QImage();
    setAccessibleDescription(QString());
    setToolTip(QString());
    update();
}

void Preview::Draw(const QImage& picture, const QRect& place) {
    m_picture = picture;
    m_place = place;
    m_placeSurface = Surface();
    // A picture that was too large to be sent has lost its size, but then it fills the surface, and
    // no screen is so large that it would not.
    const bool fills = place == QRect({0, 0}, m_placeSurface);
    m_ownSize = fills ? picture.size() : place.size();
    setAccessibleDescription(QString());
    setToolTip(QString());
    update();
}

QSize Preview::sizeHint() const {
    const int unit = fontMetrics().height();
    return {20 * unit, 20 * unit};
}

QSize Preview::minimumSizeHint() const {
    const int unit = fontMetrics().height();
    return {6 * unit, 4 * unit};
}

QRect Preview::Place() const {
    const QSize surface = Surface();
    if (surface == m_placeSurface) return m_place;
    const bool fits = surface.width() > m_ownSize.width() && surface.height() > m_ownSize.height();
    if (!fits) return {{0, 0}, surface};
    const QSize around = surface - m_ownSize;
    return {{around.width() / 2, around.height() / 2}, m_ownSize};
}

// At a fractional scale a control begins between two pixels of the screen; the picture doesn't.
void Preview::PaintPicture(QPainter& painter) const {
    const qreal scale = devicePixelRatio();
    const QPointF origin = painter.deviceTransform().map(QPointF(0, 0));
    const QPointF shift = origin.toPoint() - origin;
    painter.scale(1 / scale, 1 / scale);
    painter.translate(shift);
    const QRect place = Place();
    const bool ownSize = place.size() == m_picture.size();
    painter.drawImage(
        place.topLeft(),
        ownSize ? m_picture
                : m_picture.scaled(place.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void Preview::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_fill) painter.fillRect(rect(), *m_fill);
    if (!m_picture.isNull()) {
        PaintPicture(painter);
    } else if (!m_fill) {
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, m_text);
    }
}

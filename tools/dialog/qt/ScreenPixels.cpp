#include "tools/dialog/qt/ScreenPixels.h"

#include <QScreen>

QRect ToPixels(const QRect& place, const QScreen& screen) {
    const QPoint corner = screen.geometry().topLeft();
    const qreal scale = screen.devicePixelRatio();
    const QPointF topLeft = QPointF(place.topLeft() - corner) * scale + corner;
    // Where the screen's size is no multiple of the scale, its size in units may be rounded up.
    const QSizeF size = QSizeF(place.size()) * scale;
    return {topLeft.toPoint(),
            QSize(static_cast<int>(size.width()), static_cast<int>(size.height()))};
}

QPoint FromPixels(const QPoint& pixel, const QScreen& screen) {
    const QPoint corner = screen.geometry().topLeft();
    return (QPointF(pixel - corner) / screen.devicePixelRatio() + corner).toPoint();
}

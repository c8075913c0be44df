#include "tools/dialog/qt/ScreenPixels.h"

#include <QScreen>

QRect ToPixels(const QRect& place, const QScreen& screen) {
    const QPoint corner = screen.geometry().topLeft();
    const qreal scale = screen.devicePixelRatio();
    const QPointF topLeft = QPointF(place.topLeft() - corner) * scale + corner;
    return {topLeft.toPoint(), (QSizeF(place.size()) * scale).toSize()};
}

QPoint FromPixels(const QPoint& pixel, const QScreen& screen) {
    const QPoint corner = screen.geometry().topLeft();
    return (QPointF(pixel - corner) / screen.devicePixelRatio() + corner).toPoint();
}

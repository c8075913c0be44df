// ScreenPixels.h - from the toolkit's units to pixels of the screen and back.
#pragma once

#include <QPoint>
#include <QRect>

class QScreen;

// The toolkit's units are scaled about a screen's upper left corner, which both count alike.
QRect ToPixels(const QRect& place, const QScreen& screen);
QPoint FromPixels(const QPoint& pixel, const QScreen& screen);

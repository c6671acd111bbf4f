#pragma once

// Looking at a painted grid: its viewport grabbed into an image in device pixels.

#include "grid/QDBGrid.h"

#include <QApplication>
#include <QImage>
#include <QPixmap>

namespace qdb::test {

inline QImage Shot(TQCustomDBGrid &grid)
{
    QApplication::processEvents();
    return grid.viewport()->grab().toImage().convertToFormat(QImage::Format_ARGB32);
}

// Colours as painted: the same in 8 bits a channel, give or take one step of rounding.
inline bool SameColor(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) <= 1 && qAbs(a.green() - b.green()) <= 1 && qAbs(a.blue() - b.blue()) <= 1;
}

// Whether every opaque pixel of an image shows in the shot with its top left corner at a
// point given in widget pixels.
inline bool DrawnAt(const QImage &shot, const QPixmap &image, QPoint at)
{
    const qreal ratio = shot.devicePixelRatio();
    const QImage pixels = image.toImage().convertToFormat(QImage::Format_ARGB32);
    const QPoint origin(qRound(at.x() * ratio), qRound(at.y() * ratio));
    int opaque = 0;
    for (int y = 0; y < pixels.height(); ++y)
        for (int x = 0; x < pixels.width(); ++x) {
            const QColor want = pixels.pixelColor(x, y);
            if (want.alpha() < 255)
                continue;
            ++opaque;
            const QPoint p = origin + QPoint(x, y);
            if (!shot.rect().contains(p) || shot.pixelColor(p).rgb() != want.rgb())
                return false;
        }
    return opaque > 0;
}

} // namespace qdb::test

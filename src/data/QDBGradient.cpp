#include "QDBGradient.h"

#include <QLinearGradient>
#include <QPalette>
#include <QRect>

namespace qdb {

QBrush TQGradient::Brush(const QRect &rect, const QPalette &palette, bool hot, bool pressed) const
{
    const QColor base = palette.color(QPalette::Button);
    QColor start = StartColor.isValid() ? StartColor : base.lighter(110);
    QColor end = EndColor.isValid() ? EndColor : base.darker(110);
    if (pressed) {
        start = start.darker(115);
        end = end.darker(105);
    } else if (hot) {
        start = start.lighter(110);
        end = end.lighter(105);
    }
    QLinearGradient fill(rect.topLeft(), Direction == Qt::Vertical ? rect.bottomLeft() : rect.topRight());
    fill.setColorAt(0, start);
    fill.setColorAt(1, end);
    return fill;
}

} // namespace qdb

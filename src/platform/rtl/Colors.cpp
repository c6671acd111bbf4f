#include "Colors.h"

#include <algorithm>

namespace qdb {

QColor ColorToQColor(TColor color, const QPalette &palette)
{
    if (color == clNone || color == clDefault)
        return {};
    if (color & clSystemColor)
        return palette.color(QPalette::ColorRole(color & 0xFF));
    return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

TColor QColorToColor(const QColor &color)
{
    return TColor(color.red() | (color.green() << 8) | (color.blue() << 16));
}

QColor GetShadowColor(const QColor &color, int step)
{
    const int percent = std::clamp(step * 3, -100, 100);
    auto move = [percent](int c) { return percent >= 0 ? c + (255 - c) * percent / 100 : c + c * percent / 100; };
    return QColor(move(color.red()), move(color.green()), move(color.blue()), color.alpha());
}

} // namespace qdb

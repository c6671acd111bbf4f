#include "QDBDesignerIcons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace qdb {

namespace {

const QColor Ink(0x2f, 0x4f, 0x7f);
const QColor Paper(0xfb, 0xfb, 0xfd);
const QColor Title(0xc9, 0xd8, 0xee);
const QColor Accent(0x3c, 0x9d, 0x5d);

// A field with a caret: the editors' common part.
void drawField(QPainter &p, const QRectF &r)
{
    p.setPen(QPen(Ink, 1.5));
    p.setBrush(Paper);
    p.drawRoundedRect(r, 2, 2);
    p.drawLine(QPointF(r.left() + 5, r.top() + 3), QPointF(r.left() + 5, r.bottom() - 3));
}

void drawArrow(QPainter &p, qreal x, qreal y, bool right)
{
    QPainterPath path;
    const qreal d = right ? 1 : -1;
    path.moveTo(x - 3 * d, y - 4);
    path.lineTo(x + 3 * d, y);
    path.lineTo(x - 3 * d, y + 4);
    path.closeSubpath();
    p.fillPath(path, Ink);
}

void draw(QPainter &p, TDesignerIcon kind)
{
    switch (kind) {
    case TDesignerIcon::Grid:
        p.setPen(Qt::NoPen);
        p.setBrush(Paper);
        p.drawRect(QRectF(2, 4, 28, 24));
        p.setBrush(Title);
        p.drawRect(QRectF(2, 4, 28, 6));
        p.setBrush(Accent);
        p.drawRect(QRectF(2, 16, 28, 4)); // the current row
        p.setPen(QPen(Ink, 1));
        p.setBrush(Qt::NoBrush);
        p.drawRect(QRectF(2.5, 4.5, 27, 23));
        for (qreal x : {8.5, 19.5})
            p.drawLine(QPointF(x, 4.5), QPointF(x, 27.5));
        for (qreal y : {10.5, 16.5, 20.5, 24.5})
            p.drawLine(QPointF(2.5, y), QPointF(29.5, y));
        break;
    case TDesignerIcon::Editor:
        drawField(p, QRectF(2.5, 10.5, 27, 12));
        p.fillRect(QRectF(22, 11.5, 6.5, 10), Title);
        drawArrow(p, 25.5, 16.5, true);
        break;
    case TDesignerIcon::ColumnEditor:
        p.setPen(QPen(Ink, 2));
        p.drawLine(QPointF(3, 6), QPointF(15, 6)); // its label
        drawField(p, QRectF(2.5, 12.5, 27, 12));
        p.fillRect(QRectF(3, 26, 26, 3), Title); // the grid column it edits
        break;
    case TDesignerIcon::Navigator:
        p.setPen(QPen(Ink, 1));
        p.setBrush(Title);
        p.drawRoundedRect(QRectF(1.5, 9.5, 29, 13), 2, 2);
        drawArrow(p, 8, 16, false);
        drawArrow(p, 24, 16, true);
        p.fillRect(QRectF(14, 12, 4, 8), Accent);
        break;
    case TDesignerIcon::Text: {
        QFont font;
        font.setPixelSize(22);
        font.setBold(true);
        p.setFont(font);
        p.setPen(Ink);
        p.drawText(QRectF(0, 0, 32, 32), Qt::AlignCenter, QStringLiteral("Ab"));
        p.fillRect(QRectF(4, 27, 24, 2), Accent);
        break;
    }
    case TDesignerIcon::CheckBox:
        p.setPen(QPen(Ink, 1.5));
        p.setBrush(Paper);
        p.drawRoundedRect(QRectF(6.5, 6.5, 19, 19), 2, 2);
        p.setPen(QPen(Accent, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(QPolygonF({QPointF(10, 16), QPointF(14, 21), QPointF(22, 10)}));
        break;
    case TDesignerIcon::RadioGroup:
        p.setPen(QPen(Ink, 1));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(QRectF(1.5, 3.5, 29, 25), 3, 3);
        for (int i = 0; i < 3; ++i) {
            const QPointF centre(8.5, 10.5 + i * 7);
            p.setPen(QPen(Ink, 1));
            p.setBrush(Paper);
            p.drawEllipse(centre, 3, 3);
            if (i == 1) {
                p.setPen(Qt::NoPen);
                p.setBrush(Accent);
                p.drawEllipse(centre, 1.6, 1.6);
            }
            p.fillRect(QRectF(14, centre.y() - 1, 12, 2), Ink);
        }
        break;
    }
}

} // namespace

QIcon DesignerIcon(TDesignerIcon kind)
{
    QIcon icon;
    for (int scale : {1, 2}) {
        QPixmap pixmap(32 * scale, 32 * scale);
        pixmap.setDevicePixelRatio(scale);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        draw(p, kind);
        p.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace qdb

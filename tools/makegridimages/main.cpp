// Draws the grid's image strips: the indicator, the sort markers, the check boxes and the
// expand boxes, each a strip of square images on olive (the transparent colour), at five
// pixel densities. Drawn for this project from simple shapes.
//
//   makegridimages OUTDIR

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <cstdio>
#include <functional>

namespace {

const QColor olive(128, 128, 0); // clOlive
const QColor ink(32, 32, 32);
const QColor gray(128, 128, 128);
const QColor face(255, 255, 255);
const QColor light(224, 224, 224);

using Draw = std::function<void(QPainter &, const QRectF &, int index)>;

QImage strip(int size, int count, const Draw &draw)
{
    QImage image(size * count, size, QImage::Format_RGB32);
    image.fill(olive);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing, false); // crisp edges keep the olive mask clean
    for (int i = 0; i < count; ++i)
        draw(p, QRectF(i * size, 0, size, size), i);
    return image;
}

void triangle(QPainter &p, const QPointF &a, const QPointF &b, const QPointF &c, const QColor &color)
{
    QPainterPath path(a);
    path.lineTo(b);
    path.lineTo(c);
    path.closeSubpath();
    p.fillPath(path, color);
}

// 0 current record, 1 editing, 2 inserting, 3 selected, 4 current and selected.
void indicator(QPainter &p, const QRectF &r, int index)
{
    const double s = r.width(), x = r.x(), cy = r.center().y();
    auto arrow = [&](double left) {
        triangle(p, QPointF(left, cy - s * 0.28), QPointF(left + s * 0.3, cy), QPointF(left, cy + s * 0.28), ink);
    };
    switch (index) {
    case 0: arrow(x + s * 0.35); break;
    case 1: { // a text cursor
        const double w = qMax(1.0, s / 16);
        p.fillRect(QRectF(r.center().x() - w / 2, r.y() + s * 0.2, w, s * 0.6), ink);
        p.fillRect(QRectF(r.center().x() - s * 0.15, r.y() + s * 0.2, s * 0.3, w), ink);
        p.fillRect(QRectF(r.center().x() - s * 0.15, r.y() + s * 0.8 - w, s * 0.3, w), ink);
        break;
    }
    case 2: { // an asterisk
        QPen pen(ink, qMax(1.0, s / 10));
        p.setPen(pen);
        const QPointF c = r.center();
        const double a = s * 0.25;
        p.drawLine(QPointF(c.x(), c.y() - a), QPointF(c.x(), c.y() + a));
        p.drawLine(QPointF(c.x() - a, c.y() - a * 0.6), QPointF(c.x() + a, c.y() + a * 0.6));
        p.drawLine(QPointF(c.x() - a, c.y() + a * 0.6), QPointF(c.x() + a, c.y() - a * 0.6));
        break;
    }
    case 3: p.setPen(Qt::NoPen); p.setBrush(ink); p.drawEllipse(r.center(), s * 0.15, s * 0.15); break;
    case 4:
        arrow(x + s * 0.15);
        p.setPen(Qt::NoPen);
        p.setBrush(ink);
        p.drawEllipse(QPointF(x + s * 0.72, cy), s * 0.12, s * 0.12);
        break;
    }
}

// 0 ascending, 1 descending.
void marker(QPainter &p, const QRectF &r, int index)
{
    const double s = r.width();
    const QPointF c = r.center();
    const double h = s * 0.3, w = s * 0.35;
    if (index == 0)
        triangle(p, QPointF(c.x(), c.y() - h), QPointF(c.x() + w, c.y() + h), QPointF(c.x() - w, c.y() + h), gray);
    else
        triangle(p, QPointF(c.x() - w, c.y() - h), QPointF(c.x() + w, c.y() - h), QPointF(c.x(), c.y() + h), gray);
}

// Per kind (check, cross, box): unchecked, checked, grayed.
void checkBox(QPainter &p, const QRectF &r, int index)
{
    const int kind = index / 3, state = index % 3;
    const double s = r.width();
    const QRectF box = QRectF(r.x() + s * 0.12, r.y() + s * 0.12, s * 0.76, s * 0.76).toRect();
    p.fillRect(box, state == 2 ? light : face);
    p.setPen(QPen(gray, 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(box.adjusted(0, 0, -1, -1));
    if (state == 0)
        return;
    const QColor mark = state == 2 ? gray : ink;
    const QRectF in = box.adjusted(s * 0.18, s * 0.18, -s * 0.18, -s * 0.18);
    QPen pen(mark, qMax(1.0, s / 8));
    p.setPen(pen);
    switch (kind) {
    case 0: // a tick
        p.drawLine(QPointF(in.left(), in.center().y()), QPointF(in.left() + in.width() * 0.4, in.bottom()));
        p.drawLine(QPointF(in.left() + in.width() * 0.4, in.bottom()), QPointF(in.right(), in.top()));
        break;
    case 1: // a cross
        p.drawLine(in.topLeft(), in.bottomRight());
        p.drawLine(in.bottomLeft(), in.topRight());
        break;
    default: // a filled box
        p.fillRect(in, mark);
        break;
    }
}

// Per size (small, medium, large): collapsed (+), expanded (-).
void expandBox(QPainter &p, const QRectF &r, int index)
{
    static const double sizes[] = {0.5, 0.65, 0.8};
    const double s = r.width() * sizes[index / 2];
    const QRectF box = QRectF(r.center().x() - s / 2, r.center().y() - s / 2, s, s).toRect();
    p.fillRect(box, face);
    p.setPen(QPen(gray, 1));
    p.drawRect(box.adjusted(0, 0, -1, -1));
    const double w = qMax(1.0, r.width() / 16), a = s * 0.3;
    const QPointF c = box.center();
    p.fillRect(QRectF(c.x() - a, c.y() - w / 2, 2 * a, w), ink);
    if (index % 2 == 0)
        p.fillRect(QRectF(c.x() - w / 2, c.y() - a, w, 2 * a), ink);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: makegridimages OUTDIR\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(out);
    struct Set
    {
        const char *name;
        int count;
        Draw draw;
    };
    const Set sets[] = {{"QDBINDICATORS", 5, indicator},
                        {"QDBMARKERS", 2, marker},
                        {"QDBCHECKBOXES", 9, checkBox},
                        {"QDBEXPANDBOXES", 6, expandBox}};
    const struct
    {
        const char *suffix;
        int ppi;
    } densities[] = {{"", 96}, {"_125", 120}, {"_150", 144}, {"_175", 168}, {"_200", 192}};
    for (const Set &set : sets)
        for (const auto &d : densities) {
            const int size = (16 * d.ppi + 48) / 96;
            const QString file = out + QLatin1Char('/') + QLatin1String(set.name) + QLatin1String(d.suffix) + QLatin1String(".png");
            if (!strip(size, set.count, set.draw).save(file)) {
                std::fprintf(stderr, "makegridimages: cannot write %s\n", qPrintable(file));
                return 1;
            }
        }
    return 0;
}

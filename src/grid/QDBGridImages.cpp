#include "QDBGridImages.h"

#include <QPainter>

namespace qdb {

namespace {
const QRgb olive = qRgb(128, 128, 0); // clOlive, 0x008080 as a TColor
}

TDensityVariant DensityVariant(int ppi)
{
    if (ppi >= 192)
        return {QStringLiteral("_200"), 192};
    if (ppi >= 168)
        return {QStringLiteral("_175"), 168};
    if (ppi >= 144)
        return {QStringLiteral("_150"), 144};
    if (ppi >= 120)
        return {QStringLiteral("_125"), 120};
    return {QString(), 96};
}

QImage MaskOlive(const QImage &image)
{
    QImage out = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < out.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x)
            if ((line[x] & 0x00FFFFFF) == (olive & 0x00FFFFFF))
                line[x] = 0;
    }
    return out;
}

QImage LoadDensityBitmap(const QString &name, int ppi)
{
    const TDensityVariant variant = DensityVariant(ppi);
    QImage image(QStringLiteral(":/qdb/images/%1%2.png").arg(name, variant.suffix));
    if (image.isNull())
        return image;
    image = MaskOlive(image);
    if (variant.ppi != ppi) // integer multiply-divide, as the sizes of the strips are whole
        image = image.scaled(image.width() * ppi / variant.ppi, image.height() * ppi / variant.ppi,
                             Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image;
}

TGridImageList TGridImageList::FromStrip(const QImage &strip, qreal ratio)
{
    TGridImageList list;
    list.size_ = strip.height();
    list.ratio_ = ratio > 0 ? ratio : 1.0;
    if (list.size_ <= 0)
        return list;
    for (int x = 0; x + list.size_ <= strip.width(); x += list.size_) {
        QPixmap image = QPixmap::fromImage(strip.copy(x, 0, list.size_, list.size_));
        image.setDevicePixelRatio(list.ratio_);
        list.images_.append(image);
    }
    return list;
}

void TGridImageList::Append(const QPixmap &image)
{
    if (images_.isEmpty()) {
        ratio_ = image.devicePixelRatio();
        size_ = image.height();
    }
    images_.append(image);
}

void TImageList::AddStrip(const QImage &strip)
{
    const TGridImageList cut = TGridImageList::FromStrip(strip, strip.devicePixelRatio());
    for (int i = 0; i < cut.Count(); ++i)
        list_.Append(cut.Image(i));
}

void TGridImageList::Draw(QPainter &painter, int x, int y, int index) const
{
    if (index >= 0 && index < images_.size())
        painter.drawPixmap(x, y, images_[index]);
}

} // namespace qdb

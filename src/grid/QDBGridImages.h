#pragma once

#include <QImage>
#include <QList>
#include <QObject>
#include <QPixmap>
#include <QString>

class QPainter;

namespace qdb {

// The drawn bitmaps of the grid (indicator, sort markers, check boxes, expand boxes), kept
// as resources in five densities: NAME for 96 pixels per inch and NAME_125, NAME_150,
// NAME_175, NAME_200 for 120, 144, 168 and 192.

struct TDensityVariant
{
    QString suffix;
    int ppi;
};
// The variant for a display density: the largest whose density the display reaches.
TDensityVariant DensityVariant(int ppi);
// The variant's strip, rescaled to the display density when it differs, with its olive
// pixels made transparent.
QImage LoadDensityBitmap(const QString &name, int ppi);

// A strip cut into square images of its height.
class TGridImageList
{
public:
    // The images are `ratio` device pixels per widget pixel.
    static TGridImageList FromStrip(const QImage &strip, qreal ratio = 1.0);
    static TGridImageList Load(const QString &name, int ppi)
    {
        return FromStrip(LoadDensityBitmap(name, ppi), ppi / 96.0);
    }

    int Count() const { return int(images_.size()); }
    // The side of an image in widget pixels, and in device pixels.
    int Size() const { return qRound(size_ / ratio_); }
    int PixelSize() const { return size_; }
    const QPixmap &Image(int index) const { return images_.at(index); }
    void Draw(QPainter &painter, int x, int y, int index) const;
    // Adds an image; the list takes the size of its first one.
    void Append(const QPixmap &image);

private:
    QList<QPixmap> images_;
    int size_ = 0;
    qreal ratio_ = 1.0;
};

// An application's image list, as columns and totals refer to one: images by index.
class TImageList : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    int Count() const { return list_.Count(); }
    int Size() const { return list_.Size(); }
    const QPixmap &Image(int index) const { return list_.Image(index); }
    void Add(const QPixmap &image) { list_.Append(image); }
    // Adds the square images of a strip, each as high as the strip.
    void AddStrip(const QImage &strip);
    void Draw(QPainter &painter, int x, int y, int index) const { list_.Draw(painter, x, y, index); }

private:
    TGridImageList list_;
};

// Makes the olive pixels (the bitmaps' transparent colour) transparent.
QImage MaskOlive(const QImage &image);

} // namespace qdb

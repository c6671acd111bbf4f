#pragma once

// The colours of a gradient face shared by the package's controls. A colour left invalid
// follows the palette (a lighter or a darker button colour), so a gradient suits every style,
// dark palettes included.

#include <QBrush>
#include <QColor>
#include <QMetaType>
#include <QObject>

class QPalette;
class QRect;

namespace qdb {

class TQGradient
{
    Q_GADGET
    Q_PROPERTY(QColor StartColor MEMBER StartColor)
    Q_PROPERTY(QColor EndColor MEMBER EndColor)
    Q_PROPERTY(Qt::Orientation Direction MEMBER Direction)

public:
    QColor StartColor;
    QColor EndColor;
    // Vertical runs from top to bottom, horizontal from left to right.
    Qt::Orientation Direction = Qt::Vertical;

    TQGradient WithStart(const QColor &c) const { auto g = *this; g.StartColor = c; return g; }
    TQGradient WithEnd(const QColor &c) const { auto g = *this; g.EndColor = c; return g; }
    TQGradient WithDirection(Qt::Orientation o) const { auto g = *this; g.Direction = o; return g; }

    // No colour of its own.
    bool IsEmpty() const { return !StartColor.isValid() && !EndColor.isValid(); }
    // The brush for a face; hot lightens it, pressed darkens it.
    QBrush Brush(const QRect &rect, const QPalette &palette, bool hot = false, bool pressed = false) const;

    friend bool operator==(const TQGradient &, const TQGradient &) = default;
};

// A widget's gradient in Qt types, the parts of its Qt-typed face for Designer and uic.
template<typename Widget>
class TQGradientFace
{
protected:
    QColor gradientStartColor() const { return self().Gradient().StartColor; }
    void setGradientStart(const QColor &c) { self().SetGradient(self().Gradient().WithStart(c)); }
    QColor gradientEndColor() const { return self().Gradient().EndColor; }
    void setGradientEnd(const QColor &c) { self().SetGradient(self().Gradient().WithEnd(c)); }
    Qt::Orientation gradientDirection() const { return self().Gradient().Direction; }
    void setGradientDirection(Qt::Orientation o) { self().SetGradient(self().Gradient().WithDirection(o)); }

private:
    Widget &self() { return static_cast<Widget &>(*this); }
    const Widget &self() const { return static_cast<const Widget &>(*this); }
};

} // namespace qdb

Q_DECLARE_METATYPE(qdb::TQGradient)

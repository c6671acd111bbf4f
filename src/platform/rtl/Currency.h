#pragma once

#include <QString>

#include <compare>
#include <QtGlobal>

namespace qdb {

// A fixed-point amount with four decimals kept in a 64-bit integer, so that sums of
// money never drift the way sums of doubles do.
class Currency
{
public:
    static constexpr qint64 Scale = 10000;

    constexpr Currency() noexcept = default;
    static constexpr Currency FromRaw(qint64 raw) noexcept
    {
        Currency c;
        c.raw_ = raw;
        return c;
    }
    static constexpr Currency FromInt(qint64 v) noexcept { return FromRaw(v * Scale); }
    // Rounds half away from zero to four decimals; raises EConvertError out of range.
    static Currency FromDouble(double v);

    constexpr qint64 Raw() const noexcept { return raw_; }
    double ToDouble() const noexcept { return double(raw_) / double(Scale); }
    // Plain decimal text with '.' and no trailing zeros ("12.5", "-3", "0.0001").
    QString ToString() const;

    friend constexpr Currency operator+(Currency a, Currency b) noexcept { return FromRaw(a.raw_ + b.raw_); }
    friend constexpr Currency operator-(Currency a, Currency b) noexcept { return FromRaw(a.raw_ - b.raw_); }
    friend constexpr Currency operator-(Currency a) noexcept { return FromRaw(-a.raw_); }
    friend Currency operator*(Currency a, Currency b);
    friend Currency operator/(Currency a, Currency b); // raises EVariantError on zero
    Currency &operator+=(Currency b) noexcept { raw_ += b.raw_; return *this; }
    Currency &operator-=(Currency b) noexcept { raw_ -= b.raw_; return *this; }
    friend constexpr auto operator<=>(Currency, Currency) noexcept = default;

private:
    qint64 raw_ = 0;
};

} // namespace qdb

#pragma once

#include <QMetaEnum>
#include <QMetaType>
#include <QString>
#include <QStringList>

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <type_traits>

namespace qdb {

// A set over an enumeration whose values are 0, 1, 2, ...: bit n stands for value n.
// Up to 64 values.
template<typename E>
class Set
{
    static_assert(std::is_enum_v<E>, "Set<E> needs an enumeration");

public:
    using value_type = E;

    constexpr Set() noexcept = default;
    constexpr Set(std::initializer_list<E> values) noexcept
    {
        for (E e : values)
            bits_ |= bit(e);
    }
    static constexpr Set FromBits(std::uint64_t bits) noexcept
    {
        Set s;
        s.bits_ = bits;
        return s;
    }

    constexpr std::uint64_t Bits() const noexcept { return bits_; }
    constexpr bool Contains(E e) const noexcept { return (bits_ & bit(e)) != 0; }
    constexpr bool IsEmpty() const noexcept { return bits_ == 0; }
    constexpr int Count() const noexcept { return std::popcount(bits_); }

    constexpr Set &Include(E e) noexcept { bits_ |= bit(e); return *this; }
    constexpr Set &Exclude(E e) noexcept { bits_ &= ~bit(e); return *this; }
    constexpr Set &Switch(E e, bool on) noexcept { return on ? Include(e) : Exclude(e); }

    // Union, difference and intersection, as the set operators +, - and *.
    friend constexpr Set operator+(Set a, Set b) noexcept { return FromBits(a.bits_ | b.bits_); }
    friend constexpr Set operator-(Set a, Set b) noexcept { return FromBits(a.bits_ & ~b.bits_); }
    friend constexpr Set operator*(Set a, Set b) noexcept { return FromBits(a.bits_ & b.bits_); }
    friend constexpr Set operator+(Set a, E e) noexcept { return a.Include(e); }
    friend constexpr Set operator-(Set a, E e) noexcept { return a.Exclude(e); }
    constexpr Set &operator+=(Set b) noexcept { bits_ |= b.bits_; return *this; }
    constexpr Set &operator-=(Set b) noexcept { bits_ &= ~b.bits_; return *this; }
    constexpr Set &operator+=(E e) noexcept { return Include(e); }
    constexpr Set &operator-=(E e) noexcept { return Exclude(e); }
    friend constexpr bool operator==(Set a, Set b) noexcept = default;
    // a <= b: every member of a is in b.
    friend constexpr bool operator<=(Set a, Set b) noexcept { return (a.bits_ & ~b.bits_) == 0; }

    // Iteration over the members in ascending order.
    class const_iterator
    {
    public:
        using value_type = E;
        using difference_type = std::ptrdiff_t;
        constexpr const_iterator() noexcept = default;
        constexpr explicit const_iterator(std::uint64_t rest) noexcept : rest_(rest) {}
        constexpr E operator*() const noexcept { return static_cast<E>(std::countr_zero(rest_)); }
        constexpr const_iterator &operator++() noexcept { rest_ &= rest_ - 1; return *this; }
        constexpr const_iterator operator++(int) noexcept { auto c = *this; ++*this; return c; }
        friend constexpr bool operator==(const_iterator, const_iterator) noexcept = default;

    private:
        std::uint64_t rest_ = 0;
    };
    constexpr const_iterator begin() const noexcept { return const_iterator(bits_); }
    constexpr const_iterator end() const noexcept { return const_iterator(0); }

private:
    static constexpr std::uint64_t bit(E e) noexcept
    {
        return std::uint64_t(1) << static_cast<unsigned>(static_cast<std::underlying_type_t<E>>(e));
    }
    std::uint64_t bits_ = 0;
};

// Text of a set in the "[a,b]" form with the enumeration's identifiers.
// The enumeration must be declared with Q_ENUM or Q_ENUM_NS.
template<typename E>
QString SetToString(Set<E> set)
{
    const QMetaEnum me = QMetaEnum::fromType<E>();
    QStringList names;
    for (E e : set)
        names << QString::fromLatin1(me.valueToKey(static_cast<int>(e)));
    return QLatin1Char('[') + names.join(QLatin1Char(',')) + QLatin1Char(']');
}

// Parses "[a, b]" (brackets optional); ok is false on an unknown identifier.
template<typename E>
Set<E> StringToSet(const QString &text, bool *ok = nullptr)
{
    const QMetaEnum me = QMetaEnum::fromType<E>();
    QString body = text.trimmed();
    if (body.startsWith(QLatin1Char('[')) && body.endsWith(QLatin1Char(']')))
        body = body.mid(1, body.size() - 2);
    Set<E> result;
    bool good = true;
    for (const QString &part : body.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        bool found = false;
        const int v = me.keyToValue(part.trimmed().toLatin1().constData(), &found);
        if (found && v >= 0 && v < 64)
            result.Include(static_cast<E>(v));
        else
            good = false;
    }
    if (ok)
        *ok = good;
    return result;
}

// Lets a Set<E> property be read and written as text ("[a,b]") and as a bit mask
// through QVariant, which the property access and streaming helpers rely on.
template<typename E>
void RegisterSetType()
{
    if (QMetaType::hasRegisteredConverterFunction<Set<E>, QString>())
        return;
    QMetaType::registerConverter<Set<E>, QString>([](Set<E> s) { return SetToString(s); });
    QMetaType::registerConverter<QString, Set<E>>([](const QString &t) { return StringToSet<E>(t); });
    QMetaType::registerConverter<Set<E>, qulonglong>([](Set<E> s) { return qulonglong(s.Bits()); });
    QMetaType::registerConverter<qulonglong, Set<E>>(
        [](qulonglong b) { return Set<E>::FromBits(b); });
}

} // namespace qdb

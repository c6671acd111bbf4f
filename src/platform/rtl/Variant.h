#pragma once

#include "Currency.h"
#include "DateTime.h"

#include <QList>
#include <QMetaType>
#include <QtNumeric>
#include <QString>
#include <QVariant>

#include <variant>

namespace qdb {

enum class VarType { Unassigned, Null, Boolean, Integer, Double, Currency, String, DateTime, Array, Bytes };

// The outcome of comparing two variants. Null and Unassigned are never equal to a value,
// and nothing is less or greater than them.
enum class VariantRelationship { vrEqual, vrLessThan, vrGreaterThan, vrNotEqual };

// A value of one of the kinds a field or a total can hold. Unassigned (the default) and
// Null are distinct. Arithmetic follows the usual promotions: Null propagates, Integer
// overflow widens to Double, Currency with Integer or Currency stays exact.
class Variant
{
public:
    using Array = QList<Variant>;

    Variant() noexcept = default;
    Variant(bool v) : v_(v) {}
    Variant(int v) : v_(qint64(v)) {}
    Variant(unsigned v) : v_(qint64(v)) {}
    Variant(long v) : v_(qint64(v)) {}
    Variant(long long v) : v_(qint64(v)) {}
    Variant(double v) : v_(v) {}
    Variant(Currency v) : v_(v) {}
    Variant(const QString &v) : v_(v) {}
    Variant(QString &&v) noexcept : v_(std::move(v)) {}
    Variant(const char *utf8) : v_(QString::fromUtf8(utf8)) {}
    Variant(const Array &v) : v_(v) {}
    Variant(const QByteArray &v) : v_(v) {} // binary data
    Variant(QByteArray &&v) noexcept : v_(std::move(v)) {}
    Variant(const void *) = delete; // a pointer must not silently become a Boolean
    friend void swap(Variant &a, Variant &b) noexcept { a.v_.swap(b.v_); }

    static Variant Null() { Variant r; r.v_ = NullTag{}; return r; }
    static Variant FromDateTime(TDateTime dt) { Variant r; r.v_ = DateTimeValue{dt}; return r; }
    // Null QVariants become Null; an invalid QVariant becomes Unassigned.
    static Variant FromQVariant(const QVariant &v);
    QVariant ToQVariant() const;

    VarType Type() const noexcept { return static_cast<VarType>(v_.index()); }
    bool IsUnassigned() const noexcept { return Type() == VarType::Unassigned; }
    bool IsNull() const noexcept { return Type() == VarType::Null; }
    // Null or Unassigned.
    bool IsClear() const noexcept { return IsNull() || IsUnassigned(); }
    bool IsNumeric() const noexcept;
    bool IsString() const noexcept { return Type() == VarType::String; }
    bool IsArray() const noexcept { return Type() == VarType::Array; }
    bool IsBytes() const noexcept { return Type() == VarType::Bytes; }

    // Conversions raise EVariantError when the value cannot become the type asked for.
    bool ToBool() const;
    qint64 ToInt64() const
    {
        if (const qint64 *i = std::get_if<qint64>(&v_))
            return *i;
        return toInt64Slow();
    }
    int ToInt() const;
    double ToDouble() const
    {
        if (const double *d = std::get_if<double>(&v_))
            return *d;
        return toDoubleSlow();
    }
    Currency ToCurrency() const;
    TDateTime ToDateTime() const;
    // Null and Unassigned give an empty text; numbers and dates use FormatSettings.
    QString ToString() const
    {
        if (const QString *text = std::get_if<QString>(&v_))
            return *text;
        return toStringSlow();
    }
    const Array &ToArray() const;
    // Bytes as they are; a text as UTF-8.
    QByteArray ToBytes() const;
    Variant AsType(VarType type) const;

    // The text without a copy, nullptr when the value is no text (for tight loops).
    const QString *StringPtr() const noexcept { return std::get_if<QString>(&v_); }

    int ArrayHighBound() const { return IsArray() ? int(ToArray().size()) - 1 : -1; }

    friend Variant operator+(const Variant &a, const Variant &b);
    friend Variant operator-(const Variant &a, const Variant &b);
    friend Variant operator*(const Variant &a, const Variant &b);
    // Real division; raises EVariantError on a zero divisor.
    friend Variant operator/(const Variant &a, const Variant &b);
    friend Variant operator-(const Variant &a);
    // In place for whole numbers and currency: a running sum makes no new value each step.
    Variant &operator+=(const Variant &b)
    {
        if (qint64 *x = std::get_if<qint64>(&v_)) {
            qint64 r;
            if (const qint64 *y = std::get_if<qint64>(&b.v_); y && !qAddOverflow(*x, *y, &r)) {
                *x = r;
                return *this;
            }
        } else if (Currency *c = std::get_if<Currency>(&v_)) {
            if (const Currency *d = std::get_if<Currency>(&b.v_)) {
                *c += *d;
                return *this;
            }
        }
        return *this = *this + b;
    }

    friend bool operator==(const Variant &a, const Variant &b);
    friend bool operator!=(const Variant &a, const Variant &b) { return !(a == b); }
    friend bool operator<(const Variant &a, const Variant &b);
    friend bool operator>(const Variant &a, const Variant &b) { return b < a; }

    // The type's name as error messages show it ("Null", "Integer", ...).
    static QString TypeName(VarType t);

private:
    struct NullTag { bool operator==(const NullTag &) const = default; };
    struct DateTimeValue { TDateTime value; bool operator==(const DateTimeValue &) const = default; };
    std::variant<std::monostate, NullTag, bool, qint64, double, Currency, QString, DateTimeValue, Array, QByteArray> v_;

    [[noreturn]] void castError(VarType to) const;
    qint64 toInt64Slow() const;
    double toDoubleSlow() const;
    QString toStringSlow() const;
};

VariantRelationship VarCompareValue(const Variant &a, const Variant &b);

inline Variant VarArrayOf(const Variant::Array &values) { return Variant(values); }

} // namespace qdb

Q_DECLARE_METATYPE(qdb::Variant)

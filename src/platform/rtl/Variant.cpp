#include "Variant.h"

#include "Conversions.h"
#include "Exceptions.h"
#include "FormatDateTime.h"

#include <QCoreApplication>
#include <QtNumeric>

#include <cmath>
#include <limits>

namespace qdb {

namespace {

// The common type two operands are brought to before an operation.
enum class Common { Clear, Integer, Currency, Double, DateTime, String, Boolean, Array, Bytes, Mismatch };

bool isNumberKind(VarType t)
{
    return t == VarType::Integer || t == VarType::Double || t == VarType::Currency || t == VarType::Boolean;
}

Common commonType(VarType a, VarType b)
{
    if (a == VarType::Array || b == VarType::Array)
        return a == b ? Common::Array : Common::Mismatch;
    if (a == VarType::Bytes || b == VarType::Bytes)
        return a == b ? Common::Bytes : Common::Mismatch;
    if (a == VarType::String && b == VarType::String)
        return Common::String;
    if (a == VarType::Boolean && b == VarType::Boolean)
        return Common::Boolean;
    if (a == VarType::DateTime || b == VarType::DateTime)
        return Common::DateTime;
    if (a == VarType::Double || b == VarType::Double || a == VarType::String || b == VarType::String)
        return Common::Double;
    if (a == VarType::Currency || b == VarType::Currency)
        return Common::Currency;
    if (isNumberKind(a) && isNumberKind(b))
        return Common::Integer;
    return Common::Mismatch;
}

// Unassigned takes part in arithmetic as 0, or as an empty text beside a text.
Variant neutral(const Variant &v, const Variant &other)
{
    if (!v.IsUnassigned())
        return v;
    return other.IsString() ? Variant(QString()) : Variant(0);
}

[[noreturn]] void divisionByZero()
{
    throw EVariantError(QCoreApplication::translate("qdb", "Division by zero"));
}

[[noreturn]] void invalidOperation()
{
    throw EVariantError(QCoreApplication::translate("qdb", "Invalid variant operation"));
}

template<typename IntOp, typename CurrOp, typename DblOp>
Variant arithmetic(const Variant &a0, const Variant &b0, IntOp intOp, CurrOp currOp, DblOp dblOp,
                   bool dateResult)
{
    if (a0.IsNull() || b0.IsNull())
        return Variant::Null();
    if (a0.IsUnassigned() && b0.IsUnassigned())
        return Variant();
    const Variant a = neutral(a0, b0);
    const Variant b = neutral(b0, a0);
    switch (commonType(a.Type(), b.Type())) {
    case Common::Integer:
    case Common::Boolean: {
        qint64 r;
        if (intOp(a.ToInt64(), b.ToInt64(), r))
            return Variant(r);
        return Variant(dblOp(a.ToDouble(), b.ToDouble()));
    }
    case Common::Currency:
        return Variant(currOp(a.ToCurrency(), b.ToCurrency()));
    case Common::Double:
        return Variant(dblOp(a.ToDouble(), b.ToDouble()));
    case Common::DateTime: {
        const double r = dblOp(a.ToDouble(), b.ToDouble());
        const bool bothDates = a.Type() == VarType::DateTime && b.Type() == VarType::DateTime;
        return dateResult && !bothDates ? Variant::FromDateTime(r) : Variant(r);
    }
    default:
        invalidOperation();
    }
}

VariantRelationship compareNumbers(double x, double y)
{
    if (x < y)
        return VariantRelationship::vrLessThan;
    if (x > y)
        return VariantRelationship::vrGreaterThan;
    if (x == y)
        return VariantRelationship::vrEqual;
    return VariantRelationship::vrNotEqual; // NaN
}

template<typename T>
VariantRelationship compareOrdered(const T &x, const T &y)
{
    if (x < y)
        return VariantRelationship::vrLessThan;
    if (y < x)
        return VariantRelationship::vrGreaterThan;
    return VariantRelationship::vrEqual;
}

bool textToNumber(const QString &s, double &out)
{
    if (TryStrToFloat(s, out))
        return true;
    bool ok = false;
    out = s.trimmed().toDouble(&ok); // text written with '.' whatever the locale
    return ok;
}

} // namespace

bool Variant::IsNumeric() const noexcept
{
    const VarType t = Type();
    return t == VarType::Integer || t == VarType::Double || t == VarType::Currency;
}

QString Variant::TypeName(VarType t)
{
    static const char *const names[] = {"Empty", "Null", "Boolean", "Int64", "Double",
                                        "Currency", "String", "Date", "Array", "Bytes"};
    return QString::fromLatin1(names[static_cast<int>(t)]);
}

void Variant::castError(VarType to) const
{
    throw EVariantError(QCoreApplication::translate("qdb", "Could not convert variant of type (%1) into type (%2)")
                            .arg(TypeName(Type()), TypeName(to)));
}

bool Variant::ToBool() const
{
    switch (Type()) {
    case VarType::Unassigned: return false;
    case VarType::Boolean: return std::get<bool>(v_);
    case VarType::Integer: return std::get<qint64>(v_) != 0;
    case VarType::Double: return std::get<double>(v_) != 0;
    case VarType::Currency: return std::get<Currency>(v_).Raw() != 0;
    case VarType::DateTime: return std::get<DateTimeValue>(v_).value != 0;
    case VarType::String: {
        bool b;
        if (TryStrToBool(std::get<QString>(v_), b))
            return b;
        break;
    }
    default: break;
    }
    castError(VarType::Boolean);
}

qint64 Variant::toInt64Slow() const
{
    auto fromDouble = [this](double d) {
        const double r = std::round(d); // banker's rounding is not worth the surprise here
        if (!(r >= -9.2e18 && r <= 9.2e18))
            castError(VarType::Integer);
        return static_cast<qint64>(r);
    };
    switch (Type()) {
    case VarType::Unassigned: return 0;
    case VarType::Boolean: return std::get<bool>(v_) ? 1 : 0;
    case VarType::Integer: return std::get<qint64>(v_);
    case VarType::Double: return fromDouble(std::get<double>(v_));
    case VarType::Currency: {
        const qint64 raw = std::get<Currency>(v_).Raw();
        const qint64 half = raw < 0 ? -Currency::Scale / 2 : Currency::Scale / 2;
        return (raw + half) / Currency::Scale;
    }
    case VarType::DateTime: return fromDouble(std::get<DateTimeValue>(v_).value);
    case VarType::String: {
        qint64 i;
        if (TryStrToInt64(std::get<QString>(v_), i))
            return i;
        double d;
        if (TryStrToFloat(std::get<QString>(v_), d))
            return fromDouble(d);
        break;
    }
    default: break;
    }
    castError(VarType::Integer);
}

int Variant::ToInt() const
{
    const qint64 v = ToInt64();
    if (v < std::numeric_limits<int>::min() || v > std::numeric_limits<int>::max())
        castError(VarType::Integer);
    return int(v);
}

double Variant::toDoubleSlow() const
{
    switch (Type()) {
    case VarType::Unassigned: return 0;
    case VarType::Boolean: return std::get<bool>(v_) ? 1 : 0;
    case VarType::Integer: return double(std::get<qint64>(v_));
    case VarType::Double: return std::get<double>(v_);
    case VarType::Currency: return std::get<Currency>(v_).ToDouble();
    case VarType::DateTime: return std::get<DateTimeValue>(v_).value;
    case VarType::String: {
        double d;
        if (textToNumber(std::get<QString>(v_), d))
            return d;
        break;
    }
    default: break;
    }
    castError(VarType::Double);
}

Currency Variant::ToCurrency() const
{
    switch (Type()) {
    case VarType::Currency: return std::get<Currency>(v_);
    case VarType::Integer: return Currency::FromInt(std::get<qint64>(v_));
    case VarType::String: {
        Currency c;
        if (TryStrToCurr(std::get<QString>(v_), c))
            return c;
        break;
    }
    case VarType::Null:
    case VarType::Array: break;
    default: return Currency::FromDouble(ToDouble());
    }
    castError(VarType::Currency);
}

TDateTime Variant::ToDateTime() const
{
    switch (Type()) {
    case VarType::DateTime: return std::get<DateTimeValue>(v_).value;
    case VarType::String: {
        TDateTime dt;
        if (TryStrToDateTime(std::get<QString>(v_), dt))
            return dt;
        break;
    }
    case VarType::Null:
    case VarType::Array: break;
    default: return ToDouble();
    }
    castError(VarType::DateTime);
}

QString Variant::toStringSlow() const
{
    switch (Type()) {
    case VarType::Unassigned:
    case VarType::Null: return QString();
    case VarType::Boolean: return BoolToStr(std::get<bool>(v_), true);
    case VarType::Integer: return QString::number(std::get<qint64>(v_));
    case VarType::Double: return FloatToStr(std::get<double>(v_));
    case VarType::Currency: return CurrToStr(std::get<Currency>(v_));
    case VarType::String: return std::get<QString>(v_);
    case VarType::DateTime: return DateTimeToStr(std::get<DateTimeValue>(v_).value);
    case VarType::Bytes: return QString::fromUtf8(std::get<QByteArray>(v_));
    case VarType::Array: break;
    }
    castError(VarType::String);
}

QByteArray Variant::ToBytes() const
{
    if (const QByteArray *b = std::get_if<QByteArray>(&v_))
        return *b;
    if (IsClear())
        return QByteArray();
    return ToString().toUtf8();
}

const Variant::Array &Variant::ToArray() const
{
    if (const Array *a = std::get_if<Array>(&v_))
        return *a;
    castError(VarType::Array);
}

Variant Variant::AsType(VarType type) const
{
    if (type == Type())
        return *this;
    switch (type) {
    case VarType::Unassigned: return Variant();
    case VarType::Null: return Null();
    case VarType::Boolean: return ToBool();
    case VarType::Integer: return ToInt64();
    case VarType::Double: return ToDouble();
    case VarType::Currency: return ToCurrency();
    case VarType::String: return ToString();
    case VarType::DateTime: return FromDateTime(ToDateTime());
    case VarType::Bytes: return ToBytes();
    case VarType::Array: break;
    }
    castError(type);
}

Variant Variant::FromQVariant(const QVariant &v)
{
    if (!v.isValid())
        return Variant();
    if (v.isNull())
        return Null();
    if (v.metaType() == QMetaType::fromType<Variant>())
        return v.value<Variant>();
    switch (v.metaType().id()) {
    case QMetaType::Bool: return v.toBool();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar: return v.toLongLong();
    case QMetaType::ULong:
    case QMetaType::ULongLong: {
        const qulonglong u = v.toULongLong();
        if (u <= qulonglong(std::numeric_limits<qint64>::max()))
            return qint64(u);
        return double(u);
    }
    case QMetaType::Float:
    case QMetaType::Double: return v.toDouble();
    case QMetaType::QDateTime: {
        const QDateTime dt = v.toDateTime();
        return FromDateTime(ComposeDateTime(QDateToDateTime(dt.date()), QTimeToDateTime(dt.time())));
    }
    case QMetaType::QDate: return FromDateTime(QDateToDateTime(v.toDate()));
    case QMetaType::QTime: return FromDateTime(QTimeToDateTime(v.toTime()));
    case QMetaType::QByteArray: return v.toByteArray();
    case QMetaType::QVariantList: {
        Array a;
        for (const QVariant &item : v.toList())
            a.append(FromQVariant(item));
        return a;
    }
    default: return v.toString();
    }
}

QVariant Variant::ToQVariant() const
{
    switch (Type()) {
    case VarType::Unassigned: return QVariant();
    case VarType::Null: return QVariant(QMetaType::fromType<std::nullptr_t>());
    case VarType::Boolean: return std::get<bool>(v_);
    case VarType::Integer: return std::get<qint64>(v_);
    case VarType::Double: return std::get<double>(v_);
    case VarType::Currency: return std::get<Currency>(v_).ToDouble();
    // Qt's drivers bind a null QString or QByteArray as SQL NULL: empty text is not NULL.
    case VarType::String: {
        const QString &s = std::get<QString>(v_);
        return s.isNull() ? QVariant(QStringLiteral("")) : QVariant(s);
    }
    case VarType::DateTime: return DateTimeToQDateTime(std::get<DateTimeValue>(v_).value);
    case VarType::Bytes: {
        const QByteArray &b = std::get<QByteArray>(v_);
        return b.isNull() ? QVariant(QByteArray("", 0)) : QVariant(b);
    }
    case VarType::Array: {
        QVariantList list;
        for (const Variant &item : std::get<Array>(v_))
            list.append(item.ToQVariant());
        return list;
    }
    }
    return QVariant();
}

Variant operator+(const Variant &a, const Variant &b)
{
    if ((a.IsString() || a.IsUnassigned()) && (b.IsString() || b.IsUnassigned()) && !(a.IsUnassigned() && b.IsUnassigned()))
        return Variant(a.ToString() + b.ToString());
    return arithmetic(
        a, b, [](qint64 x, qint64 y, qint64 &r) { return !qAddOverflow(x, y, &r); },
        [](Currency x, Currency y) { return x + y; }, [](double x, double y) { return x + y; }, true);
}

Variant operator-(const Variant &a, const Variant &b)
{
    return arithmetic(
        a, b, [](qint64 x, qint64 y, qint64 &r) { return !qSubOverflow(x, y, &r); },
        [](Currency x, Currency y) { return x - y; }, [](double x, double y) { return x - y; }, true);
}

Variant operator*(const Variant &a, const Variant &b)
{
    return arithmetic(
        a, b, [](qint64 x, qint64 y, qint64 &r) { return !qMulOverflow(x, y, &r); },
        [](Currency x, Currency y) { return x * y; }, [](double x, double y) { return x * y; }, false);
}

Variant operator/(const Variant &a, const Variant &b)
{
    if (a.IsNull() || b.IsNull())
        return Variant::Null();
    if (b.IsClear() || (b.IsNumeric() && b.ToDouble() == 0) || (b.Type() == VarType::Boolean && !b.ToBool()))
        divisionByZero();
    // Currency divided by a whole number or by currency stays currency.
    if (a.Type() == VarType::Currency && (b.Type() == VarType::Currency || b.Type() == VarType::Integer))
        return Variant(a.ToCurrency() / b.ToCurrency());
    if (a.Type() == VarType::Integer && b.Type() == VarType::Currency)
        return Variant(a.ToCurrency() / b.ToCurrency());
    const Common c = commonType(a.Type(), b.Type());
    if (c == Common::Array || c == Common::Mismatch)
        invalidOperation();
    const double d = b.ToDouble();
    if (d == 0)
        divisionByZero();
    return Variant(a.ToDouble() / d);
}

Variant operator-(const Variant &a)
{
    switch (a.Type()) {
    case VarType::Null:
    case VarType::Unassigned: return a;
    case VarType::Integer:
        if (a.ToInt64() != std::numeric_limits<qint64>::min())
            return Variant(-a.ToInt64());
        return Variant(-a.ToDouble());
    case VarType::Currency: return Variant(-a.ToCurrency());
    case VarType::DateTime: return Variant::FromDateTime(-a.ToDateTime());
    case VarType::Array: invalidOperation();
    default: return Variant(-a.ToDouble());
    }
}

VariantRelationship VarCompareValue(const Variant &a, const Variant &b)
{
    using R = VariantRelationship;
    if (a.IsClear() || b.IsClear())
        return a.Type() == b.Type() ? R::vrEqual : R::vrNotEqual;
    switch (commonType(a.Type(), b.Type())) {
    case Common::String: return compareOrdered(a.ToString(), b.ToString());
    case Common::Boolean: return compareOrdered(a.ToBool(), b.ToBool());
    case Common::Bytes: return compareOrdered(a.ToBytes(), b.ToBytes());
    case Common::Integer: return compareOrdered(a.ToInt64(), b.ToInt64());
    case Common::Currency: return compareOrdered(a.ToCurrency(), b.ToCurrency());
    case Common::Array: {
        const Variant::Array &x = a.ToArray();
        const Variant::Array &y = b.ToArray();
        if (x.size() != y.size())
            return R::vrNotEqual;
        for (qsizetype i = 0; i < x.size(); ++i)
            if (VarCompareValue(x[i], y[i]) != R::vrEqual)
                return R::vrNotEqual;
        return R::vrEqual;
    }
    case Common::Double:
    case Common::DateTime: {
        // A text that is no number is compared as text with the number's text.
        double x = 0, y = 0;
        const bool okA = a.IsString() ? textToNumber(a.ToString(), x) : (x = a.ToDouble(), true);
        const bool okB = b.IsString() ? textToNumber(b.ToString(), y) : (y = b.ToDouble(), true);
        if (!okA || !okB)
            return compareOrdered(a.ToString(), b.ToString());
        return compareNumbers(x, y);
    }
    default: return R::vrNotEqual;
    }
}

bool operator==(const Variant &a, const Variant &b)
{
    return VarCompareValue(a, b) == VariantRelationship::vrEqual;
}

bool operator<(const Variant &a, const Variant &b)
{
    return VarCompareValue(a, b) == VariantRelationship::vrLessThan;
}

} // namespace qdb

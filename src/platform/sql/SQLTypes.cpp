#include "SQLTypes.h"

#include "platform/rtl/Conversions.h"

#include <QRegularExpression>

namespace qdb {

namespace {

// Undeclared text lengths get a width a grid can show.
constexpr int defaultTextSize = 50;

struct TypeSize
{
    int size = 0;
    int scale = -1;
};

TypeSize sizeOf(const QString &declared)
{
    static const QRegularExpression re(QStringLiteral("\\(\\s*(\\d+)\\s*(?:,\\s*(\\d+)\\s*)?\\)"));
    const QRegularExpressionMatch m = re.match(declared);
    TypeSize ts;
    if (m.hasMatch()) {
        ts.size = m.captured(1).toInt();
        if (!m.captured(2).isEmpty())
            ts.scale = m.captured(2).toInt();
    }
    return ts;
}

// Reads digits at a position; -1 when they are not all there.
int digits(QStringView t, qsizetype at, int count)
{
    if (at + count > t.size())
        return -1;
    int v = 0;
    for (int i = 0; i < count; ++i) {
        const char16_t c = t[at + i].unicode();
        if (c < u'0' || c > u'9')
            return -1;
        v = v * 10 + (c - u'0');
    }
    return v;
}

// The usual SQLite spellings: "yyyy-MM-dd", "yyyy-MM-dd HH:mm[:ss[.zzz]]" (or with a
// 'T'), "HH:mm[:ss[.zzz]]", or a day number. Parsed by hand: this runs for every value
// read, and Qt's date-time parsing consults the time zone each time.
bool parseStamp(QStringView t, TDateTime &result)
{
    t = t.trimmed();
    TDateTime date = 0;
    qsizetype at = 0;
    if (t.size() >= 10 && t[4] == QLatin1Char('-') && t[7] == QLatin1Char('-')) {
        const int y = digits(t, 0, 4), m = digits(t, 5, 2), d = digits(t, 8, 2);
        if (y < 0 || m < 0 || d < 0 || !TryEncodeDate(y, m, d, date))
            return false;
        at = 10;
        if (at == t.size()) {
            result = date;
            return true;
        }
        if (t[at] != QLatin1Char(' ') && t[at] != QLatin1Char('T'))
            return false;
        ++at;
    }
    const int h = digits(t, at, 2), n = digits(t, at + 3, 2);
    if (h < 0 || n < 0 || t[at + 2] != QLatin1Char(':')) {
        bool ok = false;
        const double serial = t.toDouble(&ok);
        result = serial;
        return ok && at == 0;
    }
    int s = 0, z = 0;
    if (at + 5 < t.size() && t[at + 5] == QLatin1Char(':')) {
        s = digits(t, at + 6, 2);
        if (at + 8 < t.size() && (t[at + 8] == QLatin1Char('.') || t[at + 8] == QLatin1Char(','))) {
            QStringView frac = t.mid(at + 9, 3);
            z = 0;
            for (qsizetype i = 0; i < 3; ++i)
                z = z * 10 + (i < frac.size() && frac[i].isDigit() ? frac[i].digitValue() : 0);
        }
    }
    TDateTime time = 0;
    if (s < 0 || !TryEncodeTime(h, n, s, z, time))
        return false;
    result = ComposeDateTime(date, time);
    return true;
}

} // namespace

TFieldDef FieldDefFromDeclaredType(const QString &name, const QString &declaredType, QMetaType valueType)
{
    TFieldDef def;
    def.Name = name;
    const QString d = declaredType.toUpper();
    const TypeSize ts = sizeOf(d);
    auto is = [&](const char *word) { return d.contains(QLatin1String(word)); };
    if (d.isEmpty()) {
        switch (valueType.id()) {
        case QMetaType::Int:
        case QMetaType::LongLong: def.DataType = ftLargeint; break;
        case QMetaType::Double: def.DataType = ftFloat; break;
        case QMetaType::QByteArray: def.DataType = ftBlob; break;
        default: def.DataType = ftString; def.Size = defaultTextSize; break;
        }
    } else if (is("BOOL")) {
        def.DataType = ftBoolean;
    } else if (is("BIGINT") || is("INT8")) {
        def.DataType = ftLargeint;
    } else if (is("SMALLINT") || is("INT2") || is("TINYINT")) {
        def.DataType = ftSmallint;
    } else if (is("INT")) {
        def.DataType = ftInteger;
    } else if (is("TIMESTAMP") || is("DATETIME")) {
        def.DataType = ftDateTime;
    } else if (is("DATE")) {
        def.DataType = ftDate;
    } else if (is("TIME")) {
        def.DataType = ftTime;
    } else if (is("MONEY") || is("CURRENCY")) {
        def.DataType = ftCurrency;
    } else if (is("NUMERIC") || is("DECIMAL")) {
        if (ts.scale >= 0 && ts.scale <= 4) {
            def.DataType = ftBCD;
            def.Precision = ts.size;
            def.Size = ts.scale;
        } else {
            def.DataType = ftFloat;
        }
    } else if (is("REAL") || is("FLOA") || is("DOUB")) {
        def.DataType = ftFloat;
    } else if (is("BLOB") || is("BINARY") || is("BYTEA")) {
        def.DataType = ftBlob;
    } else if (is("CLOB") || is("MEMO") || is("LONGTEXT")) {
        def.DataType = ftMemo;
    } else if (is("GUID") || is("UUID")) {
        def.DataType = ftGuid;
        def.Size = 38;
    } else {
        def.DataType = ftString;
        def.Size = ts.size > 0 ? ts.size : defaultTextSize;
    }
    return def;
}

TFieldDef FieldDefFromSqlField(const QSqlField &field, TSQLDialect dialect)
{
    TFieldDef def;
    def.Name = field.name();
    def.Required = field.requiredStatus() == QSqlField::Required;
    constexpr int pgNumeric = 1700, pgInt2 = 21, pgUuid = 2950;
    switch (field.metaType().id()) {
    case QMetaType::Bool: def.DataType = ftBoolean; break;
    case QMetaType::Int:
        def.DataType = dialect == TSQLDialect::PostgreSQL && field.typeID() == pgInt2 ? ftSmallint : ftInteger;
        break;
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong: def.DataType = ftLargeint; break;
    case QMetaType::Double:
        if (dialect == TSQLDialect::PostgreSQL && field.typeID() == pgNumeric && field.precision() >= 0
            && field.precision() <= 4 && field.length() > 0) {
            def.DataType = ftBCD;
            def.Precision = field.length();
            def.Size = field.precision();
        } else {
            def.DataType = ftFloat;
        }
        break;
    case QMetaType::QDate: def.DataType = ftDate; break;
    case QMetaType::QTime: def.DataType = ftTime; break;
    case QMetaType::QDateTime: def.DataType = ftDateTime; break;
    case QMetaType::QByteArray: def.DataType = ftBlob; break;
    default:
        if (dialect == TSQLDialect::PostgreSQL && field.typeID() == pgUuid) {
            def.DataType = ftGuid;
            def.Size = 38;
        } else {
            def.DataType = ftString;
            def.Size = field.length() > 0 ? field.length() : defaultTextSize;
        }
        break;
    }
    return def;
}

Variant FromDatabase(Variant value, const TField *field, TSQLDialect dialect)
{
    Q_UNUSED(dialect);
    if (value.IsClear())
        return Variant::Null();
    const VarType target = field->ValueType();
    if (value.Type() == target)
        return value; // moved out
    const QString *text = value.StringPtr();
    switch (target) {
    case VarType::Boolean:
        if (text) {
            bool b = false;
            return TryStrToBool(*text, b) ? Variant(b) : Variant(*text == QLatin1String("t"));
        }
        return value.ToBool();
    case VarType::Integer:
        if (text) {
            bool ok = false;
            const qint64 i = text->toLongLong(&ok);
            return ok ? Variant(i) : Variant::Null();
        }
        return value.ToInt64();
    case VarType::Double:
        if (text) {
            bool ok = false;
            const double d = text->toDouble(&ok);
            return ok ? Variant(d) : Variant::Null();
        }
        return value.ToDouble();
    case VarType::Currency: {
        Currency c;
        if (text)
            return TryStrToCurr(*text, c, TFormatSettings::Invariant()) ? Variant(c) : Variant::Null();
        return Currency::FromDouble(value.ToDouble());
    }
    case VarType::DateTime: {
        if (!text)
            return Variant::FromDateTime(value.ToDouble()); // a stored day number
        TDateTime dt = 0;
        if (!parseStamp(*text, dt))
            return Variant::Null(); // text that is no date reads as empty, not as a wrong date
        return Variant::FromDateTime(dt);
    }
    case VarType::Bytes: return value.ToBytes();
    case VarType::String: return text ? std::move(value) : Variant(value.ToString());
    default: return value;
    }
}

bool DateFromText(const char *utf8, int bytes, Variant &value)
{
    constexpr int longest = 32; // longer than any stamp: left to the general way
    if (bytes > longest)
        return false;
    char16_t text[longest];
    for (int i = 0; i < bytes; ++i) {
        if (uchar(utf8[i]) >= 0x80)
            return false;
        text[i] = char16_t(utf8[i]);
    }
    TDateTime dt = 0;
    value = parseStamp(QStringView(text, bytes), dt) ? Variant::FromDateTime(dt) : Variant::Null();
    return true;
}

QVariant ToDatabase(const Variant &value, const TField *field, TSQLDialect dialect)
{
    if (value.IsClear())
        return QVariant();
    const bool sqlite = dialect == TSQLDialect::SQLite;
    switch (field->ValueType()) {
    case VarType::Boolean: return sqlite ? QVariant(value.ToBool() ? 1 : 0) : QVariant(value.ToBool());
    case VarType::Integer: return value.ToInt64();
    case VarType::Double: return value.ToDouble();
    case VarType::Currency: return sqlite ? QVariant(value.ToCurrency().ToDouble()) : QVariant(value.ToCurrency().ToString());
    case VarType::DateTime: {
        const QDate d = DateTimeToQDate(value.ToDateTime());
        const QTime t = DateTimeToQTime(value.ToDateTime());
        switch (field->DataType()) {
        case ftDate: return sqlite ? QVariant(d.toString(Qt::ISODate)) : QVariant(d);
        case ftTime: return sqlite ? QVariant(t.toString(QStringLiteral("HH:mm:ss"))) : QVariant(t);
        default:
            if (!sqlite)
                return QDateTime(d, t);
            return d.toString(Qt::ISODate) + QLatin1Char(' ')
                + t.toString(t.msec() ? QStringLiteral("HH:mm:ss.zzz") : QStringLiteral("HH:mm:ss"));
        }
    }
    case VarType::Bytes: return Variant(value.ToBytes()).ToQVariant();
    default: return value.ToQVariant();
    }
}

} // namespace qdb

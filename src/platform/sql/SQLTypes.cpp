#include "SQLTypes.h"

#include "platform/rtl/Conversions.h"

#include <QRegularExpression>
#include <QSqlResult>

#include <sqlite3.h>

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

TDateTime parseStamp(const QString &text)
{
    const QString t = text.trimmed();
    QDateTime dt = QDateTime::fromString(t, Qt::ISODateWithMs);
    if (!dt.isValid())
        dt = QDateTime::fromString(t, QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    if (!dt.isValid())
        dt = QDateTime::fromString(t, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (dt.isValid())
        return QDateTimeToDateTime(dt);
    const QDate d = QDate::fromString(t.left(10), Qt::ISODate);
    if (d.isValid())
        return QDateToDateTime(d);
    QTime tm = QTime::fromString(t, QStringLiteral("HH:mm:ss.zzz"));
    if (!tm.isValid())
        tm = QTime::fromString(t, QStringLiteral("HH:mm:ss"));
    if (!tm.isValid())
        tm = QTime::fromString(t, QStringLiteral("HH:mm"));
    if (tm.isValid())
        return QTimeToDateTime(tm);
    bool ok = false;
    const double serial = t.toDouble(&ok); // a stored day number
    return ok ? serial : 0;
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

QStringList SQLiteDeclaredTypes(const QSqlQuery &query)
{
    QStringList types;
    const QVariant handle = query.result() ? query.result()->handle() : QVariant();
    auto *stmt = handle.isValid() && qstrcmp(handle.typeName(), "sqlite3_stmt*") == 0
        ? *static_cast<sqlite3_stmt *const *>(handle.constData())
        : nullptr;
    const int n = stmt ? sqlite3_column_count(stmt) : 0;
    for (int i = 0; i < n; ++i) {
        const char *declared = sqlite3_column_decltype(stmt, i);
        types << (declared ? QString::fromUtf8(declared) : QString());
    }
    return types;
}

Variant FromDatabase(const QVariant &value, const TField *field, TSQLDialect dialect)
{
    Q_UNUSED(dialect);
    if (!value.isValid() || value.isNull())
        return Variant::Null();
    switch (field->ValueType()) {
    case VarType::Boolean:
        if (value.metaType().id() == QMetaType::QString) {
            bool b = false;
            return TryStrToBool(value.toString(), b) ? Variant(b) : Variant(value.toString() == QLatin1String("t"));
        }
        return value.toBool();
    case VarType::Integer: return value.toLongLong();
    case VarType::Double: return value.toDouble();
    case VarType::Currency: {
        Currency c;
        const QString text = value.metaType().id() == QMetaType::QString ? value.toString()
                                                                         : QString::number(value.toDouble(), 'f', 4);
        if (TryStrToCurr(text, c, TFormatSettings::Invariant()))
            return c;
        return Currency::FromDouble(value.toDouble());
    }
    case VarType::DateTime:
        switch (value.metaType().id()) {
        case QMetaType::QDateTime: return Variant::FromDateTime(QDateTimeToDateTime(value.toDateTime()));
        case QMetaType::QDate: return Variant::FromDateTime(QDateToDateTime(value.toDate()));
        case QMetaType::QTime: return Variant::FromDateTime(QTimeToDateTime(value.toTime()));
        case QMetaType::Double:
        case QMetaType::Int:
        case QMetaType::LongLong: return Variant::FromDateTime(value.toDouble());
        default: return Variant::FromDateTime(parseStamp(value.toString()));
        }
    case VarType::Bytes: return value.toByteArray();
    case VarType::String: return value.toString();
    default: return Variant::FromQVariant(value);
    }
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
        const QDateTime dt = DateTimeToQDateTime(value.ToDateTime());
        switch (field->DataType()) {
        case ftDate: return sqlite ? QVariant(dt.date().toString(Qt::ISODate)) : QVariant(dt.date());
        case ftTime: return sqlite ? QVariant(dt.time().toString(QStringLiteral("HH:mm:ss"))) : QVariant(dt.time());
        default:
            return sqlite ? QVariant(dt.toString(dt.time().msec() ? QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")
                                                                   : QStringLiteral("yyyy-MM-dd HH:mm:ss")))
                          : QVariant(dt);
        }
    }
    case VarType::Bytes: return value.ToBytes();
    default: return value.ToQVariant();
    }
}

} // namespace qdb

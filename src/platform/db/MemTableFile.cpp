#include "MemTable.h"

#include "DBConsts.h"

#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Set.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaEnum>
#include <QSaveFile>
#include <QSet>

#include <cmath>
#include <limits>

namespace qdb {

namespace {

constexpr double maxExactInteger = 9007199254740992.0; // 2^53

QJsonValue encode(const Variant &v)
{
    switch (v.Type()) {
    case VarType::Unassigned:
    case VarType::Null: return QJsonValue::Null;
    case VarType::Boolean: return v.ToBool();
    case VarType::Integer: {
        const qint64 i = v.ToInt64();
        return std::fabs(double(i)) <= maxExactInteger ? QJsonValue(double(i)) : QJsonValue(QString::number(i));
    }
    case VarType::Double: return std::isfinite(v.ToDouble()) ? QJsonValue(v.ToDouble()) : QJsonValue::Null;
    case VarType::Currency: return v.ToCurrency().ToString();
    case VarType::DateTime: return DateTimeToQDateTime(v.ToDateTime()).toString(Qt::ISODateWithMs);
    case VarType::Bytes: return QString::fromLatin1(v.ToBytes().toBase64());
    default: return v.ToString();
    }
}

[[noreturn]] void corrupt(const QString &fileName, const QString &what)
{
    throw EDatabaseError(QCoreApplication::translate("qdb", "Cannot load %1: %2").arg(fileName, what));
}

Variant decode(const QJsonValue &json, const TFieldDef &def, const QString &source)
{
    if (json.isNull() || json.isUndefined())
        return Variant::Null();
    std::unique_ptr<TField> probe(CreateFieldOfType(def.DataType));
    const VarType type = probe ? probe->ValueType() : VarType::Unassigned;
    auto bad = [&]() { corrupt(source, QStringLiteral("a value of field '%1' is not valid").arg(def.Name)); };
    switch (type) {
    case VarType::Boolean:
        if (!json.isBool())
            bad();
        return json.toBool();
    case VarType::Integer:
        // Whole numbers within 2^63; larger ones are written as text.
        if (json.isDouble() && json.toDouble() == std::trunc(json.toDouble()) && std::fabs(json.toDouble()) < 0x1p63)
            return qint64(json.toDouble());
        if (json.isString()) {
            bool ok = false;
            const qint64 i = json.toString().toLongLong(&ok);
            if (ok)
                return i;
        }
        bad();
        return Variant::Null();
    case VarType::Double:
        if (!json.isDouble())
            bad();
        return json.toDouble();
    case VarType::Currency: {
        bool ok = false;
        const double d = json.isString() ? json.toString().toDouble(&ok) : json.toDouble();
        if (json.isDouble())
            ok = true;
        if (!ok)
            bad();
        const QString text = json.isString() ? json.toString() : QString::number(d, 'f', 4);
        // Exact from the decimal text.
        const bool negative = text.startsWith(QLatin1Char('-'));
        const QString body = negative ? text.mid(1) : text;
        const qsizetype dot = body.indexOf(QLatin1Char('.'));
        const QString frac = (dot < 0 ? QString() : body.mid(dot + 1)).leftJustified(4, QLatin1Char('0')).left(4);
        const QString whole = dot < 0 ? body : body.left(dot);
        bool wholeOk = false, fracOk = false;
        const qint64 units = whole.isEmpty() ? 0 : whole.toLongLong(&wholeOk);
        const qint64 parts = frac.toLongLong(&fracOk);
        // Digits only, and within what a currency holds.
        if ((!wholeOk && !whole.isEmpty()) || !fracOk || units < 0 || parts < 0
            || units > (std::numeric_limits<qint64>::max() - parts) / Currency::Scale)
            bad();
        const qint64 raw = units * Currency::Scale + parts;
        return Currency::FromRaw(negative ? -raw : raw);
    }
    case VarType::DateTime: {
        const QDateTime dt = QDateTime::fromString(json.toString(), Qt::ISODateWithMs);
        if (!dt.isValid())
            bad();
        return Variant::FromDateTime(QDateTimeToDateTime(dt));
    }
    case VarType::Bytes: return QByteArray::fromBase64(json.toString().toLatin1());
    case VarType::String:
        if (!json.isString())
            bad();
        return json.toString();
    default: return Variant::FromQVariant(json.toVariant());
    }
}

QJsonObject fieldDefToJson(const TFieldDef &def)
{
    QJsonObject o;
    o[QStringLiteral("name")] = def.Name;
    o[QStringLiteral("type")] = QString::fromLatin1(QMetaEnum::fromType<TFieldType>().valueToKey(def.DataType));
    if (def.Size)
        o[QStringLiteral("size")] = def.Size;
    if (def.Required)
        o[QStringLiteral("required")] = true;
    if (def.Precision)
        o[QStringLiteral("precision")] = def.Precision;
    if (!def.ChildDefs.isEmpty()) {
        QJsonArray children;
        for (const TFieldDef &child : def.ChildDefs)
            children.append(fieldDefToJson(child));
        o[QStringLiteral("children")] = children;
    }
    return o;
}

TFieldDef fieldDefFromJson(const QJsonValue &value, const QString &source)
{
    const QJsonObject o = value.toObject();
    TFieldDef def;
    def.Name = o[QStringLiteral("name")].toString();
    bool ok = false;
    const QByteArray typeName = o[QStringLiteral("type")].toString().toLatin1();
    def.DataType = TFieldType(QMetaEnum::fromType<TFieldType>().keyToValue(typeName.constData(), &ok));
    if (!value.isObject() || def.Name.isEmpty() || !ok)
        corrupt(source, QStringLiteral("a field definition is not valid"));
    def.Size = o[QStringLiteral("size")].toInt();
    def.Required = o[QStringLiteral("required")].toBool();
    def.Precision = o[QStringLiteral("precision")].toInt();
    for (const QJsonValue &child : o[QStringLiteral("children")].toArray())
        def.ChildDefs.append(fieldDefFromJson(child, source));
    return def;
}

// The definitions of the fields that hold data, in storage order.
void flatten(const QList<TFieldDef> &defs, QList<TFieldDef> &out)
{
    for (const TFieldDef &def : defs) {
        out.append(def);
        flatten(def.ChildDefs, out);
    }
}

TFieldDef defOfField(TField *f)
{
    TFieldDef def;
    def.Name = f->FieldName();
    def.DataType = f->DataType();
    def.Size = f->Size();
    def.Required = f->Required();
    if (auto *bcd = qobject_cast<TBCDField *>(f))
        def.Precision = bcd->Precision();
    if (auto *object = qobject_cast<TObjectField *>(f))
        for (TField *child : object->Fields())
            def.ChildDefs.append(defOfField(child));
    return def;
}

} // namespace

QByteArray TMemTable::SaveToJson() const
{
    QJsonObject doc;
    doc[QStringLiteral("format")] = QStringLiteral("qdb-memtable");
    doc[QStringLiteral("version")] = 1;
    QJsonArray fields;
    QList<TFieldDef> defs;
    if (FieldList().Count() > 0) {
        for (TField *f : Fields())
            if (f->FieldKind() == fkData)
                defs.append(defOfField(f));
    } else {
        for (const TFieldDef &def : FieldDefs())
            defs.append(def);
    }
    for (const TFieldDef &def : defs)
        fields.append(fieldDefToJson(def));
    doc[QStringLiteral("fields")] = fields;

    QJsonArray indexes;
    for (const TIndexDef &def : indexDefs_) {
        QJsonObject o;
        o[QStringLiteral("name")] = def.Name;
        o[QStringLiteral("fields")] = def.Fields;
        o[QStringLiteral("descFields")] = def.DescFields;
        o[QStringLiteral("caseInsFields")] = def.CaseInsFields;
        o[QStringLiteral("options")] = SetToString(def.Options);
        indexes.append(o);
    }
    doc[QStringLiteral("indexes")] = indexes;

    // Records in the stored order of the columns, live ones only.
    QList<TFieldDef> flat;
    flatten(defs, flat);
    QJsonArray records;
    for (qint64 row = 0; row < qint64(live_.size()); ++row) {
        if (!live_[size_t(row)])
            continue;
        QJsonArray record;
        for (size_t c = 0; c < columns_.size() && c < size_t(flat.size()); ++c)
            record.append(encode(columns_[c][size_t(row)]));
        records.append(record);
    }
    doc[QStringLiteral("records")] = records;
    return QJsonDocument(doc).toJson(QJsonDocument::Compact);
}

void TMemTable::LoadFromJson(const QByteArray &json)
{
    const QString source = objectName().isEmpty() ? QStringLiteral("data") : objectName();
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        corrupt(source, error.errorString());
    const QJsonObject root = doc.object();
    if (root[QStringLiteral("format")].toString() != QLatin1String("qdb-memtable"))
        corrupt(source, QStringLiteral("not a table document"));

    // Everything is read into temporaries first: a bad document changes nothing.
    QList<TFieldDef> defs;
    for (const QJsonValue &f : root[QStringLiteral("fields")].toArray())
        defs.append(fieldDefFromJson(f, source));
    // The table would refuse these only once it had let its own fields go.
    QSet<QString> names;
    for (const TFieldDef &def : defs) {
        const QString name = def.Name.toCaseFolded();
        if (name.isEmpty() || names.contains(name))
            corrupt(source, QStringLiteral("a field name is empty or given twice"));
        names.insert(name);
    }
    QList<TFieldDef> flat;
    flatten(defs, flat);
    QList<TFieldDef> dataDefs;
    for (const TFieldDef &def : flat)
        dataDefs.append(def);
    TIndexDefs indexes;
    for (const QJsonValue &v : root[QStringLiteral("indexes")].toArray()) {
        const QJsonObject o = v.toObject();
        TIndexDef &def = indexes.Add(o[QStringLiteral("name")].toString(), o[QStringLiteral("fields")].toString(),
                                     StringToSet<TIndexOption>(o[QStringLiteral("options")].toString()));
        def.DescFields = o[QStringLiteral("descFields")].toString();
        def.CaseInsFields = o[QStringLiteral("caseInsFields")].toString();
    }
    std::vector<std::vector<Variant>> columns(size_t(dataDefs.size()));
    const QJsonArray records = root[QStringLiteral("records")].toArray();
    for (auto &column : columns)
        column.reserve(size_t(records.size()));
    for (const QJsonValue &r : records) {
        const QJsonArray record = r.toArray();
        if (!r.isArray() || record.size() > dataDefs.size())
            corrupt(source, QStringLiteral("a record does not match the fields"));
        for (int c = 0; c < dataDefs.size(); ++c)
            columns[size_t(c)].push_back(c < record.size() ? decode(record[c], dataDefs[c], source) : Variant::Null());
    }

    const bool keepFields = FieldList().Count() > 0 && !DefaultFields();
    const bool wasActive = Active();
    Close();
    // Opening may still refuse what was read (a type no field stands for, an index given
    // twice): the table then gets back what it had.
    const TFieldDefs oldDefs = FieldDefs();
    const TIndexDefs oldIndexes = indexDefs_;
    auto oldColumns = std::move(columns_);
    auto oldLive = std::move(live_);
    const auto oldLiveCount = liveCount_;
    try {
        if (!keepFields) {
            FieldDefs().Clear();
            for (const TFieldDef &def : defs)
                FieldDefs().Add(def.Name, def.DataType, def.Size, def.Required) = def;
        }
        indexDefs_ = indexes;
        columns_ = std::move(columns);
        live_.assign(records.size(), true);
        liveCount_ = records.size();
        Open();
    } catch (const Exception &e) {
        Close();
        if (!keepFields)
            DestroyFields(); // made by the open that failed
        FieldDefs() = oldDefs;
        indexDefs_ = oldIndexes;
        columns_ = std::move(oldColumns);
        live_ = std::move(oldLive);
        liveCount_ = oldLiveCount;
        if (wasActive)
            Open();
        corrupt(source, e.Message());
    }
}

void TMemTable::SaveToFile(const QString &fileName) const
{
    QSaveFile file(fileName);
    const QByteArray data = SaveToJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        DatabaseError(QCoreApplication::translate("qdb", "Cannot save %1: %2").arg(fileName, file.errorString()), this);
}

void TMemTable::LoadFromFile(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        DatabaseError(QCoreApplication::translate("qdb", "Cannot open %1: %2").arg(fileName, file.errorString()), this);
    LoadFromJson(file.readAll());
}

} // namespace qdb

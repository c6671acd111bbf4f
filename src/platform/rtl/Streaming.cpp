#include "Streaming.h"

#include "Collection.h"
#include "Exceptions.h"
#include "Strings.h"
#include "TypInfo.h"

#include <QColor>
#include <QCoreApplication>
#include <QFont>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaMethod>

#include <cmath>

namespace qdb {

namespace {

constexpr double maxExactInteger = 9007199254740992.0; // 2^53

bool isObjectType(QMetaType t)
{
    return t.flags().testFlag(QMetaType::PointerToQObject);
}

bool invokeIfPresent(QObject *object, const char *signature, const char *name)
{
    if (object->metaObject()->indexOfMethod(signature) < 0)
        return false;
    QMetaObject::invokeMethod(object, name, Qt::DirectConnection);
    return true;
}

// Calls BeginLoading() on construction and Loaded() on destruction, when the class has them.
class LoadingBracket
{
public:
    explicit LoadingBracket(QObject *o) : o_(o) { invokeIfPresent(o_, "BeginLoading()", "BeginLoading"); }
    ~LoadingBracket() { invokeIfPresent(o_, "Loaded()", "Loaded"); }
    LoadingBracket(const LoadingBracket &) = delete;
    LoadingBracket &operator=(const LoadingBracket &) = delete;

private:
    QObject *o_;
};

[[noreturn]] void readError(const QObject *object, const QString &property, const QString &what)
{
    throw EReadError(QCoreApplication::translate("qdb", "Error reading %1.%2: %3")
                         .arg(ClassName(object), property, what));
}

QJsonValue valueToJson(const QMetaProperty &prop, const QVariant &v)
{
    if (prop.isEnumType())
        return PropertyValueText(prop, v);
    switch (v.metaType().id()) {
    case QMetaType::Bool: return v.toBool();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong: {
        const double d = v.toDouble();
        if (std::fabs(d) <= maxExactInteger)
            return d;
        return v.toString();
    }
    case QMetaType::Float:
    case QMetaType::Double: {
        const double d = v.toDouble();
        return std::isfinite(d) ? QJsonValue(d) : QJsonValue(v.toString());
    }
    case QMetaType::QString: return v.toString();
    case QMetaType::QStringList: return QJsonArray::fromStringList(v.toStringList());
    case QMetaType::QFont: return v.value<QFont>().toString();
    case QMetaType::QColor: return v.value<QColor>().name(QColor::HexArgb);
    default: break;
    }
    QVariant text = v;
    if (text.metaType().id() != QMetaType::QString && text.convert(QMetaType::fromType<QString>()))
        return text.toString();
    return QJsonValue(QJsonValue::Undefined);
}

bool jsonToValue(const QMetaProperty &prop, const QJsonValue &json, QVariant &out)
{
    const int target = prop.metaType().id();
    switch (json.type()) {
    case QJsonValue::Bool: out = json.toBool(); return true;
    case QJsonValue::Double: {
        const double d = json.toDouble();
        const bool integral = target != QMetaType::Double && target != QMetaType::Float && !prop.isEnumType();
        if (integral) {
            if (d != std::trunc(d))
                return false;
            out = qint64(d);
        } else {
            out = d;
        }
        return true;
    }
    case QJsonValue::String: {
        const QString s = json.toString();
        if (target == QMetaType::QFont) {
            QFont f;
            if (!f.fromString(s))
                return false;
            out = f;
        } else if (target == QMetaType::QColor) {
            const QColor c = QColor::fromString(s);
            if (!c.isValid())
                return false;
            out = c;
        } else {
            out = s;
        }
        return true;
    }
    case QJsonValue::Array: {
        QStringList list;
        for (const QJsonValue &item : json.toArray()) {
            if (!item.isString())
                return false;
            list << item.toString();
        }
        out = list;
        return true;
    }
    default: return false;
    }
}

void readObjectProperty(QObject *object, const QMetaProperty &prop, const QJsonValue &json,
                        const ReferenceResolver &resolve)
{
    const QString name = QString::fromLatin1(prop.name());
    QObject *held = prop.read(object).value<QObject *>();
    if (auto *strings = qobject_cast<TStrings *>(held)) {
        QVariant lines;
        if (!json.isArray() || !jsonToValue(prop, json, lines))
            readError(object, name, QCoreApplication::translate("qdb", "a list of strings was expected"));
        strings->BeginUpdate();
        strings->Clear();
        strings->AddStrings(lines.toStringList());
        strings->EndUpdate();
        return;
    }
    if (auto *collection = qobject_cast<TCollection *>(held)) {
        if (!json.isArray())
            readError(object, name, QCoreApplication::translate("qdb", "a list of items was expected"));
        CollectionUpdateGuard guard(*collection);
        collection->Clear();
        for (const QJsonValue &item : json.toArray()) {
            if (!item.isObject())
                readError(object, name, QCoreApplication::translate("qdb", "an item was expected"));
            ReadComponent(collection->Add(), item.toObject(), resolve);
        }
        return;
    }
    if (json.isObject() && held) {
        ReadComponent(held, json.toObject(), resolve);
        return;
    }
    if (json.isString() && prop.isWritable()) {
        if (QObject *target = resolve ? resolve(json.toString(), prop) : nullptr) {
            QVariant v = QVariant::fromValue(target);
            if (!v.convert(prop.metaType()) || !prop.write(object, v))
                readError(object, name, QCoreApplication::translate("qdb", "invalid reference '%1'").arg(json.toString()));
        }
        return;
    }
    readError(object, name, QCoreApplication::translate("qdb", "invalid property value"));
}

} // namespace

bool IsPropertyStored(const QObject *object, const QMetaProperty &property)
{
    // A Qt-typed face for Designer, Q_CLASSINFO("QtTypedFace", "names"), repeats properties
    // that are streamed under their own names.
    const int face = object->metaObject()->indexOfClassInfo("QtTypedFace");
    if (face >= 0 && QByteArray(object->metaObject()->classInfo(face).value()).split(' ').contains(property.name()))
        return false;
    const QByteArray test = QByteArray("Is") + property.name() + "Stored()";
    const int index = object->metaObject()->indexOfMethod(test.constData());
    if (index >= 0) {
        const QMetaMethod method = object->metaObject()->method(index);
        if (method.returnType() == QMetaType::Bool) {
            bool stored = false;
            method.invoke(const_cast<QObject *>(object), Qt::DirectConnection, Q_RETURN_ARG(bool, stored));
            return stored;
        }
    }
    // A declared default, as Q_CLASSINFO("default:Foo", "text"): the value is written only
    // when it differs, compared in its written form.
    const QByteArray key = QByteArray("default:") + property.name();
    const int info = object->metaObject()->indexOfClassInfo(key.constData());
    if (info >= 0 && property.isStored()) {
        const QJsonValue written = valueToJson(property, property.read(object));
        return written.toVariant().toString() != QString::fromUtf8(object->metaObject()->classInfo(info).value());
    }
    return property.isStored();
}

QJsonObject WriteComponent(const QObject *object)
{
    QJsonObject json;
    const QMetaObject *meta = object->metaObject();
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty prop = meta->property(i);
        if (!prop.isReadable() || !IsPropertyStored(object, prop))
            continue;
        const QString name = QString::fromLatin1(prop.name());
        const QVariant v = prop.read(object);
        if (isObjectType(prop.metaType())) {
            const QObject *held = v.value<QObject *>();
            if (!held)
                continue;
            if (auto *strings = qobject_cast<const TStrings *>(held)) {
                json[name] = QJsonArray::fromStringList(strings->ToStringList());
            } else if (auto *collection = qobject_cast<const TCollection *>(held)) {
                if (collection->Count() == 0 && collection->Owner() == object)
                    continue; // an empty list of the object's own is its default
                QJsonArray items;
                for (int k = 0; k < collection->Count(); ++k)
                    items.append(WriteComponent(collection->Items(k)));
                json[name] = items;
            } else if (held->parent() == object) {
                const QJsonObject nested = WriteComponent(held);
                if (!nested.isEmpty())
                    json[name] = nested;
            } else if (!held->objectName().isEmpty()) {
                json[name] = held->objectName();
            }
            continue;
        }
        if (!prop.isWritable() || (name == QLatin1String("objectName") && v.toString().isEmpty()))
            continue;
        const QJsonValue value = valueToJson(prop, v);
        if (!value.isUndefined())
            json[name] = value;
    }
    if (auto *custom = dynamic_cast<const TCustomProperties *>(object))
        for (const QString &name : custom->CustomPropertyNames()) {
            const QJsonValue value = custom->WriteCustomProperty(name);
            if (!value.isUndefined())
                json[name] = value;
        }
    return json;
}

void ReadComponent(QObject *object, const QJsonObject &json, const ReferenceResolver &resolve)
{
    LoadingBracket loading(object);
    const QMetaObject *meta = object->metaObject();
    auto *custom = dynamic_cast<TCustomProperties *>(object);
    const QStringList customNames = custom ? custom->CustomPropertyNames() : QStringList();
    for (auto it = json.begin(); it != json.end(); ++it) {
        if (customNames.contains(it.key()))
            continue; // after the published ones
        const int index = meta->indexOfProperty(it.key().toLatin1().constData());
        if (index < 0)
            readError(object, it.key(), QCoreApplication::translate("qdb", "property does not exist"));
        const QMetaProperty prop = meta->property(index);
        if (isObjectType(prop.metaType())) {
            readObjectProperty(object, prop, it.value(), resolve);
            continue;
        }
        QVariant v;
        if (!prop.isWritable() || !jsonToValue(prop, it.value(), v) || !ConvertForProperty(prop, v)
            || !prop.write(object, v))
            readError(object, it.key(), QCoreApplication::translate("qdb", "invalid property value"));
    }
    for (const QString &name : customNames)
        if (json.contains(name))
            custom->ReadCustomProperty(name, json.value(name));
}

QByteArray ComponentToJson(const QObject *object)
{
    return QJsonDocument(WriteComponent(object)).toJson(QJsonDocument::Indented);
}

void JsonToComponent(QObject *object, const QByteArray &json, const ReferenceResolver &resolve)
{
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        throw EReadError(QCoreApplication::translate("qdb", "Invalid component stream at offset %1: %2")
                             .arg(error.offset)
                             .arg(error.errorString()));
    if (!doc.isObject())
        throw EReadError(QCoreApplication::translate("qdb", "Invalid component stream: an object was expected"));
    ReadComponent(object, doc.object(), resolve);
}

void AssignProperties(QObject *target, const QObject *source)
{
    if (target != source)
        ReadComponent(target, WriteComponent(source));
}

} // namespace qdb

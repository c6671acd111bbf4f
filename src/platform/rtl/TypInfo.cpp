#include "TypInfo.h"

#include "Exceptions.h"
#include "Strings.h"

#include <QCoreApplication>
#include <QMetaEnum>

namespace qdb {

namespace {

[[noreturn]] void propertyError(const QString &message)
{
    throw EPropertyError(message);
}

bool isObjectType(QMetaType t)
{
    return t.flags().testFlag(QMetaType::PointerToQObject);
}

QObject *objectFromVariant(const QVariant &v)
{
    return isObjectType(v.metaType()) ? v.value<QObject *>() : nullptr;
}

} // namespace

QString ClassName(const QMetaObject *meta)
{
    if (!meta)
        return QString();
    const QString full = QString::fromLatin1(meta->className());
    const qsizetype colon = full.lastIndexOf(QLatin1Char(':'));
    return colon < 0 ? full : full.mid(colon + 1);
}

QString ClassName(const QObject *object)
{
    return object ? ClassName(object->metaObject()) : QString();
}

QStringList ClassAncestry(const QObject *object)
{
    QStringList names;
    for (const QMetaObject *m = object ? object->metaObject() : nullptr; m; m = m->superClass())
        names << ClassName(m);
    return names;
}

bool InheritsFrom(const QObject *object, const QString &className)
{
    for (const QMetaObject *m = object ? object->metaObject() : nullptr; m; m = m->superClass())
        if (ClassName(m).compare(className, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

PropertyRef FindProperty(const QObject *object, const QString &path)
{
    QObject *current = const_cast<QObject *>(object);
    const QStringList steps = path.split(QLatin1Char('.'));
    for (qsizetype i = 0; current && i < steps.size(); ++i) {
        const QMetaObject *meta = current->metaObject();
        const int index = meta->indexOfProperty(steps[i].toLatin1().constData());
        if (index < 0 || steps[i].isEmpty())
            return {};
        const QMetaProperty prop = meta->property(index);
        if (i + 1 == steps.size())
            return {current, prop};
        current = objectFromVariant(prop.read(current));
    }
    return {};
}

bool IsPublishedProp(const QObject *object, const QString &path)
{
    return FindProperty(object, path).isValid();
}

QVariant GetPropValue(const QObject *object, const QString &path)
{
    const PropertyRef ref = FindProperty(object, path);
    return ref.isValid() ? ref.property.read(ref.object) : QVariant();
}

QObject *GetObjectProp(const QObject *object, const QString &path)
{
    return objectFromVariant(GetPropValue(object, path));
}

QString PropertyValueText(const QMetaProperty &property, const QVariant &value)
{
    if (!value.isValid())
        return QString();
    if (property.isEnumType()) {
        const QMetaEnum e = property.enumerator();
        const int v = value.toInt();
        if (e.isFlag())
            return QString::fromLatin1(e.valueToKeys(v));
        const char *key = e.valueToKey(v);
        return key ? QString::fromLatin1(key) : QString::number(v);
    }
    if (value.metaType().id() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    if (isObjectType(value.metaType())) {
        QObject *o = objectFromVariant(value);
        if (auto *strings = qobject_cast<TStrings *>(o))
            return strings->Text();
        return o ? o->objectName() : QString();
    }
    QVariant text = value;
    if (text.convert(QMetaType::fromType<QString>()))
        return text.toString();
    return QString();
}

QString GetPropText(const QObject *object, const QString &path)
{
    const PropertyRef ref = FindProperty(object, path);
    return ref.isValid() ? PropertyValueText(ref.property, ref.property.read(ref.object)) : QString();
}

bool ConvertForProperty(const QMetaProperty &property, QVariant &value)
{
    const QMetaType target = property.metaType();
    if (property.isEnumType() && value.metaType().id() == QMetaType::QString) {
        const QMetaEnum e = property.enumerator();
        bool ok = false;
        const QByteArray key = value.toString().trimmed().toLatin1();
        const int v = e.isFlag() ? e.keysToValue(key.constData(), &ok) : e.keyToValue(key.constData(), &ok);
        if (!ok) {
            int number = value.toString().toInt(&ok);
            if (!ok || (!e.isFlag() && !e.valueToKey(number)))
                return false;
            value = number;
        } else {
            value = v;
        }
        return value.convert(target);
    }
    if (target.id() == QMetaType::Bool && value.metaType().id() == QMetaType::QString) {
        const QString t = value.toString().trimmed();
        if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0 || t == QLatin1String("1"))
            value = true;
        else if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0 || t == QLatin1String("0"))
            value = false;
        else
            return false;
        return true;
    }
    if (value.metaType() == target)
        return true;
    if (value.metaType().id() == QMetaType::QString) {
        // Numbers must be numbers: QVariant would turn "abc" into 0.
        const QString t = value.toString().trimmed();
        bool ok = true;
        switch (target.id()) {
        case QMetaType::Int: value = t.toInt(&ok); break;
        case QMetaType::UInt: value = t.toUInt(&ok); break;
        case QMetaType::LongLong: value = t.toLongLong(&ok); break;
        case QMetaType::ULongLong: value = t.toULongLong(&ok); break;
        case QMetaType::Double: value = t.toDouble(&ok); break;
        default: break;
        }
        if (!ok)
            return false;
    }
    return value.convert(target);
}

void SetPropValue(QObject *object, const QString &path, const QVariant &value)
{
    const PropertyRef ref = FindProperty(object, path);
    if (!ref.isValid())
        propertyError(QCoreApplication::translate("qdb", "Unknown property: '%1'").arg(path));
    QVariant v = value;
    if (isObjectType(ref.property.metaType()) && !isObjectType(v.metaType())) {
        if (auto *strings = qobject_cast<TStrings *>(objectFromVariant(ref.property.read(ref.object)))) {
            strings->SetText(v.toString());
            return;
        }
    }
    if (!ref.property.isWritable())
        propertyError(QCoreApplication::translate("qdb", "Property '%1' is read-only").arg(path));
    if (!ConvertForProperty(ref.property, v) || !ref.property.write(ref.object, v))
        propertyError(QCoreApplication::translate("qdb", "Invalid property value '%1' for '%2'")
                          .arg(value.toString(), path));
}

void SetPropText(QObject *object, const QString &path, const QString &text)
{
    SetPropValue(object, path, QVariant(text));
}

} // namespace qdb

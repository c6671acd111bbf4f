#pragma once

#include <QMetaProperty>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace qdb {

// Run-time access to published properties by name. A path may be dotted
// ("DataSet.CommandText"): every step but the last must be an object property.
// Reading a property that is not there gives an empty result, never an error.

// The class name without namespace qualification ("TSQLQuery").
QString ClassName(const QObject *object);
QString ClassName(const QMetaObject *meta);
// The class names from the object's own class up to QObject.
QStringList ClassAncestry(const QObject *object);
// True when the object's class or one of its ancestors has this (unqualified) name.
bool InheritsFrom(const QObject *object, const QString &className);

// The object and meta-property at the end of a path, or {nullptr, invalid} when missing.
struct PropertyRef
{
    QObject *object = nullptr;
    QMetaProperty property;
    bool isValid() const { return object && property.isValid(); }
};
PropertyRef FindProperty(const QObject *object, const QString &path);

bool IsPublishedProp(const QObject *object, const QString &path);
// The raw value, invalid when missing.
QVariant GetPropValue(const QObject *object, const QString &path);
// The value as text: enumerations as their identifiers, sets as "[a,b]", booleans as
// "True"/"False", string lists as their Text, objects as their names; empty when missing.
QString GetPropText(const QObject *object, const QString &path);
// The object held by an object property, or nullptr.
QObject *GetObjectProp(const QObject *object, const QString &path);

// Write a property from text or a value, converting enumeration identifiers, set texts,
// numbers and booleans. Raise EPropertyError for a missing or read-only property and for
// a value the property cannot take. Dynamic properties are never created.
void SetPropText(QObject *object, const QString &path, const QString &text);
void SetPropValue(QObject *object, const QString &path, const QVariant &value);

// Converts a value to what the property holds; false when it cannot.
bool ConvertForProperty(const QMetaProperty &property, QVariant &value);
// Renders a property value as text, as GetPropText does.
QString PropertyValueText(const QMetaProperty &property, const QVariant &value);

} // namespace qdb

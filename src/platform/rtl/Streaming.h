#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QMetaProperty>
#include <QObject>

#include <functional>

namespace qdb {

// Component streaming as JSON: a component writes the properties whose stored test holds.
// The stored test of property "Foo" is an invokable bool IsFooStored() when the class has
// one, else, when the class declares Q_CLASSINFO("default:Foo", "text"), whether the
// value's written form differs from that text, else the property's STORED flag. Owned property objects (children of the component)
// nest as objects, string lists as arrays of lines, collections as arrays of items, and
// references to other objects as their names. Enumerations are written by identifier,
// sets as "[a,b]".
//
// Reading raises EReadError on an unknown property or a value the property cannot take;
// callers that must stay intact read into a fresh object first. A component with an
// invokable BeginLoading() and Loaded() has them called around its properties.

bool IsPropertyStored(const QObject *object, const QMetaProperty &property);

// A component whose stream holds values of its own making besides its published
// properties. They are written after those, and read after them, so that they may rely on
// them (a grid's sort order on its columns).
class TCustomProperties
{
public:
    virtual ~TCustomProperties() = default;
    virtual QStringList CustomPropertyNames() const = 0;
    // Undefined writes nothing.
    virtual QJsonValue WriteCustomProperty(const QString &name) const = 0;
    virtual void ReadCustomProperty(const QString &name, const QJsonValue &value) = 0;
};

QJsonObject WriteComponent(const QObject *object);
// Resolves a reference by name; nullptr leaves the property as it is.
using ReferenceResolver = std::function<QObject *(const QString &name, const QMetaProperty &property)>;
void ReadComponent(QObject *object, const QJsonObject &json, const ReferenceResolver &resolve = {});

QByteArray ComponentToJson(const QObject *object);
// Raises EReadError also for text that is not a JSON object.
void JsonToComponent(QObject *object, const QByteArray &json, const ReferenceResolver &resolve = {});

// Copies the stored properties of one object onto another.
void AssignProperties(QObject *target, const QObject *source);

} // namespace qdb

#pragma once

#include "data/QDBCustData.h"

#include <QHash>
#include <map>
#include <QStringList>

namespace qdb {

// The values a filter list offers, as a data set over text lines. A line holds an order key
// (when not empty, followed by U+001A and a blank), the text listed, and the value compared
// with the column's ticked values (after U+001B and a blank, when it differs from the text
// listed). Lines are kept sorted without regard to case, so the order key decides the order
// and equal lines are one value; each remembers how many records gave it.
class TQDBFilterData : public TQDBCustomData
{
    Q_OBJECT
    Q_PROPERTY(QString ListFieldName READ ListFieldName WRITE SetListFieldName)
    Q_PROPERTY(QString KeyFieldName READ KeyFieldName WRITE SetKeyFieldName)

public:
    static constexpr QChar OrderSeparator = QChar(0x1A);
    static constexpr QChar KeySeparator = QChar(0x1B);
    static constexpr int InitialFieldSize = 20;

    explicit TQDBFilterData(QObject *parent = nullptr);

    static QString MakeLine(const QString &order, const QString &list, const QString &key);
    static void SplitLine(const QString &line, QString *order, QString *list, QString *key);

    QString ListFieldName() const { return listFieldName_; }
    void SetListFieldName(const QString &name) { listFieldName_ = name; }
    QString KeyFieldName() const { return keyFieldName_; }
    void SetKeyFieldName(const QString &name) { keyFieldName_ = name; }
    // The name of the field that counts the records of each value.
    static QString CountFieldName() { return QStringLiteral("Count"); }
    int ListFieldSize() const { return listFieldSize_; }
    int KeyFieldSize() const { return keyFieldSize_; }

    // A load: the sizes start again at 20 and the lines are gathered; EndLoad opens the data
    // set on them (again).
    void BeginLoad();
    // A load that adds lines which sort after the present ones (the next page of a long
    // list): the data set stays open where it stands.
    void BeginAppend();
    void AddValue(const QString &order, const QString &list, const QString &key, int count = 1);
    void EndLoad();

    int Count() const { return int(lines_.size()); }
    const QString &Line(int index) const { return lines_.at(index); }
    QString ListValue(int index) const;
    QString KeyValue(int index) const;
    int RecordsOf(int index) const { return counts_.at(index); }
    // The index of a key value, without regard to case; -1 when absent.
    int IndexOfKey(const QString &key) const { return keys_.value(key.toCaseFolded(), -1); }

protected:
    void DoOnCountRecords(int &count) override { count = Count(); }
    void DoOnGetFieldData(int index, TField *field, Variant &value) override;

private:
    QString listFieldName_ = QStringLiteral("List");
    QString keyFieldName_ = QStringLiteral("Key");
    int listFieldSize_ = InitialFieldSize;
    int keyFieldSize_ = InitialFieldSize;
    // While loading: case-folded line -> (line, records).
    std::map<QString, std::pair<QString, int>> loading_;
    QStringList lines_;
    QList<int> counts_;
    QHash<QString, int> keys_;
    bool appending_ = false;
};

} // namespace qdb

#include "QDBFilterData.h"

#include <map>

namespace qdb {

namespace {
const QString OrderMark = QString(TQDBFilterData::OrderSeparator) + QLatin1Char(' ');
const QString KeyMark = QString(TQDBFilterData::KeySeparator) + QLatin1Char(' ');
} // namespace

TQDBFilterData::TQDBFilterData(QObject *parent) : TQDBCustomData(parent)
{
    SetReadOnly(true);
}

QString TQDBFilterData::MakeLine(const QString &order, const QString &list, const QString &key)
{
    QString line;
    if (!order.isEmpty())
        line = order + OrderMark;
    line += list;
    if (key != list)
        line += KeyMark + key;
    return line;
}

void TQDBFilterData::SplitLine(const QString &line, QString *order, QString *list, QString *key)
{
    qsizetype from = 0;
    const qsizetype orderEnd = line.indexOf(OrderMark);
    if (order)
        *order = orderEnd >= 0 ? line.left(orderEnd) : QString();
    if (orderEnd >= 0)
        from = orderEnd + OrderMark.size();
    const qsizetype keyAt = line.indexOf(KeyMark, from);
    const QString shown = line.mid(from, keyAt >= 0 ? keyAt - from : -1);
    if (list)
        *list = shown;
    if (key)
        *key = keyAt >= 0 ? line.mid(keyAt + KeyMark.size()) : shown;
}

void TQDBFilterData::BeginLoad()
{
    listFieldSize_ = keyFieldSize_ = InitialFieldSize;
    loading_.clear();
}

void TQDBFilterData::BeginAppend()
{
    loading_.clear();
    appending_ = true;
}

void TQDBFilterData::AddValue(const QString &order, const QString &list, const QString &key, int count)
{
    listFieldSize_ = qMax(listFieldSize_, int(list.size()));
    keyFieldSize_ = qMax(keyFieldSize_, int(key.size()));
    const QString line = MakeLine(order, list, key);
    // Lines equal but for case are one value, listed as first met.
    auto [at, added] = loading_.try_emplace(line.toCaseFolded(), line, 0);
    Q_UNUSED(added);
    at->second.second += count;
}

void TQDBFilterData::EndLoad()
{
    const bool append = appending_ && Active();
    appending_ = false;
    if (!append) {
        Close();
        lines_.clear();
        counts_.clear();
        keys_.clear();
    }
    lines_.reserve(lines_.size() + qsizetype(loading_.size()));
    for (auto &[folded, entry] : loading_) {
        QString key;
        SplitLine(entry.first, nullptr, nullptr, &key);
        keys_.insert(key.toCaseFolded(), int(lines_.size()));
        lines_ << entry.first;
        counts_ << entry.second;
    }
    loading_.clear();
    if (append) {
        CountRecords();
        Resync({});
        return;
    }
    FieldDefs().Clear();
    FieldDefs().Add(listFieldName_, ftString, listFieldSize_);
    if (keyFieldName_ != listFieldName_)
        FieldDefs().Add(keyFieldName_, ftString, keyFieldSize_);
    FieldDefs().Add(CountFieldName(), ftInteger);
    Open();
}

QString TQDBFilterData::ListValue(int index) const
{
    QString list;
    SplitLine(lines_.at(index), nullptr, &list, nullptr);
    return list;
}

QString TQDBFilterData::KeyValue(int index) const
{
    QString key;
    SplitLine(lines_.at(index), nullptr, nullptr, &key);
    return key;
}

void TQDBFilterData::DoOnGetFieldData(int index, TField *field, Variant &value)
{
    if (index < 0 || index >= Count())
        return;
    if (field->FieldName() == CountFieldName())
        value = counts_.at(index);
    else if (field->FieldName() == listFieldName_)
        value = ListValue(index);
    else
        value = KeyValue(index);
}

} // namespace qdb

#include "MemTable.h"

#include "DBConsts.h"
#include "FilterExpression.h"

#include "platform/rtl/Exceptions.h"

#include <algorithm>

namespace qdb {

// ---- TIndexDefs ----

TIndexDef &TIndexDefs::Add(const QString &name, const QString &fields, TIndexOptions options)
{
    TIndexDef def;
    def.Name = name;
    def.Fields = fields;
    def.Options = options;
    defs_.append(def);
    return defs_.last();
}

int TIndexDefs::IndexOf(const QString &name) const
{
    for (int i = 0; i < defs_.size(); ++i)
        if (defs_[i].Name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

const TIndexDef *TIndexDefs::Find(const QString &name) const
{
    const int i = IndexOf(name);
    return i < 0 ? nullptr : &defs_[i];
}

// ---- TMemTable ----

namespace {

bool listContains(const QString &list, const QString &name)
{
    for (const QString &item : list.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        if (item.trimmed().compare(name, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

int compareValues(const Variant &a, const Variant &b, bool caseInsensitive)
{
    const bool aNull = a.IsClear(), bNull = b.IsClear();
    if (aNull || bNull)
        return aNull == bNull ? 0 : (aNull ? -1 : 1); // nulls first
    const QString *sa = a.StringPtr();
    const QString *sb = b.StringPtr();
    if (sa && sb)
        return QString::compare(*sa, *sb, caseInsensitive ? Qt::CaseInsensitive : Qt::CaseSensitive);
    switch (VarCompareValue(a, b)) {
    case VariantRelationship::vrLessThan: return -1;
    case VariantRelationship::vrGreaterThan: return 1;
    default: return 0;
    }
}

} // namespace

TMemTable::TMemTable(QObject *parent) : TDataSet(parent) {}

TMemTable::~TMemTable()
{
    try {
        Close();
    } catch (...) {
    }
}

void TMemTable::CreateDataSet()
{
    CheckInactive();
    columns_.clear();
    live_.clear();
    liveCount_ = 0;
    Open();
}

void TMemTable::EmptyDataSet()
{
    CheckActive();
    CheckBrowseMode();
    for (auto &column : columns_)
        column.clear();
    live_.clear();
    liveCount_ = 0;
    rebuildOrder();
    First();
}

void TMemTable::InternalOpen()
{
    InitFieldsAndBind();
    ensureColumns();
    cursorOpen_ = true;
    cursor_ = -1;
    rebuildOrder();
}

void TMemTable::InternalClose()
{
    cursorOpen_ = false;
    order_.clear();
    view_.clear();
    rowPos_.clear();
    positionsValid_ = false;
}

void TMemTable::ensureColumns()
{
    int dataFields = 0;
    for (TField *f : FieldList())
        dataFields = qMax(dataFields, f->FieldNo());
    if (int(columns_.size()) != dataFields) { // another structure: the old records cannot stay
        columns_.assign(size_t(dataFields), {});
        live_.clear();
        liveCount_ = 0;
    }
    for (auto &column : columns_)
        column.resize(live_.size(), Variant::Null());
}

qint64 TMemTable::newRow()
{
    const qint64 row = qint64(live_.size());
    for (auto &column : columns_)
        column.push_back(Variant::Null());
    live_.push_back(true);
    ++liveCount_;
    return row;
}

std::vector<TMemTable::SortKey> TMemTable::sortKeys() const
{
    std::vector<SortKey> keys;
    auto addKey = [&](const QString &name, bool desc, bool caseIns) {
        TField *f = FieldByName(name);
        if (f->FieldNo() > 0 && f->FieldKind() == fkData)
            keys.push_back({columnOf(f), desc, caseIns});
    };
    if (!indexName_.isEmpty()) {
        const TIndexDef *def = indexDefs_.Find(indexName_);
        if (!def)
            DatabaseError(DBConsts::SIndexNotFound().arg(indexName_), this);
        const bool allDesc = def->Options.Contains(ixDescending) && def->DescFields.trimmed().isEmpty();
        const bool allCaseIns = def->Options.Contains(ixCaseInsensitive) && def->CaseInsFields.trimmed().isEmpty();
        for (const QString &item : def->Fields.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            const QString name = item.trimmed();
            addKey(name, allDesc || listContains(def->DescFields, name),
                   allCaseIns || listContains(def->CaseInsFields, name));
        }
        return keys;
    }
    for (const QString &item : indexFieldNames_.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        QString name = item.trimmed();
        bool desc = false, caseIns = false;
        const qsizetype colon = name.lastIndexOf(QLatin1Char(':'));
        if (colon > 0) {
            const QString suffix = name.mid(colon + 1).trimmed().toUpper();
            if (!suffix.isEmpty() && std::all_of(suffix.cbegin(), suffix.cend(), [](QChar c) {
                    return c == QLatin1Char('A') || c == QLatin1Char('D') || c == QLatin1Char('N');
                })) {
                desc = suffix.contains(QLatin1Char('D'));
                caseIns = suffix.contains(QLatin1Char('N'));
                name = name.left(colon).trimmed();
            }
        }
        addKey(name, desc, caseIns);
    }
    return keys;
}

bool TMemTable::rowLess(qint64 a, qint64 b, const std::vector<SortKey> &keys) const
{
    for (const SortKey &k : keys) {
        const auto &column = columns_[size_t(k.column)];
        const int c = compareValues(column[size_t(a)], column[size_t(b)], k.caseInsensitive);
        if (c != 0)
            return k.descending ? c > 0 : c < 0;
    }
    return false;
}

void TMemTable::rebuildOrder()
{
    order_.clear();
    order_.reserve(size_t(liveCount_));
    for (qint64 row = 0; row < qint64(live_.size()); ++row)
        if (live_[size_t(row)])
            order_.push_back(row);
    const std::vector<SortKey> keys = sortKeys();
    if (keys.size() == 1 && !keys[0].descending) {
        // One ascending key: compare the values directly, the common case of a title click.
        const auto &column = columns_[size_t(keys[0].column)];
        const bool ci = keys[0].caseInsensitive;
        std::stable_sort(order_.begin(), order_.end(), [&](qint64 a, qint64 b) {
            return compareValues(column[size_t(a)], column[size_t(b)], ci) < 0;
        });
    } else if (!keys.empty()) {
        std::stable_sort(order_.begin(), order_.end(), [&](qint64 a, qint64 b) { return rowLess(a, b, keys); });
    }
    rebuildView();
    OrderChanged();
}

bool TMemTable::rowPassesFilter(qint64 row)
{
    TRecordBuffer &buffer = TempBuffer();
    buffer.row = row;
    buffer.flag = bfCurrent;
    buffer.ClearValues();
    GetCalcFields(buffer);
    return FilterAccepts(buffer);
}

void TMemTable::rebuildView()
{
    viewDirty_ = true;
    positionsValid_ = false;
}

void TMemTable::ensureView() const
{
    if (!viewDirty_)
        return;
    viewDirty_ = false;
    auto *self = const_cast<TMemTable *>(this);
    if (!IsFiltering()) {
        view_ = order_;
    } else {
        view_.clear();
        // The expression alone looks at the columns themselves; a handler sees each record.
        FilterExpression::RowTest test;
        if (FilterExpr() && !OnFilterRecord())
            test = FilterExpr()->Compile([this](TField *field) -> const std::vector<Variant> * {
                const int column = columnOf(field);
                return field->FieldKind() == fkData && column >= 0 && column < int(columns_.size())
                           ? &columns_[size_t(column)]
                           : nullptr;
            });
        if (test) {
            for (qint64 row : order_)
                if (test(row))
                    view_.push_back(row);
        } else {
            for (qint64 row : order_)
                if (self->rowPassesFilter(row))
                    view_.push_back(row);
        }
    }
    positionsValid_ = false;
    self->cursor_ = qBound(-1, cursor_, int(view_.size()));
}

void TMemTable::ensurePositions() const
{
    ensureView();
    if (positionsValid_)
        return;
    rowPos_.assign(live_.size(), -1);
    for (size_t i = 0; i < view_.size(); ++i)
        rowPos_[size_t(view_[i])] = int(i);
    positionsValid_ = true;
}

int TMemTable::positionOf(qint64 row) const
{
    if (!isLive(row))
        return -1;
    ensurePositions();
    return rowPos_[size_t(row)];
}

void TMemTable::placeRow(qint64 row, qint64 beforeRow, bool append)
{
    ensureView();
    const std::vector<SortKey> keys = sortKeys();
    size_t pos = order_.size();
    if (!keys.empty())
        pos = size_t(std::upper_bound(order_.begin(), order_.end(), row,
                                      [&](qint64 a, qint64 b) { return rowLess(a, b, keys); })
                     - order_.begin());
    else if (!append && beforeRow >= 0)
        pos = size_t(std::find(order_.begin(), order_.end(), beforeRow) - order_.begin());
    order_.insert(order_.begin() + qsizetype(pos), row);

    if (IsFiltering() && !rowPassesFilter(row)) {
        if (positionsValid_)
            rowPos_.resize(live_.size(), -1);
        return;
    }
    if (pos + 1 == order_.size()) { // at the end: positions stay valid
        view_.push_back(row);
        if (positionsValid_) {
            rowPos_.resize(live_.size(), -1);
            rowPos_[size_t(row)] = int(view_.size()) - 1;
        }
        return;
    }
    // Before the next row of the order that is in the view.
    ensurePositions();
    size_t viewPos = view_.size();
    for (size_t i = pos + 1; i < order_.size(); ++i) {
        const qint64 next = order_[i];
        if (next < qint64(rowPos_.size()) && rowPos_[size_t(next)] >= 0) {
            viewPos = size_t(rowPos_[size_t(next)]);
            break;
        }
    }
    view_.insert(view_.begin() + qsizetype(viewPos), row);
    positionsValid_ = false;
}

void TMemTable::unplaceRow(qint64 row)
{
    ensureView();
    auto it = std::find(order_.begin(), order_.end(), row);
    if (it != order_.end())
        order_.erase(it);
    const int pos = positionOf(row);
    if (pos >= 0)
        view_.erase(view_.begin() + pos);
    positionsValid_ = false;
}

// ---- the record-buffer protocol ----

TGetResult TMemTable::GetRecord(TRecordBuffer &buffer, TGetMode mode, bool doCheck)
{
    Q_UNUSED(doCheck);
    ensureView();
    const int count = int(view_.size());
    int pos = cursor_;
    switch (mode) {
    case gmNext:
        if (cursor_ >= count) {
            return grEOF;
        }
        pos = cursor_ + 1;
        break;
    case gmPrior:
        if (cursor_ < 0) {
            return grBOF;
        }
        pos = cursor_ - 1;
        break;
    case gmCurrent:
        if (cursor_ < 0 || cursor_ >= count)
            return grError;
        break;
    }
    if (pos < 0) {
        cursor_ = -1;
        return grBOF;
    }
    if (pos >= count) {
        cursor_ = count;
        return grEOF;
    }
    cursor_ = pos;
    buffer.row = view_[size_t(pos)];
    buffer.flag = bfCurrent;

    buffer.ClearValues();
    GetCalcFields(buffer);
    return grOK;
}

void TMemTable::InternalFirst()
{
    cursor_ = -1;
}

void TMemTable::InternalLast()
{
    ensureView();
    cursor_ = int(view_.size());
}

TBookmark TMemTable::GetBookmarkData(const TRecordBuffer &buffer) const
{
    // A new record keeps the bookmark of the record it goes before.
    return buffer.flag == bfCurrent ? BookmarkFromRow(buffer.row) : buffer.bookmark;
}

void TMemTable::InternalSetToRecord(TRecordBuffer &buffer)
{
    const qint64 row = buffer.flag == bfCurrent ? buffer.row : RowFromBookmark(buffer.bookmark);
    const int pos = positionOf(row);
    cursor_ = pos >= 0 ? pos : -2;
}

void TMemTable::InternalGotoBookmark(const TBookmark &bookmark)
{
    const int pos = positionOf(RowFromBookmark(bookmark));
    // A record no longer in view leaves the cursor nowhere; the resync reports it.
    cursor_ = pos >= 0 ? pos : -2;
}

const Variant *TMemTable::PeekFieldData(TField *field, const TRecordBuffer &buffer) const
{
    const int column = columnOf(field);
    if (column < 0 || column >= int(columns_.size()) || !isLive(buffer.row))
        return nullptr;
    return &columns_[size_t(column)][size_t(buffer.row)];
}

bool TMemTable::FetchFieldData(TField *field, TRecordBuffer &buffer, Variant &value)
{
    const int column = columnOf(field);
    if (column < 0 || column >= int(columns_.size()) || !isLive(buffer.row))
        return false;
    value = columns_[size_t(column)][size_t(buffer.row)];
    return !value.IsClear();
}

void TMemTable::InternalPost()
{
    TDataSet::InternalPost();
    TRecordBuffer &buffer = ActiveBuffer();
    const TFields &list = FieldList();
    const std::vector<SortKey> keys = sortKeys();
    auto isKeyColumn = [&](int column) {
        return std::any_of(keys.begin(), keys.end(), [column](const SortKey &k) { return k.column == column; });
    };

    if (State() == dsInsert) {
        const qint64 row = newRow();
        for (int slot = 0; slot < list.Count(); ++slot) {
            TField *f = list[slot];
            const int column = columnOf(f);
            if (column < 0 || f->FieldKind() != fkData)
                continue;
            const Variant &v = buffer.values[slot];
            if (!v.IsUnassigned())
                columns_[size_t(column)][size_t(row)] = v;
            if (f->DataType() == ftAutoInc && columns_[size_t(column)][size_t(row)].IsClear()) {
                qint64 next = 1;
                for (qint64 r = 0; r < row; ++r)
                    if (live_[size_t(r)] && !columns_[size_t(column)][size_t(r)].IsClear())
                        next = qMax(next, columns_[size_t(column)][size_t(r)].ToInt64() + 1);
                columns_[size_t(column)][size_t(row)] = next;
            }
        }
        const bool append = buffer.flag == bfEOF || buffer.flag == bfBOF;
        placeRow(row, append ? -1 : RowFromBookmark(buffer.bookmark), append);
        const int pos = positionOf(row);
        cursor_ = pos >= 0 ? pos : qBound(-1, cursor_, int(view_.size()));
        return;
    }

    const qint64 row = buffer.row;
    bool keyChanged = false;
    for (int slot = 0; slot < list.Count(); ++slot) {
        TField *f = list[slot];
        const int column = columnOf(f);
        const Variant &v = buffer.values[slot];
        if (column < 0 || f->FieldKind() != fkData || v.IsUnassigned())
            continue;
        Variant &stored = columns_[size_t(column)][size_t(row)];
        if (isKeyColumn(column) && compareValues(stored, v, false) != 0)
            keyChanged = true;
        stored = v;
    }
    const int oldPos = positionOf(row);
    if (keyChanged) {
        unplaceRow(row);
        placeRow(row, -1, false);
        OrderChanged();
    } else if (IsFiltering() && oldPos >= 0 && !rowPassesFilter(row)) {
        view_.erase(view_.begin() + oldPos);
        positionsValid_ = false;
    }
    const int pos = positionOf(row);
    cursor_ = pos >= 0 ? pos : qBound(-1, oldPos, int(view_.size()));
}

void TMemTable::InternalDelete()
{
    const qint64 row = ActiveBuffer().row;
    if (!isLive(row))
        DatabaseError(DBConsts::SRecordNotFound(), this);
    const int pos = positionOf(row);
    unplaceRow(row);
    live_[size_t(row)] = false;
    --liveCount_;
    for (auto &column : columns_)
        column[size_t(row)] = Variant::Null();
    cursor_ = qBound(-1, pos, int(view_.size()));
}

void TMemTable::InternalRefresh()
{
    const qint64 row = BookmarkAvailable() ? ActiveBuffer().row : -1;
    rebuildOrder();
    const int pos = positionOf(row);
    if (pos >= 0)
        cursor_ = pos;
}

void TMemTable::FilterChanged()
{
    CheckBrowseMode();
    rebuildView();
    OrderChanged();
    First();
}

int TMemTable::RecordCount() const
{
    if (!Active())
        return 0;
    ensureView();
    return int(view_.size());
}

int TMemTable::RecNo() const
{
    if (!Active() || IsEmpty() || State() == dsInsert)
        return -1;
    const TRecordBuffer &buffer = *const_cast<TMemTable *>(this)->CurrentRecBuf();
    if (buffer.flag != bfCurrent)
        return -1;
    const int pos = positionOf(buffer.row);
    return pos < 0 ? -1 : pos + 1;
}

void TMemTable::SetRecNo(int recNo)
{
    CheckBrowseMode();
    ensureView();
    if (view_.empty())
        return;
    recNo = qBound(1, recNo, int(view_.size()));
    if (recNo == RecNo())
        return;
    const NavigationScope moving(this);
    DoBeforeScroll();
    cursor_ = recNo - 1;
    Resync({rmCenter});
    DoAfterScroll();
}

bool TMemTable::BookmarkValid(const TBookmark &bookmark) const
{
    return Active() && positionOf(RowFromBookmark(bookmark)) >= 0;
}

int TMemTable::CompareBookmarks(const TBookmark &a, const TBookmark &b) const
{
    if (a.isEmpty() || b.isEmpty())
        return TDataSet::CompareBookmarks(a, b);
    const int pa = positionOf(RowFromBookmark(a));
    const int pb = positionOf(RowFromBookmark(b));
    // Records outside the view (deleted, filtered out) come first, among themselves by
    // record, so that the comparison stays a total order for anyone sorting by it.
    if (pa < 0 && pb < 0)
        return TDataSet::CompareBookmarks(a, b);
    if (pa < 0 || pb < 0)
        return pa < 0 ? -1 : 1;
    return pa < pb ? -1 : (pa > pb ? 1 : 0);
}

bool TMemTable::LocateRecord(const QList<TField *> &fields, const Variant &keyValues, TLocateOptions options,
                             bool syncCursor)
{
    for (TField *f : fields)
        if (f->FieldKind() != fkData || columnOf(f) < 0)
            return TDataSet::LocateRecord(fields, keyValues, options, syncCursor);
    CheckBrowseMode();
    CursorPosChanged();
    struct Key
    {
        const std::vector<Variant> *column;
        Variant value;
        bool text;
    };
    std::vector<Key> keys;
    const Qt::CaseSensitivity cs = options.Contains(loCaseInsensitive) ? Qt::CaseInsensitive : Qt::CaseSensitive;
    for (int i = 0; i < fields.size(); ++i) {
        Variant key = fields.size() == 1 && !keyValues.IsArray()
            ? keyValues
            : (i <= keyValues.ArrayHighBound() ? keyValues.ToArray()[i] : Variant::Null());
        const bool text = fields[i]->ValueType() == VarType::String;
        if (!key.IsClear()) {
            try {
                key = text ? Variant(key.ToString()) : fields[i]->Convert(key);
            } catch (const Exception &) {
                return false;
            }
        }
        keys.push_back({&columns_[size_t(columnOf(fields[i]))], key, text});
    }
    const bool partial = options.Contains(loPartialKey);
    ensureView();
    for (size_t pos = 0; pos < view_.size(); ++pos) {
        const qint64 row = view_[pos];
        bool match = true;
        for (const Key &k : keys) {
            const Variant &v = (*k.column)[size_t(row)];
            if (k.value.IsClear() || v.IsClear()) {
                match = k.value.IsClear() && v.IsClear();
            } else if (k.text) {
                const QString &s = *v.StringPtr();
                const QString &w = *k.value.StringPtr();
                match = partial ? s.startsWith(w, cs) : s.compare(w, cs) == 0;
            } else {
                match = VarCompareValue(v, k.value) == VariantRelationship::vrEqual;
            }
            if (!match)
                break;
        }
        if (!match)
            continue;
        cursor_ = int(pos);
        TRecordBuffer &buffer = TempBuffer();
        buffer.row = row;
        buffer.flag = bfCurrent;
        buffer.ClearValues();
        GetCalcFields(buffer);
        return true;
    }
    return false;
}

// ---- indexes ----

void TMemTable::changeOrder(const QString &indexFieldNames, const QString &indexName)
{
    if (!Active()) {
        indexFieldNames_ = indexFieldNames;
        indexName_ = indexName;
        return;
    }
    CheckBrowseMode();
    const QString oldNames = indexFieldNames_, oldName = indexName_;
    indexFieldNames_ = indexFieldNames;
    indexName_ = indexName;
    try {
        sortKeys(); // an unknown field or index raises before anything moves
    } catch (...) {
        indexFieldNames_ = oldNames;
        indexName_ = oldName;
        throw;
    }
    const qint64 row = BookmarkAvailable() ? ActiveBuffer().row : -1;
    rebuildOrder();
    const int pos = positionOf(row);
    cursor_ = pos >= 0 ? pos : -1;
    if (pos >= 0)
        Resync({});
    else
        First();
}

void TMemTable::SetIndexFieldNames(const QString &names)
{
    if (names == indexFieldNames_ && indexName_.isEmpty())
        return;
    changeOrder(names, QString());
}

void TMemTable::SetIndexName(const QString &name)
{
    if (name == indexName_ && indexFieldNames_.isEmpty())
        return;
    if (!name.isEmpty() && !indexDefs_.Find(name))
        DatabaseError(DBConsts::SIndexNotFound().arg(name), this);
    changeOrder(QString(), name);
}

void TMemTable::AddIndex(const QString &name, const QString &fields, TIndexOptions options,
                         const QString &descFields, const QString &caseInsFields)
{
    if (indexDefs_.IndexOf(name) >= 0)
        DatabaseError(DBConsts::SDuplicateIndexName().arg(name), this);
    if (Active())
        GetFieldList(fields); // raises for an unknown field
    TIndexDef &def = indexDefs_.Add(name, fields, options);
    def.DescFields = descFields;
    def.CaseInsFields = caseInsFields;
}

void TMemTable::DeleteIndex(const QString &name)
{
    const int i = indexDefs_.IndexOf(name);
    if (i < 0)
        DatabaseError(DBConsts::SIndexNotFound().arg(name), this);
    if (indexName_.compare(name, Qt::CaseInsensitive) == 0)
        SetIndexName(QString());
    indexDefs_.Delete(i);
}

} // namespace qdb

#include "QDBCustData.h"

#include "platform/db/DBConsts.h"

#include <QtEndian>

namespace qdb {

TQDBCustomData::TQDBCustomData(QObject *parent) : TDataSet(parent) {}

TQDBCustomData::~TQDBCustomData()
{
    try {
        Close();
    } catch (...) {
    }
}

TBookmark TQDBCustomData::IndexBookmark(int index)
{
    TBookmark b(sizeof(qint32), Qt::Uninitialized);
    qToLittleEndian(qint32(index), b.data());
    return b;
}

int TQDBCustomData::BookmarkIndex(const TBookmark &bookmark)
{
    return bookmark.size() == int(sizeof(qint32)) ? qFromLittleEndian<qint32>(bookmark.constData()) : -1;
}

void TQDBCustomData::InternalInitFieldDefs()
{
    // Persistent fields define the record; otherwise the descendant's FieldDefs do.
    if (FieldList().Count() == 0)
        return;
    FieldDefs().Clear();
    for (TField *f : Fields())
        FieldDefs().Add(f->FieldName(), f->DataType(), f->Size(), f->Required());
}

void TQDBCustomData::InternalOpen()
{
    cursorOpen_ = true;
    cursor_ = -1;
    InternalInitFieldDefs();
    InitFieldsAndBind();
    CountRecords();
}

void TQDBCustomData::InternalClose()
{
    recordCount_ = 0;
    cursorOpen_ = false;
}

void TQDBCustomData::CountRecords()
{
    int count = 0;
    DoOnCountRecords(count);
    SetRecordCount(count);
}

int TQDBCustomData::GetIndex(const TRecordBuffer &buffer) const
{
    switch (buffer.flag) {
    case bfBOF: return 0;
    case bfEOF: return recordCount_;
    default: return int(buffer.row);
    }
}

int TQDBCustomData::RecordIndex()
{
    return IsEmpty() ? -1 : GetIndex(ActiveBuffer());
}

TGetResult TQDBCustomData::InternalGetRecord(TRecordBuffer &buffer, TGetMode mode)
{
    int index = cursor_;
    if (mode == gmNext)
        ++index;
    else if (mode == gmPrior)
        --index;
    if (index < 0)
        return grBOF;
    if (index >= recordCount_)
        return grEOF;
    cursor_ = index;
    buffer.row = index;
    buffer.bookmark = IndexBookmark(index);
    buffer.flag = bfCurrent;
    buffer.ClearValues();
    GetCalcFields(buffer);
    return grOK;
}

TGetResult TQDBCustomData::GetRecord(TRecordBuffer &buffer, TGetMode mode, bool doCheck)
{
    Q_UNUSED(doCheck);
    if (!IsFiltering() && !locating_)
        return InternalGetRecord(buffer, mode);
    for (;;) {
        const TGetResult result = InternalGetRecord(buffer, mode);
        if (result != grOK)
            return result;
        bool accept = true;
        if (locating_)
            accept = LocateFilter(buffer);
        if (accept)
            accept = FilterAccepts(buffer);
        if (accept)
            return grOK;
        if (mode == gmCurrent)
            return grError;
    }
}

int TQDBCustomData::RecNo() const
{
    if (!Active() || IsEmpty())
        return -1;
    const TRecordBuffer &buffer = *const_cast<TQDBCustomData *>(this)->CurrentRecBuf();
    return buffer.flag == bfCurrent ? int(buffer.row) + 1 : -1;
}

void TQDBCustomData::SetRecNo(int recNo)
{
    if (recNo == RecNo())
        return;
    const NavigationScope moving(this);
    DoBeforeScroll();
    cursor_ = recNo - 1;
    Resync({rmCenter});
    DoAfterScroll();
}

void TQDBCustomData::InternalSetToRecord(TRecordBuffer &buffer)
{
    cursor_ = buffer.flag == bfInserted && buffer.row < 0 ? BookmarkIndex(buffer.bookmark) : int(buffer.row);
}

void TQDBCustomData::InternalGotoBookmark(const TBookmark &bookmark)
{
    cursor_ = BookmarkIndex(bookmark);
}

bool TQDBCustomData::BookmarkValid(const TBookmark &bookmark) const
{
    const int index = BookmarkIndex(bookmark);
    return !bookmark.isEmpty() && index >= 0 && index < recordCount_;
}

int TQDBCustomData::CompareBookmarks(const TBookmark &a, const TBookmark &b) const
{
    if (a.isEmpty() || b.isEmpty())
        return a.isEmpty() ? (b.isEmpty() ? 0 : -1) : 1;
    const int x = BookmarkIndex(a), y = BookmarkIndex(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

bool TQDBCustomData::FetchFieldData(TField *field, TRecordBuffer &buffer, Variant &value)
{
    if (field->FieldNo() <= 0)
        return false;
    value = Variant::Null();
    DoOnGetFieldData(GetIndex(buffer), field, value);
    if (!value.IsClear()) {
        if (field->ValueType() == VarType::Unassigned && field->DataType() != ftVariant)
            DatabaseError(DBConsts::SUnsupportedFieldType().arg(FieldTypeName(field->DataType()), field->FieldName()),
                          this);
        value = field->Convert(value);
    }
    buffer.values[FieldSlot(field)] = value.IsUnassigned() ? Variant::Null() : value;
    return !value.IsClear();
}

void TQDBCustomData::StoreFieldData(TField *field, TRecordBuffer &buffer, const Variant &value)
{
    if (field->FieldNo() > 0 && !modifiedFields_.contains(field))
        modifiedFields_.append(field);
    TDataSet::StoreFieldData(field, buffer, value);
}

void TQDBCustomData::InternalPost()
{
    TDataSet::InternalPost();
    UpdateCursorPos();
    TRecordBuffer &buffer = ActiveBuffer();
    int index = cursor_;
    if (State() == dsInsert) {
        if (buffer.flag == bfEOF)
            index = recordCount_;
        else if (buffer.flag == bfBOF)
            index = 0;
        else
            index = BookmarkIndex(buffer.bookmark);
        index = qBound(0, index, recordCount_);
        DoOnInsertRecord(index);
    }
    for (TField *f : std::as_const(modifiedFields_)) {
        const Variant &v = buffer.values[FieldSlot(f)];
        if (!v.IsUnassigned())
            DoOnSetFieldData(index, f, v);
    }
    if (State() == dsInsert)
        ++recordCount_;
    cursor_ = index;
}

void TQDBCustomData::InternalDelete()
{
    DoOnDeleteRecord(GetIndex(ActiveBuffer()));
    recordCount_ = qMax(0, recordCount_ - 1);
}

bool TQDBCustomData::LocateRecord(const QList<TField *> &fields, const Variant &keyValues, TLocateOptions options,
                                  bool syncCursor)
{
    Q_UNUSED(syncCursor);
    CheckBrowseMode();
    UpdateCursorPos();
    CursorPosChanged();
    locateFields_ = fields;
    locateValues_ = keyValues;
    locateOptions_ = options;
    locating_ = true;
    cursor_ = -1;
    bool found = false;
    try {
        found = GetRecord(TempBuffer(), gmNext, true) == grOK;
    } catch (...) {
        locating_ = false;
        throw;
    }
    locating_ = false;
    return found;
}

bool TQDBCustomData::LocateFilter(TRecordBuffer &buffer)
{
    return MatchesKeys(buffer, locateFields_, locateValues_, locateOptions_);
}

void TQDBCustomData::InternalAddRecord(TRecordBuffer &buffer, bool append)
{
    if (append)
        buffer.flag = bfEOF;
    InternalPost();
}

bool TQDBCustomData::FindRecord(bool restart, bool forward)
{
    CheckBrowseMode();
    UpdateCursorPos();
    CursorPosChanged();
    if (restart) {
        if (forward)
            First();
        else
            Last();
        return !IsEmpty();
    }
    return MoveBy(forward ? 1 : -1) != 0;
}

} // namespace qdb

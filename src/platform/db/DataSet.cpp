#include "DataSet.h"

#include "DBConsts.h"
#include "DataSource.h"
#include "FilterExpression.h"

#include "platform/rtl/Exceptions.h"

#include <QtEndian>

#include <algorithm>

namespace qdb {

void DatabaseError(const QString &message, const QObject *component)
{
    if (component && !component->objectName().isEmpty())
        throw EDatabaseError(component->objectName() + QStringLiteral(": ") + message);
    throw EDatabaseError(message);
}

// ---- small types ----

void TRecordBuffer::ClearValues()
{
    for (Variant &v : values)
        if (!v.IsUnassigned())
            v = Variant();
}

TField *TFields::FindField(const QString &name) const
{
    for (TField *f : list_)
        if (f->FieldName().compare(name, Qt::CaseInsensitive) == 0)
            return f;
    for (TField *f : list_)
        if (f->ParentField() && f->FullName().compare(name, Qt::CaseInsensitive) == 0)
            return f;
    return nullptr;
}

TFieldDef &TFieldDefs::Add(const QString &name, TFieldType type, int size, bool required)
{
    TFieldDef def;
    def.Name = name;
    def.DataType = type;
    def.Size = size;
    def.Required = required;
    defs_.append(def);
    return defs_.last();
}

int TFieldDefs::IndexOf(const QString &name) const
{
    for (int i = 0; i < defs_.size(); ++i)
        if (defs_[i].Name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

// ---- TDataSet: life ----

TDataSet::TDataSet(QObject *parent) : QObject(parent), calcScratch_(std::make_unique<TRecordBuffer>())
{
    RegisterDBTypes();
}

TDataSet::~TDataSet()
{
    // Descendants close in their own destructors; this only lets go of sources and fields.
    for (TDataSource *source : std::as_const(dataSources_))
        source->dataSet_ = nullptr;
    for (TField *f : fieldList_.list_) {
        f->dataSet_ = nullptr;
        f->slot_ = -1;
    }
}

void TDataSet::SetActive(bool on)
{
    if (Active() == on)
        return;
    DataContentChanged();
    if (on) {
        Fire(BeforeOpen, this);
        openCursor();
        SetState(dsBrowse);
        Fire(AfterOpen, this);
        if (!IsEmpty())
            DoAfterScroll();
    } else {
        Fire(BeforeClose, this);
        SetState(dsInactive);
        closeCursor();
        Fire(AfterClose, this);
    }
}

void TDataSet::openCursor()
{
    state_ = dsOpening;
    try {
        InternalOpen();
        InitFieldsAndBind();
        compileFilter();
        bof_ = true;
        eof_ = true;
        updateBufferCount();
    } catch (...) {
        state_ = dsInactive;
        try {
            if (IsCursorOpen())
                InternalClose();
        } catch (...) {
        }
        setBufferCount(0);
        BindFields(false);
        if (defaultFields_)
            DestroyFields();
        defaultFields_ = false;
        throw;
    }
    state_ = dsInactive; // SetState(dsBrowse) announces the change
}

void TDataSet::InitFieldsAndBind()
{
    if (fieldsBound_)
        return;
    if (fieldList_.Count() == 0) {
        InternalInitFieldDefs();
        CreateFields();
        defaultFields_ = true;
    }
    BindFields(true);
}

void TDataSet::closeCursor()
{
    setBufferCount(0);
    InternalClose();
    filterExpr_.reset();
    BindFields(false);
    if (defaultFields_)
        DestroyFields();
    defaultFields_ = false;
}


void TDataSet::CreateFields()
{
    std::function<void(const TFieldDef &, TObjectField *)> make = [&](const TFieldDef &def, TObjectField *parent) {
        TField *f = CreateFieldOfType(def.DataType, this);
        if (!f)
            DatabaseError(DBConsts::SUnsupportedFieldType().arg(FieldTypeName(def.DataType), def.Name), this);
        f->SetFieldName(def.Name);
        if (def.Size > 0)
            f->SetSize(def.Size);
        f->SetRequired(def.Required);
        if (def.Precision > 0) {
            if (auto *bcd = qobject_cast<TBCDField *>(f))
                bcd->SetPrecision(def.Precision);
        }
        if (parent)
            f->SetParentField(parent);
        else
            f->SetDataSet(this);
        if (auto *object = qobject_cast<TObjectField *>(f))
            for (const TFieldDef &child : def.ChildDefs)
                make(child, object);
    };
    for (const TFieldDef &def : std::as_const(fieldDefs_))
        make(def, nullptr);
}

void TDataSet::DestroyFields()
{
    const QList<TField *> top = fields_.list_;
    for (TField *f : top)
        delete f;
    fields_.list_.clear();
    fieldList_.list_.clear();
}

void TDataSet::BindFields(bool binding)
{
    fieldsBound_ = binding;
    rebuildFieldList();
    calcFieldCount_ = 0;
    int dataNo = 0;
    for (int i = 0; i < fieldList_.Count(); ++i) {
        TField *f = fieldList_[i];
        f->slot_ = binding ? i : -1;
        if (f->IsCalculated())
            ++calcFieldCount_;
        f->fieldNo_ = (binding && f->FieldKind() == fkData) ? ++dataNo : 0;
    }
}

void TDataSet::registerField(TField *field)
{
    if (Active())
        DatabaseError(DBConsts::SDataSetOpen(), this);
    if (!field->FieldName().isEmpty() && fields_.FindField(field->FieldName()))
        DatabaseError(DBConsts::SDuplicateFieldName().arg(field->FieldName()), this);
    fields_.list_.append(field);
    rebuildFieldList();
}

void TDataSet::unregisterField(TField *field)
{
    fields_.list_.removeOne(field);
    rebuildFieldList();
}

void TDataSet::rebuildFieldList()
{
    fieldList_.list_.clear();
    std::function<void(TField *)> add = [&](TField *f) {
        fieldList_.list_.append(f);
        if (auto *object = qobject_cast<TObjectField *>(f))
            for (TField *child : object->Fields())
                add(child);
    };
    for (TField *f : std::as_const(fields_.list_))
        add(f);
}

TField *TDataSet::FindField(const QString &name) const
{
    return fieldList_.FindField(name);
}

TField *TDataSet::FieldByName(const QString &name) const
{
    TField *f = FindField(name);
    if (!f)
        DatabaseError(DBConsts::SFieldNotFound().arg(name), this);
    return f;
}

QList<TField *> TDataSet::GetFieldList(const QString &names) const
{
    QList<TField *> result;
    for (const QString &name : names.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        result.append(FieldByName(name.trimmed()));
    return result;
}

Variant TDataSet::FieldValues(const QString &names) const
{
    const QList<TField *> fields = GetFieldList(names);
    if (fields.size() == 1)
        return fields.first()->Value();
    Variant::Array values;
    for (TField *f : fields)
        values.append(f->Value());
    return values;
}

void TDataSet::SetFieldValues(const QString &names, const Variant &values)
{
    const QList<TField *> fields = GetFieldList(names);
    if (fields.size() == 1) {
        fields.first()->SetValue(values);
        return;
    }
    for (int i = 0; i < fields.size(); ++i)
        fields[i]->SetValue(i <= values.ArrayHighBound() ? values.ToArray()[i] : Variant::Null());
}

// ---- the window ----

void TDataSet::updateBufferCount()
{
    if (!IsCursorOpen())
        return;
    int wanted = 1;
    for (TDataSource *source : std::as_const(dataSources_))
        for (TDataLink *link : source->links_)
            wanted = qMax(wanted, link->bufferCount_);
    setBufferCount(wanted);
}

void TDataSet::setBufferCount(int count)
{
    if (count == bufferCount_)
        return;
    auto shiftLinks = [this](int delta) {
        if (delta == 0)
            return;
        for (TDataSource *source : std::as_const(dataSources_))
            for (TDataLink *link : source->links_)
                if (link->active_)
                    link->firstRecord_ = qMax(0, link->firstRecord_ + delta);
    };
    if (count < bufferCount_) {
        // Keep the active record in the window: drop records from the front first.
        int drop = recordCount_ > count ? qMax(0, activeRecord_ - count + 1) : 0;
        for (int i = 0; i < drop; ++i)
            moveBuffer(0, bufferCount_); // to the end, out of the window
        if (drop > 0) {
            activeRecord_ -= drop;
            recordCount_ -= drop;
            shiftLinks(-drop);
            CursorPosChanged();
        }
        recordCount_ = qMin(recordCount_, count);
        if (currentRecord_ >= recordCount_)
            CursorPosChanged();
        buffers_.resize(count > 0 ? count + 1 : 0);
        bufferCount_ = count;
        return;
    }
    const int fieldSlots = fieldList_.Count();
    while (int(buffers_.size()) < count + 1) {
        auto buffer = std::make_unique<TRecordBuffer>();
        buffer->values.resize(fieldSlots);
        buffers_.push_back(std::move(buffer));
    }
    // The old spare becomes a window slot; the spare moves to the end.
    if (bufferCount_ > 0)
        std::swap(buffers_[bufferCount_], buffers_[count]);
    bufferCount_ = count;
    if (state_ == dsOpening || recordCount_ == 0 || state_ == dsBrowse) {
        getNextRecords();
        shiftLinks(getPriorRecords());
    }
}

void TDataSet::clearBuffers()
{
    recordCount_ = 0;
    activeRecord_ = 0;
    currentRecord_ = -1;
    bof_ = true;
    eof_ = true;
}

void TDataSet::activateBuffers()
{
    recordCount_ = 1;
    activeRecord_ = 0;
    currentRecord_ = 0;
    bof_ = false;
    eof_ = false;
}

void TDataSet::moveBuffer(int from, int to)
{
    auto b = buffers_.begin();
    if (from < to)
        std::rotate(b + from, b + from + 1, b + to + 1);
    else if (from > to)
        std::rotate(b + to, b + from, b + from + 1);
}

void TDataSet::setCurrentRecord(int index)
{
    if (currentRecord_ == index)
        return;
    TRecordBuffer &buffer = *buffers_[index];
    switch (buffer.flag) {
    case bfCurrent:
    case bfInserted: InternalSetToRecord(buffer); break;
    case bfBOF: InternalFirst(); break;
    case bfEOF: InternalLast(); break;
    }
    currentRecord_ = index;
}

void TDataSet::UpdateCursorPos()
{
    if (recordCount_ > 0)
        setCurrentRecord(activeRecord_);
}

bool TDataSet::getNextRecord()
{
    TGetMode mode = gmNext;
    if (recordCount_ > 0) {
        setCurrentRecord(recordCount_ - 1);
        if (state_ == dsInsert && currentRecord_ == activeRecord_ && ActiveBuffer().flag == bfCurrent)
            mode = gmCurrent;
    }
    TRecordBuffer &target = *buffers_[recordCount_];
    if (GetRecord(target, mode, true) != grOK) {
        CursorPosChanged();
        return false;
    }
    if (recordCount_ == 0)
        activateBuffers();
    else if (recordCount_ < bufferCount_)
        ++recordCount_;
    else
        moveBuffer(0, recordCount_);
    currentRecord_ = recordCount_ - 1;
    return true;
}

bool TDataSet::getPriorRecord()
{
    if (recordCount_ > 0)
        setCurrentRecord(0);
    TRecordBuffer &target = *buffers_[recordCount_];
    if (GetRecord(target, gmPrior, true) != grOK) {
        CursorPosChanged();
        return false;
    }
    if (recordCount_ == 0) {
        activateBuffers();
    } else {
        moveBuffer(recordCount_, 0);
        if (recordCount_ < bufferCount_) {
            ++recordCount_;
            ++activeRecord_;
        }
    }
    currentRecord_ = 0;
    return true;
}

int TDataSet::getNextRecords()
{
    int n = 0;
    while (recordCount_ < bufferCount_ && getNextRecord())
        ++n;
    return n;
}

int TDataSet::getPriorRecords()
{
    int n = 0;
    while (recordCount_ < bufferCount_ && getPriorRecord())
        ++n;
    return n;
}

void TDataSet::Resync(TResyncMode mode)
{
    if (IsUnidirectional() || bufferCount_ == 0)
        return;
    TRecordBuffer &spare = *buffers_[recordCount_];
    if (mode.Contains(rmExact)) {
        CursorPosChanged();
        if (GetRecord(spare, gmCurrent, true) != grOK)
            DatabaseError(DBConsts::SRecordNotFound(), this);
    } else if (GetRecord(spare, gmCurrent, false) != grOK && GetRecord(spare, gmNext, false) != grOK
               && GetRecord(spare, gmPrior, false) != grOK) {
        clearBuffers();
        DataEvent(deDataSetChange, 0);
        return;
    }
    int count = mode.Contains(rmCenter) ? (bufferCount_ - 1) / 2 : activeRecord_;
    moveBuffer(recordCount_, 0);
    activateBuffers();
    try {
        while (count > 0 && getPriorRecord())
            --count;
        getNextRecords();
        getPriorRecords();
    } catch (...) {
        DataEvent(deDataSetChange, 0);
        throw;
    }
    DataEvent(deDataSetChange, 0);
}

// ---- navigation ----

void TDataSet::First()
{
    CheckBrowseMode();
    const NavigationScope moving(this);
    DoBeforeScroll();
    clearBuffers();
    try {
        InternalFirst();
        getNextRecord();
        getNextRecords();
    } catch (...) {
        bof_ = true;
        DataEvent(deDataSetChange, 0);
        throw;
    }
    bof_ = true;
    DataEvent(deDataSetChange, 0);
    DoAfterScroll();
}

void TDataSet::Last()
{
    if (IsUnidirectional())
        DatabaseError(DBConsts::SDataSetUnidirectional(), this);
    CheckBrowseMode();
    const NavigationScope moving(this);
    DoBeforeScroll();
    clearBuffers();
    try {
        InternalLast();
        getPriorRecord();
        getPriorRecords();
    } catch (...) {
        eof_ = true;
        DataEvent(deDataSetChange, 0);
        throw;
    }
    eof_ = true;
    DataEvent(deDataSetChange, 0);
    DoAfterScroll();
}

int TDataSet::MoveBy(int distance)
{
    CheckBrowseMode();
    int result = 0;
    DoBeforeScroll();
    if ((distance > 0 && !eof_) || (distance < 0 && !bof_)) {
        bof_ = false;
        eof_ = false;
        // Far beyond the window: stepping record by record would read everything between.
        if (std::abs(distance) > 2 * bufferCount_ + recordCount_) {
            const NavigationScope moving(this);
            UpdateCursorPos();
            if (InternalJump(distance, result)) {
                Resync({rmCenter});
                bof_ = distance < 0 && result != distance;
                eof_ = distance > 0 && result != distance;
                DoAfterScroll();
                return result;
            }
        }
        int scrollCount = 0;
        try {
            while (distance > 0) {
                if (activeRecord_ < recordCount_ - 1) {
                    ++activeRecord_;
                } else {
                    const int shift = recordCount_ < bufferCount_ ? 0 : 1;
                    if (getNextRecord()) {
                        scrollCount -= shift;
                    } else {
                        eof_ = true;
                        break;
                    }
                }
                --distance;
                ++result;
            }
            while (distance < 0) {
                if (activeRecord_ > 0) {
                    --activeRecord_;
                } else {
                    const int shift = recordCount_ < bufferCount_ ? 0 : 1;
                    if (getPriorRecord()) {
                        scrollCount += shift;
                    } else {
                        bof_ = true;
                        break;
                    }
                }
                ++distance;
                --result;
            }
        } catch (...) {
            DataEvent(deDataSetScroll, scrollCount);
            throw;
        }
        DataEvent(deDataSetScroll, scrollCount);
        DoAfterScroll();
    }
    return result;
}

// ---- bookmarks ----

TBookmark TDataSet::BookmarkFromRow(qint64 row)
{
    TBookmark b(sizeof(qint64), Qt::Uninitialized);
    qToLittleEndian(row, b.data());
    return b;
}

qint64 TDataSet::RowFromBookmark(const TBookmark &bookmark)
{
    if (bookmark.size() != int(sizeof(qint64)))
        return -1;
    return qFromLittleEndian<qint64>(bookmark.constData());
}

bool TDataSet::BookmarkAvailable() const
{
    return (state_ == dsBrowse || state_ == dsEdit || state_ == dsInsert) && !IsEmpty()
        && buffers_[activeRecord_]->flag == bfCurrent;
}

TBookmark TDataSet::GetBookmark() const
{
    return BookmarkAvailable() ? GetBookmarkData(*buffers_[activeRecord_]) : TBookmark();
}

void TDataSet::GotoBookmark(const TBookmark &bookmark)
{
    if (bookmark.isEmpty())
        return;
    CheckBrowseMode();
    const NavigationScope moving(this);
    DoBeforeScroll();
    InternalGotoBookmark(bookmark);
    Resync({rmExact, rmCenter});
    DoAfterScroll();
}

bool TDataSet::BookmarkValid(const TBookmark &bookmark) const
{
    return !bookmark.isEmpty();
}

int TDataSet::CompareBookmarks(const TBookmark &a, const TBookmark &b) const
{
    if (a.isEmpty() || b.isEmpty())
        return a.isEmpty() ? (b.isEmpty() ? 0 : -1) : 1;
    const qint64 x = RowFromBookmark(a), y = RowFromBookmark(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

// ---- controls and events ----

void TDataSet::DisableControls()
{
    if (disableCount_ == 0) {
        disableState_ = state_;
        enableEvent_ = deDataSetChange;
    }
    ++disableCount_;
}

void TDataSet::EnableControls()
{
    if (disableCount_ == 0)
        return;
    if (--disableCount_ == 0) {
        if (disableState_ != state_)
            DataEvent(deUpdateState, 0);
        // What changed meanwhile counted when it happened.
        const NavigationScope showing(this);
        if (disableState_ != dsInactive && state_ != dsInactive)
            DataEvent(enableEvent_, 0);
    }
}

void TDataSet::DataEvent(TDataEvent event, qintptr info)
{
    if (event == deDataSetChange && navigating_ == 0)
        DataContentChanged();
    if (dataSources_.isEmpty() && event != deFieldChange && event != deUpdateState && event != deLayoutChange)
        return; // nobody listens: the common case of a walk in code
    if (event == deFieldChange) {
        auto *field = reinterpret_cast<TField *>(info);
        if (field->FieldKind() == fkData || field->FieldKind() == fkInternalCalc) {
            modified_ = true;
            if (state_ != dsSetKey && autoCalcFields_ && calcFieldCount_ > 0)
                calculateFields(ActiveBuffer());
        }
        field->Change();
    }
    if (disableCount_ == 0) {
        const QList<TDataSource *> sources = dataSources_;
        for (TDataSource *source : sources)
            source->dataEvent(event, info);
    } else if ((event == deUpdateState && state_ == dsInactive) || event == deLayoutChange) {
        enableEvent_ = deLayoutChange;
    }
}

void TDataSet::SetState(TDataSetState state)
{
    if (state_ == state)
        return;
    state_ = state;
    modified_ = false;
    DataEvent(deUpdateState, 0);
}

TRecordBuffer *TDataSet::CurrentRecBuf()
{
    switch (state_) {
    case dsBrowse: return IsEmpty() ? nullptr : &ActiveBuffer();
    case dsEdit:
    case dsInsert:
    case dsSetKey:
    case dsNewValue:
    case dsOldValue:
    case dsCurValue: return bufferCount_ > 0 ? &ActiveBuffer() : nullptr;
    case dsCalcFields:
    case dsInternalCalc:
    case dsFilter: return tempStateBuffer_;
    default: return nullptr;
    }
}

void TDataSet::addDataSource(TDataSource *source)
{
    dataSources_.append(source);
    updateBufferCount();
}

void TDataSet::removeDataSource(TDataSource *source)
{
    dataSources_.removeOne(source);
    updateBufferCount();
}

// ---- checks ----

void TDataSet::CheckActive() const
{
    if (state_ == dsInactive)
        DatabaseError(DBConsts::SDataSetClosed(), this);
}

void TDataSet::CheckInactive() const
{
    if (state_ != dsInactive)
        DatabaseError(DBConsts::SDataSetOpen(), this);
}

void TDataSet::CheckCanModify() const
{
    if (!GetCanModify())
        DatabaseError(DBConsts::SDataSetReadOnly(), this);
}

// ---- field data ----

namespace {
const Variant nullValue = Variant::Null();
}

const Variant &TDataSet::FieldValueRef(TField *field, Variant &scratch)
{
    const Variant &null = nullValue;
    TRecordBuffer *buffer = state_ == dsBrowse ? (recordCount_ > 0 ? buffers_[size_t(activeRecord_)].get() : nullptr)
                                               : CurrentRecBuf();
    const int slot = field->slot_;
    if (!buffer || slot < 0 || slot >= buffer->values.size())
        return null;
    if (field->IsObjectField() && !static_cast<TObjectField *>(field)->Fields().isEmpty()) {
        Variant::Array values;
        for (TField *child : static_cast<TObjectField *>(field)->Fields())
            values.append(FieldValueRef(child, scratch));
        scratch = values;
        return scratch;
    }
    const Variant &stored = buffer->values[slot];
    if (field->IsCalculated())
        return stored.IsUnassigned() ? null : stored;
    if (!stored.IsUnassigned() && state_ != dsOldValue)
        return stored;
    if (buffer->flag == bfInserted && state_ != dsOldValue && buffer->row < 0)
        return null; // a new record has only what was written into it
    if (const Variant *peeked = PeekFieldData(field, *buffer))
        return *peeked;
    if (!FetchFieldData(field, *buffer, scratch) || scratch.IsUnassigned())
        return null;
    return scratch;
}

bool TDataSet::GetFieldData(TField *field, Variant &value)
{
    const Variant &v = FieldValueRef(field, value);
    if (&v != &value)
        value = v;
    return !value.IsClear();
}

void TDataSet::StoreFieldData(TField *field, TRecordBuffer &buffer, const Variant &value)
{
    buffer.values[field->slot_] = value;
}

void TDataSet::SetFieldData(TField *field, const Variant &value)
{
    if (!IsWriteMode(state_))
        DatabaseError(DBConsts::SNotEditing(), this);
    if (field->FieldKind() == fkData && field->ReadOnly() && state_ != dsSetKey && state_ != dsFilter)
        DatabaseError(DBConsts::SFieldReadOnly().arg(field->DisplayName()), this);
    TRecordBuffer *buffer = CurrentRecBuf();
    if (!buffer || field->slot_ < 0)
        DatabaseError(DBConsts::SNotEditing(), this);
    field->Validate(value);
    StoreFieldData(field, *buffer, value.IsUnassigned() ? Variant::Null() : value);
    if (state_ != dsCalcFields && state_ != dsFilter && state_ != dsNewValue && state_ != dsInternalCalc)
        DataEvent(deFieldChange, reinterpret_cast<qintptr>(field));
}

void TDataSet::ClearFields()
{
    if (!IsEditMode(state_))
        DatabaseError(DBConsts::SNotEditing(), this);
    TRecordBuffer &buffer = ActiveBuffer();
    for (TField *f : fieldList_)
        if (f->FieldKind() == fkData && f->slot_ >= 0)
            buffer.values[f->slot_] = Variant::Null();
    GetCalcFields(buffer);
    DataEvent(deRecordChange, 0);
}

void TDataSet::GetCalcFields(TRecordBuffer &buffer)
{
    if (calcFieldCount_ > 0 && autoCalcFields_)
        calculateFields(buffer);
}

void TDataSet::calculateFields(TRecordBuffer &buffer)
{
    TempState calc(this, dsCalcFields, &buffer);
    for (TField *f : fieldList_) {
        if (!f->IsCalculated())
            continue;
        buffer.values[f->slot_] = Variant();
        if (f->FieldKind() != fkLookup)
            continue;
        TDataSet *lookup = f->LookupDataSet();
        if (!lookup || !lookup->Active() || f->KeyFields().isEmpty() || f->LookupKeyFields().isEmpty()
            || f->LookupResultField().isEmpty())
            continue;
        const Variant keys = FieldValues(f->KeyFields());
        const Variant result = lookup->Lookup(f->LookupKeyFields(), keys, f->LookupResultField());
        buffer.values[f->slot_] = result.IsClear() ? Variant::Null() : f->Convert(result);
    }
    Fire(OnCalcFields, this);
}

// ---- editing ----

void TDataSet::CheckBrowseMode()
{
    CheckActive();
    DataEvent(deCheckBrowseMode, 0);
    switch (state_) {
    case dsEdit:
    case dsInsert:
        UpdateRecord();
        if (modified_)
            Post();
        else
            Cancel();
        break;
    case dsSetKey: Post(); break;
    default: break;
    }
}

void TDataSet::UpdateRecord()
{
    if (!IsEditMode(state_))
        DatabaseError(DBConsts::SNotEditing(), this);
    DataEvent(deUpdateRecord, 0);
}

void TDataSet::Edit()
{
    if (state_ == dsEdit || state_ == dsInsert)
        return;
    if (recordCount_ == 0) {
        Insert();
        return;
    }
    CheckBrowseMode();
    CheckCanModify();
    Fire(BeforeEdit, this);
    UpdateCursorPos();
    InternalEdit();
    GetCalcFields(ActiveBuffer());
    SetState(dsEdit);
    DataEvent(deRecordChange, 0);
    Fire(AfterEdit, this);
}

void TDataSet::beginInsertAppend()
{
    CheckBrowseMode();
    CheckCanModify();
    Fire(BeforeInsert, this);
}

void TDataSet::endInsertAppend()
{
    SetState(dsInsert);
    try {
        Fire(OnNewRecord, this);
    } catch (...) {
        UpdateCursorPos();
        SetState(dsBrowse);
        Resync({});
        throw;
    }
    modified_ = false;
    DataEvent(deDataSetChange, 0);
    Fire(AfterInsert, this);
}

void TDataSet::Insert()
{
    beginInsertAppend();
    const TBookmark current = recordCount_ > 0 ? GetBookmarkData(ActiveBuffer()) : TBookmark();
    const bool wasEmpty = recordCount_ == 0;
    if (!wasEmpty)
        UpdateCursorPos(); // the cursor stands on the record the new one goes before
    moveBuffer(recordCount_, activeRecord_);
    TRecordBuffer &buffer = ActiveBuffer();
    InternalInitRecord(buffer);
    buffer.flag = bfInserted;
    buffer.row = -1;
    if (wasEmpty) {
        buffer.flag = bfBOF;
        buffer.bookmark.clear();
    } else {
        buffer.bookmark = current; // placed before this record
    }
    if (recordCount_ < bufferCount_)
        ++recordCount_;
    bof_ = false;
    eof_ = false;
    currentRecord_ = -1;
    InternalInsert();
    endInsertAppend();
}

void TDataSet::Append()
{
    beginInsertAppend();
    clearBuffers();
    TRecordBuffer &buffer = *buffers_[0];
    InternalInitRecord(buffer);
    buffer.flag = bfEOF;
    buffer.row = -1;
    buffer.bookmark.clear();
    recordCount_ = 1;
    bof_ = false;
    eof_ = false;
    getPriorRecords();
    InternalInsert();
    endInsertAppend();
}

void TDataSet::InternalPost()
{
    for (TField *f : fieldList_) {
        if (f->Required() && !f->ReadOnly() && f->FieldKind() == fkData && f->IsNull()) {
            f->FocusControl();
            DatabaseError(DBConsts::SFieldRequired().arg(f->DisplayName()), this);
        }
    }
}

void TDataSet::Post()
{
    post([this] { InternalPost(); });
}

void TDataSet::post(const std::function<void()> &store)
{
    UpdateRecord();
    if (state_ == dsEdit || state_ == dsInsert) {
        DataEvent(deCheckBrowseMode, 0);
        Fire(BeforePost, this);
        store(); // a refusal leaves the record in edit state with its values
        DataContentChanged();
        SetState(dsBrowse);
        Resync({});
        Fire(AfterPost, this);
    } else if (state_ == dsSetKey) {
        SetState(dsBrowse);
    }
}

void TDataSet::Cancel()
{
    if (state_ == dsEdit || state_ == dsInsert) {
        DataEvent(deCheckBrowseMode, 0);
        Fire(BeforeCancel, this);
        const bool wasInsert = state_ == dsInsert;
        if (wasInsert)
            DoBeforeScroll();
        UpdateCursorPos();
        InternalCancel();
        if (recordCount_ > 0)
            ActiveBuffer().ClearValues();
        SetState(dsBrowse);
        Resync({});
        Fire(AfterCancel, this);
        if (wasInsert)
            DoAfterScroll();
    } else if (state_ == dsSetKey) {
        SetState(dsBrowse);
    }
}

void TDataSet::Delete()
{
    CheckActive();
    if (state_ == dsInsert || state_ == dsSetKey) {
        Cancel();
        return;
    }
    if (recordCount_ == 0)
        DatabaseError(DBConsts::SDataSetEmpty(), this);
    CheckCanModify();
    DataEvent(deCheckBrowseMode, 0);
    Fire(BeforeDelete, this);
    DoBeforeScroll();
    UpdateCursorPos();
    InternalDelete();
    DataContentChanged();
    SetState(dsBrowse);
    Resync({});
    Fire(AfterDelete, this);
    DoAfterScroll();
}

void TDataSet::AppendRecord(const QList<Variant> &values)
{
    addRecord(values, true);
}

void TDataSet::InsertRecord(const QList<Variant> &values)
{
    addRecord(values, false);
}

void TDataSet::addRecord(const QList<Variant> &values, bool append)
{
    if (append)
        Append();
    else
        Insert();
    for (int i = 0; i < values.size() && i < fields_.Count(); ++i)
        if (!values[i].IsUnassigned() && fields_[i]->FieldKind() == fkData && !fields_[i]->ReadOnly())
            fields_[i]->SetValue(values[i]);
    post([this, append] { InternalAddRecord(ActiveBuffer(), append); });
}

void TDataSet::Refresh()
{
    Fire(BeforeRefresh, this);
    CheckBrowseMode();
    UpdateCursorPos();
    DataContentChanged();
    try {
        InternalRefresh();
    } catch (...) {
        Resync({});
        throw;
    }
    Resync({});
    Fire(AfterRefresh, this);
}

// ---- searching ----

bool TDataSet::MatchesKeys(TRecordBuffer &buffer, const QList<TField *> &fields, const Variant &keyValues,
                           TLocateOptions options)
{
    TempState filter(this, dsFilter, &buffer);
    for (int i = 0; i < fields.size(); ++i) {
        const Variant key = fields.size() == 1 && !keyValues.IsArray()
            ? keyValues
            : (i <= keyValues.ArrayHighBound() ? keyValues.ToArray()[i] : Variant::Null());
        const Variant value = fields[i]->Value();
        if (key.IsClear() || value.IsClear()) {
            if (!(key.IsClear() && value.IsClear()))
                return false;
            continue;
        }
        if (!options.IsEmpty() && fields[i]->ValueType() == VarType::String) {
            const QString text = value.ToString();
            const QString wanted = key.ToString();
            const Qt::CaseSensitivity cs =
                options.Contains(loCaseInsensitive) ? Qt::CaseInsensitive : Qt::CaseSensitive;
            const bool match = options.Contains(loPartialKey) ? text.startsWith(wanted, cs)
                                                              : text.compare(wanted, cs) == 0;
            if (!match)
                return false;
            continue;
        }
        Variant typed;
        try {
            typed = fields[i]->Convert(key);
        } catch (const EDatabaseError &) {
            return false; // a key that is not of the field's kind matches nothing
        }
        if (VarCompareValue(value, typed) != VariantRelationship::vrEqual)
            return false;
    }
    return true;
}

bool TDataSet::LocateRecord(const QList<TField *> &fields, const Variant &keyValues, TLocateOptions options,
                            bool syncCursor)
{
    Q_UNUSED(syncCursor);
    CheckBrowseMode();
    CursorPosChanged();
    TRecordBuffer &spare = TempBuffer();
    InternalFirst();
    while (GetRecord(spare, gmNext, true) == grOK)
        if (MatchesKeys(spare, fields, keyValues, options))
            return true;
    return false;
}

bool TDataSet::Locate(const QString &keyFields, const Variant &keyValues, TLocateOptions options)
{
    CheckBrowseMode();
    const QList<TField *> fields = GetFieldList(keyFields);
    const NavigationScope moving(this);
    DoBeforeScroll();
    const bool found = LocateRecord(fields, keyValues, options, true);
    if (found) {
        Resync({rmExact, rmCenter});
        DoAfterScroll();
    }
    return found;
}

int TDataSet::FindText(const TTextSearch &search, TSearchFrom from, const std::function<bool()> &accept)
{
    CheckBrowseMode();
    if (search.Text.isEmpty() || IsEmpty())
        return 0;
    const NavigationScope moving(this);
    DoBeforeScroll();
    const int found = FindTextRecord(search, from, accept);
    if (found > 0) {
        Resync({rmExact, rmCenter});
        DoAfterScroll();
    }
    return found;
}

Variant TDataSet::Lookup(const QString &keyFields, const Variant &keyValues, const QString &resultFields)
{
    CheckBrowseMode();
    const QList<TField *> fields = GetFieldList(keyFields);
    const QList<TField *> results = GetFieldList(resultFields);
    if (!LocateRecord(fields, keyValues, {}, false))
        return Variant::Null();
    TempState filter(this, dsFilter, &TempBuffer());
    if (results.size() == 1)
        return results.first()->Value();
    Variant::Array values;
    for (TField *f : results)
        values.append(f->Value());
    return values;
}

// ---- filtering ----

std::unique_ptr<FilterExpression> TDataSet::parseFilter(const QString &text)
{
    std::unique_ptr<FilterExpression> parsed;
    if (!text.trimmed().isEmpty()) {
        parsed = std::make_unique<FilterExpression>(text);
        if (Active())
            parsed->Bind(this, filterOptions_);
    }
    return parsed;
}

void TDataSet::SetFilter(const QString &text)
{
    if (text == filterText_)
        return;
    // Parse first: a text that does not parse changes nothing.
    std::unique_ptr<FilterExpression> parsed = parseFilter(text);
    filterText_ = text;
    filterExpr_ = std::move(parsed);
    if (filtered_ && Active()) {
        DataContentChanged();
        FilterChanged();
    }
}

void TDataSet::SetFiltered(bool on)
{
    if (on == filtered_)
        return;
    if (Active()) {
        CheckBrowseMode();
        filtered_ = on;
        DataContentChanged();
        FilterChanged();
    } else {
        filtered_ = on;
    }
}

void TDataSet::SetFilterOptions(TFilterOptions options)
{
    if (options == filterOptions_)
        return;
    filterOptions_ = options;
    if (Active()) {
        compileFilter();
        if (filtered_) {
            DataContentChanged();
            FilterChanged();
        }
    }
}

void TDataSet::SetOnFilterRecord(const TFilterRecordEvent &handler)
{
    onFilterRecord_ = handler;
    if (filtered_ && Active()) {
        DataContentChanged();
        FilterChanged();
    }
}

void TDataSet::SetFilterState(bool on, const QString &text, const TFilterRecordEvent &handler)
{
    const bool newText = text != filterText_;
    std::unique_ptr<FilterExpression> parsed = newText ? parseFilter(text) : nullptr;
    if (Active())
        CheckBrowseMode();
    if (newText) {
        filterText_ = text;
        filterExpr_ = std::move(parsed);
    }
    onFilterRecord_ = handler;
    const bool was = std::exchange(filtered_, on);
    if (Active() && (on || was)) {
        DataContentChanged();
        FilterChanged();
    }
}

void TDataSet::FilterChanged()
{
    CheckBrowseMode();
    OrderChanged(); // records left and came back: their places changed
    First();
}

void TDataSet::compileFilter()
{
    filterExpr_.reset();
    if (!filterText_.trimmed().isEmpty()) {
        filterExpr_ = std::make_unique<FilterExpression>(filterText_);
        filterExpr_->Bind(this, filterOptions_);
    }
}

bool TDataSet::IsFiltering() const
{
    return filtered_ && (filterExpr_ || onFilterRecord_);
}

bool TDataSet::FilterAccepts(TRecordBuffer &buffer)
{
    if (!IsFiltering())
        return true;
    TempState filter(this, dsFilter, &buffer);
    bool accept = true;
    if (filterExpr_)
        accept = filterExpr_->Evaluate();
    if (accept && onFilterRecord_)
        onFilterRecord_(this, accept);
    return accept;
}

} // namespace qdb

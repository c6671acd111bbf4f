#include "SQLDataSet.h"

#include "SQLFilter.h"
#include "SQLTextMatch.h"
#include "SQLTextSearch.h"
#include "SQLRowSource.h"
#include "SQLText.h"
#include "SQLTypes.h"

#include "platform/db/DBConsts.h"
#include "platform/db/FilterExpression.h"
#include "platform/rtl/Exceptions.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QIODevice>
#include <QMetaObject>
#include <QRegularExpression>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVarLengthArray>

namespace qdb {

// ---- TParams ----

void TParams::SetValue(const QString &name, const Variant &value)
{
    for (auto &p : values_)
        if (p.first.compare(name, Qt::CaseInsensitive) == 0) {
            p.second = value;
            return;
        }
    values_.append({name, value});
}

Variant TParams::Value(const QString &name) const
{
    for (const auto &p : values_)
        if (p.first.compare(name, Qt::CaseInsensitive) == 0)
            return p.second;
    return Variant::Null();
}

bool TParams::Contains(const QString &name) const
{
    for (const auto &p : values_)
        if (p.first.compare(name, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

QStringList TParams::Names() const
{
    QStringList names;
    for (const auto &p : values_)
        names << p.first;
    return names;
}

// ---- TCustomSQLDataSet ----

TCustomSQLDataSet::TCustomSQLDataSet(QObject *parent) : TDataSet(parent), raw_(std::make_unique<SQLRows>()) {}

TCustomSQLDataSet::~TCustomSQLDataSet()
{
    try {
        Close();
    } catch (...) {
    }
    if (connection_)
        connection_->DetachDataSet(this);
}

void TCustomSQLDataSet::SetConnection(TSQLConnection *connection)
{
    CheckInactive();
    if (connection_)
        connection_->DetachDataSet(this);
    connection_ = connection;
    if (connection_)
        connection_->AttachDataSet(this);
}

QString TCustomSQLDataSet::Quote(const QString &name) const
{
    QStringList parts;
    for (const QString &part : name.split(QLatin1Char('.')))
        parts << connection_->QuoteName(part.trimmed());
    return parts.join(QLatin1Char('.'));
}

void TCustomSQLDataSet::openSource()
{
    if (!connection_)
        DatabaseError(tr("No connection is set"), this);
    SQLResultShape shape;
    for (const Variant &p : SelectParams())
        shape.params << p.ToQVariant();
    std::tie(shape.body, shape.order) = SplitOrderBy(StripSemicolon(SelectSQL()));
    const auto quote = [this](const QString &name) { return Quote(name); };
    SQLCondition where;
    if (Filtered() && !Filter().trimmed().isEmpty() && FieldList().Count() > 0) {
        FilterExpression expr(Filter());
        expr.Bind(this, FilterOptions());
        where = FilterToSQL(expr, FilterOptions(), connection_->Dialect(), quote);
    }
    // A record handler the database can stand in for is not called for each record; what
    // the database can tell of one narrows the records it is called for.
    matchInWhere_ = false;
    const TFilterRecordMatch &described = FilterRecordMatch();
    if (Filtered() && OnFilterRecord() && described.Handler == OnFilterRecord() && FieldList().Count() > 0) {
        const auto narrow = [&where](const SQLCondition &c) {
            where.text = where.text.isEmpty() ? c.text : QStringLiteral("%1 AND %2").arg(where.text, c.text);
            where.params += c.params;
        };
        SQLCondition match, found;
        const bool itemsKnown = TextMatchToSQL(described, this, connection_->Dialect(), quote, match);
        if (itemsKnown && !described.Items.isEmpty())
            narrow(match);
        bool exact = true;
        const bool searchKnown = described.Search.Text.isEmpty()
            || TextSearchToSQL(described.Search, this, connection_->Dialect(), quote, found, exact);
        if (searchKnown && !described.Search.Text.isEmpty())
            narrow(found);
        matchInWhere_ = itemsKnown && searchKnown && exact;
    }
    if (!where.text.isEmpty()) {
        // The order now reads the filtered rows: table qualifiers no longer apply.
        QStringList outerOrder;
        static const QRegularExpression qualifier(QStringLiteral("^\\s*(?:\"[^\"]+\"|[\\w]+)\\s*\\.\\s*"));
        for (const QString &item : shape.order.split(QLatin1Char(','), Qt::SkipEmptyParts))
            outerOrder << QString(item).remove(qualifier).trimmed();
        shape.order = outerOrder.join(QStringLiteral(", "));
        shape.body = QStringLiteral("SELECT * FROM (%1) qdb_filter WHERE %2").arg(shape.body, where.text);
        shape.params += where.params;
    }
    shape.keys = keyNames();
    source_.reset();
    source_ = SQLRowSource::Create(connection_, shape);
    tellDateColumns();
    dropCache();
    ++generation_;
    positions_.clear();
    shifts_.clear();
    OrderChanged();
}

QStringList TCustomSQLDataSet::keyNames() const
{
    QStringList names;
    if (!keyFields_.trimmed().isEmpty()) {
        for (const QString &name : keyFields_.split(QLatin1Char(';'), Qt::SkipEmptyParts))
            names << name.trimmed();
        return names;
    }
    // A table's primary key identifies the rows of a query only when each row comes from
    // one row of that table.
    const QString sql = SelectSQL();
    for (const char *word : {"JOIN", "UNION", "GROUP", "DISTINCT", "INTERSECT", "EXCEPT"})
        if (!TopLevelKeyword(sql, QLatin1String(word)).isEmpty())
            return {};
    const QString table = UpdateTableName();
    if (table.isEmpty())
        return {};
    const QStringList primary = primaryKeyNames(table);
    if (primary.isEmpty() && !ImplicitKey().isEmpty())
        return {ImplicitKey()};
    return primary;
}

QStringList TCustomSQLDataSet::primaryKeyNames(const QString &table) const
{
    QSqlIndex primary = connection_->Database().primaryIndex(table);
    if (primary.isEmpty() && connection_->RestoreDatabase()) // the server had ended the session
        primary = connection_->Database().primaryIndex(table);
    if (primary.isEmpty() && table.contains(QLatin1Char('.')))
        primary = connection_->Database().primaryIndex(table.section(QLatin1Char('.'), -1));
    QStringList names;
    for (int i = 0; i < primary.count(); ++i)
        names << primary.fieldName(i);
    return names;
}

void TCustomSQLDataSet::tellDateColumns()
{
    QList<int> dates;
    const QSqlRecord record = source_->Record();
    for (TField *f : FieldList())
        if (f->FieldNo() > 0 && f->FieldKind() == fkData && f->ValueType() == VarType::DateTime)
            if (const int column = record.indexOf(f->FieldName()); column >= 0)
                dates << column;
    source_->ReadAsDates(dates);
}

void TCustomSQLDataSet::InternalOpen()
{
    openSource();
    const bool refilter = Filtered() && (!Filter().trimmed().isEmpty() || OnFilterRecord()) && FieldList().Count() == 0;
    InitFieldsAndBind();
    if (TField *implicit = ImplicitKey().isEmpty() ? nullptr : FindField(ImplicitKey())) {
        implicit->SetVisible(false);
        implicit->SetReadOnly(true);
    }
    columnOfField_.clear();
    const QSqlRecord record = source_->Record();
    for (TField *f : FieldList()) {
        if (f->FieldNo() <= 0)
            continue;
        while (columnOfField_.size() < f->FieldNo())
            columnOfField_ << -1;
        columnOfField_[f->FieldNo() - 1] = record.indexOf(f->FieldName());
    }
    fieldOfSlot_.fill(nullptr, columnOfField_.size());
    for (TField *f : FieldList())
        if (f->FieldNo() > 0 && columnOfField_[f->FieldNo() - 1] >= 0)
            fieldOfSlot_[f->FieldNo() - 1] = f;
    sameShape_ = columnOfField_.size() == record.count();
    for (qsizetype slot = 0; slot < columnOfField_.size() && sameShape_; ++slot)
        sameShape_ = columnOfField_[slot] == slot && fieldOfSlot_[slot];
    tellDateColumns();
    keyOfRow_.clear();
    for (int column : source_->KeyColumns()) {
        TField *key = nullptr;
        for (TField *f : FieldList())
            if (f->FieldNo() > 0 && f->FieldKind() == fkData && columnOfField_.value(f->FieldNo() - 1, -1) == column)
                key = f;
        if (!key) {
            keyOfRow_.clear();
            break;
        }
        keyOfRow_ << key;
    }
    if (refilter) // the filter needed the fields: open once more with it
        openSource();
    pos_ = -1;
}

void TCustomSQLDataSet::InternalClose()
{
    source_.reset();
    keyOfRow_.clear();
    positions_.clear();
    shifts_.clear();
    dropCache();
    columnOfField_.clear();
    fieldOfSlot_.clear();
}

void TCustomSQLDataSet::InternalInitFieldDefs()
{
    FieldDefs().Clear();
    const QSqlRecord record = source_->Record();
    const QStringList declared = source_->DeclaredTypes();
    QStringList seen;
    for (int i = 0; i < record.count(); ++i) {
        const QSqlField column = record.field(i);
        TFieldDef def = connection_->Dialect() == TSQLDialect::SQLite
            ? FieldDefFromDeclaredType(column.name(), declared.value(i), column.metaType())
            : FieldDefFromSqlField(column, connection_->Dialect());
        QString name = def.Name.isEmpty() ? QStringLiteral("Column%1").arg(i + 1) : def.Name;
        for (int k = 1; seen.contains(name, Qt::CaseInsensitive); ++k)
            name = def.Name + QStringLiteral("_%1").arg(k);
        seen << name;
        def.Name = name;
        FieldDefs().Add(QString(), ftUnknown) = def;
    }
}

void TCustomSQLDataSet::dropCache()
{
    pages_.clear();
    walk_.clear();
    fetchedNo_ = -2;
    lastPage_ = nullptr;
    lastPageNo_ = -1;
    count_ = -1;
}

qint64 TCustomSQLDataSet::count() const
{
    if (count_ < 0)
        count_ = source_ ? source_->Count() : 0;
    return count_;
}

const Variant *TCustomSQLDataSet::row(qint64 position) const
{
    if (!source_ || position < 0 || (count_ >= 0 && position >= count_))
        return nullptr;
    const qint64 pageNo = position / PageSize;
    if (pageNo == lastPageNo_ && lastPage_) {
        const size_t index = size_t(position % PageSize);
        return index < lastPage_->rows ? &lastPage_->values[index * size_t(width())] : nullptr;
    }
    auto it = pages_.find(pageNo);
    if (it == pages_.end()) {
        SQLRows &raw = *raw_;
        raw.values.clear();
        source_->Fetch(pageNo * PageSize, PageSize, raw);
        releaseLater();
        if (raw.Count() < size_t(PageSize)) // the end of the result is known now
            count_ = pageNo * PageSize + qint64(raw.Count());
        // A walk keeps only its last few pages, so that it goes on in memory still in the
        // processor's cache and leaves the other pages alone; otherwise the page looked at
        // longest ago goes. The storage of the page that goes is reused.
        if (pageNo != fetchedNo_ + 1 && pageNo != fetchedNo_ - 1)
            walk_.clear();
        walk_.push_back(pageNo);
        fetchedNo_ = pageNo;
        auto gone = pages_.end();
        if (walk_.size() > WalkPages) {
            gone = pages_.find(walk_.front());
            walk_.pop_front();
        }
        if (gone == pages_.end() && pages_.size() >= MaxPages) {
            gone = pages_.begin();
            for (auto p = pages_.begin(); p != pages_.end(); ++p)
                if (p->second.used < gone->second.used)
                    gone = p;
        }
        Page page;
        if (gone != pages_.end()) {
            page.values = std::move(gone->second.values);
            page.values.clear();
            pages_.erase(gone);
        }
        page.rows = raw.Count();
        if (sameShape_) { // typed where they stand: the rows as read become the page
            typeInPlace(raw);
            page.values.swap(raw.values);
        } else {
            page.values.reserve(page.rows * size_t(width()));
            for (size_t r = 0; r < page.rows; ++r)
                typeRow(raw, r, page.values);
        }
        it = pages_.emplace(pageNo, std::move(page)).first;
    }
    it->second.used = ++useClock_;
    lastPage_ = &it->second;
    lastPageNo_ = pageNo;
    const size_t index = size_t(position % PageSize);
    return index < it->second.rows ? &it->second.values[index * size_t(width())] : nullptr;
}

void TCustomSQLDataSet::typeRow(SQLRows &raw, size_t r, std::vector<Variant> &out) const
{
    const TSQLDialect dialect = connection_->Dialect();
    Variant *values = raw.values.data() + r * size_t(raw.columns);
    for (qsizetype slot = 0; slot < fieldOfSlot_.size(); ++slot) {
        const TField *f = fieldOfSlot_[slot];
        if (!f) {
            out.push_back(Variant::Null());
            continue;
        }
        Variant &value = values[columnOfField_[slot]];
        if (value.Type() == f->ValueType()) // read as the field holds it: nothing to convert
            out.push_back(std::move(value));
        else
            out.push_back(FromDatabase(std::move(value), f, dialect));
    }
}

void TCustomSQLDataSet::typeInPlace(SQLRows &raw) const
{
    const TSQLDialect dialect = connection_->Dialect();
    const qsizetype columns = fieldOfSlot_.size();
    QVarLengthArray<VarType, 32> types;
    for (const TField *f : fieldOfSlot_)
        types.append(f->ValueType());
    qsizetype slot = 0;
    for (Variant &value : raw.values) {
        if (value.Type() != types[slot])
            value = FromDatabase(std::move(value), fieldOfSlot_[slot], dialect);
        if (++slot == columns)
            slot = 0;
    }
}

int TCustomSQLDataSet::CachedRows() const
{
    int rows = 0;
    for (const auto &p : pages_)
        rows += int(p.second.rows);
    return rows;
}

bool TCustomSQLDataSet::matchInDatabase(const QList<TField *> &fields, const Variant &keyValues, QList<int> &columns,
                                        QList<QVariant> &values) const
{
    if (!source_ || clientFiltering() || fields.isEmpty())
        return false;
    const Variant::Array *array = fields.size() > 1 && keyValues.IsArray() ? &keyValues.ToArray() : nullptr;
    if (fields.size() > 1 && (!array || array->size() != fields.size()))
        return false;
    for (int i = 0; i < fields.size(); ++i) {
        TField *f = fields[i];
        const int slot = f->FieldNo() - 1;
        if (f->FieldKind() != fkData || slot < 0 || slot >= columnOfField_.size())
            return false;
        columns << columnOfField_[slot];
        values << ToDatabase(array ? array->at(i) : keyValues, f, connection_->Dialect());
    }
    return true;
}

bool TCustomSQLDataSet::LocateRecord(const QList<TField *> &fields, const Variant &keyValues, TLocateOptions options,
                                     bool syncCursor)
{
    // Partial or case-blind matches of what is not text take the general walk.
    bool direct = syncCursor;
    for (TField *f : fields)
        if (options != TLocateOptions{} && f->ValueType() != VarType::String)
            direct = false;
    QList<int> columns;
    QList<QVariant> values;
    if (direct && matchInDatabase(fields, keyValues, columns, values)) {
        CheckBrowseMode();
        CursorPosChanged();
        const qint64 found = source_->Find(columns, values,
                                          {options.Contains(loPartialKey), options.Contains(loCaseInsensitive)});
        if (found >= 0) {
            pos_ = found;
            return true;
        }
        if (found == -1)
            return false;
    }
    return TDataSet::LocateRecord(fields, keyValues, options, syncCursor);
}

int TCustomSQLDataSet::FindTextRecord(const TTextSearch &search, TSearchFrom from, const std::function<bool()> &accept)
{
    SQLCondition condition;
    bool exact = false;
    const auto quote = [this](const QString &name) { return Quote(name); };
    if (!source_ || !TextSearchToSQL(search, this, connection_->Dialect(), quote, condition, exact))
        return -1;
    const bool forward = from == TSearchFrom::First || from == TSearchFrom::Next;
    QList<QVariant> after;
    if (from == TSearchFrom::Next || from == TSearchFrom::Prior) {
        UpdateCursorPos();
        after = keyValuesAt(pos_);
        if (after.isEmpty())
            return -1;
    }
    // The rows come in growing batches: the first is often the one.
    TRecordBuffer &buffer = TempBuffer();
    for (int batch = 8;; batch = qMin(batch * 4, 512)) {
        SQLRows rows;
        const int n = source_->MatchesFrom(after, forward, condition, batch, rows);
        if (n < 0)
            return -1;
        for (size_t r = 0; r < rows.Count(); ++r) {
            probe_.clear();
            typeRow(rows, r, probe_);
            buffer.row = ProbeRow;
            buffer.flag = bfCurrent;
            buffer.ClearValues();
            GetCalcFields(buffer);
            bool taken = clientFilterAccepts(buffer);
            if (taken) {
                TempState probing(this, dsFilter, &buffer);
                taken = accept();
            }
            after = keyValuesOf(probe_.data());
            if (!taken)
                continue;
            probe_.clear();
            const qint64 at = source_->PositionOf(after);
            if (at < 0)
                return -1;
            CursorPosChanged();
            pos_ = at;
            return 1;
        }
        probe_.clear();
        if (n < batch)
            return 0;
    }
}

Variant TCustomSQLDataSet::Lookup(const QString &keyFields, const Variant &keyValues, const QString &resultFields)
{
    CheckBrowseMode();
    const QList<TField *> fields = GetFieldList(keyFields);
    const QList<TField *> results = GetFieldList(resultFields);
    QList<int> columns;
    QList<QVariant> values;
    bool direct = matchInDatabase(fields, keyValues, columns, values);
    for (TField *f : results)
        direct = direct && f->FieldKind() == fkData && f->FieldNo() > 0;
    SQLRows row;
    const int found = direct ? source_->FirstMatch(columns, values, row) : -1;
    if (found < 0)
        return TDataSet::Lookup(keyFields, keyValues, resultFields);
    if (found == 0)
        return Variant::Null();
    Variant::Array out;
    for (TField *f : results)
        out.append(FromDatabase(row.values[size_t(columnOfField_[f->FieldNo() - 1])], f, connection_->Dialect()));
    return out.size() == 1 ? out.front() : Variant(out);
}

bool TCustomSQLDataSet::clientFiltering() const
{
    return Filtered() && OnFilterRecord() && !matchInWhere_;
}

bool TCustomSQLDataSet::clientFilterAccepts(TRecordBuffer &buffer)
{
    if (!clientFiltering())
        return true;
    TempState filter(this, dsFilter, &buffer);
    bool accept = true;
    OnFilterRecord()(this, accept);
    return accept;
}

TGetResult TCustomSQLDataSet::GetRecord(TRecordBuffer &buffer, TGetMode mode, bool doCheck)
{
    Q_UNUSED(doCheck);
    // Reading the row tells whether it exists; the count is not needed to walk.
    for (;;) {
        const qint64 pos = pos_ + (mode == gmNext ? 1 : mode == gmPrior ? -1 : 0);
        if (pos < 0) {
            if (mode == gmCurrent)
                return grError;
            pos_ = -1;
            return grBOF;
        }
        if (!rowExists(pos)) {
            if (mode == gmCurrent)
                return grError;
            pos_ = count();
            return grEOF;
        }
        pos_ = pos;
        buffer.row = pos;
        buffer.flag = bfCurrent;
        buffer.ClearValues();
        GetCalcFields(buffer);
        if (clientFilterAccepts(buffer))
            return grOK;
        if (mode == gmCurrent)
            return grError;
    }
}

void TCustomSQLDataSet::InternalLast()
{
    pos_ = count();
}

bool TCustomSQLDataSet::InternalJump(int distance, int &moved)
{
    if (clientFiltering() || pos_ < 0 || count() == 0)
        return false; // the handler must see each record on the way
    const qint64 target = qBound<qint64>(0, pos_ + distance, count() - 1);
    moved = int(target - pos_);
    pos_ = target;
    return true;
}

// A bookmark: the reading of the result it was taken in, the position there, and the
// record's key values as the database knows them.
namespace {

struct SQLBookmark
{
    quint64 generation = 0;
    qint64 position = -1;
    QList<QVariant> keys;

    static bool Read(const TBookmark &bookmark, SQLBookmark &out)
    {
        QDataStream in(bookmark);
        quint8 version = 0;
        in >> version;
        if (version != 1)
            return false;
        in >> out.generation >> out.position >> out.keys;
        return in.status() == QDataStream::Ok;
    }
};

} // namespace

QList<QVariant> TCustomSQLDataSet::keyValuesAt(qint64 position) const
{
    return keyValuesOf(row(position));
}

QList<QVariant> TCustomSQLDataSet::keyValuesOf(const Variant *r) const
{
    QList<QVariant> keys;
    if (!r)
        return keys;
    for (TField *f : keyOfRow_)
        keys << ToDatabase(r[f->FieldNo() - 1], f, connection_->Dialect());
    return keys;
}

bool TCustomSQLDataSet::bookmarkKeys(const TBookmark &bookmark, QList<QVariant> &keys)
{
    SQLBookmark b;
    if (!SQLBookmark::Read(bookmark, b))
        return false;
    keys = b.keys;
    return true;
}

qint64 TCustomSQLDataSet::positionOf(const TBookmark &bookmark) const
{
    SQLBookmark b;
    if (!source_ || !SQLBookmark::Read(bookmark, b))
        return -1;
    if (b.generation == generation_ && (b.keys.isEmpty() || keyValuesAt(b.position) == b.keys))
        return b.position;
    const auto known = positions_.constFind(bookmark);
    if (known != positions_.cend())
        return *known;
    // After the data set's own writes the place follows by arithmetic; a selection sorted
    // again after an edit asks this for every bookmark it holds.
    qint64 position = translated(b.generation, b.position);
    if (position == -2) {
        if (b.keys.isEmpty() || !source_->HasKeys())
            return -1; // without a key a record cannot be told again once the rows were read anew
        position = source_->PositionOf(b.keys);
    }
    positions_.insert(bookmark, position);
    return position;
}

qint64 TCustomSQLDataSet::translated(quint64 generation, qint64 position) const
{
    auto shift = std::find_if(shifts_.cbegin(), shifts_.cend(),
                              [generation](const Shift &s) { return s.generation == generation + 1; });
    if (shift == shifts_.cend() || generation_ - generation != quint64(shifts_.cend() - shift))
        return -2;
    for (; shift != shifts_.cend(); ++shift) {
        if (position == shift->from) {
            position = shift->to;
            if (position < 0)
                return -1;
            continue;
        }
        if (shift->from >= 0 && position > shift->from)
            --position;
        if (shift->to >= 0 && position >= shift->to)
            ++position;
    }
    return position;
}

void TCustomSQLDataSet::InternalGotoBookmark(const TBookmark &bookmark)
{
    const qint64 position = positionOf(bookmark);
    if (position < 0)
        DatabaseError(keyOfRow_.isEmpty() ? tr("The record cannot be found again: the data set has no key fields")
                                          : DBConsts::SRecordNotFound(),
                      this);
    pos_ = position;
}

void TCustomSQLDataSet::InternalSetToRecord(TRecordBuffer &buffer)
{
    if (buffer.flag == bfCurrent)
        pos_ = buffer.row;
    else
        InternalGotoBookmark(buffer.bookmark);
}

TBookmark TCustomSQLDataSet::GetBookmarkData(const TRecordBuffer &buffer) const
{
    if (buffer.flag != bfCurrent)
        return buffer.bookmark;
    TBookmark bookmark;
    QDataStream out(&bookmark, QIODevice::WriteOnly);
    out << quint8(1) << generation_ << buffer.row << keyValuesAt(buffer.row);
    return bookmark;
}

int TCustomSQLDataSet::CompareBookmarks(const TBookmark &a, const TBookmark &b) const
{
    if (a.isEmpty() || b.isEmpty())
        return TDataSet::CompareBookmarks(a, b);
    SQLBookmark x, y;
    qint64 pa, pb;
    if (SQLBookmark::Read(a, x) && SQLBookmark::Read(b, y) && x.generation == generation_ && y.generation == generation_) {
        pa = x.position;
        pb = y.position;
    } else {
        pa = positionOf(a);
        pb = positionOf(b);
    }
    return pa < pb ? -1 : (pa > pb ? 1 : 0);
}

const Variant *TCustomSQLDataSet::PeekFieldData(TField *field, const TRecordBuffer &buffer) const
{
    const int no = field->FieldNo();
    if (buffer.row == ProbeRow && no > 0 && size_t(no) <= probe_.size())
        return &probe_[size_t(no - 1)];
    if (no <= 0 || no > width() || buffer.row < 0)
        return nullptr;
    const Variant *r = row(buffer.row);
    return r ? &r[no - 1] : nullptr;
}

bool TCustomSQLDataSet::FetchFieldData(TField *field, TRecordBuffer &buffer, Variant &value)
{
    const Variant *v = PeekFieldData(field, buffer);
    if (!v)
        return false;
    value = *v;
    return !value.IsClear();
}

int TCustomSQLDataSet::RecordCount() const
{
    return Active() ? int(qMin<qint64>(count(), std::numeric_limits<int>::max())) : 0;
}

bool TCustomSQLDataSet::RecordCountKnown() const
{
    return !Active() || count_ >= 0 || !source_ || source_->KnownCount() >= 0;
}

int TCustomSQLDataSet::RecNo() const
{
    if (!Active() || IsEmpty() || State() == dsInsert)
        return -1;
    const TRecordBuffer *buffer = const_cast<TCustomSQLDataSet *>(this)->CurrentRecBuf();
    return buffer && buffer->flag == bfCurrent ? int(buffer->row) + 1 : -1;
}

void TCustomSQLDataSet::SetRecNo(int recNo)
{
    CheckBrowseMode();
    const qint64 total = count();
    if (total == 0)
        return;
    recNo = int(qBound(qint64(1), qint64(recNo), total));
    if (recNo == RecNo())
        return;
    const NavigationScope moving(this);
    DoBeforeScroll();
    pos_ = recNo - 1;
    Resync({rmCenter});
    DoAfterScroll();
}

bool TCustomSQLDataSet::BookmarkValid(const TBookmark &bookmark) const
{
    if (!Active())
        return false;
    try {
        return positionOf(bookmark) >= 0;
    } catch (const Exception &) {
        return false;
    }
}

bool TCustomSQLDataSet::LongestText(TField *field, QString &text) const
{
    const int no = field ? field->FieldNo() : 0;
    if (!source_ || field->FieldKind() != fkData || no <= 0 || columnOfField_.value(no - 1, -1) < 0)
        return false;
    try {
        text = source_->LongestText(columnOfField_[no - 1]).ToString();
        return true;
    } catch (const EDatabaseError &) {
        return false; // a type the database cannot turn into text: measured from the rows shown
    }
}

bool TCustomSQLDataSet::DistinctValues(const TDistinctRequest &request, QList<TDistinctValue> &values)
{
    TField *field = request.Field;
    const int no = field && field->DataSet() == this ? field->FieldNo() : 0;
    if (!source_ || clientFiltering() || field->FieldKind() != fkData || no <= 0 || columnOfField_.value(no - 1, -1) < 0)
        return false;
    const TSQLDialect dialect = connection_->Dialect();
    QVariant after;
    if (request.After && !request.AfterValue.IsClear())
        after = ToDatabase(request.AfterValue, field, dialect);
    SQLCondition texts;
    if (request.TextsRule != 0) {
        TFilterRecordMatch match;
        match.Items << TFieldTextMatch{field->FieldName(), request.Texts};
        const auto quote = [this](const QString &name) { return Quote(name); };
        if (!TextMatchToSQL(match, this, dialect, quote, texts))
            return false;
        // A row the texts' test cannot tell (NULL) is no row of theirs.
        if (request.TextsRule < 0)
            texts.text = QStringLiteral("NOT COALESCE((%1), FALSE)").arg(texts.text);
    }
    if (request.Until && !request.UntilValue.IsClear()) {
        // NULL sorts first, so it is never beyond the bound.
        const QString c = Quote(field->FieldName());
        const QString until = QStringLiteral("(%1 IS NULL OR %1 <= ?)").arg(c);
        texts.text = texts.text.isEmpty() ? until : QStringLiteral("(%1) AND %2").arg(texts.text, until);
        texts.params << ToDatabase(request.UntilValue, field, dialect);
    }
    SQLRows rows;
    source_->DistinctValues(columnOfField_[no - 1], request.After ? &after : nullptr, request.Prefix, texts, request.Limit,
                            rows);
    values.clear();
    for (size_t i = 0; i + 1 < rows.values.size(); i += 2) {
        const Variant &v = rows.values[i];
        values << TDistinctValue{v.IsClear() ? v : FromDatabase(v, field, dialect), rows.values[i + 1].ToInt64()};
    }
    return true;
}

int TCustomSQLDataSet::OrderComputations() const
{
    return source_ ? source_->IndexBuilds() : 0;
}

void TCustomSQLDataSet::reread(const QList<QVariant> &keep)
{
    source_->Reset();
    dropCache();
    ++generation_;
    positions_.clear();
    shifts_.clear();
    OrderChanged();
    if (!keep.isEmpty()) {
        const qint64 at = source_->PositionOf(keep);
        if (at >= 0)
            pos_ = at;
    }
}

void TCustomSQLDataSet::rowsWritten(qint64 position, const QList<QVariant> &written)
{
    dropCache();
    ++generation_;
    positions_.clear();
    const qint64 at = source_->Written(position, written);
    if (at >= 0)
        pos_ = at;
    shifts_.push_back({generation_, position, written.isEmpty() ? -1 : at});
    if (shifts_.size() > MaxShifts)
        shifts_.pop_front();
    // An edit may move its record; an insert or a delete leaves the others in their order.
    if (position >= 0 && !written.isEmpty())
        OrderChanged();
}

void TCustomSQLDataSet::releaseLater() const
{
    // A statement left open would hold a read lock; the walk that needs it is over once
    // control is back in the event loop.
    if (releasePosted_)
        return;
    releasePosted_ = true;
    auto *self = const_cast<TCustomSQLDataSet *>(this);
    QMetaObject::invokeMethod(
        self,
        [self] {
            self->releasePosted_ = false;
            if (self->source_ && self->source_->Busy())
                self->releaseLater(); // a read is waiting: after it
            else if (self->source_)
                self->source_->Pause();
        },
        Qt::QueuedConnection);
}

bool TCustomSQLDataSet::GetCanModify() const
{
    return !readOnly_ && !UpdateTableName().isEmpty();
}

void TCustomSQLDataSet::InternalRefresh()
{
    reread(pos_ >= 0 ? keyValuesAt(pos_) : QList<QVariant>());
}

void TCustomSQLDataSet::Reorder()
{
    CheckBrowseMode();
    const QList<QVariant> keep = BookmarkAvailable() ? keyValuesAt(ActiveBuffer().row) : QList<QVariant>();
    const qint64 rows = source_ ? source_->KnownCount() : -1;
    openSource();
    if (rows >= 0) // the same rows in another order
        source_->AssumeCount(rows);
    pos_ = -1;
    if (!keep.isEmpty()) {
        const qint64 at = source_->PositionOf(keep);
        if (at >= 0)
            pos_ = at;
    }
    if (pos_ >= 0) {
        Resync({});
        return;
    }
    First();
}

void TCustomSQLDataSet::FilterChanged()
{
    CheckBrowseMode();
    openSource();
    First();
}

} // namespace qdb

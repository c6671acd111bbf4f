#include "SQLDataSet.h"

#include "SQLFilter.h"
#include "SQLRowSource.h"
#include "SQLText.h"
#include "SQLTypes.h"

#include "platform/db/DBConsts.h"
#include "platform/db/FilterExpression.h"
#include "platform/rtl/Exceptions.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlQuery>
#include <QSqlRecord>

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

TCustomSQLDataSet::TCustomSQLDataSet(QObject *parent) : TDataSet(parent) {}

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
    QList<QVariant> params;
    for (const Variant &p : SelectParams())
        params << p.ToQVariant();
    QString sql = StripSemicolon(SelectSQL());
    if (Filtered() && !Filter().trimmed().isEmpty() && FieldList().Count() > 0) {
        FilterExpression expr(Filter());
        expr.Bind(this, FilterOptions());
        const SQLCondition where = FilterToSQL(expr, FilterOptions(), connection_->Dialect(),
                                               [this](const QString &name) { return Quote(name); });
        const auto [body, order] = SplitOrderBy(sql);
        QStringList outerOrder;
        static const QRegularExpression qualifier(QStringLiteral("^\\s*(?:\"[^\"]+\"|[\\w]+)\\s*\\.\\s*"));
        for (const QString &item : order.split(QLatin1Char(','), Qt::SkipEmptyParts))
            outerOrder << QString(item).remove(qualifier).trimmed();
        sql = QStringLiteral("SELECT * FROM (%1) qdb_filter WHERE %2").arg(body, where.text);
        if (!outerOrder.isEmpty())
            sql += QStringLiteral(" ORDER BY ") + outerOrder.join(QStringLiteral(", "));
        params += where.params;
    }
    source_.reset();
    source_ = SQLRowSource::Create(connection_, sql, params);
    dropCache();
}

void TCustomSQLDataSet::InternalOpen()
{
    openSource();
    const bool refilter = Filtered() && !Filter().trimmed().isEmpty() && FieldList().Count() == 0;
    InitFieldsAndBind();
    columnOfField_.clear();
    const QSqlRecord record = source_->Record();
    for (TField *f : FieldList()) {
        if (f->FieldNo() <= 0)
            continue;
        while (columnOfField_.size() < f->FieldNo())
            columnOfField_ << -1;
        columnOfField_[f->FieldNo() - 1] = record.indexOf(f->FieldName());
    }
    if (refilter) // the filter needed the fields: open once more with it
        openSource();
    pos_ = -1;
}

void TCustomSQLDataSet::InternalClose()
{
    source_.reset();
    dropCache();
    columnOfField_.clear();
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
        SQLRows raw;
        source_->Fetch(pageNo * PageSize, PageSize, raw);
        if (raw.Count() < size_t(PageSize)) // the end of the result is known now
            count_ = pageNo * PageSize + qint64(raw.Count());
        Page page;
        page.rows = raw.Count();
        page.values.resize(page.rows * size_t(width()), Variant::Null());
        const TSQLDialect dialect = connection_->Dialect();
        for (TField *f : FieldList()) {
            const int no = f->FieldNo();
            const int column = no > 0 ? columnOfField_.value(no - 1, -1) : -1;
            if (column < 0)
                continue;
            for (size_t r = 0; r < page.rows; ++r)
                page.values[r * size_t(width()) + size_t(no - 1)] =
                    FromDatabase(std::move(raw.values[r * size_t(raw.columns) + size_t(column)]), f, dialect);
        }
        if (pages_.size() >= MaxPages) { // the page looked at longest ago goes
            auto oldest = pages_.begin();
            for (auto p = pages_.begin(); p != pages_.end(); ++p)
                if (p->second.used < oldest->second.used)
                    oldest = p;
            pages_.erase(oldest);
        }
        it = pages_.emplace(pageNo, std::move(page)).first;
    }
    it->second.used = ++useClock_;
    lastPage_ = &it->second;
    lastPageNo_ = pageNo;
    const size_t index = size_t(position % PageSize);
    return index < it->second.rows ? &it->second.values[index * size_t(width())] : nullptr;
}

int TCustomSQLDataSet::CachedRows() const
{
    int rows = 0;
    for (const auto &p : pages_)
        rows += int(p.second.rows);
    return rows;
}

bool TCustomSQLDataSet::LocateRecord(const QList<TField *> &fields, const Variant &keyValues, TLocateOptions options,
                                     bool syncCursor)
{
    // Rows the client filter hides, partial or case-blind matches and lookups (which want
    // the record in a buffer) take the general walk.
    bool direct = source_ && syncCursor && options == TLocateOptions{} && !(Filtered() && OnFilterRecord());
    QList<int> columns;
    QList<QVariant> values;
    const Variant::Array *array = fields.size() > 1 && keyValues.IsArray() ? &keyValues.ToArray() : nullptr;
    if (fields.size() > 1 && (!array || array->size() != fields.size()))
        direct = false;
    for (int i = 0; direct && i < fields.size(); ++i) {
        TField *f = fields[i];
        const int slot = f->FieldNo() - 1;
        direct = f->FieldKind() == fkData && slot >= 0 && slot < columnOfField_.size();
        if (direct) {
            columns << columnOfField_[slot];
            values << ToDatabase(array ? array->at(i) : keyValues, f, connection_->Dialect());
        }
    }
    if (direct) {
        CheckBrowseMode();
        CursorPosChanged();
        const qint64 found = source_->Find(columns, values);
        if (found >= 0) {
            pos_ = found;
            return true;
        }
        if (found == -1)
            return false;
    }
    return TDataSet::LocateRecord(fields, keyValues, options, syncCursor);
}

bool TCustomSQLDataSet::clientFilterAccepts(TRecordBuffer &buffer)
{
    if (!Filtered() || !OnFilterRecord())
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

void TCustomSQLDataSet::InternalGotoBookmark(const TBookmark &bookmark)
{
    pos_ = RowFromBookmark(bookmark);
}

void TCustomSQLDataSet::InternalSetToRecord(TRecordBuffer &buffer)
{
    pos_ = buffer.flag == bfCurrent ? buffer.row : RowFromBookmark(buffer.bookmark);
}

TBookmark TCustomSQLDataSet::GetBookmarkData(const TRecordBuffer &buffer) const
{
    return buffer.flag == bfCurrent ? BookmarkFromRow(buffer.row) : buffer.bookmark;
}

const Variant *TCustomSQLDataSet::PeekFieldData(TField *field, const TRecordBuffer &buffer) const
{
    const int no = field->FieldNo();
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
    DoBeforeScroll();
    pos_ = recNo - 1;
    Resync({rmCenter});
    DoAfterScroll();
}

bool TCustomSQLDataSet::BookmarkValid(const TBookmark &bookmark) const
{
    const qint64 pos = RowFromBookmark(bookmark);
    return Active() && pos >= 0 && pos < count();
}

bool TCustomSQLDataSet::GetCanModify() const
{
    return !readOnly_ && !UpdateTableName().isEmpty();
}

void TCustomSQLDataSet::InternalRefresh()
{
    source_->Reset();
    dropCache();
}

void TCustomSQLDataSet::FilterChanged()
{
    CheckBrowseMode();
    openSource();
    First();
}

} // namespace qdb

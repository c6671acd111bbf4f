#include "QDBColumns.h"

#include "QDBGrid.h"

#include "filter/QDBFilterConsts.h"
#include "filter/QDBGridFilter.h"
#include "platform/db/DataSet.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Format.h"
#include "platform/rtl/Conversions.h"

#include <QCoreApplication>
#include <QFontMetrics>

namespace qdb {

// ---- TQColumnTitle ----

TQColumnTitle::TQColumnTitle(TQColumn *column) : QObject(column), column_(column) {}

QString TQColumnTitle::DefaultCaption() const
{
    TField *f = column_->MeasuredField();
    return f ? f->DisplayName() : column_->GetFieldName();
}

QString TQColumnTitle::GetCaption() const
{
    return column_->assigned_.Contains(cvTitleCaption) ? caption_ : DefaultCaption();
}

void TQColumnTitle::SetCaption(const QString &caption)
{
    caption_ = caption;
    column_->assigned_ += cvTitleCaption;
    column_->changed();
}

TAlignment TQColumnTitle::GetAlignment() const
{
    return column_->assigned_.Contains(cvTitleAlignment) ? alignment_ : DefaultAlignment();
}

void TQColumnTitle::SetAlignment(TAlignment alignment)
{
    alignment_ = alignment;
    column_->assigned_ += cvTitleAlignment;
    column_->changed();
}

QFont TQColumnTitle::DefaultFont() const
{
    TQCustomDBGrid *grid = column_->GetGrid();
    return grid ? grid->GetTitleFont() : QFont();
}

QFont TQColumnTitle::GetFont() const
{
    return column_->assigned_.Contains(cvTitleFont) ? font_ : DefaultFont();
}

void TQColumnTitle::SetFont(const QFont &font)
{
    font_ = font;
    column_->assigned_ += cvTitleFont;
    column_->changed();
}

void TQColumnTitle::SetHeader(const QString &header)
{
    if (header_ == header)
        return;
    header_ = header;
    column_->LayoutChanged();
}

QColor TQColumnTitle::DefaultColor() const
{
    TQCustomDBGrid *grid = column_->GetGrid();
    return grid ? grid->FixedFaceColor() : QColor(Qt::lightGray);
}

QColor TQColumnTitle::GetColor() const
{
    return column_->assigned_.Contains(cvTitleColor) ? color_ : DefaultColor();
}

void TQColumnTitle::SetColor(const QColor &color)
{
    color_ = color;
    column_->assigned_ += cvTitleColor;
    column_->changed();
}

bool TQColumnTitle::IsColorStored() const { return column_->assigned_.Contains(cvTitleColor); }
bool TQColumnTitle::IsCaptionStored() const { return column_->assigned_.Contains(cvTitleCaption); }
bool TQColumnTitle::IsAlignmentStored() const { return column_->assigned_.Contains(cvTitleAlignment); }
bool TQColumnTitle::IsFontStored() const { return column_->assigned_.Contains(cvTitleFont); }

QString TQColumnTitle::GetHeader() const
{
    const TQColumn *parent = column_->GetParentColumn();
    TQCustomDBGrid *grid = column_->GetGrid();
    if (!parent || !grid || !grid->GetColumnNesting())
        return header_;
    const QString parentPath = parent->GetTitle()->GetHeader();
    const QString parentCaption = parent->GetTitle()->GetCaption();
    QString path = parentPath.isEmpty() ? parentCaption : parentPath + QLatin1Char('|') + parentCaption;
    if (path.isEmpty())
        path = QStringLiteral(" ");
    if (!header_.isEmpty())
        path += QLatin1Char('|') + header_;
    return path;
}

int TQColumnTitle::GetHeaderRowCount() const
{
    const QString path = GetHeader();
    return path.isEmpty() ? 0 : 1 + int(path.count(QLatin1Char('|')));
}

namespace {

// Walks from a column to its showing neighbours while they share the header cell of a row.
TQColumn *headerEnd(const TQColumn *column, int row, int step)
{
    const TQColumnTitle *title = column->GetTitle();
    auto *columns = qobject_cast<TQDBGridColumns *>(column->Collection());
    if (!columns || row < 0 || row >= title->GetHeaderRowCount())
        return const_cast<TQColumn *>(column);
    const QString text = title->GetHeaderRows(row);
    TQColumn *end = const_cast<TQColumn *>(column);
    for (int i = column->Index() + step; i >= 0 && i < columns->Count(); i += step) {
        TQColumn *next = columns->Items(i);
        if (!next->Showing())
            continue;
        if (row >= next->GetTitle()->GetHeaderRowCount() || next->GetTitle()->GetHeaderRows(row) != text)
            break;
        end = next;
    }
    return end;
}

} // namespace

TQColumn *TQColumnTitle::HeaderLeft(int row) const
{
    return headerEnd(column_, row, -1);
}

TQColumn *TQColumnTitle::HeaderRight(int row) const
{
    return headerEnd(column_, row, 1);
}

QString TQColumnTitle::GetHeaderText(const QString &path, int row)
{
    const QStringList segments = path.split(QLatin1Char('|'));
    return row >= 0 && row < segments.size() ? segments[row] : QString();
}

// ---- TQColumn ----

TQColumnReport::TQColumnReport(QObject *parent) : QObject(parent)
{
    RegisterSetType<TDialogOption>();
}

void TQColumnReport::RestoreDefaults()
{
    AutoHeight = false;
    DialogOptions = {doShowColumn, doItemEnabled};
    TotalMask.clear();
    TotalText.clear();
    TotalType = ttNone;
    Visible = true;
}

TQColumn::TQColumn(TCollection *collection)
    : TCollectionItem(collection), title_(new TQColumnTitle(this)), report_(new TQColumnReport(this)),
      totalHeader_(new TQColumnTotalHeader(this)), totalValues_(new TQColumnTotalValues(this)),
      totalFields_(new TQColumnTotalFields(this)), totalFooter_(new TQColumnTotalFooter(this)),
      filterList_(new TStringList(this)), lookupListFields_(new TStringList(this)), pickList_(new TStringList(this)), pickText_(new TStringList(this))
{
    RegisterSetType<TQListOption>();
    RegisterSetType<TQPickOption>();
    RegisterSetType<TFilterStyle>();
    auto *ticked = static_cast<TStringList *>(filterList_);
    ticked->SetSorted(true);
    ticked->SetStrictDelimiter(true);
    ticked->OnChange = [this](TObject *) { filterChanged(); };
}

void TQColumn::filterChanged()
{
    TQCustomDBGrid *grid = GetGrid();
    if (grid && !grid->IsLoading())
        grid->GetFilterGrid()->FilterChanged();
}

void TQColumn::ChangeFilter(const QString &text, bool clearList)
{
    const bool listChanges = clearList && filterList_->Count() > 0;
    if (text == filterText_ && !listChanges)
        return;
    TQCustomDBGrid *grid = GetGrid();
    TQDBGridFilter *filter = grid && !grid->IsLoading() ? grid->GetFilterGrid() : nullptr;
    if (!filter) {
        filterText_ = text;
        if (listChanges)
            filterList_->Clear();
        return;
    }
    const QString previousText = filterText_;
    const QStringList previousList = filterList_->ToStringList();
    auto put = [&](const QString &t, const QStringList *list) {
        filter->BeginFilterChange();
        filterText_ = t;
        if (list) {
            filterList_->BeginUpdate();
            filterList_->Clear();
            filterList_->AddStrings(*list);
            filterList_->EndUpdate();
        }
        filter->EndFilterChange();
    };
    const QStringList none;
    try {
        put(text, listChanges ? &none : nullptr);
    } catch (const Exception &) {
        try {
            put(previousText, listChanges ? &previousList : nullptr);
        } catch (...) {
        }
        DatabaseError(Format(FilterConsts::SInvalidFilterExpression(), {text}));
    }
}

TField *TQColumn::FilterField() const
{
    TField *f = GetField();
    if (f && f->Lookup() && f->DataSet())
        if (TField *key = f->DataSet()->FindField(GetKeyField().section(QLatin1Char(';'), 0, 0).trimmed()))
            return key;
    return f;
}

QColor TQColumn::DefaultColor() const
{
    TQCustomDBGrid *grid = GetGrid();
    return grid ? grid->CellColor() : QColor(Qt::white);
}

QColor TQColumn::GetColor() const
{
    return assigned_.Contains(cvColor) ? color_ : DefaultColor();
}

void TQColumn::SetColor(const QColor &color)
{
    color_ = color;
    assigned_ += cvColor;
    changed();
}

TQCustomDBGrid *TQColumn::GetGrid() const
{
    // Painting asks for every cell: the cast is made again only when the column moves.
    if (Collection() != gridCollection_) {
        gridCollection_ = Collection();
        auto *columns = qobject_cast<TQDBGridColumns *>(gridCollection_);
        grid_ = columns ? columns->Grid() : nullptr;
    }
    return grid_;
}

TField *TQColumn::GetField() const
{
    TQCustomDBGrid *grid = GetGrid();
    if (!grid)
        return attached_;
    TDataSet *ds = grid->DataSet();
    if (!ds || fieldName_.isEmpty())
        return nullptr;
    // The field found last serves while it lives in the same data set.
    if (!field_ || field_->DataSet() != ds)
        field_ = ds->FindField(fieldName_);
    return field_;
}

void TQColumn::RestoreAssigned(TQColumnValues values)
{
    assigned_ = values;
    changed();
}

void TQColumn::changed()
{
    Changed(false);
}

void TQColumn::SetFieldName(const QString &name)
{
    if (fieldName_ == name)
        return;
    fieldName_ = name;
    field_ = nullptr;
    Changed(true);
}

TField *TQColumn::MeasuredField() const
{
    TField *f = GetField();
    if (f && GetLookupColumn() == lcLookupValueField)
        if (TField *result = GetLookupDataSet()->FindField(GetLookupResultField()))
            return result;
    return f;
}

TQLookupColumn TQColumn::GetLookupColumn() const
{
    TField *f = GetField();
    if (!f)
        return lcNotDefined;
    if (f->Lookup())
        return lcLookupField;
    if (!GetLookupDataSet() || GetLookupKeyField().isEmpty())
        return lcNotDefined;
    if (GetKeyField().compare(fieldName_, Qt::CaseInsensitive) != 0)
        return GetLookupResultField().isEmpty() ? lcNotDefined : lcLookupResultField;
    return GetLookupKeyField().compare(GetLookupResultField(), Qt::CaseInsensitive) == 0 ? lcLookupKeyField
                                                                                          : lcLookupValueField;
}

bool TQColumn::fieldSuppliesLookup() const
{
    TField *f = GetField();
    return f && f->Lookup();
}

TDataSet *TQColumn::GetLookupDataSet() const
{
    return fieldSuppliesLookup() ? GetField()->LookupDataSet() : lookupDataSet_.data();
}

void TQColumn::SetLookupDataSet(TDataSet *dataSet)
{
    if (lookupDataSet_ == dataSet)
        return;
    lookupDataSet_ = dataSet;
    changed();
}

QString TQColumn::GetKeyField() const
{
    return fieldSuppliesLookup() ? GetField()->KeyFields() : keyField_;
}

QString TQColumn::GetLookupKeyField() const
{
    return fieldSuppliesLookup() ? GetField()->LookupKeyFields() : lookupKeyField_;
}

QString TQColumn::GetLookupResultField() const
{
    return fieldSuppliesLookup() ? GetField()->LookupResultField() : lookupResultField_;
}

int TQColumn::DefaultWidth() const
{
    TQCustomDBGrid *grid = GetGrid();
    if (!grid)
        return 64;
    TField *f = MeasuredField();
    if (!f)
        return grid->DefaultColWidth();
    const QFontMetrics fm(GetFont());
    int w = f->DisplayWidth() * fm.horizontalAdvance(QLatin1Char('0')) + 4;
    const TQDBGridOptions options = grid->GetOptions();
    if (options.Contains(dgTitles) && !options.Contains(dgTitleWidthOff)) {
        const QFontMetrics tfm(title_->GetFont());
        w = qMax(w, tfm.horizontalAdvance(title_->GetCaption()) + 4 + 2 * grid->GetGridStyle()->TitleColMargin);
    }
    if (grid->GetDefaultWidthMin() >= 0)
        w = qMax(w, grid->GetDefaultWidthMin());
    if (grid->GetDefaultWidthMax() >= 0)
        w = qMin(w, grid->GetDefaultWidthMax());
    return w;
}

int TQColumn::GetWidth() const
{
    TQCustomDBGrid *grid = GetGrid();
    if (!grid)
        return -1;
    const bool persisting = grid->IsDesigning() || grid->IsSavingColumns();
    if (!Showing() && !persisting)
        return -grid->GridLineWidth(); // a hidden column takes no room, line included
    if (grid->StretchActive()) {
        if (persisting)
            return GetWidthBase(); // the weights are kept, not the stretched widths
        if (stretchWidth_ >= 0)
            return stretchWidth_;
    }
    return assigned_.Contains(cvWidth) ? width_ : DefaultWidth();
}

void TQColumn::SetWidth(int width)
{
    TField *field = GetField();
    if (!stored_ && field) {
        // A column the grid made from a field keeps its width in the field, in characters,
        // where the next layout reads it back.
        const QFontMetrics fm(GetFont());
        const int c = fm.horizontalAdvance(QLatin1Char('0'));
        const int avg = qMax(1, fm.averageCharWidth());
        field->SetDisplayWidth(qMax(0, c > 0 ? (width + c / 2 - 4) / c : (width + avg / 2 - 3) / avg));
        if (!assigned_.Contains(cvWidth)) {
            Synchronize();
            return;
        }
    }
    if (widthMin_ != -1 && width < widthMin_)
        width = widthMin_;
    else if (widthMax_ != -1 && width > widthMax_)
        width = widthMax_;
    if (!assigned_.Contains(cvWidth) && width == DefaultWidth())
        return;
    TQCustomDBGrid *grid = GetGrid();
    const bool colLines = grid && grid->GetOptions().Contains(dgColLines);
    if (width < (colLines ? 0 : 1))
        return;
    if (grid && grid->StretchActive() && !grid->Stretching()) {
        // A width dragged on a stretching grid becomes the weight that yields it.
        if (width != GetWidth() && grid->StretchBaseSum() >= 1 && grid->StretchWidthLeft() >= 1)
            widthBase_ = int(qint64(width) * grid->StretchBaseSum() / grid->StretchWidthLeft());
    } else {
        widthBase_ = -1; // a width the user gives is the new weight too
    }
    width_ = width;
    assigned_ += cvWidth;
    changed();
    if (grid && grid->StretchActive())
        grid->StretchGrid(); // the others give or take the difference
    Synchronize();
}

int TQColumn::GetWidthBase() const
{
    if (widthBase_ >= 0)
        return widthBase_;
    return assigned_.Contains(cvWidth) ? width_ : DefaultWidth();
}

void TQColumn::SetWidthBase(int width)
{
    SetWidth(width);
    widthBase_ = qMax(0, width);
}

void TQColumn::ScaleWidth(int multiplier, int divisor)
{
    const auto scaled = [&](int value) { return MulDiv(value, multiplier, divisor); };
    const int base = widthBase_;
    SetWidth(scaled(width_));
    if (base >= 0)
        widthBase_ = scaled(base);
}

TImeMode TQColumn::DefaultImeMode() const
{
    TQCustomDBGrid *grid = GetGrid();
    return grid ? grid->GetImeMode() : imDontCare;
}

TImeMode TQColumn::GetImeMode() const
{
    return assigned_.Contains(cvImeMode) ? imeMode_ : DefaultImeMode();
}

void TQColumn::SetImeMode(TImeMode mode)
{
    imeMode_ = mode;
    assigned_ += cvImeMode;
}

QString TQColumn::DefaultImeName() const
{
    TQCustomDBGrid *grid = GetGrid();
    return grid ? grid->GetImeName() : QString();
}

QString TQColumn::GetImeName() const
{
    return assigned_.Contains(cvImeName) ? imeName_ : DefaultImeName();
}

void TQColumn::SetImeName(const QString &name)
{
    imeName_ = name;
    assigned_ += cvImeName;
}

void TQColumn::Synchronize()
{
    TQCustomDBGrid *grid = GetGrid();
    if (!grid || fieldName_.isEmpty())
        return;
    for (TQCustomDBGrid *slave : grid->SlaveGrids())
        if (TQColumn *theirs = slave->GetColumns()->FindColumn(fieldName_); theirs && theirs->GetWidth() != GetWidth())
            theirs->SetWidth(GetWidth());
}

TAlignment TQColumn::DefaultAlignment() const
{
    TField *f = GetField();
    return f ? f->Alignment() : taLeftJustify;
}

TAlignment TQColumn::GetAlignment() const
{
    return assigned_.Contains(cvAlignment) ? alignment_ : DefaultAlignment();
}

void TQColumn::SetAlignment(TAlignment alignment)
{
    alignment_ = alignment;
    assigned_ += cvAlignment;
    changed();
}

bool TQColumn::DefaultReadOnly() const
{
    TField *f = GetField();
    return f && f->ReadOnly();
}

bool TQColumn::GetReadOnly() const
{
    return assigned_.Contains(cvReadOnly) ? readOnly_ : DefaultReadOnly();
}

void TQColumn::SetReadOnly(bool on)
{
    readOnly_ = on;
    assigned_ += cvReadOnly;
    changed();
}

QFont TQColumn::DefaultFont() const
{
    TQCustomDBGrid *grid = GetGrid();
    return grid ? grid->font() : QFont();
}

QFont TQColumn::GetFont() const
{
    return assigned_.Contains(cvFont) ? font_ : DefaultFont();
}

void TQColumn::SetFont(const QFont &font)
{
    font_ = font;
    assigned_ += cvFont;
    changed();
}

void TQColumn::SetVisible(bool on)
{
    if (visible_ == on)
        return;
    visible_ = on;
    Changed(true);
}

void TQColumn::SetExpandCols(int n)
{
    if (expandCols_ == n)
        return;
    expandCols_ = qMax(0, n);
    Changed(true);
}

bool TQColumn::Expandable() const
{
    TField *f = GetField();
    return (f && (f->DataType() == ftADT || f->DataType() == ftArray)) || expandCols_ >= 1;
}

bool TQColumn::GetExpanded() const
{
    return Expandable() && expanded_;
}

void TQColumn::SetExpanded(bool on)
{
    if (expanded_ == on)
        return;
    expanded_ = on;
    Changed(true);
}

void TQColumn::RestoreDefaults()
{
    assigned_ = {};
    Changed(false);
}

TQColumn *TQColumn::GetParentColumn() const
{
    auto *columns = qobject_cast<TQDBGridColumns *>(Collection());
    if (!columns)
        return nullptr;
    const int index = Index();
    TField *f = GetField();
    if (f && f->ParentField()) {
        for (int i = index - 1; i >= 0; --i)
            if (columns->Items(i)->GetField() == f->ParentField())
                return columns->Items(i);
        return nullptr;
    }
    for (int i = index - 1; i >= 0; --i) {
        TQColumn *c = columns->Items(i);
        if (c->GetExpandCols() >= index - i)
            return c;
        if (i == 0 || !c->GetParentColumn())
            break;
    }
    return nullptr;
}

void TQColumn::ToggleExpandBox()
{
    if (Expandable())
        SetExpanded(!GetExpanded());
}

void TQColumn::MoveTo(int index)
{
    auto *columns = qobject_cast<TQDBGridColumns *>(Collection());
    if (!columns)
        return;
    // The block is the column and every following column that descends from it.
    const int from = Index();
    int last = from;
    while (last + 1 < columns->Count()) {
        const TQColumn *next = columns->Items(last + 1);
        const TQColumn *p = next->GetParentColumn();
        while (p && p != this)
            p = p->GetParentColumn();
        if (!p)
            break;
        ++last;
    }
    const int size = last - from + 1;
    index = qBound(0, index, columns->Count() - size);
    if (index == from)
        return;
    CollectionUpdateGuard update(*columns);
    QList<TQColumn *> block;
    for (int i = from; i <= last; ++i)
        block << columns->Items(i);
    // Moving forward, the last of the block goes first so that the others keep their places.
    if (index > from)
        for (int k = size - 1; k >= 0; --k)
            block[k]->SetIndex(index + k);
    else
        for (int k = 0; k < size; ++k)
            block[k]->SetIndex(index + k);
}

int TQColumn::Depth() const
{
    const TQColumn *parent = GetParentColumn();
    return parent ? parent->Depth() + 1 : 0;
}

bool TQColumn::Showing() const
{
    if (!visible_ || GetExpanded())
        return false;
    for (const TQColumn *p = GetParentColumn(); p; p = p->GetParentColumn())
        if (!p->GetExpanded())
            return false;
    return true;
}

// ---- TQDBGridColumns ----

TQDBGridColumns::TQDBGridColumns(TQCustomDBGrid *grid)
    : TCollectionOf<TQColumn>(
          [grid](TCollection *c) -> TCollectionItem * {
              auto *columns = static_cast<TQDBGridColumns *>(c);
              return grid ? grid->CreateColumns(columns) : new TQColumn(columns);
          },
          grid),
      grid_(grid)
{
}

TDBGridColumnsState TQDBGridColumns::State() const
{
    return Count() > 0 && Items(Count() - 1)->IsStored() ? csCustomized : csDefault;
}

void TQDBGridColumns::SetState(TDBGridColumnsState state)
{
    if (state == State())
        return;
    if (state == csDefault) {
        Clear();
    } else {
        RebuildColumns();
        for (int i = 0; i < Count(); ++i)
            Items(i)->SetStored(true);
    }
}

namespace {

// The fields that default columns show, parents before their children.
QStringList defaultFieldNames(TDataSet *ds)
{
    QStringList names;
    std::function<void(TField *)> add = [&](TField *f) {
        names << f->FullName();
        if (f->DataType() == ftADT || f->DataType() == ftArray)
            for (TField *child : static_cast<TObjectField *>(f)->Fields())
                add(child);
    };
    for (TField *f : ds->Fields())
        if (f->Visible()) // as the grid's own columns, which show the visible fields
            add(f);
    return names;
}

} // namespace

bool TQDBGridColumns::FitFields() const
{
    TDataSet *ds = grid_ ? grid_->DataSet() : nullptr;
    if (!ds)
        return Count() == 0;
    QStringList shown;
    for (TQColumn *c : *this)
        if (!c->GetFieldName().isEmpty())
            shown << c->GetFieldName();
    return shown == defaultFieldNames(ds);
}

void TQDBGridColumns::RebuildColumns()
{
    TDataSet *ds = grid_ ? grid_->DataSet() : nullptr;
    if (!ds) {
        Clear();
        return;
    }
    grid_->BeginLayout();
    try {
        Clear();
        for (const QString &name : defaultFieldNames(ds)) {
            TQColumn *c = Add();
            c->SetFieldName(name);
            c->SetStored(false);
        }
        if (Count() > 0) {
            const TQDBGridOptionsExt ext = grid_->GetOptionsExt();
            if (ext.Contains(dgAutoExpandColumn))
                AddAutoExpand()->SetStored(false);
            if (ext.Contains(dgAutoSelectColumn))
                AddAutoSelect()->SetStored(false);
            if (ext.Contains(dgAutoNumberColumn))
                AddAutoNumber()->SetStored(false);
        }
    } catch (...) {
        grid_->EndLayout();
        throw;
    }
    grid_->EndLayout();
}

void TQDBGridColumns::RestoreDefaults()
{
    CollectionUpdateGuard update(*this);
    for (TQColumn *column : *this)
        column->RestoreDefaults();
}

QString &AutoNumberCaption()
{
    static QString caption = QCoreApplication::translate("qdb", "No.");
    return caption;
}

QString &AutoSelectCaption()
{
    static QString caption = QCoreApplication::translate("qdb", "Select");
    return caption;
}

QString &AutoExpandCaption()
{
    static QString caption = QCoreApplication::translate("qdb", "Expand");
    return caption;
}

int &AutoColumnWidth()
{
    static int width = 48;
    return width;
}

namespace {

TQColumn *addAutoColumn(TQDBGridColumns &columns, const QString &caption, TAlignment alignment)
{
    CollectionUpdateGuard update(columns);
    TQColumn *column = columns.Add();
    column->SetIndex(0);
    column->SetSuppressRTL(true);
    column->SetAlignment(alignment);
    column->GetTitle()->SetCaption(caption);
    column->GetTitle()->SetAlignment(alignment == taRightJustify ? taRightJustify : taCenter);
    TQCustomDBGrid *grid = columns.Grid();
    if (grid && grid->DataLink()->Active())
        column->SetWidth(AutoColumnWidth());
    return column;
}

} // namespace

TQColumn *TQDBGridColumns::AddAutoNumber()
{
    TQColumn *column = addAutoColumn(*this, AutoNumberCaption(), taRightJustify);
    column->SetAutoNumber(true);
    return column;
}

TQColumn *TQDBGridColumns::AddAutoSelect()
{
    TQColumn *column = addAutoColumn(*this, AutoSelectCaption(), taCenter);
    column->SetCheckBox(true);
    return column;
}

TQColumn *TQDBGridColumns::AddAutoExpand()
{
    TQColumn *column = addAutoColumn(*this, AutoExpandCaption(), taCenter);
    column->SetExpandBox(true);
    column->SetExpandBoxSize(ebLarge);
    column->SetTransparent(true);
    return column;
}

TQColumn *TQDBGridColumns::FindColumn(const QString &fieldName, int from) const
{
    for (int i = qMax(0, from); i < Count(); ++i)
        if (Items(i)->GetFieldName().compare(fieldName, Qt::CaseInsensitive) == 0)
            return Items(i);
    for (int i = 0; i < qMin(from, Count()); ++i)
        if (Items(i)->GetFieldName().compare(fieldName, Qt::CaseInsensitive) == 0)
            return Items(i);
    return nullptr;
}

void TQDBGridColumns::Update(TCollectionItem *item)
{
    // A collection read from a column file is not yet the grid's: nothing to show.
    if (!grid_ || grid_->GetColumns() != this || grid_->IsLoading())
        return;
    if (auto *column = static_cast<TQColumn *>(item)) {
        const int raw = grid_->DataToRawColumn(column->Index());
        grid_->InvalidateCol(raw);
        grid_->SetColWidths(raw, column->GetWidth());
    } else {
        grid_->LayoutChanged();
    }
}

} // namespace qdb

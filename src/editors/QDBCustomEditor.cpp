// Editors with lists: the free-standing editor keeps its list settings in a column of no
// grid; the column editor uses the grid column it is bound to.

#include "QDBDataEditor.h"

#include "QDBCalculator.h"
#include "QDBCalendar.h"
#include "QDBDataList.h"

#include "grid/QDBGrid.h"

namespace qdb {

TQDBCustomEditor::TQDBCustomEditor(QWidget *parent) : TQDBLabeledEditor(parent), settings_(new TQColumn)
{
    // The free-standing editor stays open after a list closes: there is no cell to leave.
    settings_->SetListOptions(settings_->GetListOptions() - TQListOptions{loAutoCloseEditor});
    SetColumn(settings_);
    // A list of values, or texts for them, change what the editor shows and how it types.
    for (TStrings *list : {settings_->GetPickList(), settings_->GetPickText()})
        list->OnChange = [this](TObject *) { UpdateEditor(); };
}

TQDBCustomEditor::~TQDBCustomEditor()
{
    SetColumn(nullptr);
    delete settings_;
}

TEditorButtonStyle TQDBCustomEditor::GetButtonStyle() const
{
    return ToEditorButtonStyle(settings_->GetButtonStyle());
}

void TQDBCustomEditor::SetButtonStyle(TEditorButtonStyle style)
{
    settings_->SetButtonStyle(TQColumnButtonStyle(style));
    UpdateEditor();
}

TStrings *TQDBCustomEditor::GetPickList() const { return settings_->GetPickList(); }
TStrings *TQDBCustomEditor::GetPickText() const { return settings_->GetPickText(); }
TQPickOptions TQDBCustomEditor::GetPickOptions() const { return settings_->GetPickOptions(); }
TQListOptions TQDBCustomEditor::GetListOptions() const { return settings_->GetListOptions(); }
TDataSet *TQDBCustomEditor::GetLookupDataSet() const { return settings_->GetLookupDataSet(); }
QString TQDBCustomEditor::GetKeyField() const { return settings_->GetKeyField(); }
QString TQDBCustomEditor::GetLookupKeyField() const { return settings_->GetLookupKeyField(); }
QString TQDBCustomEditor::GetLookupResultField() const { return settings_->GetLookupResultField(); }
TStrings *TQDBCustomEditor::GetLookupListFields() const { return settings_->GetLookupListFields(); }
int TQDBCustomEditor::GetDropDownRows() const { return settings_->GetDropDownRows(); }

void TQDBCustomEditor::SetPickOptions(TQPickOptions options)
{
    settings_->SetPickOptions(options);
    UpdateEditor();
}

void TQDBCustomEditor::SetListOptions(TQListOptions options)
{
    settings_->SetListOptions(options);
    UpdateEditor();
}

void TQDBCustomEditor::SetLookupDataSet(TDataSet *dataSet)
{
    settings_->SetLookupDataSet(dataSet);
    UpdateEditor();
}

void TQDBCustomEditor::SetKeyField(const QString &name)
{
    settings_->SetKeyField(name);
    UpdateEditor();
}

void TQDBCustomEditor::SetLookupKeyField(const QString &name)
{
    settings_->SetLookupKeyField(name);
    UpdateEditor();
}

void TQDBCustomEditor::SetLookupResultField(const QString &name)
{
    settings_->SetLookupResultField(name);
    UpdateEditor();
}

void TQDBCustomEditor::SetDropDownRows(int rows)
{
    settings_->SetDropDownRows(rows);
}

void TQDBCustomEditor::SetPickTextFormat(const QString &format)
{
    settings_->SetPickTextFormat(format);
    UpdateEditor();
}

void TQDBCustomEditor::SetDelimiterChar(const QString &delimiter)
{
    settings_->SetDelimiterChar(delimiter);
    UpdateEditor();
}

void TQDBCustomEditor::SetDelimiterText(const QString &delimiter)
{
    settings_->SetDelimiterText(delimiter);
    UpdateEditor();
}

int TQDBCustomEditor::GetPickIndex() const
{
    const TField *f = Field();
    return f && !f->IsNull() ? settings_->PickItemOf(f->AsString()) : -1;
}

void TQDBCustomEditor::SetPickIndex(int index)
{
    if (index < -1 || index >= GetPickList()->Count() || !CanEditModify())
        return;
    settings_->SetListValue(settings_->PickValueOf(index));
    DataRefresh();
}

bool TQDBCustomEditor::GetMultiSelectList() const
{
    return settings_->GetMultiSelectList();
}

void TQDBCustomEditor::DoGetItem(QString &text, bool display)
{
    text = settings_->ItemText(text, false);
    const TQPickOptions options = GetPickOptions();
    if (display && options.Contains(poFormatPickText) && !options.Contains(poFormatListOnly))
        text = FormatText(text);
}

void TQDBCustomEditor::DoSetItem(QString &text)
{
    text = settings_->ItemValue(text);
}

QString TQDBCustomEditor::FormatText(const QString &text)
{
    return settings_->FormatText(text);
}

QString TQDBCustomEditor::GetDelimiter() const
{
    return settings_->GetDelimiter(TQColumn::ItemsFor::Editing);
}

QString TQDBCustomEditor::itemsText(bool display) const
{
    auto *self = const_cast<TQDBCustomEditor *>(this);
    QStringList items = settings_->SplitItems(Field()->AsString());
    for (QString &item : items)
        self->DoGetItem(item, display);
    return items.join(GetDelimiter());
}

TEditorStyle TQDBCustomEditor::GetEditorStyle() const
{
    // Without a data source the lookup settings alone decide whether a list can be offered.
    const bool writable = GetDataSource() ? DataLinkWritable() : GetLookupDataSet() != nullptr;
    return ColumnEditorStyle(settings_, writable && !GetReadOnly());
}

const QMetaObject *TQDBCustomEditor::GetEditorListClass() const
{
    switch (EditorListKindOf(settings_)) {
    case TEditorListKind::Lookup: return &TQDBEditorDataList::staticMetaObject;
    case TEditorListKind::Pick: return &TQDBEditorPickList::staticMetaObject;
    case TEditorListKind::Calculator: return &TQDBEditorCalculator::staticMetaObject;
    case TEditorListKind::Calendar: return &TQDBEditorCalendar::staticMetaObject;
    default: return nullptr;
    }
}

QString TQDBCustomEditor::GetStoredText() const
{
    if (!Field())
        return {};
    return GetMultiSelectList() ? itemsText(false) : settings_->GetEditText();
}

QString TQDBCustomEditor::GetStoredDisplayText() const
{
    if (!Field())
        return {};
    return GetMultiSelectList() ? itemsText(true) : settings_->GetDisplayText();
}

void TQDBCustomEditor::StoreText(const QString &typed)
{
    QString text = typed;
    DoSetText(text);
    TField *f = Field();
    if (!f)
        return;
    if (GetMultiSelectList()) {
        QStringList items = settings_->SplitItems(text);
        for (QString &item : items)
            DoSetItem(item);
        f->SetText(settings_->JoinItems(items, TQColumn::ItemsFor::Storing));
        return;
    }
    // Pick texts and lookup results become the values they stand for; others are refused.
    settings_->SetEditText(text);
}

void TQDBCustomEditor::UpdateEditor()
{
    settings_->SetFieldName(GetDataField());
    settings_->AttachField(Field());
    TQDBLabeledEditor::UpdateEditor();
}

TQDBEditor::TQDBEditor(QWidget *parent) : TQDBCustomEditor(parent) {}

// ---- the column editor ----

TQDBColumn::TQDBColumn(QWidget *parent) : TQDBLabeledEditor(parent) {}

void TQDBColumn::SetDBGrid(TQCustomDBGrid *grid)
{
    dbGrid_ = grid;
    bind();
}

void TQDBColumn::SetDataColumn(const QString &fieldName)
{
    dataColumn_ = fieldName;
    bind();
}

void TQDBColumn::bind()
{
    SetDataSource(dbGrid_ ? dbGrid_->GetDataSource() : nullptr);
    SetDataField(dataColumn_);
    SetColumn(dbGrid_ && !dataColumn_.isEmpty() ? dbGrid_->GetColumns()->FindColumn(dataColumn_) : nullptr);
    UpdateEditor();
}

TEditorStyle TQDBColumn::GetEditorStyle() const
{
    TQColumn *column = GetColumn();
    return dbGrid_ && column ? dbGrid_->GetEditorStyle(column) : TQDBLabeledEditor::GetEditorStyle();
}

const QMetaObject *TQDBColumn::GetEditorListClass() const
{
    TQColumn *column = GetColumn();
    return dbGrid_ && column ? dbGrid_->GetEditorListClass(column) : nullptr;
}

QString TQDBColumn::GetStoredText() const
{
    TQColumn *column = GetColumn();
    return column && Field() ? column->GetEditText() : TQDBLabeledEditor::GetStoredText();
}

QString TQDBColumn::GetStoredDisplayText() const
{
    TQColumn *column = GetColumn();
    return column && Field() ? column->GetDisplayText() : TQDBLabeledEditor::GetStoredDisplayText();
}

void TQDBColumn::StoreText(const QString &typed)
{
    TQColumn *column = GetColumn();
    if (!column) {
        TQDBLabeledEditor::StoreText(typed);
        return;
    }
    QString text = typed;
    DoSetText(text);
    column->SetEditText(text);
}

} // namespace qdb

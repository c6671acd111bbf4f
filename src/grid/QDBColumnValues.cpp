// A column's view of the current record: the texts it shows and edits, its check box, and
// a width fitted to what it shows.

#include "QDBColumns.h"
#include "QDBGrid.h"

#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Format.h"

#include <QCoreApplication>
#include <QFontMetrics>

namespace qdb {

QString TQColumn::GetDisplayText() const
{
    TQCustomDBGrid *grid = GetGrid();
    TDataSet *ds = grid ? grid->DataSet() : nullptr;
    if (autoNumber_) {
        if (!ds || !grid->DataLink()->Active() || ds->IsEmpty())
            return {};
        const int number = ds->RecNo();
        return number > 0 ? Format("%d.", {number}) : QString();
    }
    TField *f = GetField();
    if (!f)
        return {};
    if (GetLookupColumn() == lcLookupValueField)
        return lookupTextOf(f);
    return PickTextActive() ? pickTextOf(f) : f->DisplayText();
}

QString TQColumn::GetEditText() const
{
    TField *f = GetField();
    if (!f || autoNumber_)
        return {};
    if (GetLookupColumn() == lcLookupValueField)
        return lookupTextOf(f);
    return PickTextActive() ? pickTextOf(f) : f->Text();
}

bool TQColumn::PickTextActive() const
{
    return pickOptions_.Contains(poSelectPickText) && pickText_->Count() > 0;
}

QString TQColumn::pickTextOf(const TField *f) const
{
    const int item = pickOptions_.Contains(poStoreItemIndex) ? (f->IsNull() ? -1 : f->AsInteger())
                                                               : pickList_->IndexOf(f->AsString());
    // A value outside the list shows as it is.
    return item >= 0 && item < pickText_->Count() ? pickText_->Get(item) : f->DisplayText();
}

void TQColumn::SetEditText(const QString &text)
{
    TField *f = GetField();
    if (!f || autoNumber_)
        return;
    const TQLookupColumn lookup = GetLookupColumn();
    if (lookup == lcLookupField || lookup == lcLookupResultField || lookup == lcLookupValueField) {
        SetListValue(text.isEmpty() ? Variant::Null() : lookupKeyOf(text));
        return;
    }
    if (pickList_->Count() > 0) {
        const TStrings *shown = PickTextActive() ? pickText_ : pickList_;
        const int item = text.isEmpty() ? -1 : shown->IndexOf(text);
        if (item >= 0) {
            SetListValue(pickOptions_.Contains(poStoreItemIndex) ? Variant(item) : Variant(pickList_->Get(item)));
            return;
        }
        if (!text.isEmpty() && pickOptions_.Contains(poListItemsOnly))
            notInList(text);
    }
    f->SetText(text);
}

Variant TQColumn::lookupKeyOf(const QString &text) const
{
    TDataSet *lookup = GetLookupDataSet();
    if (!lookup || GetLookupKeyField().isEmpty() || GetLookupResultField().isEmpty())
        notInList(text);
    if (!lookup->Active())
        lookup->Open();
    const Variant key = lookup->Lookup(GetLookupResultField(), Variant(text), GetLookupKeyField());
    if (key.IsClear() || key.IsNull())
        notInList(text);
    return key;
}

QString TQColumn::lookupTextOf(const TField *f) const
{
    TDataSet *lookup = GetLookupDataSet();
    if (f->IsNull() || !lookup->Active() || GetLookupResultField().isEmpty())
        return f->DisplayText();
    const Variant result = lookup->Lookup(GetLookupKeyField(), f->Value(), GetLookupResultField());
    return result.IsClear() ? f->DisplayText() : result.ToString();
}

void TQColumn::notInList(const QString &text) const
{
    throw EDatabaseError(QCoreApplication::translate("qdb", "\"%1\" is not in the list of %2")
                             .arg(text, GetTitle()->GetCaption()));
}

void TQColumn::SetListValue(const Variant &value)
{
    TField *f = GetField();
    if (!f || autoNumber_)
        return;
    const TQLookupColumn lookup = GetLookupColumn();
    if (lookup == lcLookupField || lookup == lcLookupResultField) {
        f->DataSet()->SetFieldValues(GetKeyField(), value);
        return;
    }
    if (value.IsString())
        f->SetText(value.ToString());
    else
        f->SetValue(value);
}

bool TQColumn::Sortable() const
{
    const TField *f = GetField();
    return !f || f->FieldKind() == fkData;
}

QString TQColumn::FormatText(const QString &text) const
{
    if (pickTextFormat_.isEmpty())
        return text;
    // A format the value does not fit shows the value as it is rather than failing a paint.
    try {
        return Format(pickTextFormat_, {text});
    } catch (const Exception &) {
        return text;
    }
}

void TQColumn::ToggleCheckBoxValue()
{
    TField *f = GetField();
    TQCustomDBGrid *grid = GetGrid();
    if (!f || !grid || GetReadOnly() || !f->CanModify())
        return;
    TDataSet *ds = f->DataSet();
    if (ds->State() != dsEdit && ds->State() != dsInsert && !grid->DataLink()->Edit())
        return;
    if (f->DataType() == ftBoolean) {
        f->SetAsBoolean(f->IsNull() || !f->AsBoolean());
        return;
    }
    const QStringList values = checkBoxValues_.split(QLatin1Char(';'));
    if (values.size() == 2)
        f->SetText(f->Text() == values[0] ? values[1] : values[0]);
}

int TQColumn::ImageIndex() const
{
    if (!images_)
        return -1;
    TField *f = GetField();
    int index = -1;
    if (f && !f->IsNull()) {
        bool ok = false;
        index = f->AsString().toInt(&ok);
        if (!ok)
            index = -1; // a value that is no number shows no image
    }
    if (OnCalcImageIndex)
        OnCalcImageIndex(const_cast<TQColumn *>(this), index);
    return index;
}

int TQColumn::OptimalWidth() const
{
    TQCustomDBGrid *grid = GetGrid();
    if (!grid)
        return GetWidth();
    const int margin = 4;
    int title = 0;
    if (grid->GetOptions().Contains(dgTitles)) {
        const QFontMetrics titleMetrics(title_->GetFont());
        title = titleMetrics.horizontalAdvance(title_->GetCaption()) + margin + 2 * grid->GetGridStyle()->TitleColMargin;
    }
    const QFontMetrics metrics(GetFont());
    int content = 0;
    TQGridDataLink *link = grid->DataLink();
    TDataSet *ds = grid->DataSet();
    if (link->Active() && !ds->IsEmpty()) {
        const int saved = link->ActiveRecord();
        for (int r = 0; r < link->RecordCount(); ++r) {
            link->SetActiveRecord(r);
            content = qMax(content, metrics.horizontalAdvance(GetDisplayText()) + margin);
        }
        link->SetActiveRecord(saved);
        if (link->RecordCount() < ds->RecordCount() || ds->RecordCount() < 0) // rows off the screen
            content = qMax(content, widestElsewhere(metrics) + margin);
    }
    // One long value does not make a column wider than the bound; a value that long is cut
    // at the bound, never shorter.
    const int bound = grid->GetFitWidthMax() > 0 ? grid->GetFitWidthMax() : grid->viewport()->width() / 2;
    int width = qMax(title, bound > 0 ? qMin(content, bound) : content);
    if (widthMin_ != -1)
        width = qMax(width, widthMin_);
    if (widthMax_ != -1)
        width = qMin(width, widthMax_);
    return qMax(width, 1);
}

int TQColumn::widestElsewhere(const QFontMetrics &metrics) const
{
    // Off the screen: what the data set can tell of its longest value, else a sample of the
    // records from the start.
    constexpr int SampleRows = 1000;
    TQCustomDBGrid *grid = GetGrid();
    TDataSet *ds = grid->DataSet();
    TField *f = GetField();
    if (!f || autoNumber_)
        return 0;
    QString longest;
    if (ds->LongestText(f, longest))
        return metrics.horizontalAdvance(longest);
    int widest = 0;
    grid->DisablePosition();
    try {
        int n = 0;
        for (ds->First(); !ds->Eof() && n < SampleRows; ds->Next(), ++n)
            widest = qMax(widest, metrics.horizontalAdvance(f->DisplayText()));
    } catch (...) {
        grid->EnablePosition(true);
        throw;
    }
    grid->EnablePosition(true);
    return widest;
}

} // namespace qdb

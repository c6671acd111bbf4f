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
    if (GetMultiSelectList())
        return itemsTextOf(f, true);
    return pickList_->Count() > 0 && !f->IsNull() ? pickTextOf(f, true) : f->DisplayText();
}

QString TQColumn::GetEditText() const
{
    TField *f = GetField();
    if (!f || autoNumber_)
        return {};
    if (GetLookupColumn() == lcLookupValueField)
        return lookupTextOf(f);
    if (GetMultiSelectList())
        return itemsTextOf(f, false);
    return PickTextActive() ? pickTextOf(f, false) : f->Text();
}

bool TQColumn::PickTextActive() const
{
    return pickOptions_.Contains(poSelectPickText) && pickText_->Count() > 0;
}

QString TQColumn::pickTextOf(const TField *f, bool display) const
{
    const QString shown = ItemText(f->AsString(), display);
    // A value shown as itself keeps the field's own formatting.
    if (shown == f->AsString())
        return display ? f->DisplayText() : f->Text();
    return shown;
}

QString TQColumn::itemsTextOf(const TField *f, bool display) const
{
    QStringList items = SplitItems(f->AsString());
    for (QString &item : items)
        item = ItemText(item, display);
    return JoinItems(items, display ? ItemsFor::Display : ItemsFor::Editing);
}

QString TQColumn::GetDelimiter(ItemsFor use) const
{
    if (use == ItemsFor::Display && delimiterLine_)
        return QStringLiteral("\n");
    if (use != ItemsFor::Storing && !delimiterText_.isEmpty())
        return delimiterText_;
    return delimiterChar_.isEmpty() ? QStringLiteral(",") : delimiterChar_;
}

QStringList TQColumn::SplitItems(const QString &text) const
{
    QString unified = text;
    unified.replace(QLatin1Char('\n'), GetDelimiter(ItemsFor::Storing));
    if (!delimiterText_.isEmpty())
        unified.replace(delimiterText_, GetDelimiter(ItemsFor::Storing));
    QStringList items;
    for (const QString &item : unified.split(GetDelimiter(ItemsFor::Storing))) {
        const QString trimmed = item.trimmed();
        if (!trimmed.isEmpty())
            items << trimmed;
    }
    return items;
}

QString TQColumn::JoinItems(const QStringList &items, ItemsFor use) const
{
    return items.join(GetDelimiter(use));
}

QString TQColumn::FitItems(const QString &shown, const QFontMetrics &metrics, int width) const
{
    if (metrics.horizontalAdvance(shown) <= width)
        return shown;
    const QString delimiter = GetDelimiter(ItemsFor::Display);
    const QString ellipsis(QChar(0x2026));
    const QStringList items = shown.split(delimiter);
    QString fitted;
    for (const QString &item : items) {
        const QString longer = fitted.isEmpty() ? item : fitted + delimiter + item;
        if (metrics.horizontalAdvance(longer + delimiter + ellipsis) > width)
            break;
        fitted = longer;
    }
    // Not even one item fits whole: the painter cuts the text as any other.
    return fitted.isEmpty() ? shown : fitted + delimiter + ellipsis;
}

int TQColumn::PickItemOf(const QString &value) const
{
    if (!pickOptions_.Contains(poStoreItemIndex))
        return pickList_->IndexOf(value);
    bool number = false;
    const int item = value.toInt(&number);
    return number && item >= 0 && item < pickList_->Count() ? item : -1;
}

Variant TQColumn::PickValueOf(int item) const
{
    if (item < 0 || item >= pickList_->Count())
        return Variant::Null();
    return pickOptions_.Contains(poStoreItemIndex) ? Variant(item) : Variant(pickList_->Get(item));
}

QString TQColumn::ItemText(const QString &value, bool display) const
{
    const int item = PickItemOf(value);
    if (item < 0)
        return value; // a value outside the list shows as it is
    QString text = PickTextActive() && item < pickText_->Count() ? pickText_->Get(item) : pickList_->Get(item);
    if (display && pickOptions_.Contains(poFormatPickText) && !pickOptions_.Contains(poFormatListOnly))
        text = FormatText(text);
    return text;
}

QString TQColumn::ItemValue(const QString &text) const
{
    if (pickList_->Count() == 0 || text.isEmpty())
        return text;
    int item = (PickTextActive() ? pickText_ : pickList_)->IndexOf(text);
    if (item < 0 && PickTextActive() && pickOptions_.Contains(poAcceptPickList))
        item = pickList_->IndexOf(text);
    if (item < 0 && pickOptions_.Contains(poAcceptItemIndex)) {
        bool number = false;
        const int typed = text.toInt(&number);
        if (number && typed >= 0 && typed < pickList_->Count())
            item = typed;
    }
    if (item >= 0)
        return PickValueOf(item).ToString();
    if (pickOptions_.Contains(poListItemsOnly))
        notInList(text);
    return text;
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
    if (GetMultiSelectList()) {
        QStringList values = SplitItems(text);
        for (QString &value : values)
            value = ItemValue(value);
        f->SetText(JoinItems(values, ItemsFor::Storing));
        return;
    }
    f->SetText(ItemValue(text));
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

// The lookup list: the records of a lookup data set, read page by page as the list scrolls.

#include "QDBDataList.h"

#include "QDBEditor.h"

#include "platform/rtl/Exceptions.h"

#include <QCoreApplication>

namespace qdb {

namespace {

QStringList splitNames(const QString &names)
{
    QStringList out;
    for (const QString &name : names.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        out << name.trimmed();
    return out;
}

} // namespace

TQDBGridDataList::TQDBGridDataList(TQDBGridEditor *editor, TQColumn *column) : TQDBGridDropDownList(editor, column) {}

TDataSet *TQDBGridDataList::lookupData() const
{
    TQColumn *column = Column();
    TDataSet *lookup = column ? column->GetLookupDataSet() : nullptr;
    if (!lookup)
        throw EDatabaseError(QCoreApplication::translate("qdb", "The column %1 has no lookup data set")
                                 .arg(column ? column->GetFieldName() : QString()));
    if (!lookup->Active())
        lookup->Open();
    return lookup;
}

void TQDBGridDataList::DoDropDown()
{
    TQColumn *column = Column();
    TDataSet *lookup = lookupData();
    TQDBPopupList *popup = Popup();
    const TQListOptions options = ListOptions();
    popup->SetOptions(options.Contains(loShowLookupListTitles) ? popup->GetOptions() + TQDBGridOptions{dgTitles}
                                                                : popup->GetOptions() - TQDBGridOptions{dgTitles});
    // The data set first: binding it builds a column for every field, which these replace
    // in one change (an empty set of columns would be built again).
    popup->ListSource()->SetDataSet(lookup);
    QStringList fields = column->GetLookupListFields()->ToStringList();
    if (fields.size() == 1)
        fields = splitNames(fields.front());
    if (fields.isEmpty())
        fields << column->GetLookupResultField();
    const QStringList titles = column->GetLookupListTitles().split(QLatin1Char(';'));
    const QStringList widths = column->GetLookupListWidths().split(QLatin1Char(';'));
    {
        const CollectionUpdateGuard update(*popup->GetColumns());
        popup->GetColumns()->Clear();
        for (int i = 0; i < fields.size(); ++i) {
            TQColumn *shown = popup->GetColumns()->Add();
            shown->SetFieldName(fields[i]);
            if (i < titles.size() && !titles[i].trimmed().isEmpty())
                shown->GetTitle()->SetCaption(titles[i].trimmed());
            bool ok = false;
            const int width = i < widths.size() ? widths[i].trimmed().toInt(&ok) : 0;
            if (ok && width > 0)
                shown->SetWidth(width);
        }
    }
    // The list opens on the record the cell holds.
    TDataSet *ds = column->GetField() ? column->GetField()->DataSet() : nullptr;
    const QString keys = column->GetKeyField();
    if (ds && !keys.isEmpty()) {
        const Variant current = ds->FieldValues(keys);
        if (!current.IsNull() && !current.IsClear())
            lookup->Locate(column->GetLookupKeyField(), current, {});
    }
}

void TQDBGridDataList::DoCloseUp(bool accept)
{
    TDataSet *lookup = Column() ? Column()->GetLookupDataSet() : nullptr;
    if (accept && lookup && lookup->Active() && !lookup->IsEmpty())
        Value = lookup->FieldValues(Column()->GetLookupKeyField());
}

bool TQDBGridDataList::SelectListItem(const QString &text, QString &itemText)
{
    TDataSet *lookup = lookupData();
    const QString result = Column()->GetLookupResultField();
    if (!lookup->Locate(result, Variant(text), {loCaseInsensitive, loPartialKey}))
        return false;
    itemText = ListText();
    return true;
}

bool TQDBGridDataList::SelectNextItem(bool forward, bool cycle, QString &itemText)
{
    TDataSet *lookup = lookupData();
    if (lookup->IsEmpty())
        return false;
    if (forward)
        lookup->Next();
    else
        lookup->Prior();
    if (forward ? lookup->Eof() : lookup->Bof()) {
        if (!cycle)
            return false;
        if (forward)
            lookup->First();
        else
            lookup->Last();
    }
    itemText = ListText();
    return true;
}

QString TQDBGridDataList::ListText() const
{
    TDataSet *lookup = Column() ? Column()->GetLookupDataSet() : nullptr;
    if (!lookup || !lookup->Active() || lookup->IsEmpty())
        return {};
    TField *result = lookup->FindField(Column()->GetLookupResultField());
    return result ? result->DisplayText() : QString();
}

TQDBEditorDataList::TQDBEditorDataList(TQDBGridEditor *editor, TQColumn *column) : TQDBGridDataList(editor, column) {}

} // namespace qdb

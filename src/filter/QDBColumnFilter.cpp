#include "QDBColumnFilter.h"

#include "QDBFilterConsts.h"
#include "QDBGridFilter.h"

#include "grid/QDBColumns.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSet.h"
#include "platform/db/Fields.h"
#include "platform/rtl/Format.h"
#include "platform/rtl/FormatSettings.h"

namespace qdb {

namespace {

bool isTextType(TFieldType t)
{
    return t == ftString || t == ftFixedChar || t == ftWideString || t == ftGuid || t == ftFixedWideChar;
}

bool isQuotedType(TFieldType t)
{
    return isTextType(t) || t == ftDate || t == ftTime || t == ftDateTime || t == ftTimeStamp
        || t == ftTimeStampOffset;
}

bool isFloatType(TFieldType t)
{
    return t == ftFloat || t == ftCurrency || t == ftBCD || t == ftFMTBcd || t == ftExtended || t == ftSingle;
}

bool isListClause(TQDBGridFilterClause c)
{
    return c == fcIsOnTheList || c == fcIsNotOnTheList;
}

void replaceAll(QString &text, const QString &what, const QString &with)
{
    while (text.contains(what))
        text.replace(what, with);
}

QChar localeSeparator()
{
    return FormatSettings().DecimalSeparator;
}

} // namespace

bool DataSetInList(const TDataSet *dataSet, const char *list)
{
    if (!dataSet)
        return false;
    const QString name = QString::fromLatin1(dataSet->metaObject()->className()).section(QLatin1String("::"), -1);
    // A name that is the tail of a longer one ("TQuery" in "TADOQuery") must not match.
    const QString entries = QLatin1Char('.') + QLatin1String(list);
    return entries.contains(QLatin1Char('.') + name + QLatin1Char('.'));
}

TQDBColumnFilter::TQDBColumnFilter(TQColumn *column) : column_(column) {}

TDataSet *TQDBColumnFilter::dataSet() const
{
    TQCustomDBGrid *grid = column_->GetGrid();
    return grid ? grid->DataSet() : nullptr;
}

TQDBGridFilter *TQDBColumnFilter::gridFilter() const
{
    TQCustomDBGrid *grid = column_->GetGrid();
    return grid ? grid->GetFilterGrid() : nullptr;
}

TField *TQDBColumnFilter::GetFilterField() const
{
    return column_->FilterField();
}

TFieldType TQDBColumnFilter::fieldType() const
{
    TField *f = GetFilterField();
    return f ? f->DataType() : ftUnknown;
}

TQDBGridFilterClauses TQDBColumnFilter::GetFilterClauses() const
{
    TQDBGridFilterClauses clauses = gridFilter() ? gridFilter()->GetClauses() : AllFilterClauses();
    const TDataSet *ds = dataSet();
    if (DataSetInList(ds, FilterConsts::ADODataSets()))
        clauses -= TQDBGridFilterClauses{fcDoesNotContain, fcDoesNotStartFrom, fcEndsWith, fcDoesNotEndWith,
                                         fcIsOnTheList, fcIsNotOnTheList};
    if (DataSetInList(ds, FilterConsts::BDEDataSets()))
        clauses -= TQDBGridFilterClauses{fcContains,       fcDoesNotContain, fcStartsFrom, fcDoesNotStartFrom,
                                         fcEndsWith,       fcDoesNotEndWith, fcIsOnTheList, fcIsNotOnTheList};
    return clauses;
}

QString TQDBColumnFilter::GetFilterFieldName() const
{
    TField *f = GetFilterField();
    const QString name = f ? f->FieldName() : column_->GetFieldName();
    return name.contains(QLatin1Char(' ')) ? QLatin1Char('[') + name + QLatin1Char(']') : name;
}

QChar TQDBColumnFilter::GetDelimiterChar() const
{
    const TFieldType t = fieldType();
    if (isTextType(t)) {
        const QString d = column_->GetDelimiterChar();
        return d.isEmpty() ? QLatin1Char(',') : d.at(0);
    }
    if (isFloatType(t))
        return localeSeparator() == QLatin1Char(',') ? QLatin1Char(' ') : QLatin1Char(',');
    return QLatin1Char(',');
}

QChar TQDBColumnFilter::GetDecimalSeparator() const
{
    const TDataSet *ds = dataSet();
    if (DataSetInList(ds, FilterConsts::BDEDataSets()) || DataSetInList(ds, FilterConsts::ClientDataSets()))
        return localeSeparator();
    if (DataSetInList(ds, FilterConsts::ADODataSets()) || DataSetInList(ds, FilterConsts::FireDACDataSets())
        || DataSetInList(ds, FilterConsts::NativeDataSets()))
        return QLatin1Char('.');
    return gridFilter() && gridFilter()->GetDecimalSeparator() ? localeSeparator() : QLatin1Char('.');
}

void TQDBColumnFilter::CheckFilterText(TQDBGridFilterClause clause, QString &text) const
{
    const QString delimiter(GetDelimiterChar());
    const QString blank(QLatin1Char(' '));
    if (isListClause(clause)) {
        replaceAll(text, delimiter + blank, delimiter);
        replaceAll(text, blank + delimiter, delimiter);
    }
    const TFieldType t = fieldType();
    const QChar local = localeSeparator();
    const QChar wanted = GetDecimalSeparator();
    auto convertSeparator = [&] {
        if (local != wanted)
            text.replace(local, wanted);
    };
    if (isQuotedType(t)) {
        if (isListClause(clause))
            text.replace(delimiter, QStringLiteral("','"));
        if (clause >= fcIsEqual && clause <= fcIsNotOnTheList)
            text = QLatin1Char('\'') + text + QLatin1Char('\'');
    } else if (isFloatType(t)) {
        if (!isListClause(clause)) {
            convertSeparator();
        } else if (local != QLatin1Char(',') || delimiter != blank) {
            convertSeparator();
            text.replace(delimiter, QStringLiteral(","));
        } else {
            replaceAll(text, QStringLiteral(" ,"), blank);
            replaceAll(text, QStringLiteral(", "), blank);
            replaceAll(text, QStringLiteral("  "), blank);
            convertSeparator();
            text.replace(blank, wanted == QLatin1Char(',') ? QStringLiteral(", ") : QStringLiteral(","));
        }
    }
}

QString TQDBColumnFilter::BuildFilter(TQFilterCondition first, TQFilterCondition second, bool andOn,
                                      bool notOn) const
{
    const bool ado = DataSetInList(dataSet(), FilterConsts::ADODataSets());
    const QString name = GetFilterFieldName();
    QString result;
    for (TQFilterCondition *c : {&first, &second}) {
        c->Value = c->Value.trimmed();
        if (c->Clause == fcNoFilter || c->Clause == fcIsEmpty || c->Clause == fcIsNotEmpty)
            c->Value.clear();
        else if (c->Value.isEmpty())
            c->Clause = fcNoFilter;
        if (c->Clause == fcNoFilter)
            continue;
        CheckFilterText(c->Clause, c->Value);
        int index = int(c->Clause);
        if (ado && (c->Clause == fcIsEmpty || c->Clause == fcIsNotEmpty))
            index += 2;
        const QString condition = Format(FilterConsts::ClauseTemplate(index),
                                         {name, c->Value, QString(QLatin1Char(FilterConsts::AnyTextSymbol))});
        if (!result.isEmpty())
            result += andOn ? QStringLiteral(" AND ") : QStringLiteral(" OR ");
        result += condition;
    }
    if (!result.isEmpty() && notOn)
        result = QStringLiteral("NOT (%1)").arg(result);
    return result;
}

void TQDBColumnFilter::StoreFilter(const TQFilterCondition &first, const TQFilterCondition &second, bool andOn,
                                   bool notOn)
{
    // A column filters by conditions or by ticked values: a new condition clears the ticks.
    const QString expression = BuildFilter(first, second, andOn, notOn);
    column_->ChangeFilter(expression, !expression.isEmpty());
}

} // namespace qdb

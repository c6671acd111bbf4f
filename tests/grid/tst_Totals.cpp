// Totals over an in-memory table: what each kind of figure makes of NULLs, text and empty
// tables; when a calculation runs and when it waits; the texts the totals rows show.

#include "grid/QDBGrid.h"
#include "grid/QDBGridTotals.h"

#include "TestSupport.h"

#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Streaming.h"

#include <QApplication>
#include <QJsonObject>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;

namespace {

class Totals : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        table.FieldDefs().Add(QStringLiteral("id"), ftInteger);
        table.FieldDefs().Add(QStringLiteral("qty"), ftInteger);
        table.FieldDefs().Add(QStringLiteral("price"), ftFloat);
        table.FieldDefs().Add(QStringLiteral("name"), ftString, 20);
        table.CreateDataSet();
        add(1, 10, 0.1, "a");
        add(2, Variant::Null(), 0.2, "a");
        add(3, 20, 0.7, "b");
        table.First();
        source.SetDataSet(&table);
        grid.resize(500, 300);
        grid.SetOptionsEx({dgTotalValues, dgTotalFooter, dgAutoUpdateTotals, dgCalcWholeDataSet, dgCalcSelectedRows});
        grid.SetDataSource(&source);
        grid.show();
        QApplication::processEvents();
    }
    void add(int id, const Variant &qty, double price, const char *name)
    {
        table.AppendRecord({id, qty, price, QString::fromLatin1(name)});
    }
    TQColumn *column(const char *field) { return grid.GetColumns()->FindColumn(QString::fromLatin1(field)); }
    TQColumnTotalValue *total(const char *field, TCalcValue calc, TNullValue nulls = nvExclude)
    {
        TQColumnTotalValue *t = column(field)->GetTotalValues()->Add();
        t->SetFieldName(QString::fromLatin1(field));
        t->SetTotalResult(trCalcValue);
        t->SetCalcValue(calc);
        t->SetNullValue(nulls);
        return t;
    }
    // Waits out a delayed calculation, if one was asked for.
    void settle()
    {
        for (int i = 0; i < 50 && grid.Totals()->Waiting(); ++i)
            QTest::qWait(DelayInterval() / 4 + 1);
    }

    TMemTable table;
    TDataSource source;
    TQDBGrid grid;
};

} // namespace

TEST_F(Totals, EachFigureTreatsNullsAsItsRuleSays)
{
    TQColumnTotalValue *avgExclude = total("qty", cvAvg, nvExclude);
    TQColumnTotalValue *avgZero = total("qty", cvAvg, nvAsZero);
    TQColumnTotalValue *avgInclude = total("qty", cvAvg, nvInclude);
    TQColumnTotalValue *countExclude = total("qty", cvCount, nvExclude);
    TQColumnTotalValue *countInclude = total("qty", cvCount, nvInclude);
    TQColumnTotalValue *minZero = total("qty", cvMin, nvAsZero);
    TQColumnTotalValue *maxInclude = total("qty", cvMax, nvInclude);
    TQColumnTotalValue *lastExclude = total("qty", cvLast, nvExclude);
    TQColumnTotalValue *lastInclude = total("qty", cvLast, nvInclude);
    grid.UpdateCalcValues(false);

    EXPECT_EQ(avgExclude->Value().ToDouble(), 15);
    EXPECT_EQ(avgZero->Value().ToDouble(), 10);
    EXPECT_EQ(avgInclude->Value().ToDouble(), 10); // the NULL counts but adds nothing
    EXPECT_EQ(countExclude->Value(), Variant(2));
    EXPECT_EQ(countInclude->Value(), Variant(3));
    EXPECT_EQ(minZero->Value(), Variant(0));
    EXPECT_EQ(maxInclude->Value(), Variant(20)); // the NULL came after a value: nothing compares with it
    EXPECT_EQ(lastExclude->Value(), Variant(20));
    EXPECT_EQ(lastInclude->Value(), Variant(20));
    table.Last();
    table.Edit();
    table.FieldByName(QStringLiteral("qty"))->SetValue(Variant::Null());
    table.Post();
    grid.UpdateCalcValues(false);
    EXPECT_EQ(lastExclude->Value(), Variant(10));
    EXPECT_TRUE(lastInclude->Value().IsNull());
}

TEST_F(Totals, FloatsAddUpAsCurrencyAndTextIsCountedButNotAdded)
{
    TQColumnTotalValue *sum = total("price", cvSum);
    TQColumnTotalValue *avg = total("price", cvAvg);
    TQColumnTotalValue *names = total("name", cvSum);
    TQColumnTotalValue *nameCount = total("name", cvCount);
    grid.UpdateCalcValues(false);
    ASSERT_EQ(sum->Value().Type(), VarType::Currency);
    EXPECT_EQ(sum->Value().ToCurrency(), Currency::FromRaw(10000)); // 0.1 + 0.2 + 0.7, exactly 1
    EXPECT_EQ(avg->Value().ToCurrency(), Currency::FromRaw(3333));
    EXPECT_TRUE(names->Value().IsUnassigned());
    EXPECT_EQ(nameCount->Value(), Variant(3));
}

TEST_F(Totals, UniqueShowsTheCommonValueOrNothing)
{
    TQColumnTotalValue *unique = total("name", cvUnique);
    table.Filter();
    table.SetFilter(QStringLiteral("name = 'a'"));
    table.SetFiltered(true);
    grid.UpdateCalcValues(false);
    EXPECT_EQ(unique->Value(), Variant("a"));
    table.SetFiltered(false);
    grid.UpdateCalcValues(false);
    EXPECT_TRUE(unique->Value().IsNull());
}

TEST_F(Totals, AnEmptyTableLeavesEveryFigureUnassigned)
{
    TQColumnTotalValue *count = total("qty", cvCount);
    TQColumnTotalValue *avg = total("qty", cvAvg);
    table.SetFilter(QStringLiteral("id > 100"));
    table.SetFiltered(true);
    grid.UpdateCalcValues(false);
    EXPECT_TRUE(count->Value().IsUnassigned());
    EXPECT_TRUE(avg->Value().IsUnassigned());
    EXPECT_EQ(grid.TotalText(count), NullValueString());
}

TEST_F(Totals, SelectedRowsAreAddedUpWhenAnyIsSelected)
{
    grid.SetOptions(grid.GetOptions() + dgMultiSelect);
    TQColumnTotalValue *sum = total("qty", cvSum);
    TQColumnTotalValue *footer = column("qty")->GetTotalFooter();
    footer->SetFieldName(QStringLiteral("qty"));
    footer->SetTotalResult(trCalcValue);
    footer->SetCalcApply(caWholeDataSet);
    grid.UpdateCalcValues(false);
    EXPECT_EQ(sum->Value(), Variant(30));
    EXPECT_EQ(footer->Value(), Variant(30));

    table.Last();
    grid.SelectRow();
    table.First();
    grid.SelectRow();
    grid.UpdateCalcValues(false);
    EXPECT_EQ(sum->Value(), Variant(30)); // 10 + 20: the selected rows
    EXPECT_TRUE(footer->Value().IsUnassigned()); // for the whole data set only

    // A section over the selected rows only, in a calculation of every record.
    grid.ClearSelection();
    grid.SetOptionsEx(grid.GetOptionsEx() - dgCalcSelectedRows + dgTotalFooterSelected);
    footer->SetCalcApply(caBoth);
    table.First();
    grid.SelectRow();
    grid.UpdateCalcValues(false);
    EXPECT_EQ(sum->Value(), Variant(30));
    EXPECT_EQ(footer->Value(), Variant(10));
    // A selected-rows calculation fills only such sections.
    sum->SetValue(Variant("untouched"));
    grid.UpdateCalcValues(true);
    EXPECT_EQ(sum->Value(), Variant("untouched"));
    EXPECT_EQ(footer->Value(), Variant(10));
}

TEST_F(Totals, HandlersCanSkipRecordsAndComputeTheirOwnFigure)
{
    TQColumnTotalValue *sum = total("qty", cvSum);
    TQColumnTotalValue *custom = total("id", cvCustom);
    grid.OnTotalCalcQuery = [](TObject *, TDataSet *ds, bool &accept) {
        accept = ds->FieldByName(QStringLiteral("id"))->AsInteger() != 3;
    };
    grid.OnTotalCalcValue = [custom](TQColumnTotalValue *t, TCalcPass pass, Variant &value) {
        if (t != custom)
            return;
        if (pass == cpReset)
            value = QString();
        else if (pass == cpCalcRec)
            t->SetCalcState(t->Value() + value.ToString(), t->RecordsCounted());
    };
    int updated = 0;
    grid.OnTotalsUpdated = [&updated](TObject *) { ++updated; };
    grid.UpdateCalcValues(false);
    EXPECT_EQ(sum->Value(), Variant(10));
    EXPECT_EQ(custom->Value(), Variant("12"));
    EXPECT_EQ(updated, 1);
}

TEST_F(Totals, AFailingPassLeavesTheCursorAndControlsAsTheyWere)
{
    total("qty", cvSum);
    table.First();
    table.Next();
    grid.OnTotalCalcQuery = [](TObject *, TDataSet *ds, bool &) {
        if (ds->FieldByName(QStringLiteral("id"))->AsInteger() == 3)
            throw EDatabaseError(QStringLiteral("refused"));
    };
    EXPECT_THROW(grid.UpdateCalcValues(false), EDatabaseError);
    EXPECT_EQ(table.FieldByName(QStringLiteral("id"))->AsInteger(), 2);
    EXPECT_FALSE(table.ControlsDisabled());
    // The grid still follows the table.
    table.Next();
    QApplication::processEvents();
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(0), grid.Row()), "3");
}

TEST_F(Totals, ABurstOfChangesCostsOneCalculationAndMovingNone)
{
    grid.SetOptionsEx(grid.GetOptionsEx() + dgDelayUpdateTotals);
    TQColumnTotalValue *sum = total("qty", cvSum);
    settle();
    const int before = grid.Totals()->Calculations();
    for (int i = 0; i < 100; ++i) {
        table.Edit();
        table.FieldByName(QStringLiteral("qty"))->SetValue(i);
        table.Post();
    }
    EXPECT_EQ(grid.Totals()->Calculations(), before);
    settle();
    EXPECT_EQ(grid.Totals()->Calculations(), before + 1);
    EXPECT_EQ(sum->Value(), Variant(99 + 20));

    table.Last();
    table.First();
    table.MoveBy(2);
    EXPECT_FALSE(grid.Totals()->Waiting());
}

TEST_F(Totals, AnEditIsNotCountedUntilItIsPosted)
{
    TQColumnTotalValue *sum = total("qty", cvSum);
    grid.UpdateCalcValues(false);
    table.First();
    table.Edit();
    table.FieldByName(QStringLiteral("qty"))->SetValue(1000);
    grid.UpdateCalcValues(false);
    EXPECT_EQ(sum->Value(), Variant(30));
    table.Post();
    grid.UpdateCalcValues(false);
    EXPECT_EQ(sum->Value(), Variant(1020));
}

TEST_F(Totals, AFieldNameOfNoFieldShowsNothingAndRaisesNothing)
{
    TQColumnTotalValue *missing = total("qty", cvSum);
    missing->SetFieldName(QStringLiteral("nosuch"));
    TQColumnTotalValue *rows = total("qty", cvCount);
    rows->SetFieldName(QString()); // no field: every record counts
    EXPECT_NO_THROW(grid.UpdateCalcValues(false));
    EXPECT_TRUE(missing->Value().IsUnassigned());
    EXPECT_EQ(rows->Value(), Variant(3));
    EXPECT_EQ(grid.TotalText(missing), QString());
}

TEST_F(Totals, TextsFollowFormatsFieldsAndOtherTotals)
{
    TQColumnTotalValue *sum = total("price", cvSum);
    TQColumnTotalValue *count = total("price", cvCount);
    grid.UpdateCalcValues(false);
    EXPECT_EQ(grid.TotalText(sum), "1");
    static_cast<TNumericField *>(table.FieldByName(QStringLiteral("price")))->SetDisplayFormat(QStringLiteral("%.2f"));
    EXPECT_EQ(grid.TotalText(sum), "1.00");
    EXPECT_EQ(grid.TotalText(count), "3"); // a count is no price
    count->SetFormat(QStringLiteral("%.1f"));
    count->SetFormatAsFloat(true);
    EXPECT_EQ(grid.TotalText(count), "3.0");
    sum->SetFormat(QStringLiteral("%d items")); // does not fit a currency value: the plain text
    EXPECT_EQ(grid.TotalText(sum), "1");

    TQColumnTotalValue *data = column("name")->GetTotalFooter();
    data->SetTotalResult(trDataField);
    table.Last();
    EXPECT_EQ(grid.TotalText(data), "b");
    TQColumnTotalValue *other = column("id")->GetTotalFooter();
    other->SetTotalResult(trTotalField);
    other->SetFieldName(QStringLiteral("price"));
    other->SetTotalRecNo(2); // the second of the price column's values
    EXPECT_EQ(grid.TotalText(other), "3.0");
    other->SetFieldName(QStringLiteral("id")); // itself
    EXPECT_EQ(grid.TotalText(other), "");

    grid.OnTotalGetText = [](TQColumn *, int index, QString &text, TTotalTextKind) {
        text += QStringLiteral(" #%1").arg(index);
    };
    EXPECT_EQ(grid.TotalText(count), "3.0 #1");
    EXPECT_EQ(grid.TotalText(data), "b #0"); // the footer of a column without values
}

TEST_F(Totals, DisplayNamesSayWhatASectionShows)
{
    TQColumnTotalValue *t = total("price", cvAvg);
    EXPECT_EQ(t->DisplayName(), "Avg(price)");
    t->SetTotalResult(trDataField);
    EXPECT_EQ(t->DisplayName(), "DataField: price");
    t->SetFieldName(QString());
    EXPECT_EQ(t->DisplayName(), "ColumnData: price");
    t->SetTotalResult(trTotalField);
    EXPECT_EQ(t->DisplayName(), "TotalField: <Unknown>");
    t->SetFieldName(QStringLiteral("qty"));
    t->SetTotalRecNo(0);
    EXPECT_EQ(t->DisplayName(), "TotalField: qty[0]");
    t->SetTotalResult(trCaption);
    EXPECT_EQ(t->DisplayName(), "<Empty>");
    t->SetTotalResult(trNone);
    EXPECT_EQ(t->DisplayName(), "<None>");
}

// With dgTotalFields a row under the values shows the current record's fields: it follows the
// cursor, goes while the table is empty and comes back with a record.
TEST_F(Totals, TheFieldsRowShowsTheCurrentRecord)
{
    total("qty", cvSum);
    grid.SetOptionsEx(grid.GetOptionsEx() + dgTotalFields);
    TQColumn *name = column("name");
    TQColumnTotalFields *fields = name->GetTotalFields();
    EXPECT_EQ(grid.GetTotalRowCount(), 3);
    EXPECT_EQ(grid.TotalAt(column("qty"), grid.RowCount() - 3), column("qty")->GetTotalValues()->Items(0));
    EXPECT_EQ(grid.TotalAt(name, grid.RowCount() - 2), fields);
    EXPECT_EQ(grid.TotalAt(name, grid.RowCount() - 1), name->GetTotalFooter());
    EXPECT_EQ(grid.TotalText(fields), QStringLiteral("a"));
    table.Last();
    EXPECT_EQ(grid.TotalText(fields), QStringLiteral("b"));
    EXPECT_EQ(grid.TotalText(column("qty")->GetTotalFields()), QStringLiteral("20"));

    while (!table.IsEmpty())
        table.Delete();
    EXPECT_EQ(grid.GetTotalRowCount(), 2);
    add(4, 1, 1.0, "c");
    EXPECT_EQ(grid.GetTotalRowCount(), 3);
    EXPECT_EQ(grid.TotalText(fields), QStringLiteral("c"));

    // The section is a total like the others: a caption of its own, written with the column
    // only where it differs from showing the field.
    EXPECT_FALSE(WriteComponent(name).value(QStringLiteral("TotalFields")).toObject().contains(QStringLiteral("TotalResult")));
    fields->SetTotalResult(trCaption);
    fields->SetCaption(QStringLiteral("now"));
    EXPECT_EQ(grid.TotalText(fields), QStringLiteral("now"));
    grid.SetOptionsEx(grid.GetOptionsEx() - dgTotalFields);
    EXPECT_EQ(grid.GetTotalRowCount(), 2);
}

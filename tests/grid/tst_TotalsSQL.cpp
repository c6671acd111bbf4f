// Totals over SQLite and PostgreSQL tables: the figures the database adds up must be the very
// ones a walk over the records gives, value and type, for every figure and NULL rule, under a
// filter, in another order, over the selected rows and over nothing at all.

#include "grid/QDBGrid.h"
#include "grid/QDBGridTotals.h"

#include "SQLTestSupport.h"
#include "TestSupport.h"

#include "platform/db/DataSource.h"
#include "platform/rtl/Conversions.h"
#include "platform/sql/SQLDataSet.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <limits>

using namespace qdb;
using namespace qdb::test;

namespace {

constexpr TCalcValue Calcs[] = {cvSum, cvAvg, cvCount, cvMax, cvMin, cvFirst, cvLast, cvUnique};
constexpr TNullValue Nulls[] = {nvExclude, nvInclude, nvAsZero};
const char *const Fields[] = {"qty", "price", "small", "amount", "name", "day", "flag"};

// Floats whose fourth decimal rounds either way, halves included.
constexpr double Prices[] = {1.00005, 2.00005, -3.00005, 0.12345, 12345.6789, 0.1,     0.2,
                             0.3,     -0.7,    1e-5,     0.00005, 99999.99995, 7.77775, 2.5e-5};
const char *const Names[] = {"a", "B", "b", "\xc3\x84", "", "a b", "z"};

class TotalsSQL : public SQLTableTest
{
protected:
    void SetUp() override
    {
        if (!OpenDatabase(QStringLiteral("totals")))
            GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
        FillTable(QStringLiteral("qty INTEGER, price %1, small REAL, amount NUMERIC(12,2), name VARCHAR(20), day DATE, flag BOOLEAN")
                      .arg(FloatType()),
                  40, [this](int id) {
                      const QString amount = QStringLiteral("%1.%2").arg(id * 13 % 50 - 20).arg(id % 100, 2, 10, QLatin1Char('0'));
                      return QList<Variant>{NullEvery(id, 5, (id * 37) % 23 - 4), NullEvery(id, 7, Prices[id % 14] * (id % 3 + 1)),
                                            NullEvery(id, 6, double(float(Prices[(id * 5) % 14]))), NullEvery(id, 4, amount),
                                            NullEvery(id, 9, QString::fromUtf8(Names[id % 7])),
                                            NullEvery(id, 8, QDate(2024, 1, 1).addDays(id * 11 % 60).toString(Qt::ISODate)),
                                            NullEvery(id, 3, Flag(id % 2 == 0))};
                  });
        table.AfterScroll = [this](TDataSet *) { ++scrolled; };
        source.SetDataSet(&table);
        grid.SetOptions(grid.GetOptions() + dgMultiSelect);
        grid.SetOptionsEx({dgTotalValues, dgCalcWholeDataSet, dgCalcSelectedRows});
        grid.SetDataSource(&source);
    }
    void TearDown() override
    {
        grid.SetDataSource(nullptr);
        SQLTableTest::TearDown();
    }

    // A total for each figure of the field under one NULL rule, in its column.
    QList<TQColumnTotalValue *> totalsOf(const char *field, TNullValue nulls, bool all)
    {
        const bool numeric = table.FieldByName(QString::fromLatin1(field))->ValueType() != VarType::String
            && table.FieldByName(QString::fromLatin1(field))->ValueType() != VarType::DateTime
            && table.FieldByName(QString::fromLatin1(field))->ValueType() != VarType::Boolean;
        TQColumnTotalValues *values = grid.GetColumns()->FindColumn(QString::fromLatin1(field))->GetTotalValues();
        values->Clear();
        QList<TQColumnTotalValue *> made;
        for (TCalcValue calc : Calcs) {
            // Text, dates and truth values cannot be compared with a NULL taken as zero but by a walk.
            if (!all && !numeric && nulls == nvAsZero && (calc == cvMax || calc == cvMin || calc == cvUnique))
                continue;
            TQColumnTotalValue *t = values->Add();
            t->SetFieldName(QString::fromLatin1(field));
            t->SetTotalResult(trCalcValue);
            t->SetCalcValue(calc);
            t->SetNullValue(nulls);
            made << t;
        }
        return made;
    }
    static QString describe(const Variant &v)
    {
        const QString value = v.Type() == VarType::Double ? QString::number(v.ToDouble(), 'g', 17) : v.ToString();
        return Variant::TypeName(v.Type()) + QLatin1Char(' ') + value;
    }
    // The figures of every total, through the database and through a walk, side by side.
    void expectBothPathsAgree(const QList<TQColumnTotalValue *> &totals, bool database, bool selected = false)
    {
        scrolled = 0;
        grid.UpdateCalcValues(selected);
        if (database) {
            EXPECT_EQ(scrolled, 0) << "the records were walked";
        }
        QStringList fromDatabase;
        for (TQColumnTotalValue *t : totals)
            fromDatabase << describe(t->Value()) + QStringLiteral(" / %1").arg(t->RecordsCounted());
        grid.OnTotalCalcQuery = [](TObject *, TDataSet *, bool &) {}; // a handler: every record is walked
        scrolled = 0;
        grid.UpdateCalcValues(selected);
        grid.OnTotalCalcQuery = nullptr;
        if (!table.IsEmpty()) {
            EXPECT_GT(scrolled, 0);
        }
        for (qsizetype i = 0; i < totals.size(); ++i)
            EXPECT_EQ(fromDatabase[i], describe(totals[i]->Value()) + QStringLiteral(" / %1").arg(totals[i]->RecordsCounted()))
                << totals[i]->DisplayName().toStdString() << " "
                << QMetaEnum::fromType<TNullValue>().valueToKey(totals[i]->GetNullValue());
    }
    void everyFieldAndRule(const char *when)
    {
        SCOPED_TRACE(when);
        for (const char *field : Fields) {
            for (TNullValue nulls : Nulls)
                expectBothPathsAgree(totalsOf(field, nulls, false), true);
        }
    }

    TDataSource source;
    TQDBGrid grid;
    int scrolled = 0;
};

} // namespace

TEST_P(TotalsSQL, TheDatabaseAddsUpExactlyWhatAWalkDoes)
{
    everyFieldAndRule("in the order of the key");
    table.SetIndexFieldNames(QStringLiteral("price DESC"));
    everyFieldAndRule("in another order, NULLs among the values");
    table.SetIndexFieldNames(QStringLiteral("day;qty"));
    everyFieldAndRule("NULLs first");
    table.SetFilter(QStringLiteral("qty > 3 or name = 'B'"));
    table.SetFiltered(true);
    everyFieldAndRule("under a filter");
    table.SetFilter(QStringLiteral("id > 1000"));
    everyFieldAndRule("over no record");
}

TEST_P(TotalsSQL, WhatTheDatabaseCannotTellIsWalked)
{
    // Text and NULLs taken as zero compare as the application compares them.
    for (TNullValue nulls : Nulls)
        expectBothPathsAgree(totalsOf("name", nulls, true), false);
    // Whole numbers beyond what the database adds up: the walk goes on in floating point.
    table.Close();
    connection.ExecSQL(QStringLiteral("ALTER TABLE t ADD COLUMN big BIGINT"));
    connection.ExecSQL(QStringLiteral("UPDATE t SET big = ?"), {std::numeric_limits<qint64>::max() / 4});
    table.Open();
    TQColumnTotalValue *sum = totalsOf("big", nvExclude, true).first();
    expectBothPathsAgree({sum}, false);
    EXPECT_EQ(sum->Value().Type(), VarType::Double);
}

TEST_P(TotalsSQL, SelectedRowsAreReadByKeyInTheirOrder)
{
    table.SetIndexFieldNames(QStringLiteral("name;id"));
    for (int id : {3, 8, 13, 21, 34, 35, 36}) {
        ASSERT_TRUE(table.Locate(QStringLiteral("id"), id, {}));
        grid.SelectRow();
    }
    ASSERT_EQ(grid.SelectedRows().Count(), 7);
    for (const char *field : Fields) {
        for (TNullValue nulls : Nulls)
            expectBothPathsAgree(totalsOf(field, nulls, true), true);
    }

    // Sections over the selected rows in a calculation of every record, and alone.
    grid.SetOptionsEx(grid.GetOptionsEx() - dgCalcSelectedRows + dgTotalValuesSelected);
    expectBothPathsAgree(totalsOf("price", nvAsZero, true), true);
    expectBothPathsAgree(totalsOf("name", nvInclude, true), true, true);
}

INSTANTIATE_TEST_SUITE_P(Databases, TotalsSQL, testing::Values(Backend::SQLite, Backend::PostgreSQL), BackendName);

// The navigator and the data controls on tables of SQLite and PostgreSQL: every button and
// control edits the stored rows, and what the database refuses is reported while the record
// and what was typed stay.

#include "platform/dbctrls/DBCtrls.h"
#include "platform/dbctrls/DBNavigator.h"
#include "platform/sql/SQLDataSet.h"

#include "SQLTestSupport.h"
#include "TestSupport.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

using namespace qdb;
using qdb::test::Backend;

namespace {

class DataControlsOnSQL : public test::SQLTableTest
{
protected:
    void SetUp() override
    {
        if (!OpenDatabase(QStringLiteral("dbctrls")))
            GTEST_SKIP() << "QDB_PG_URL is not set: no PostgreSQL server for this run";
        connection.ExecSQL(QStringLiteral("CREATE TABLE parts (id INTEGER PRIMARY KEY, name VARCHAR(20) NOT NULL,"
                                          " paid BOOLEAN, size VARCHAR(5), qty INTEGER CHECK (qty >= 0))"));
        connection.ExecSQL(QStringLiteral("CREATE TABLE orders (id INTEGER PRIMARY KEY, part INTEGER REFERENCES parts (id))"));
        connection.ExecSQL(QStringLiteral("INSERT INTO parts VALUES (1, 'bolt', TRUE, 'S', 5), (2, 'nut', FALSE, 'M', 7),"
                                          " (3, 'gear', NULL, 'odd', 0)"));
        connection.ExecSQL(QStringLiteral("INSERT INTO orders VALUES (1, 2)"));
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("parts"));
        table.SetIndexFieldNames(QStringLiteral("id"));
        table.Open();
        source.SetDataSet(&table);
        navigator = new TDBNavigator(&form);
        navigator->SetDataSource(&source);
        navigator->move(0, 200);
        other = new QLineEdit(&form);
        other->move(0, 260);
        form.resize(400, 300);
        form.show();
        QApplication::setActiveWindow(&form);
        QApplication::processEvents();
    }

    void click(TNavigateBtn button) { QTest::mouseClick(navigator->Button(button), Qt::LeftButton); }
    int id() { return table.FieldByName(QStringLiteral("id"))->AsInteger(); }
    TField *field(const char *name) { return table.FieldByName(QString::fromLatin1(name)); }
    // What the database holds, asked apart from the data set.
    QString stored(const char *expression, int row)
    {
        const QString sql = QStringLiteral("SELECT %1 FROM parts WHERE id = ?").arg(QString::fromLatin1(expression));
        return connection.ExecScalar(sql, {row}).ToString();
    }
    int rows() { return connection.ExecScalar(QStringLiteral("SELECT COUNT(*) FROM parts")).ToInt(); }

    TDataSource source;
    QWidget form;
    TDBNavigator *navigator = nullptr;
    QLineEdit *other = nullptr;
};

} // namespace

TEST_P(DataControlsOnSQL, EveryNavigatorButtonActsOnTheTable)
{
    EXPECT_FALSE(navigator->Button(nbFirst)->isEnabled());
    click(nbLast);
    EXPECT_EQ(id(), 3);
    EXPECT_FALSE(navigator->Button(nbNext)->isEnabled());
    click(nbPrior);
    click(nbFirst);
    click(nbNext);
    EXPECT_EQ(id(), 2);

    click(nbEdit);
    field("name")->SetAsString(QStringLiteral("wing nut"));
    click(nbCancel);
    EXPECT_EQ(field("name")->AsString(), "nut");
    click(nbEdit);
    field("name")->SetAsString(QStringLiteral("wing nut"));
    click(nbPost);
    EXPECT_EQ(stored("name", 2), "wing nut");

    click(nbInsert);
    field("id")->SetAsInteger(4);
    field("name")->SetAsString(QStringLiteral("washer"));
    click(nbPost);
    EXPECT_EQ(rows(), 4);
    EXPECT_EQ(id(), 4);
    click(nbInsert);
    click(nbCancel);
    EXPECT_EQ(rows(), 4);

    // Refresh shows what another program wrote.
    connection.ExecSQL(QStringLiteral("UPDATE parts SET name = 'big washer' WHERE id = 4"));
    click(nbRefresh);
    EXPECT_EQ(id(), 4);
    EXPECT_EQ(field("name")->AsString(), "big washer");

    {
        MessageLog yes;
        click(nbDelete);
        EXPECT_EQ(yes.texts, QStringList({"Delete record?"}));
    }
    EXPECT_EQ(rows(), 3);
    EXPECT_EQ(table.RecordCount(), 3);
}

TEST_P(DataControlsOnSQL, WhatTheDatabaseRefusesIsReportedAndKept)
{
    navigator->SetConfirmDelete(false);
    MessageLog messages;
    // An order still refers to the nut.
    table.Locate(QStringLiteral("id"), 2, {});
    click(nbDelete);
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_EQ(rows(), 3);
    EXPECT_EQ(table.State(), dsBrowse);
    EXPECT_EQ(id(), 2);
    EXPECT_EQ(table.RecordCount(), 3);

    // A quantity the table's check refuses: the edit goes on with the typed values.
    click(nbEdit);
    field("name")->SetAsString(QStringLiteral("hex nut"));
    field("qty")->SetAsInteger(-1);
    click(nbPost);
    ASSERT_EQ(messages.texts.size(), 2);
    EXPECT_EQ(table.State(), dsEdit);
    EXPECT_EQ(field("name")->AsString(), "hex nut");
    EXPECT_EQ(field("qty")->AsInteger(), -1);
    EXPECT_EQ(stored("qty", 2), "7");
    field("qty")->SetAsInteger(3);
    click(nbPost);
    EXPECT_EQ(messages.texts.size(), 2);
    EXPECT_EQ(stored("name", 2), "hex nut");

    // A duplicate key on insert.
    click(nbInsert);
    field("id")->SetAsInteger(1);
    field("name")->SetAsString(QStringLiteral("twin"));
    click(nbPost);
    EXPECT_EQ(messages.texts.size(), 3);
    EXPECT_EQ(table.State(), dsInsert);
    EXPECT_EQ(field("name")->AsString(), "twin");
    click(nbCancel);
    EXPECT_EQ(rows(), 3);
    EXPECT_TRUE(messages.texts[0].startsWith(QStringLiteral("The record cannot be deleted"))) << messages.texts[0].toStdString();
    EXPECT_TRUE(messages.texts[1].startsWith(QStringLiteral("The record cannot be saved"))) << messages.texts[1].toStdString();
}

TEST_P(DataControlsOnSQL, EachControlEditsTheStoredRecord)
{
    auto *name = new TDBText(&form);
    auto *paid = new TDBCheckBox(&form);
    auto *size = new TDBCheckBox(&form);
    auto *sizes = new TDBRadioGroup(&form);
    int y = 0;
    for (QWidget *control : std::initializer_list<QWidget *>{name, paid, size, sizes}) {
        control->move(0, y);
        control->show();
        y += 40;
    }
    name->SetDataSource(&source);
    name->SetDataField(QStringLiteral("name"));
    paid->SetDataSource(&source);
    paid->SetDataField(QStringLiteral("paid"));
    size->SetValueChecked(QStringLiteral("S"));
    size->SetValueUnchecked(QStringLiteral("M"));
    size->SetDataSource(&source);
    size->SetDataField(QStringLiteral("size"));
    sizes->Items()->SetText(QStringLiteral("Small\nMedium\nLarge"));
    sizes->Values()->SetText(QStringLiteral("S\nM\nL"));
    sizes->SetDataSource(&source);
    sizes->SetDataField(QStringLiteral("size"));
    sizes->resize(sizes->sizeHint());
    QApplication::processEvents();

    EXPECT_EQ(name->text(), "bolt");
    EXPECT_EQ(paid->checkState(), Qt::Checked);
    EXPECT_EQ(sizes->ItemIndex(), 0);
    paid->setFocus();
    QTest::keyClick(paid, Qt::Key_Space);
    QTest::mouseClick(sizes->Button(2), Qt::LeftButton, {}, QPoint(6, sizes->Button(2)->height() / 2));
    EXPECT_EQ(size->checkState(), Qt::Checked); // not written yet
    click(nbPost);
    EXPECT_EQ(stored("CASE WHEN paid THEN 'yes' ELSE 'no' END", 1), "no");
    EXPECT_EQ(stored("size", 1), "L");
    EXPECT_EQ(size->checkState(), Qt::PartiallyChecked);

    // A value of neither list and a NULL boolean show the third state and are left alone.
    click(nbLast);
    EXPECT_EQ(name->text(), "gear");
    EXPECT_EQ(paid->checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(size->checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(sizes->ItemIndex(), -1);
    size->setFocus();
    other->setFocus();
    EXPECT_EQ(table.State(), dsBrowse);
    EXPECT_EQ(stored("size", 3), "odd");
    QTest::mouseClick(size, Qt::LeftButton);
    other->setFocus();
    EXPECT_EQ(sizes->ItemIndex(), 0); // the group follows the field the box wrote
    click(nbPost);
    EXPECT_EQ(stored("size", 3), "S");
}

INSTANTIATE_TEST_SUITE_P(Databases, DataControlsOnSQL, testing::Values(Backend::SQLite, Backend::PostgreSQL),
                         test::BackendName);

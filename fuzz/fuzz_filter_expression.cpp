// The filter dialect: any text is parsed, and what parses is bound to a table of every kind
// of field, evaluated over its records and written as SQL for both databases. The SQLite text
// must prepare, with a "?" for every value: no filter text ever becomes SQL of its own.

#include "FuzzSupport.h"

#include "platform/db/DataSet.h"
#include "platform/db/FilterExpression.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/DateTime.h"
#include "platform/rtl/Exceptions.h"
#include "platform/sql/SQLFilter.h"

#include <sqlite3.h>

#include <cstdlib>
#include <memory>

using namespace qdb;

namespace {

TMemTable *sampleTable()
{
    static TMemTable *table = [] {
        fuzz::EnsureApplication();
        RegisterDBTypes();
        auto *t = new TMemTable;
        t->FieldDefs().Add(QStringLiteral("Name"), ftString, 20);
        t->FieldDefs().Add(QStringLiteral("Unit Price"), ftFloat);
        t->FieldDefs().Add(QStringLiteral("Qty"), ftInteger);
        t->FieldDefs().Add(QStringLiteral("Day"), ftDate);
        t->FieldDefs().Add(QStringLiteral("Stamp"), ftDateTime);
        t->FieldDefs().Add(QStringLiteral("Flag"), ftBoolean);
        t->FieldDefs().Add(QStringLiteral("Amount"), ftCurrency);
        t->CreateDataSet();
        const char *names[] = {"apple", "Pear 'x'", "", "50%_off", nullptr};
        for (int i = 0; i < 5; ++i) {
            t->Append();
            if (names[i])
                t->FieldByName(QStringLiteral("Name"))->SetAsString(QString::fromUtf8(names[i]));
            if (i != 2) {
                t->FieldByName(QStringLiteral("Unit Price"))->SetAsFloat(i * 1.25 - 1);
                t->FieldByName(QStringLiteral("Qty"))->SetAsInteger(i - 2);
                t->FieldByName(QStringLiteral("Day"))->SetAsDateTime(EncodeDate(2024, 1 + i, 1 + 7 * i));
                t->FieldByName(QStringLiteral("Stamp"))->SetAsDateTime(EncodeDate(2024, 3, 1) + i * 0.3);
                t->FieldByName(QStringLiteral("Flag"))->SetAsBoolean(i % 2 == 0);
            }
            t->Post();
        }
        return t;
    }();
    return table;
}

sqlite3 *sampleDatabase()
{
    static sqlite3 *db = [] {
        sqlite3 *d = nullptr;
        sqlite3_open(":memory:", &d);
        // The data sets' case fold, as a SQLite connection of theirs has it; here only its name counts.
        sqlite3_create_function_v2(
            d, "qdb_fold", 1, SQLITE_UTF8, nullptr,
            [](sqlite3_context *context, int, sqlite3_value **args) { sqlite3_result_value(context, args[0]); }, nullptr,
            nullptr, nullptr);
        sqlite3_exec(d,
                     "CREATE TABLE t (\"Name\" TEXT, \"Unit Price\" REAL, \"Qty\" INTEGER, \"Day\" DATE, "
                     "\"Stamp\" DATETIME, \"Flag\" BOOLEAN, \"Amount\" NUMERIC)",
                     nullptr, nullptr, nullptr);
        return d;
    }();
    return db;
}

QString quote(const QString &name)
{
    QString q = name;
    q.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + q + QLatin1Char('"');
}

void checkSQL(const FilterExpression &filter, TFilterOptions options)
{
    const SQLCondition pg = FilterToSQL(filter, options, TSQLDialect::PostgreSQL, quote);
    const SQLCondition lite = FilterToSQL(filter, options, TSQLDialect::SQLite, quote);
    const QByteArray sql = "SELECT 1 FROM t WHERE " + lite.text.toUtf8();
    sqlite3_stmt *stmt = nullptr;
    if (sqlite3_prepare_v2(sampleDatabase(), sql.constData(), int(sql.size()), &stmt, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "SQL that does not prepare: %s\n%s\n", sql.constData(), sqlite3_errmsg(sampleDatabase()));
        std::abort();
    }
    const int slots = sqlite3_bind_parameter_count(stmt);
    sqlite3_finalize(stmt);
    if (slots != lite.params.size() || pg.params.size() != lite.params.size()) {
        std::fprintf(stderr, "values and places differ: %s\n", sql.constData());
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const fuzz::Split in = fuzz::TakeChoice(data, size);
    TMemTable *table = sampleTable();
    TFilterOptions options;
    if (in.choice & 1)
        options.Include(foCaseInsensitive);
    if (in.choice & 2)
        options.Include(foNoPartialCompare);
    const QString text = fuzz::Text(in.data, in.size);
    try {
        FilterExpression filter(text);
        filter.Bind(table, options);
        checkSQL(filter, options);
    } catch (const Exception &) {
        return 0; // told as an error: what a user sees for a filter that does not read
    }
    // The same text as the table's filter: evaluated record by record and compiled.
    try {
        table->SetFilterOptions(options);
        table->SetFilter(text);
        table->SetFiltered(true);
        int accepted = 0;
        for (table->First(); !table->Eof(); table->Next())
            ++accepted;
        table->SetFiltered(false);
        if (accepted > table->RecordCount()) { // a record accepted twice
            std::fprintf(stderr, "more records accepted than there are\n");
            std::abort();
        }
    } catch (const Exception &) {
        table->SetFiltered(false);
    }
    return 0;
}

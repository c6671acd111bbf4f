// A grid over a SQLite table: the smallest application of the components. With --check it
// prints what it shows and quits, for the test that builds it against an installed copy.

#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/sql/SQLDataSet.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTemporaryDir dir;

    qdb::TSQLConnection connection;
    connection.SetConnectionString(QStringLiteral("sqlite:") + dir.filePath(QStringLiteral("shop.db")));
    connection.SetCreateDatabase(true);
    connection.Open();
    connection.ExecSQL(QStringLiteral("CREATE TABLE items (id INTEGER PRIMARY KEY, name TEXT, price REAL)"));
    connection.ExecSQL(QStringLiteral("INSERT INTO items VALUES (1, 'bolt', 0.25), (2, 'nut', 0.1), (3, 'gear', 12.5)"));

    qdb::TSQLTable table;
    table.SetConnection(&connection);
    table.SetTableName(QStringLiteral("items"));
    table.Open();
    qdb::TDataSource source;
    source.SetDataSet(&table);

    qdb::TQDBGrid grid;
    grid.SetDataSource(&source);
    grid.resize(480, 240);
    grid.show();

    if (app.arguments().contains(QStringLiteral("--check"))) {
        std::printf("%d columns, %d records, %s\n", int(grid.GetColumns()->Count()), table.RecordCount(),
                    qPrintable(grid.GetColumns()->Items(1)->GetField()->DisplayText()));
        return 0;
    }
    return app.exec();
}

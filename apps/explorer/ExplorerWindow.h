#pragma once

#include "RecordForm.h"

#include "data/QDBNavigator.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/sql/SQLConnection.h"
#include "platform/sql/SQLDataSet.h"

#include <QMainWindow>

#include <memory>
#include <vector>

class QAction;
class QLabel;
class QListWidget;

namespace explorer {

// The explorer's main window: the tables of a database on the left, the chosen one in a
// data grid, and a record counter below.
class ExplorerWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ExplorerWindow(QWidget *parent = nullptr);
    ~ExplorerWindow() override;

    // Connects to an SQLite file that exists or a postgresql:// address (throws the
    // database's error) and shows firstTable, or the first table of the list.
    void OpenDatabase(const QString &address, const QString &firstTable = {});
    // The same, but what keeps the database from opening (no such file, a damaged one) is
    // told to the user and the window is left on no database: false.
    bool TryOpenDatabase(const QString &address, const QString &firstTable = {});
    // Shows a table of the open database; false (with the reason shown) when it cannot.
    bool ShowTable(const QString &name);
    QStringList Tables() const;
    qdb::TQDBGrid *Grid() const { return grid_; }
    qdb::TQDBNavigator *Navigator() const { return navigator_; }
    RecordForm *Record() const { return record_; }
    // The footer of totals: a sum under each numeric column, a count under the others, over
    // the selected rows when there are any.
    void ShowTotals(bool on);
    QAction *TotalsAction() const { return totals_; }
    // Where each table's layout (columns, order, filters, switches) is kept between runs;
    // empty keeps nothing. The folder is made when missing.
    void SetLayoutFile(const QString &file);
    // The layouts file in the user's configuration folder.
    static QString DefaultLayoutFile();
    // The explorer's texts, the components' and Qt's in the locale's language, where there
    // is a translation; before the window is made.
    static void InstallTranslations(const QLocale &locale = QLocale());

private:
    void chooseFile();
    // The table's primary key as key fields: how the grid finds the record again after a sort.
    QString primaryKey(const QString &table);
    void updateCounter();
    // A table's section in the layouts file: the database's name, a dot, the table's.
    QString layoutSection(const QString &table) const;
    // Each column's footer adds up its field.
    void setUpTotals();
    // A column that refers to another table edits by that table's rows; a text column that
    // holds a few values again and again offers them; a long text edits in several lines.
    void setUpLists(const QString &table);
    void setUpLookup(qdb::TQColumn *column, const QString &table, const QString &key);
    void showError(const QString &text);
    // A long read shows the wait cursor and lets Esc cancel it; other input waits.
    QString readingMessage() const;
    QString cancelledMessage() const;
    void waiting();
    void doneWaiting();
    bool eventFilter(QObject *watched, QEvent *event) override;

    qdb::TSQLConnection connection_;
    qdb::TSQLTable table_;
    std::vector<std::unique_ptr<qdb::TSQLTable>> lookups_; // the tables the columns refer to
    qdb::TDataSource source_;
    qdb::TQDBGrid *grid_;
    qdb::TQDBNavigator *navigator_;
    RecordForm *record_;
    QListWidget *tables_;
    QLabel *counter_;
    QLabel *location_;
    QAction *totals_;
    QString address_;
    bool waiting_ = false;
};

} // namespace explorer

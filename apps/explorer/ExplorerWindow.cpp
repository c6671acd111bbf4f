#include "ExplorerWindow.h"
#include "Schema.h"

#include "filter/QDBGridFilter.h"

#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Translations.h"

#include <QAction>
#include <QDockWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QScrollBar>
#include <QSplitter>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlRecord>
#include <QPointer>
#include <QTranslator>
#include <QStandardPaths>
#include <QStatusBar>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

namespace explorer {

using namespace qdb;

ExplorerWindow::ExplorerWindow(QWidget *parent)
    : QMainWindow(parent), grid_(new TQDBGrid), navigator_(new TQDBNavigator), record_(new RecordForm),
      tables_(new QListWidget), counter_(new QLabel), location_(new QLabel)
{
    setWindowTitle(tr("Explorer"));
    table_.SetConnection(&connection_);
    source_.SetDataSet(&table_);
    grid_->SetDataSource(&source_);
    grid_->SetOptions(grid_->GetOptions() + dgAlwaysShowSelection + dgMultiSelect);
    // A title click sorts the table; the record the user is on stays current.
    grid_->SetOptionsEx(grid_->GetOptionsEx() + dgLoadCurrentOrder + dgAutoUpdateOrder + dgAutoKeepSelection);
    // Each title drops the list of its column's values to tick.
    grid_->GetFilterGrid()->SetAutoFilter(true);
    // Each table gets columns of its own, which its saved layout arranges.
    grid_->SetOptionsExt(grid_->GetOptionsExt() + dgForceCustomized);
    grid_->GetSettings()->SetOptions({soLoadLayout, soSaveLayout, soStretchMode, soOrderFields, soLinesCount,
                                      soAutoFilter, soFiltered, soFilters});
    grid_->GetSettings()->SetIniFile(true);

    // The navigator under the grid moves through and edits the same records.
    navigator_->SetDataSource(&source_);
    navigator_->SetFlat(true);
    auto *records = new QWidget;
    auto *column = new QVBoxLayout(records);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addWidget(grid_, 1);
    column->addWidget(navigator_);
    auto *splitter = new QSplitter;
    splitter->addWidget(tables_);
    splitter->addWidget(records);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({180, 820});
    setCentralWidget(splitter);
    // The current record, a control for each field, beside the rows.
    auto *dock = new QDockWidget(tr("Record"), this);
    dock->setObjectName(QStringLiteral("RecordDock"));
    dock->setWidget(record_);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    statusBar()->addWidget(location_, 1);
    // Room for large tables, so that the counter does not jump about as it changes.
    counter_->setMinimumWidth(counter_->fontMetrics().horizontalAdvance(tr("Record %1 of %2").arg(99999999).arg(99999999)));
    counter_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    statusBar()->addPermanentWidget(counter_);

    QMenu *file = menuBar()->addMenu(tr("&File"));
    QAction *open = file->addAction(tr("&Open SQLite database..."), this, &ExplorerWindow::chooseFile);
    open->setShortcut(QKeySequence::Open);
    file->addSeparator();
    QAction *quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);

    QMenu *view = menuBar()->addMenu(tr("&View"));
    QAction *fit = view->addAction(tr("&Fit columns to their content"), grid_, &TQDBGrid::AdjustColumnsWidth);
    fit->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
    QAction *stretch = view->addAction(tr("&Stretch columns to the window"));
    stretch->setCheckable(true);
    connect(stretch, &QAction::toggled, this, [this](bool on) { grid_->SetStretchMode(on); });
    connect(view, &QMenu::aboutToShow, stretch, [this, stretch] { stretch->setChecked(grid_->GetStretchMode()); });
    view->addAction(tr("&Columns..."), grid_, &TQDBGrid::ShowColumnsDialog);
    view->addAction(dock->toggleViewAction());
    totals_ = view->addAction(tr("&Totals"));
    totals_->setCheckable(true);
    totals_->setChecked(true);
    totals_->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_T));
    connect(totals_, &QAction::toggled, this, &ExplorerWindow::ShowTotals);
    ShowTotals(true);

    connect(tables_, &QListWidget::currentTextChanged, this, [this](const QString &name) {
        if (!name.isEmpty())
            ShowTable(name);
    });
    connection_.OnWait = [this](TSQLConnection *, int) { waiting(); };
    connection_.AfterWait = [this](TObject *) { doneWaiting(); };
    source_.OnDataChange = [this](TObject *, TField *) { updateCounter(); };
    source_.OnStateChange = [this](TObject *) { updateCounter(); };
    // A large table is counted after its first rows are shown, when the grid sizes its bar.
    connect(grid_->verticalScrollBar(), &QScrollBar::rangeChanged, this, &ExplorerWindow::updateCounter);
    resize(1000, 640);
}

ExplorerWindow::~ExplorerWindow()
{
    connection_.OnWait = nullptr;
    connection_.AfterWait = nullptr;
    grid_->SetDataSource(nullptr);
    source_.OnDataChange = nullptr;
    source_.OnStateChange = nullptr;
    table_.Close();
}

void ExplorerWindow::OpenDatabase(const QString &address, const QString &firstTable)
{
    record_->Clear();
    table_.Close();
    connection_.Close();
    connection_.SetConnectionString(address);
    // SQLite would make an empty file of a name mistyped.
    if (connection_.Dialect() == TSQLDialect::SQLite && !QFileInfo::exists(connection_.DatabaseName()))
        throw Exception(tr("The database %1 does not exist").arg(address));
    connection_.Open();
    address_ = address;
    location_->setText(address.startsWith(QLatin1String("postgres")) ? QUrl(address).toDisplayString(QUrl::RemovePassword)
                                                                     : QFileInfo(address).absoluteFilePath());
    const QSignalBlocker block(tables_);
    tables_->clear();
    tables_->addItems(Tables());
    // Only the table asked for is opened: a large first table costs nothing then.
    const QString first = !firstTable.isEmpty() ? firstTable : tables_->count() > 0 ? tables_->item(0)->text() : QString();
    if (!first.isEmpty() && ShowTable(first))
        grid_->setFocus(); // the keys go to the rows from the start
    updateCounter();
}

QStringList ExplorerWindow::Tables() const
{
    if (!connection_.Connected())
        return {};
    QStringList names = const_cast<TSQLConnection &>(connection_).Database().tables(QSql::Tables);
    names.sort(Qt::CaseInsensitive);
    return names;
}

bool ExplorerWindow::ShowTable(const QString &name)
{
    try {
        record_->Clear(); // its controls name the fields of the table shown until now
        table_.Close(); // the layout of the table shown until now is saved
        lookups_.clear();
        // The new table's own columns, arranged by its saved layout as it opens.
        grid_->GetColumns()->SetState(csDefault);
        grid_->GetSettings()->SetSection(layoutSection(name));
        table_.SetTableName(name);
        table_.SetIndexFieldNames(QString());
        grid_->SetKeyFields(primaryKey(name));
        table_.Open();
        setUpTotals();
        setUpLists(name);
        record_->Build(grid_);
        setWindowTitle(tr("%1 - Explorer").arg(name));
        const QSignalBlocker block(tables_);
        const QList<QListWidgetItem *> items = tables_->findItems(name, Qt::MatchFixedString);
        if (!items.isEmpty())
            tables_->setCurrentItem(items.first());
        updateCounter();
        return true;
    } catch (const Exception &e) {
        showError(e.Message());
        return false;
    }
}

void ExplorerWindow::SetLayoutFile(const QString &file)
{
    if (!file.isEmpty())
        QDir().mkpath(QFileInfo(file).absolutePath());
    grid_->GetSettings()->SetFileName(file);
    grid_->GetSettings()->SetActive(!file.isEmpty());
}

QString ExplorerWindow::DefaultLayoutFile()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation)).filePath(QStringLiteral("layouts.ini"));
}

void ExplorerWindow::InstallTranslations(const QLocale &locale)
{
    qdb::InstallTranslations(locale);
    static QPointer<QTranslator> own;
    delete own; // the language installed before, if any
    own = new QTranslator(QCoreApplication::instance());
    if (own->load(locale, QStringLiteral("explorer"), QStringLiteral("_"), QStringLiteral(":/explorer/i18n")))
        QCoreApplication::installTranslator(own);
    else
        delete own;
}

QString ExplorerWindow::layoutSection(const QString &table) const
{
    const QString database = address_.startsWith(QLatin1String("postgres")) ? QUrl(address_).path().mid(1)
                                                                            : QFileInfo(address_).completeBaseName();
    return database + QLatin1Char('.') + table;
}

QString ExplorerWindow::primaryKey(const QString &table)
{
    const QSqlIndex index = connection_.Database().primaryIndex(table);
    QStringList names;
    for (int i = 0; i < index.count(); ++i)
        names << index.fieldName(i);
    return names.join(QLatin1Char(';'));
}

void ExplorerWindow::chooseFile()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Open SQLite database"), QString(),
                                                      tr("SQLite databases (*.db *.sqlite *.sqlite3);;All files (*)"));
    if (!path.isEmpty())
        TryOpenDatabase(path);
}

bool ExplorerWindow::TryOpenDatabase(const QString &address, const QString &firstTable)
{
    try {
        OpenDatabase(address, firstTable);
        return true;
    } catch (const Exception &e) {
        table_.Close();
        connection_.Close();
        address_.clear();
        location_->clear();
        const QSignalBlocker block(tables_);
        tables_->clear();
        setWindowTitle(tr("Explorer"));
        updateCounter();
        showError(e.Message());
        return false;
    }
}

void ExplorerWindow::ShowTotals(bool on)
{
    const TQDBGridOptionsEx totals{dgTotalFooter};
    grid_->SetOptionsEx(on ? grid_->GetOptionsEx() + totals : grid_->GetOptionsEx() - totals);
    totals_->setChecked(on);
    grid_->UpdateTotals(false);
}

void ExplorerWindow::setUpTotals()
{
    for (TQColumn *column : *grid_->GetColumns()) {
        TField *field = column->GetField();
        if (!field)
            continue;
        const VarType type = field->ValueType();
        const bool numeric = type == VarType::Integer || type == VarType::Double || type == VarType::Currency;
        TQColumnTotalValue *footer = column->GetTotalFooter();
        footer->SetFieldName(field->FieldName());
        footer->SetTotalResult(trCalcValue);
        footer->SetCalcValue(numeric ? cvSum : cvCount);
        footer->SetAlignment(numeric ? taRightJustify : taLeftJustify);
    }
}

void ExplorerWindow::setUpLists(const QString &table)
{
    constexpr int MostPicks = 12;
    QStringList referring;
    for (const ForeignKey &fk : ForeignKeys(connection_, table)) {
        if (TQColumn *column = grid_->GetColumns()->FindColumn(fk.column)) {
            setUpLookup(column, fk.table, fk.key.isEmpty() ? primaryKey(fk.table) : fk.key);
            referring << fk.column;
        }
    }
    const QStringList keys = primaryKey(table).split(QLatin1Char(';'));
    const QStringList longTexts = LongTextColumns(connection_, table);
    static constexpr TFieldType amounts[] = {ftFloat, ftCurrency, ftBCD, ftFMTBcd};
    for (TQColumn *column : *grid_->GetColumns()) {
        TField *f = column->GetField();
        // Amounts and prices are worked out with the calculator.
        if (f && f->FieldKind() == fkData && std::find(std::begin(amounts), std::end(amounts), f->DataType()) != std::end(amounts)) {
            column->SetButtonStyle(cbsCalculator);
            continue;
        }
        if (!f || f->DataType() != ftString || f->FieldKind() != fkData
            || referring.contains(f->FieldName(), Qt::CaseInsensitive) || keys.contains(f->FieldName(), Qt::CaseInsensitive))
            continue;
        // Text of no declared length is written at length: its button opens several lines.
        if (longTexts.contains(f->FieldName(), Qt::CaseInsensitive)) {
            column->SetButtonStyle(cbsEllipsis);
            continue;
        }
        const QStringList values = FewValues(connection_, table, f->FieldName(), MostPicks);
        if (!values.isEmpty())
            column->GetPickList()->SetText(values.join(QLatin1Char('\n')));
    }
}

void ExplorerWindow::setUpLookup(TQColumn *column, const QString &table, const QString &key)
{
    auto lookup = std::make_unique<TSQLTable>();
    lookup->SetConnection(&connection_);
    lookup->SetTableName(table);
    lookup->Open();
    // The row is named by its first required text; a table without one is chosen by key.
    QString result = key;
    const QSqlRecord declared = connection_.Database().record(table);
    for (TField *f : lookup->Fields()) {
        const QSqlField declaredField = declared.field(f->FieldName());
        if (f->DataType() == ftString && declaredField.requiredStatus() == QSqlField::Required
            && f->FieldName().compare(key, Qt::CaseInsensitive) != 0) {
            result = f->FieldName();
            break;
        }
    }
    QStringList shown{result};
    for (TField *f : lookup->Fields()) {
        if (shown.size() == 3)
            break;
        if (f->FieldName() != result && f->FieldName().compare(key, Qt::CaseInsensitive) != 0 && !f->IsBlob())
            shown << f->FieldName();
    }
    // Listed in the order of what is shown, so that typing finds its way down the list; the
    // open table takes the order without opening again.
    lookup->SetIndexFieldNames(result == key ? key : result + QLatin1Char(';') + key);
    column->SetLookupDataSet(lookup.get());
    column->SetKeyField(column->GetFieldName());
    column->SetLookupKeyField(key);
    column->SetLookupResultField(result);
    if (result != key) // the name shown, not the number stored
        column->SetAlignment(taLeftJustify);
    column->GetLookupListFields()->SetText(shown.join(QLatin1Char('\n')));
    column->SetListOptions(column->GetListOptions() + loShowLookupListTitles);
    if (result == key) // a number typed is a number, not the start of one to look for
        column->SetListOptions(column->GetListOptions() - loAutoComplete);
    lookups_.push_back(std::move(lookup));
}

void ExplorerWindow::updateCounter()
{
    if (!table_.Active()) {
        counter_->clear();
        return;
    }
    const int recNo = table_.RecNo();
    if (!table_.RecordCountKnown()) {
        counter_->setText(recNo > 0 ? tr("Record %1").arg(recNo) : QString());
        return;
    }
    const int count = table_.RecordCount();
    counter_->setText(recNo > 0 ? tr("Record %1 of %2").arg(recNo).arg(count) : tr("%n record(s)", nullptr, count));
}

QString ExplorerWindow::readingMessage() const
{
    return tr("Reading... press Esc to cancel");
}

QString ExplorerWindow::cancelledMessage() const
{
    return tr("Cancelled");
}

void ExplorerWindow::waiting()
{
    if (!waiting_) {
        waiting_ = true;
        QApplication::setOverrideCursor(Qt::WaitCursor);
        // A read that puts back what a cancelled one left keeps saying that it was cancelled.
        if (statusBar()->currentMessage() != cancelledMessage())
            statusBar()->showMessage(readingMessage());
        qApp->installEventFilter(this);
    }
    // Painting and timers go on; reads they ask for wait their turn.
    QCoreApplication::processEvents();
}

void ExplorerWindow::doneWaiting()
{
    if (!waiting_)
        return;
    waiting_ = false;
    qApp->removeEventFilter(this);
    QApplication::restoreOverrideCursor();
    if (connection_.Cancelled())
        statusBar()->showMessage(cancelledMessage(), 10000);
    else if (statusBar()->currentMessage() == readingMessage())
        statusBar()->clearMessage(); // what an earlier read had to say stays
}

bool ExplorerWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (!waiting_)
        return QMainWindow::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape)
            connection_.Cancel();
        return true;
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::Close:
        return true; // the user's input waits for the read to end
    default:
        return false;
    }
}

void ExplorerWindow::showError(const QString &text)
{
    if (connection_.Cancelled()) // said in the status bar already
        return;
    statusBar()->showMessage(text, 10000);
    if (isVisible())
        MessageDlg(text, mtError, {mbOK});
}

} // namespace explorer

#include "grid/QDBGrid.h"

#include "DbTestSupport.h"
#include "TestSupport.h"

#include "platform/db/DBConsts.h"
#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Streaming.h"

#include <QApplication>
#include <QBuffer>
#include <QFontMetrics>
#include <QJsonObject>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

using namespace qdb;
using namespace qdb::test;

namespace {

// Remembers which cells were painted since the last reset.
class Grid : public TQDBGrid
{
public:
    using TQDBGrid::TQDBGrid;
    QSet<QPair<int, int>> drawn;

protected:
    void DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state) override
    {
        drawn.insert({col, row});
        TQDBGrid::DrawCell(painter, col, row, rect, state);
    }
};

// A column class of an application's own, made by its own grid class.
class NotedColumn : public TQColumn
{
public:
    using TQColumn::TQColumn;
    QString note = QStringLiteral("mine");
};

class NotingGrid : public TQDBGrid
{
public:
    using TQDBGrid::TQDBGrid;

protected:
    TQColumn *CreateColumns(TQDBGridColumns *columns) override { return new NotedColumn(columns); }
};

class ForwardOnlyTable : public TMemTable
{
public:
    bool IsUnidirectional() const override { return true; }
};

class DBGrid : public ::testing::Test
{
protected:
    void SetUp() override
    {
        table = MakeOrders(100);
        source.SetDataSet(table.get());
        grid.resize(500, 10 * grid.DefaultRowHeight() + 80);
        grid.SetDataSource(&source);
        grid.show();
        QApplication::processEvents();
    }
    // The Qty shown in each data row that holds a record.
    QStringList shownQty() const
    {
        QStringList out;
        const int col = grid.DataToRawColumn(2);
        for (int r = grid.FixedRows(); r < grid.FixedRows() + grid.DataLink()->RecordCount(); ++r)
            out << grid.CellText(col, r);
        return out;
    }
    void paintNow()
    {
        grid.drawn.clear();
        grid.viewport()->repaint();
    }
    void key(Qt::Key k, Qt::KeyboardModifiers mods = Qt::NoModifier) { QTest::keyClick(&grid, k, mods); }

    std::unique_ptr<TMemTable> table;
    TDataSource source;
    Grid grid;
};

} // namespace

TEST_F(DBGrid, ShowsAWindowOfRecordsUnderTheTitles)
{
    EXPECT_EQ(grid.ColCount(), 1 + 6); // the indicator and one column per field
    EXPECT_EQ(grid.FixedRows(), 1);
    const int visible = grid.VisibleRowCount();
    ASSERT_GE(visible, 5);
    EXPECT_EQ(grid.DataLink()->RecordCount(), visible - 1); // the last visible row is the blank filler
    EXPECT_EQ(grid.RowCount(), 1 + grid.DataLink()->RecordCount() + 1);
    EXPECT_EQ(shownQty().first(), "1");
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(1), 5), QString()); // NULL name at record 5
    EXPECT_EQ(grid.GetColumns()->Items(3)->GetTitle()->GetCaption(), "Unit Price");
    EXPECT_EQ(grid.Row(), 1);

    // The vertical bar tells where the record is in the data set, not which row is current.
    EXPECT_EQ(grid.verticalScrollBar()->maximum(), 99);
    table->Last();
    EXPECT_EQ(grid.verticalScrollBar()->value(), 99);
    EXPECT_EQ(shownQty().last(), "100");
    EXPECT_EQ(grid.Row(), grid.RowCount() - 2);
    grid.verticalScrollBar()->setValue(49);
    EXPECT_EQ(table->RecNo(), 50);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), grid.Row()), "50");
}

TEST_F(DBGrid, KeysAndClicksMoveTheDataSet)
{
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    EXPECT_EQ(table->RecNo(), 3);
    EXPECT_EQ(grid.Row(), 3);
    key(Qt::Key_Up);
    EXPECT_EQ(table->RecNo(), 2);
    key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_TRUE(table->Eof());
    key(Qt::Key_Down); // nothing past the last record
    EXPECT_EQ(table->RecNo(), 100);
    key(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(table->RecNo(), 1);
    const int page = grid.VisibleRowCount();
    key(Qt::Key_PageDown);
    EXPECT_EQ(table->RecNo(), 1 + page);

    table->First();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.CellRect(grid.DataToRawColumn(1), 4).center());
    EXPECT_EQ(table->RecNo(), 4);
    EXPECT_EQ(grid.Row(), 4);
    EXPECT_EQ(grid.Col(), grid.DataToRawColumn(1));
    // The blank filler row holds no record: clicking it leaves the data set where it is.
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.CellRect(2, grid.RowCount() - 1).center());
    EXPECT_EQ(table->RecNo(), 4);
}

TEST_F(DBGrid, TheWheelMovesThroughRecords)
{
    const auto wheel = [&](int angle, Qt::KeyboardModifiers mods = Qt::NoModifier) {
        const QPointF at = grid.CellRect(2, 2).center();
        QWheelEvent event(at, grid.viewport()->mapToGlobal(at), QPoint(), QPoint(0, angle), Qt::NoButton, mods,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(grid.viewport(), &event);
    };
    wheel(-120);
    EXPECT_EQ(table->RecNo(), 1 + QApplication::wheelScrollLines());
    table->First();
    wheel(-120, Qt::ControlModifier);
    EXPECT_EQ(table->RecNo(), 2);
    grid.SetWheelScrollRows(5);
    wheel(-240);
    EXPECT_EQ(table->RecNo(), 12);
    wheel(120);
    EXPECT_EQ(table->RecNo(), 7);

    // An untouched new record is dropped by the wheel, not scrolled away from.
    const int count = table->RecordCount();
    table->Insert();
    wheel(-120);
    EXPECT_EQ(table->State(), dsBrowse);
    EXPECT_EQ(table->RecordCount(), count);

    // The application sees each turn first, with its direction, and may keep it for itself.
    int downs = 0, ups = 0;
    grid.OnMouseWheelDown = [&](TObject *, Qt::KeyboardModifiers, const QPoint &, bool &handled) { handled = ++downs == 1; };
    grid.OnMouseWheelUp = [&](TObject *, Qt::KeyboardModifiers shift, const QPoint &, bool &) {
        EXPECT_TRUE(shift.testFlag(Qt::ControlModifier));
        ++ups;
    };
    const int before = table->RecNo();
    wheel(-240); // two turns down: the first kept by the handler
    EXPECT_EQ(downs, 2);
    EXPECT_EQ(table->RecNo(), before + 5);
    wheel(120, Qt::ControlModifier);
    EXPECT_EQ(ups, 1);
    EXPECT_EQ(table->RecNo(), before + 4);
}

TEST_F(DBGrid, OneRecordScrollRepaintsOnlyTheNewRowAndTheIndicator)
{
    table->MoveBy(grid.DataLink()->RecordCount() - 1); // the last row of the window
    paintNow();
    const int last = grid.Row();
    grid.drawn.clear();
    key(Qt::Key_Down);
    QApplication::processEvents();
    EXPECT_EQ(grid.Row(), last);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), last), QString::number(table->RecNo()));
    QSet<int> rows;
    for (const auto &cell : grid.drawn)
        if (cell.first > 0)
            rows.insert(cell.second);
    // The rows above moved as pixels; only the row that came in is painted cell by cell.
    EXPECT_FALSE(rows.contains(1));
    EXPECT_FALSE(rows.contains(last / 2));
    EXPECT_TRUE(rows.contains(last));
    EXPECT_TRUE(grid.drawn.contains({0, last}));
    EXPECT_TRUE(grid.drawn.contains({0, last - 1})); // the indicator left the row that scrolled up
}

TEST_F(DBGrid, StripedRowsArePaintedAgainRatherThanMoved)
{
    grid.SetDrawingOptions(grid.GetDrawingOptions() + gdoStripedRows);
    table->MoveBy(grid.DataLink()->RecordCount() - 1);
    paintNow();
    const int last = grid.Row();
    grid.drawn.clear();
    key(Qt::Key_Down);
    QApplication::processEvents();
    EXPECT_TRUE(grid.drawn.contains({1, 1}));
    EXPECT_TRUE(grid.drawn.contains({1, last / 2}));
}

TEST_F(DBGrid, GridModeNumbersTheRecordsAndKeepsTheWindowFull)
{
    grid.SetupRecNumber(table->RecordCount());
    ASSERT_TRUE(grid.ForcedSequence());
    EXPECT_FALSE(grid.GridMode()); // not asked for
    grid.SetOptionsExt({dgScrollGridMode, dgScrollPageMode});
    ASSERT_TRUE(grid.GridMode());
    EXPECT_EQ(grid.RecNumber(), 1);

    // At the first record a step back is the data set's own, and its result is returned.
    EXPECT_EQ(grid.MoveBy(-1), 0);
    EXPECT_EQ(table->RecNo(), 1);
    EXPECT_TRUE(table->Bof());

    EXPECT_EQ(grid.MoveBy(5), 5);
    EXPECT_EQ(grid.RecNumber(), 6);
    key(Qt::Key_Down); // the data set scrolls: the numbering follows it
    EXPECT_EQ(grid.RecNumber(), 7);
    EXPECT_EQ(grid.RecNumber(), table->RecNo());

    // Far moves stop where the window still ends at the last record.
    const int visible = grid.VisibleRowCount();
    const int active = grid.DataLink()->ActiveRecord();
    grid.MoveBy(1000);
    EXPECT_EQ(grid.RecNumber(), grid.RecCount() - visible + active + 1);
    EXPECT_EQ(grid.RecNumber(), table->RecNo());
    EXPECT_EQ(grid.verticalScrollBar()->value(), grid.RecNumber() - 1);
    // Page mode: a wheel step is a window.
    EXPECT_EQ(grid.MouseWheelScrollRows(Qt::NoModifier), visible);

    grid.SetupRecNumber(-1);
    EXPECT_FALSE(grid.GridMode());
    EXPECT_EQ(grid.RecNumber(), table->RecNo());
}

TEST_F(DBGrid, FollowsChangesOfTheDataSet)
{
    table->Edit();
    table->FieldByName(QStringLiteral("Qty"))->SetAsInteger(777);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), 1), "777");
    table->Post();

    // A disabled grid does not follow a batch of changes until it is enabled again.
    const int rows = grid.RowCount();
    grid.DisableGrid();
    table->Last();
    while (table->RecordCount() > 3)
        table->Delete();
    EXPECT_EQ(grid.RowCount(), rows);
    grid.EnableGrid();
    EXPECT_EQ(grid.RowCount(), 1 + 3 + 1);
    table->First();

    table->Close();
    EXPECT_FALSE(grid.DataLink()->Active());
    EXPECT_EQ(grid.RowCount(), 1 + 1 + 1);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), 1), QString());
    table->Open();
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), 1), "777");

    // An empty data set shows one empty row, and the indicator shows no current record.
    while (!table->IsEmpty())
        table->Delete();
    EXPECT_EQ(grid.RowCount(), 1 + 1 + 1);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(2), 1), QString());
    const QImage image = grid.grab().toImage();
    EXPECT_FALSE(image.isNull());
}

TEST_F(DBGrid, EditsInPlaceAndPostsOnLeavingTheRecord)
{
    grid.setFocus();
    grid.SetCol(grid.DataToRawColumn(1));
    key(Qt::Key_F2);
    ASSERT_TRUE(grid.EditorMode());
    QWidget *editor = grid.findChild<QLineEdit *>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(editor, QStringLiteral("Bob"));
    EXPECT_EQ(table->State(), dsEdit);
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_FALSE(grid.EditorMode());
    key(Qt::Key_Down);
    EXPECT_EQ(table->State(), dsBrowse);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(1), 1), "Bob");

    // Esc leaves the editor, a second Esc gives the record back as it was.
    key(Qt::Key_F2);
    editor = grid.findChild<QLineEdit *>();
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(editor, QStringLiteral("Ann"));
    QTest::keyClick(editor, Qt::Key_Escape);
    key(Qt::Key_Escape);
    EXPECT_EQ(table->State(), dsBrowse);
    EXPECT_EQ(table->FieldByName(QStringLiteral("Name"))->AsString(), "r2");

    // Insert opens a new record in the grid; Esc drops it.
    const int count = table->RecordCount();
    key(Qt::Key_Insert);
    EXPECT_EQ(table->State(), dsInsert);
    key(Qt::Key_Escape);
    EXPECT_EQ(table->RecordCount(), count);
}

TEST_F(DBGrid, TextAFieldRefusesStaysInTheEditor)
{
    QStringList messages;
    ScopedMessageDlgHook hook([&](const QString &message, TMsgDlgType, TMsgDlgButtons) {
        messages << message;
        return mrOk;
    });
    grid.setFocus();
    grid.SetCol(grid.DataToRawColumn(2)); // Qty, an integer
    key(Qt::Key_F2);
    auto *editor = grid.findChild<QLineEdit *>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(editor, QStringLiteral("12x"));
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].contains(QStringLiteral("12x"))) << messages[0].toStdString();
    EXPECT_TRUE(grid.EditorMode());
    EXPECT_EQ(editor->text(), "12x");
    QTest::keyClick(editor, Qt::Key_Tab); // nor can the user leave the cell with it
    EXPECT_EQ(messages.size(), 2);
    EXPECT_EQ(grid.Col(), grid.DataToRawColumn(2));
    key(Qt::Key_Down); // nor the record
    EXPECT_EQ(table->RecNo(), 1);
    EXPECT_EQ(messages.size(), 3);

    QTest::keyClick(editor, Qt::Key_Backspace);
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(messages.size(), 3);
    EXPECT_FALSE(grid.EditorMode());
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 12);

    // Esc in the editor takes the typed text back; the record is posted unchanged.
    key(Qt::Key_F2);
    QTest::keyClicks(editor, QStringLiteral("99"));
    QTest::keyClick(editor, Qt::Key_Escape);
    key(Qt::Key_Down);
    EXPECT_EQ(messages.size(), 3);
    table->First();
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 12);
}

TEST_F(DBGrid, ChangesByTheProgramMeetTypedText)
{
    grid.setFocus();
    grid.SetCol(grid.DataToRawColumn(1)); // Name
    key(Qt::Key_F2);
    auto *editor = grid.findChild<QLineEdit *>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, QStringLiteral("typed"));
    // Another field changing puts the typed text into its field first.
    table->FieldByName(QStringLiteral("Qty"))->SetAsInteger(5);
    EXPECT_EQ(table->FieldByName(QStringLiteral("Name"))->AsString(), "typed");
    EXPECT_EQ(editor->text(), "typed");
    // The field under the editor changing shows the new value in the editor.
    QTest::keyClicks(editor, QStringLiteral(" more"));
    table->FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("program"));
    EXPECT_EQ(editor->text(), "program");
    QTest::keyClick(editor, Qt::Key_Return);
    key(Qt::Key_Down);
    table->First();
    EXPECT_EQ(table->FieldByName(QStringLiteral("Name"))->AsString(), "program");
    EXPECT_EQ(table->FieldByName(QStringLiteral("Qty"))->AsInteger(), 5);
}

TEST_F(DBGrid, ColumnsOfMissingFieldsStayEmpty)
{
    TQColumn *qty = grid.GetColumns()->Add();
    qty->SetFieldName(QStringLiteral("Qty"));
    TQColumn *gone = grid.GetColumns()->Add();
    gone->SetFieldName(QStringLiteral("NoSuchField"));
    ASSERT_EQ(grid.GetColumns()->State(), csCustomized);
    // The user's columns replace nothing the grid made by itself, and the layout follows them.
    EXPECT_EQ(grid.ColCount(), 1 + grid.GetColumns()->Count());
    const int goneCol = grid.DataToRawColumn(grid.GetColumns()->Count() - 1);
    EXPECT_EQ(grid.CellText(goneCol, 1), QString());
    EXPECT_EQ(grid.CellText(goneCol - 1, 1), "1");
    grid.SetLeftCol(goneCol - 1);
    paintNow(); // painting a column without a field must not fail
    EXPECT_TRUE(grid.drawn.contains({goneCol, 1}));
}

TEST(DBGridSetup, TheFieldMapStopsOneShortOfItsLimit)
{
    EXPECT_NO_THROW(TQGridDataLink::CheckMappingRoom(TQGridDataLink::MaxMappings - 1));
    try {
        TQGridDataLink::CheckMappingRoom(TQGridDataLink::MaxMappings);
        ADD_FAILURE() << "no error at the limit";
    } catch (const EInvalidGridOperation &e) {
        EXPECT_EQ(e.Message(), DBConsts::STooManyColumns());
    }
}

TEST_F(DBGrid, ColumnFilesRestoreColumnsAndOrder)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("columns.json"));
    TQDBGridColumns *columns = grid.GetColumns();
    columns->BeginUpdate();
    columns->Clear();
    TQColumn *qty = columns->Add();
    qty->SetFieldName(QStringLiteral("Qty"));
    qty->SetWidth(90);
    qty->GetTitle()->SetCaption(QStringLiteral("Quantity"));
    TQColumn *name = columns->Add();
    name->SetFieldName(QStringLiteral("Name"));
    name->SetVisible(false);
    name->GetReport()->Visible = false;
    columns->EndUpdate();
    grid.SetOrderFields(QStringLiteral("Qty DESC,Name"));
    columns->SaveToFile(file);
    EXPECT_FALSE(ReadTextFile(file).contains(QStringLiteral("AutoHeight"))); // defaults are not written

    columns->SetState(csDefault);
    grid.SetOrderFields(QString());
    columns->LoadFromFile(file);
    ASSERT_EQ(columns->Count(), 2);
    EXPECT_EQ(columns->State(), csCustomized);
    EXPECT_EQ(columns->Items(0)->GetFieldName(), "Qty");
    EXPECT_EQ(columns->Items(0)->GetWidth(), 90);
    EXPECT_EQ(columns->Items(0)->GetTitle()->GetCaption(), "Quantity");
    EXPECT_FALSE(columns->Items(1)->GetVisible());
    EXPECT_FALSE(columns->Items(1)->GetReport()->IsPrinted());
    EXPECT_EQ(columns->Items(1)->GetTitle()->GetCaption(), "Name"); // not stored: still the field's
    EXPECT_EQ(grid.GetOrderFields(), "Qty DESC,Name");
    EXPECT_EQ(grid.ColCount(), 1 + 2);
    EXPECT_EQ(grid.ColWidths(grid.DataToRawColumn(0)), 90);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(0), 1), "1");

    // A file that cannot be read leaves the columns and the order as they were.
    const auto unchanged = [&] {
        ASSERT_EQ(columns->Count(), 2);
        EXPECT_EQ(columns->Items(0)->GetWidth(), 90);
        EXPECT_EQ(grid.GetOrderFields(), "Qty DESC,Name");
    };
    for (const QByteArray &bad : {QByteArray("{\"Columns\": [{\"FieldName\": \"ID\"}, {\"Widht\": 5}]}"),
                                  QByteArray("{\"Columns\": [{\"FieldName\": \"ID\", \"Width\": \"wide\"}]}"),
                                  QByteArray("{\"Columns\": [{\"FieldNa"), QByteArray()}) {
        WriteTextFile(file, bad);
        EXPECT_THROW(columns->LoadFromFile(file), EReadError) << bad.constData();
        unchanged();
    }
    EXPECT_THROW(columns->LoadFromFile(dir.filePath(QStringLiteral("missing.json"))), EFOpenError);
    unchanged();
}

TEST_F(DBGrid, AGridClassMakesEveryColumnOfItsOwnColumnClass)
{
    NotingGrid own;
    own.SetDataSource(&source);
    TQDBGridColumns *columns = own.GetColumns();
    auto allNoted = [&](const char *after) {
        SCOPED_TRACE(after);
        ASSERT_GT(columns->Count(), 0);
        for (TQColumn *c : *columns)
            EXPECT_NE(dynamic_cast<NotedColumn *>(c), nullptr) << c->GetFieldName().toStdString();
    };
    allNoted("default columns");
    columns->SetState(csCustomized);
    allNoted("columns built from the fields");
    columns->Add()->SetFieldName(QStringLiteral("Qty"));
    allNoted("a column added");
    QBuffer stream;
    stream.open(QIODevice::ReadWrite);
    columns->SaveToStream(stream);
    stream.seek(0);
    columns->LoadFromStream(stream);
    allNoted("columns read from a stream");
    own.SetDataSource(nullptr);
}

TEST_F(DBGrid, LayoutLinesOfTheColumns)
{
    TQDBGridColumns *columns = grid.GetColumns();
    columns->SetState(csCustomized);
    columns->FindColumn(QStringLiteral("Qty"))->SetWidth(120);
    columns->FindColumn(QStringLiteral("Name"))->SetVisible(false);
    columns->FindColumn(QStringLiteral("Paid"))->GetReport()->Visible = false;
    TStringList layout;
    columns->GetSettings(layout);
    const int ppi = grid.CurrentPPI();
    EXPECT_EQ(layout.Count(), 1 + 6 + 1);
    EXPECT_EQ(layout[0], "Columns=6");
    EXPECT_EQ(layout[2].left(layout[2].indexOf(QLatin1Char(','))), "Column2=Name");
    EXPECT_TRUE(layout[2].endsWith(",0,0,1")) << layout[2].toStdString();
    EXPECT_EQ(layout[3], "Column3=Qty,120,1,0,1");
    EXPECT_TRUE(layout[6].endsWith(",1,0,0")) << layout[6].toStdString();
    EXPECT_EQ(layout[7], QStringLiteral("CurrentPPI=%1").arg(ppi));

    // A layout from a screen of twice the density, naming a field that no longer exists,
    // with items missing or unreadable.
    TStringList saved;
    saved.SetText(QStringLiteral("Columns=4\nColumn1=Qty,100,1,0,0\nColumn2=Gone,50,1,1,1\n"
                                 "Column3=Name,80,1\nColumn4=Paid,x,,y\nCurrentPPI=%1\n").arg(2 * ppi));
    columns->ApplySettings(saved);
    EXPECT_EQ(columns->Items(0)->GetFieldName(), "Qty");
    EXPECT_EQ(columns->Items(0)->GetWidth(), 50);
    EXPECT_FALSE(columns->Items(0)->GetReport()->Visible);
    TQColumn *name = columns->FindColumn(QStringLiteral("Name"));
    EXPECT_EQ(name->Index(), 2);
    EXPECT_EQ(name->GetWidth(), 40);
    EXPECT_TRUE(name->GetVisible());
    TQColumn *paid = columns->FindColumn(QStringLiteral("Paid"));
    EXPECT_EQ(paid->Index(), 3);
    EXPECT_FALSE(paid->GetReport()->Visible); // unreadable: kept
    EXPECT_TRUE(paid->GetVisible());
    EXPECT_EQ(grid.ColWidths(grid.DataToRawColumn(0)), 50);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(0), 1), "1");

    // The separator is the application's to choose.
    ColumnSettingsSeparator() = QStringLiteral(";");
    TStringList semicolons;
    columns->GetSettings(semicolons);
    ColumnSettingsSeparator() = QStringLiteral(",");
    EXPECT_EQ(semicolons[1], "Column1=Qty;50;1;0;0");
}

TEST_F(DBGrid, ResizingAGridMadeColumnResizesItsField)
{
    TField *qty = table->FieldByName(QStringLiteral("Qty"));
    TQColumn *column = grid.GetColumns()->FindColumn(QStringLiteral("Qty"));
    const int digit = QFontMetrics(column->GetFont()).horizontalAdvance(QLatin1Char('0'));
    grid.SetOptions(grid.GetOptions() + dgTitleWidthOff); // the caption does not widen the column
    column->SetWidth(30 * digit + 4);
    EXPECT_EQ(qty->DisplayWidth(), 30);
    EXPECT_FALSE(column->IsWidthStored());
    EXPECT_EQ(column->GetWidth(), 30 * digit + 4);
    EXPECT_EQ(grid.ColWidths(grid.DataToRawColumn(column->Index())), 30 * digit + 4);

    // Dragging the title border does the same, and the column shows the width its field keeps.
    const int raw = grid.DataToRawColumn(column->Index());
    const QRect title = grid.CellRect(raw, 0);
    const QPoint border(title.right() + 1, title.center().y());
    QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, border);
    QTest::mouseMove(grid.viewport(), border + QPoint(5 * digit + 1, 0));
    QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, border + QPoint(5 * digit + 1, 0));
    EXPECT_EQ(qty->DisplayWidth(), 35);
    EXPECT_EQ(grid.ColWidths(raw), 35 * digit + 4);

    // A column of the user's keeps the width itself.
    grid.GetColumns()->SetState(csCustomized);
    column = grid.GetColumns()->FindColumn(QStringLiteral("Qty"));
    column->SetWidth(77);
    EXPECT_EQ(column->GetWidth(), 77);
    EXPECT_EQ(qty->DisplayWidth(), 35);
}

TEST_F(DBGrid, ABiggerFontMakesRowsAndColumnsBigger)
{
    TQColumn *name = grid.GetColumns()->FindColumn(QStringLiteral("Name"));
    const int rowHeight = grid.DefaultRowHeight();
    const int width = name->GetWidth();
    const int rows = grid.DataLink()->RecordCount();
    QFont big = grid.font();
    big.setPointSize(big.pointSize() * 2);
    grid.setFont(big);
    EXPECT_GT(grid.DefaultRowHeight(), rowHeight);
    EXPECT_GT(name->GetWidth(), width);
    EXPECT_EQ(grid.ColWidths(grid.DataToRawColumn(name->Index())), name->GetWidth());
    EXPECT_GT(grid.RowHeights(0), rowHeight); // the title follows too
    EXPECT_LT(grid.DataLink()->RecordCount(), rows); // fewer records fit
}

TEST_F(DBGrid, AutomaticColumnsComeFirst)
{
    TQDBGridColumns *columns = grid.GetColumns();
    grid.SetOptionsExt({dgAutoNumberColumn, dgAutoSelectColumn, dgAutoExpandColumn});
    ASSERT_EQ(columns->Count(), 6 + 3);
    EXPECT_EQ(columns->State(), csDefault);
    EXPECT_TRUE(columns->Items(0)->GetAutoNumber());
    EXPECT_EQ(columns->Items(0)->GetTitle()->GetCaption(), "No.");
    EXPECT_EQ(columns->Items(0)->GetTitle()->GetAlignment(), taRightJustify);
    EXPECT_EQ(columns->Items(0)->GetWidth(), AutoColumnWidth());
    EXPECT_TRUE(columns->Items(1)->GetCheckBox());
    EXPECT_EQ(columns->Items(1)->GetTitle()->GetCaption(), "Select");
    EXPECT_TRUE(columns->Items(2)->GetExpandBox());
    EXPECT_EQ(columns->Items(2)->GetTitle()->GetAlignment(), taCenter);
    EXPECT_EQ(columns->Items(3)->GetFieldName(), "ID");
    EXPECT_EQ(grid.ColCount(), 1 + 9);
    EXPECT_EQ(grid.CellText(grid.DataToRawColumn(0), 3), "3.");

    grid.SetOptionsExt({});
    EXPECT_EQ(columns->Count(), 6);
    EXPECT_EQ(columns->Items(0)->GetFieldName(), "ID");

    // Looks go back to their defaults; the columns stay.
    columns->SetState(csCustomized);
    TQColumn *qty = columns->FindColumn(QStringLiteral("Qty"));
    const int natural = qty->GetWidth();
    qty->SetWidth(natural + 50);
    qty->GetTitle()->SetCaption(QStringLiteral("How many"));
    columns->RestoreDefaults();
    EXPECT_EQ(qty->GetWidth(), natural);
    EXPECT_EQ(qty->GetTitle()->GetCaption(), "Qty");
    EXPECT_EQ(grid.ColWidths(grid.DataToRawColumn(qty->Index())), natural);
}

TEST_F(DBGrid, LookupKindOfAColumn)
{
    TMemTable customers;
    customers.setObjectName(QStringLiteral("Customers"));
    customers.FieldDefs().Add(QStringLiteral("ID"), ftInteger);
    customers.FieldDefs().Add(QStringLiteral("Customer"), ftString, 40);
    customers.CreateDataSet();
    TQDBGridColumns *columns = grid.GetColumns();
    columns->SetState(csCustomized);
    TQColumn *qty = columns->FindColumn(QStringLiteral("Qty"));
    EXPECT_EQ(qty->GetLookupColumn(), lcNotDefined);

    qty->SetLookupDataSet(&customers);
    qty->SetKeyField(QStringLiteral("qty"));
    qty->SetLookupKeyField(QStringLiteral("ID"));
    qty->SetLookupResultField(QStringLiteral("Customer"));
    EXPECT_EQ(qty->GetLookupColumn(), lcLookupValueField);
    // The column shows the looked-up value: its width and caption come from that field.
    EXPECT_EQ(qty->MeasuredField(), customers.FieldByName(QStringLiteral("Customer")));
    EXPECT_EQ(qty->GetTitle()->GetCaption(), "Customer");

    qty->SetLookupResultField(QStringLiteral("id"));
    EXPECT_EQ(qty->GetLookupColumn(), lcLookupKeyField);
    qty->SetKeyField(QStringLiteral("Name"));
    EXPECT_EQ(qty->GetLookupColumn(), lcLookupResultField);
    qty->SetLookupResultField(QString());
    EXPECT_EQ(qty->GetLookupColumn(), lcNotDefined);

    // A lookup field brings its own definition, which the column then does not store.
    TMemTable orders;
    AddField(orders, QStringLiteral("CustNo"), ftInteger);
    AddLookupField(orders, QStringLiteral("Company"), &customers, QStringLiteral("CustNo"), QStringLiteral("ID"),
                   QStringLiteral("Customer"));
    orders.CreateDataSet();
    source.SetDataSet(&orders);
    TQColumn *column = columns->Add();
    column->SetFieldName(QStringLiteral("Company"));
    column->SetKeyField(QStringLiteral("Other"));
    EXPECT_EQ(column->GetLookupColumn(), lcLookupField);
    EXPECT_EQ(column->GetKeyField(), "CustNo");
    EXPECT_EQ(column->GetLookupDataSet(), &customers);
    const QJsonObject json = WriteComponent(column);
    EXPECT_FALSE(json.contains(QStringLiteral("KeyField")));
    EXPECT_FALSE(json.contains(QStringLiteral("LookupDataSet")));
    source.SetDataSet(nullptr);
}

TEST_F(DBGrid, ColumnTreesAndTheirHeaders)
{
    TQDBGridColumns *columns = grid.GetColumns();
    columns->SetState(csCustomized); // ID, Name, Qty, Unit Price, OrderDate, Paid
    TQColumn *name = columns->Items(1);
    TQColumn *qty = columns->Items(2);
    TQColumn *price = columns->Items(3);
    TQColumn *date = columns->Items(4);
    name->SetExpandCols(2);
    EXPECT_EQ(qty->GetParentColumn(), name);
    EXPECT_EQ(price->GetParentColumn(), name);
    EXPECT_EQ(date->GetParentColumn(), nullptr);
    EXPECT_EQ(price->Depth(), 1);

    // An expanded parent gives its place to its children; collapsed, it hides them.
    EXPECT_TRUE(name->GetExpanded());
    EXPECT_FALSE(name->Showing());
    EXPECT_TRUE(qty->Showing());
    name->SetExpanded(false);
    EXPECT_TRUE(name->Showing());
    EXPECT_FALSE(qty->Showing());
    EXPECT_EQ(grid.ColWidths(grid.DataToRawColumn(qty->Index())), -grid.GridLineWidth());
    EXPECT_FALSE(date->GetExpanded()); // a plain column never reads as expanded
    name->SetExpanded(true);

    // Children hang their titles under the parent's caption.
    qty->GetTitle()->SetHeader(QStringLiteral("Count"));
    EXPECT_EQ(qty->GetTitle()->GetHeader(), "Name|Count");
    EXPECT_EQ(qty->GetTitle()->GetHeaderRowCount(), 2);
    EXPECT_EQ(qty->GetTitle()->GetHeaderRows(0), "Name");
    EXPECT_EQ(qty->GetTitle()->GetHeaderRows(1), "Count");
    EXPECT_EQ(qty->GetTitle()->GetHeaderRows(2), QString());
    EXPECT_EQ(qty->GetTitle()->HeaderRight(0), price);
    name->GetTitle()->SetCaption(QString());
    EXPECT_EQ(price->GetTitle()->GetHeader(), " ");
    grid.SetColumnNesting(false);
    EXPECT_EQ(qty->GetTitle()->GetHeader(), "Count");
    EXPECT_EQ(price->GetTitle()->GetHeaderRowCount(), 0);

    // The last column decides whether the columns are the user's.
    TQColumn *made = columns->Add();
    made->SetFieldName(QStringLiteral("ID"));
    made->SetStored(false);
    EXPECT_EQ(columns->State(), csDefault);
    made->SetStored(true);
    EXPECT_EQ(columns->State(), csCustomized);

    // A column whose field is missing maps to no field and makes the fields not the default ones.
    made->SetFieldName(QStringLiteral("Gone"));
    EXPECT_EQ(grid.DataLink()->GetMappedIndex(made->Index()), -1);
    EXPECT_FALSE(grid.DataLink()->DefaultFields());
    EXPECT_EQ(grid.DataLink()->GetFields(made->Index()), nullptr);
}

TEST_F(DBGrid, HeadersBlocksChecksAndFittedWidths)
{
    TQDBGridColumns *columns = grid.GetColumns();
    columns->SetState(csCustomized); // ID, Name, Qty, Unit Price, OrderDate, Paid
    TQColumn *qty = columns->Items(2);
    TQColumn *price = columns->Items(3);
    TQColumn *date = columns->Items(4);
    qty->GetTitle()->SetHeader(QStringLiteral("Sale"));
    price->GetTitle()->SetHeader(QStringLiteral("Sale"));
    date->GetTitle()->SetHeader(QStringLiteral("Dates"));
    EXPECT_EQ(qty->GetTitle()->HeaderRight(0), price);
    EXPECT_EQ(price->GetTitle()->HeaderLeft(0), qty);
    EXPECT_EQ(date->GetTitle()->HeaderLeft(0), date);
    price->SetVisible(false); // a hidden column is passed over
    date->GetTitle()->SetHeader(QStringLiteral("Sale"));
    EXPECT_EQ(qty->GetTitle()->HeaderRight(0), date);
    price->SetVisible(true);

    // A parent moves with its children.
    TQColumn *name = columns->Items(1);
    name->SetExpandCols(2); // Qty and Unit Price hang under Name
    ASSERT_EQ(price->GetParentColumn(), name);
    name->MoveTo(3);
    EXPECT_EQ(columns->Items(3), name);
    EXPECT_EQ(columns->Items(4), qty);
    EXPECT_EQ(columns->Items(5), price);
    EXPECT_EQ(columns->Items(1), date);

    // The check box of a boolean field flips it and puts the record in edit mode.
    TQColumn *paid = columns->FindColumn(QStringLiteral("Paid"));
    const bool before = table->FieldByName(QStringLiteral("Paid"))->AsBoolean();
    paid->ToggleCheckBoxValue();
    EXPECT_EQ(table->State(), dsEdit);
    EXPECT_EQ(table->FieldByName(QStringLiteral("Paid"))->AsBoolean(), !before);
    table->Cancel();

    // Two values given as the check box's values flip a text field.
    TQColumn *nameColumn = columns->FindColumn(QStringLiteral("Name"));
    nameColumn->SetCheckBoxValues(QStringLiteral("r1;no"));
    nameColumn->ToggleCheckBoxValue();
    EXPECT_EQ(table->FieldByName(QStringLiteral("Name"))->AsString(), "no");
    nameColumn->ToggleCheckBoxValue();
    EXPECT_EQ(table->FieldByName(QStringLiteral("Name"))->AsString(), "r1");
    table->Cancel();

    // The fitted width holds the widest text on screen and the caption.
    table->Edit();
    table->FieldByName(QStringLiteral("Name"))->SetAsString(QStringLiteral("a much longer name"));
    table->Post();
    const QFontMetrics metrics(nameColumn->GetFont());
    EXPECT_GE(nameColumn->OptimalWidth(), metrics.horizontalAdvance(QStringLiteral("a much longer name")));
    nameColumn->SetWidthMax(40);
    EXPECT_EQ(nameColumn->OptimalWidth(), 40);
}

TEST(DBGridSetup, ForcedCustomColumnsAreBuiltOnActivation)
{
    auto table = MakeOrders(3);
    TDataSource source;
    source.SetDataSet(table.get());
    TQDBGrid grid;
    grid.SetOptionsExt({dgForceCustomized});
    grid.SetDataSource(&source);
    EXPECT_EQ(grid.GetColumns()->State(), csCustomized);
    EXPECT_EQ(grid.GetColumns()->Count(), 6);
    table->Close();
    table->Open();
    EXPECT_EQ(grid.GetColumns()->Count(), 6); // built once, then the user's
}

TEST(DBGridSetup, RefusesAForwardOnlyDataSet)
{
    ForwardOnlyTable table;
    table.FieldDefs().Add(QStringLiteral("A"), ftInteger);
    table.CreateDataSet();
    TDataSource source;
    source.SetDataSet(&table);
    TQDBGrid grid;
    try {
        grid.SetDataSource(&source);
        FAIL() << "a forward-only data set was accepted";
    } catch (const EDatabaseError &e) {
        EXPECT_TRUE(e.Message().contains(DBConsts::SDataSetUnidirectional()));
    }
}

TEST_F(DBGrid, TheEditorTakesTheEditorColourAndTheColumnsInputMethod)
{
    grid.setFocus();
    grid.SetCol(grid.DataToRawColumn(1));
    key(Qt::Key_F2);
    ASSERT_TRUE(grid.EditorMode());
    EXPECT_EQ(grid.InplaceEditor()->palette().color(QPalette::Base), grid.palette().color(QPalette::Base));
    EXPECT_TRUE(grid.InplaceEditor()->testAttribute(Qt::WA_InputMethodEnabled));
    key(Qt::Key_Escape);

    grid.SetDrawingOptions(grid.GetDrawingOptions() + gdoEditorColor);
    grid.SetEditorColor(0x00FF00);
    grid.GetColumns()->Items(1)->SetImeMode(imDisable);
    key(Qt::Key_F2);
    ASSERT_TRUE(grid.EditorMode());
    EXPECT_EQ(grid.InplaceEditor()->palette().color(QPalette::Base), QColor(Qt::green));
    EXPECT_FALSE(grid.InplaceEditor()->testAttribute(Qt::WA_InputMethodEnabled));
    key(Qt::Key_Escape);
    EXPECT_EQ(grid.GetColumns()->Items(2)->GetImeMode(), imDontCare); // the grid's, for the others
}

TEST_F(DBGrid, ADoubleClickOnATitleBorderFitsTheColumn)
{
    TQColumn *name = grid.GetColumns()->Items(1);
    name->SetWidth(300);
    const int raw = grid.DataToRawColumn(1);
    const QRect title = grid.CellRect(raw, 0);
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, QPoint(title.right() + 1, title.center().y()));
    // Fitted, to the whole character the grid keeps such a column's width in.
    const int digit = QFontMetrics(name->GetFont()).horizontalAdvance(QLatin1Char('0'));
    EXPECT_GE(name->GetWidth(), name->OptimalWidth());
    EXPECT_LE(name->GetWidth(), name->OptimalWidth() + 2 * digit);
    EXPECT_EQ(grid.ColWidths(raw), name->GetWidth());

    // All at once: every column takes its fitted width.
    grid.GetColumns()->Items(2)->SetWidth(250);
    grid.AdjustColumnsWidth();
    for (TQColumn *c : grid.ShowingColumns()) {
        EXPECT_GE(c->GetWidth(), c->OptimalWidth()) << c->GetFieldName().toStdString();
        EXPECT_LE(c->GetWidth(), c->OptimalWidth() + 2 * digit) << c->GetFieldName().toStdString();
    }
}

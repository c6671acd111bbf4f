// The grid's search over an in-memory table, driven through the panel with keys as a user
// does: the match rule, the four directions and the end of the rows, the two messages, the
// rows hidden without a match, and the matches marked in the painted cells.

#include "TestSupport.h"

#include "filter/QDBSearchPanel.h"
#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/Dialogs.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QProgressDialog>
#include <QScrollBar>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace qdb;

TEST(SearchMatch, LettersMakeWordsAndCaseIsUnicodes)
{
    const TQSearchOptions words{soWholeWords};
    EXPECT_EQ(SearchTextPos(QStringLiteral("abc"), QStringLiteral("xabc abc"), words), 6);
    EXPECT_EQ(SearchTextPos(QStringLiteral("abc"), QStringLiteral("xabc abc"), {}), 2);
    EXPECT_EQ(SearchTextPos(QStringLiteral("abc"), QStringLiteral("abc1"), words), 1);   // digits part words
    EXPECT_EQ(SearchTextPos(QStringLiteral("abc"), QStringLiteral("_abc_"), words), 2);  // and underscores
    EXPECT_EQ(SearchTextPos(QStringLiteral("abc"), QStringLiteral("abcd"), words), 0);
    // The rest is searched after the end of an occurrence that is not a word.
    EXPECT_EQ(SearchTextPos(QStringLiteral("aa"), QStringLiteral("aaa aa"), words), 5);
    EXPECT_EQ(SearchTextPos(QStringLiteral(u"\u00e4pfel"), QStringLiteral(u"Ein \u00c4PFEL"), {}), 5);
    EXPECT_EQ(SearchTextPos(QStringLiteral(u"\u00e4pfel"), QStringLiteral(u"Ein \u00c4PFEL"), {soCaseSensitive}), 0);
    EXPECT_EQ(SearchTextPos(QStringLiteral("50%"), QStringLiteral("rate 50% off"), {}), 6);
    EXPECT_EQ(SearchTextPos(QStringLiteral("long text"), QStringLiteral("long"), {}), 0);

    EXPECT_EQ(ShiftStateToSearchMode(Qt::ControlModifier | Qt::ShiftModifier), smFirst);
    EXPECT_EQ(ShiftStateToSearchMode(Qt::ShiftModifier | Qt::AltModifier), smPrev);
    EXPECT_EQ(ShiftStateToSearchMode(Qt::AltModifier), smLast);
    EXPECT_EQ(ShiftStateToSearchMode(Qt::NoModifier), smNext);
}

namespace {

class Search : public testing::Test
{
protected:
    void SetUp() override
    {
        RegisterDBTypes();
        table.FieldDefs().Add(QStringLiteral("id"), ftInteger);
        table.FieldDefs().Add(QStringLiteral("city"), ftString, 20);
        table.FieldDefs().Add(QStringLiteral("note"), ftString, 40);
        table.CreateDataSet();
        const char *const rows[][2] = {{"Paris", "parisian cafe"}, {"Oslo", "fjord"},  {"Rome", "near Paris? no"},
                                       {"Bern", "bears"},          {"Lima", ""},       {"Paris", "again"}};
        for (int id = 1; id <= 6; ++id)
            table.AppendRecord({id, QString::fromLatin1(rows[id - 1][0]), QString::fromLatin1(rows[id - 1][1])});
        table.First();
        source.SetDataSet(&table);
        grid.resize(500, 300);
        grid.SetDataSource(&source);
        grid.show();
        QApplication::setActiveWindow(&grid);
        grid.setFocus();
    }
    TQDBGridSearchPanel *open()
    {
        QTest::keyClick(&grid, Qt::Key_F, Qt::ControlModifier);
        return grid.SearchPanel();
    }
    // Types into the panel's box and presses a key there.
    void search(const QString &text, Qt::Key key = Qt::Key_Return, Qt::KeyboardModifiers mods = {})
    {
        QLineEdit *edit = grid.SearchPanel()->SearchBox()->lineEdit();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, key, mods);
    }
    // The id of the current record and the field of the selected column.
    QString at() const
    {
        return QStringLiteral("%1 %2").arg(table.FieldByName(QStringLiteral("id"))->AsInteger()).arg(grid.SelectedField()->FieldName());
    }

    TMemTable table;
    TDataSource source;
    TQDBGrid grid;
    QStringList messages;
    TMsgDlgType lastType = mtCustom;
    TModalResult answer = mrNo;
    ScopedMessageDlgHook hook{[this](const QString &message, TMsgDlgType type, TMsgDlgButtons) {
        messages << message;
        lastType = type;
        return answer;
    }};
};

} // namespace

TEST_F(Search, ThePanelFindsCellAfterCellAndSaysWhenNothingIsLeft)
{
    TQDBGridSearchPanel *panel = open();
    ASSERT_TRUE(panel && panel->isVisible());
    EXPECT_TRUE(panel->SearchBox()->lineEdit()->hasFocus());
    EXPECT_GE(panel->geometry().top(), grid.viewport()->geometry().bottom()); // below the rows

    search(QStringLiteral("paris"));
    EXPECT_EQ(at(), "1 city"); // after the selected column of the current record
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_F3);
    EXPECT_EQ(at(), "1 note"); // the same record's next match
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_F3);
    EXPECT_EQ(at(), "3 note");
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_F3);
    EXPECT_EQ(at(), "6 city");
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(at(), "3 note");
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_F3, Qt::ControlModifier);
    EXPECT_EQ(at(), "1 city");
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_F3, Qt::AltModifier);
    EXPECT_EQ(at(), "6 city");
    EXPECT_TRUE(messages.isEmpty());

    // Past the last match: asked whether to start again; No leaves the grid where it was.
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_F3);
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages[0], "Search match not found!\rRestart search from the beginning?");
    EXPECT_EQ(lastType, mtInformation);
    EXPECT_EQ(at(), "6 city");
    answer = mrYes;
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_F3);
    EXPECT_EQ(at(), "1 city");
    // Wrapping around asks nothing; without a match anywhere, the text is named.
    messages.clear();
    grid.GetSearch()->SwitchOptions({soWrapAround}, true);
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(at(), "6 city");
    EXPECT_TRUE(messages.isEmpty());
    search(QStringLiteral("parisx"));
    EXPECT_EQ(messages, QStringList({"Search string 'parisx' not found!"}));
    EXPECT_EQ(at(), "6 city");
    grid.GetSearch()->SwitchOptions({soSkipMessage}, true);
    grid.GetSearch()->SwitchOptions({soWrapAround}, false);
    search(QStringLiteral("zzz"));
    EXPECT_EQ(messages.size(), 1);

    // The history keeps each text once, the last first, case aside.
    EXPECT_EQ(panel->History(), QStringList({"zzz", "parisx", "paris"}));
    panel->SearchBox()->setEditText(QStringLiteral("PARIS"));
    panel->Search(smFirst);
    EXPECT_EQ(panel->History(), QStringList({"PARIS", "zzz", "parisx"}));

    // F3 in the grid goes on; Esc in the box closes the panel once the key is through.
    grid.setFocus();
    QTest::keyClick(&grid, Qt::Key_F3);
    EXPECT_EQ(at(), "1 note");
    panel->SearchBox()->setFocus();
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_Escape);
    EXPECT_TRUE(panel->isVisible());
    QApplication::processEvents();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_EQ(grid.viewport()->height(), grid.maximumViewportSize().height() - (grid.horizontalScrollBar()->isVisible() ? grid.horizontalScrollBar()->height() : 0)); // the rows have the room again
}

TEST_F(Search, OneColumnWholeWordsAndAnEditInProgress)
{
    TQDBGridSearchPanel *panel = open();
    ASSERT_TRUE(panel);
    grid.GetSearch()->SwitchOptions({soCurrentCol, soSkipMessage}, true);
    grid.SetCol(grid.DataToRawColumn(2)); // note
    search(QStringLiteral("paris"), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(at(), "1 note");
    search(QStringLiteral("paris"));
    EXPECT_EQ(at(), "3 note"); // the next record: one cell a record
    grid.GetSearch()->SwitchOptions({soCurrentCol}, false);
    grid.GetSearch()->SwitchOptions({soWholeWords}, true);
    search(QStringLiteral("paris"), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(at(), "1 city"); // not "parisian"

    // A search moves as any move does: the edit is posted first.
    table.Edit();
    table.FieldByName(QStringLiteral("note"))->SetAsString(QStringLiteral("Paris again"));
    search(QStringLiteral("paris"));
    EXPECT_EQ(at(), "1 note");
    EXPECT_EQ(table.State(), dsBrowse);
    // An edit the data set refuses stays as typed, and the search tells why.
    table.FieldByName(QStringLiteral("city"))->SetRequired(true);
    table.Edit();
    table.FieldByName(QStringLiteral("city"))->Clear();
    search(QStringLiteral("fjord"));
    EXPECT_EQ(table.State(), dsEdit);
    EXPECT_EQ(messages.size(), 1);
    EXPECT_EQ(at(), "1 city"); // at the field that wants a value
}

TEST_F(Search, FilterRowsHidesTheRowsWithoutTheText)
{
    TQDBGridSearchPanel *panel = open();
    ASSERT_TRUE(panel);
    grid.GetSearch()->SwitchOptions({soSkipMessage}, true);
    search(QStringLiteral("paris"));
    panel->OptionAction(soFilterRows)->trigger();
    EXPECT_TRUE(grid.GetSearch()->GetOptions().Contains(soFilterRows));
    EXPECT_EQ(table.RecordCount(), 3);
    search(QStringLiteral("a"));
    EXPECT_EQ(table.RecordCount(), 5); // in any column
    // Only the selected column with soCurrentCol.
    grid.SetCol(grid.DataToRawColumn(1));
    grid.GetSearch()->SwitchOptions({soCurrentCol}, true);
    EXPECT_EQ(table.RecordCount(), 3);
    // No text shows every row; so does closing the panel.
    search(QStringLiteral("bear"));
    EXPECT_EQ(table.RecordCount(), 0);
    panel->SearchBox()->lineEdit()->clear();
    panel->Search(smNext);
    EXPECT_EQ(table.RecordCount(), 6);
    search(QStringLiteral("lima"));
    EXPECT_EQ(table.RecordCount(), 1);
    panel->Button(TQDBGridSearchPanel::sbClose)->click();
    EXPECT_EQ(table.RecordCount(), 6);

    // A permanent panel stays through Esc.
    grid.GetSearch()->SetPermanent(true);
    open();
    EXPECT_FALSE(panel->Button(TQDBGridSearchPanel::sbClose)->isVisible());
    QTest::keyClick(panel->SearchBox()->lineEdit(), Qt::Key_Escape);
    QApplication::processEvents();
    EXPECT_TRUE(panel->isVisible());
    // Above the rows, when asked.
    grid.GetSearch()->SetPanelOnTop(true);
    EXPECT_LE(panel->geometry().bottom(), grid.viewport()->geometry().top());
}

TEST_F(Search, MatchesAreMarkedInTheGridsColours)
{
    grid.SetCol(grid.DataToRawColumn(0));
    const QRect cell = grid.CellRect(grid.DataToRawColumn(1), grid.TitleOffset() + 1); // Oslo
    const auto marked = [&] {
        const QImage image = grid.viewport()->grab(cell).toImage();
        const QColor mark = grid.PaintColor(clDefault, grid.DefaultSelectionColor());
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == mark;
        return count;
    };
    EXPECT_EQ(marked(), 0);
    grid.GetSearch()->SetText(QStringLiteral("sl"));
    const int shown = marked();
    EXPECT_GT(shown, 20);
    grid.SetDrawingOptions(grid.GetDrawingOptions() - TGridDrawingOptions{gdoHighlightText});
    EXPECT_EQ(marked(), 0);
    grid.SetDrawingOptions(grid.GetDrawingOptions() + TGridDrawingOptions{gdoHighlightText});
    grid.GetSearch()->SetActive(false);
    EXPECT_EQ(marked(), 0);
}

TEST_F(Search, ALongWalkShowsItsProgressAndStopsAtEsc)
{
    // Texts only a handler writes: each record must be looked at, slowly.
    for (int id = 7; id <= 20000; ++id)
        table.AppendRecord({id, QStringLiteral("Town"), QStringLiteral("plain")});
    table.FieldByName(QStringLiteral("note"))->OnGetText = [](TField *f, QString &text, bool) {
        QThread::usleep(200);
        text = f->AsString();
    };
    table.First();
    ProgressEscaper escaper;
    grid.GetSearch()->SetText(QStringLiteral("nowhere"));
    EXPECT_FALSE(grid.SearchGrid(smNext));
    EXPECT_TRUE(escaper.Seen());
    EXPECT_TRUE(messages.isEmpty()); // stopped, not "not found"
    EXPECT_EQ(table.FieldByName(QStringLiteral("id"))->AsInteger(), 1); // back where it was
}

// The grid's search: cell by cell through the display texts of the showing columns, the
// panel that drives it, and the row filter it adds to the grid's record handler.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"
#include "QDBGridProgress.h"

#include "filter/QDBSearchPanel.h"
#include "platform/rtl/Format.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

#include <algorithm>

namespace qdb {

TQDBGridSearch *TQCustomDBGrid::GetSearch() const
{
    if (!d_->search)
        d_->search = new TQDBGridSearch(const_cast<TQCustomDBGrid *>(this));
    return d_->search;
}

TQDBGridSearchPanel *TQCustomDBGrid::SearchPanel() const
{
    return d_->searchPanel.data();
}

namespace {

// Whether a column's cells show their field's own display text.
bool showsFieldText(TQColumn *column)
{
    return !column->GetAutoNumber() && column->GetLookupColumn() != lcLookupValueField && !column->GetMultiSelectList()
        && column->GetPickList()->Count() == 0;
}

} // namespace

bool TQCustomDBGrid::describeSearch(const QString &text, TQSearchOptions options, TTextSearch &search) const
{
    search = TTextSearch();
    search.Text = text;
    search.CaseSensitive = options.Contains(soCaseSensitive);
    search.WholeWords = options.Contains(soWholeWords);
    QList<TQColumn *> columns;
    if (options.Contains(soCurrentCol)) {
        columns << ColumnAt(Col());
    } else {
        for (int i = 0; i < GetColumns()->Count(); ++i)
            columns << GetColumns()->Items(i);
    }
    // Record numbers hold digits and a point alone.
    const QString compared = search.CaseSensitive ? text : text.toUpper();
    const bool numberMayShow = std::all_of(compared.begin(), compared.end(),
                                           [](QChar c) { return c.isDigit() || c == QLatin1Char('.'); });
    for (TQColumn *column : columns) {
        if (!column || !column->Showing())
            continue;
        if (column->GetAutoNumber()) {
            if (numberMayShow)
                return false;
            continue;
        }
        TField *f = column->GetField();
        if (!f)
            continue; // it shows nothing
        if (!showsFieldText(column))
            return false;
        if (!search.FieldNames.contains(f->FieldName()))
            search.FieldNames << f->FieldName();
    }
    return true;
}

bool TQCustomDBGrid::SearchCell(TQSearchMode mode, const QString &text, TQSearchOptions options)
{
    d_->searchStopped = false;
    TDataSet *ds = DataSet();
    if (text.isEmpty() || !DataLink()->Active() || !ds || ds->IsEmpty())
        return false;
    ds->CheckBrowseMode(); // as any other move: the edit is posted first
    const int first = IndicatorOffset();
    const int last = ColCount() - 1;
    const bool currentOnly = options.Contains(soCurrentCol);
    const bool forward = mode == smFirst || mode == smNext;
    const int selected = Col();
    // The first column from `start` on, in the search's direction, whose cell shows the text.
    const auto matchingCol = [&](int start) {
        for (int col = start; forward ? col <= last : col >= first; forward ? ++col : --col) {
            TQColumn *column = ColumnAt(col);
            if (column && column->Showing() && (!currentOnly || col == selected)
                && SearchTextPos(text, column->GetDisplayText(), options) > 0)
                return col;
        }
        return -1;
    };
    const int rowStart = forward ? first : last;
    // The rest of the current record's cells come first.
    if (!currentOnly && (mode == smNext || mode == smPrev)) {
        const bool rowSelect = GetOptions().Contains(dgRowSelect);
        const int found = matchingCol(forward ? (rowSelect ? last + 1 : selected + 1) : (rowSelect ? first - 1 : selected - 1));
        if (found >= 0) {
            SetCol(found);
            return true;
        }
    }
    // The database finds the records that may show it, where it can.
    TTextSearch search;
    if (describeSearch(text, options, search)) {
        const TSearchFrom from = mode == smFirst ? TSearchFrom::First
            : mode == smLast                     ? TSearchFrom::Last
            : mode == smNext                     ? TSearchFrom::Next
                                                 : TSearchFrom::Prior;
        const int found = ds->FindText(search, from, [&] { return matchingCol(rowStart) >= 0; });
        if (found > 0)
            SetCol(matchingCol(rowStart));
        if (found >= 0)
            return found > 0;
    }
    return walkSearch(mode, matchingCol, rowStart);
}

bool TQCustomDBGrid::walkSearch(TQSearchMode mode, const std::function<int(int)> &matchingCol, int rowStart)
{
    TDataSet *ds = DataSet();
    const bool forward = mode == smFirst || mode == smNext;
    const auto step = [&] {
        if (forward)
            ds->Next();
        else
            ds->Prior();
        return forward ? !ds->Eof() : !ds->Bof();
    };
    int found = -1;
    DisablePosition();
    try {
        bool scan = true;
        switch (mode) {
        case smFirst: ds->First(); break;
        case smLast: ds->Last(); break;
        default: scan = step(); break;
        }
        TQWalkProgress progress(this, QApplication::translate("qdb", "Searching..."),
                                ds->RecordCountKnown() ? ds->RecordCount() : 0, SearchProgressDelay);
        while (scan) {
            found = matchingCol(rowStart);
            if (found >= 0)
                break;
            scan = step();
            if (!progress.Step()) {
                d_->searchStopped = true;
                break;
            }
        }
    } catch (...) {
        EnablePosition(true);
        throw;
    }
    EnablePosition(found < 0);
    if (found >= 0)
        SetCol(found);
    return found >= 0;
}

bool TQCustomDBGrid::SearchGrid(TQSearchMode mode)
{
    const TQDBGridSearch *search = GetSearch();
    const QString text = search->GetText();
    const TQSearchOptions options = search->GetOptions();
    TDataSet *ds = DataSet();
    if (text.isEmpty() || !DataLink()->Active() || !ds)
        return false;
    bool found = SearchCell(mode, text, options);
    if (d_->searchStopped)
        return false; // the user stopped it: nothing more to say
    if (!found && (mode == smNext || mode == smPrev) && !ds->IsEmpty()) {
        bool again = options.Contains(soWrapAround);
        if (!again) {
            if (options.Contains(soSkipMessage))
                return false;
            // An information, not a confirmation: the user asked for nothing risky.
            again = MessageDlg(QApplication::translate("qdb", "Search match not found!\rRestart search from the beginning?"),
                               mtInformation, {mbYes, mbNo})
                == mrYes;
            if (!again)
                return false;
        }
        found = SearchCell(mode == smNext ? smFirst : smLast, text, options);
        if (d_->searchStopped)
            return false;
    }
    if (!found && !options.Contains(soSkipMessage))
        MessageDlg(Format(QApplication::translate("qdb", "Search string '%s' not found!"), {text}), mtInformation, {mbOK});
    return found;
}

void TQCustomDBGrid::ShowSearchPanel()
{
    if (!d_->searchPanel)
        d_->searchPanel = new TQDBGridSearchPanel(this);
    TQDBGridSearchPanel *panel = d_->searchPanel;
    panel->show();
    UpdateSearchPanel();
    if (panel->SearchBox()->currentText().isEmpty() && !GetSearch()->GetText().isEmpty())
        panel->SearchBox()->setEditText(GetSearch()->GetText());
    panel->SearchBox()->lineEdit()->selectAll();
    panel->SearchBox()->setFocus();
}

void TQCustomDBGrid::CloseSearchPanel()
{
    TQDBGridSearchPanel *panel = d_->searchPanel;
    if (!panel || panel->isHidden())
        return;
    const bool hadFocus = panel->isAncestorOf(QApplication::focusWidget());
    panel->hide();
    placeSearchPanel();
    // Rows hidden and cells marked by a search nobody sees any more come back.
    showingErrors([this] { GetSearch()->SetText(QString()); });
    if (hadFocus)
        setFocus();
}

void TQCustomDBGrid::UpdateSearchPanel()
{
    if (TQDBGridSearchPanel *panel = d_->searchPanel) {
        panel->UpdatePanel();
        placeSearchPanel();
    }
}

void TQCustomDBGrid::placeSearchPanel()
{
    TQDBGridSearchPanel *panel = d_->searchPanel;
    const bool shown = panel && !panel->isHidden();
    const int height = shown ? panel->sizeHint().height() : 0;
    const bool onTop = GetSearch()->GetPanelOnTop();
    setViewportMargins(0, onTop ? height : 0, 0, onTop ? 0 : height);
    if (shown) {
        const QRect rows = viewport()->geometry();
        panel->setGeometry(rows.left(), onTop ? rows.top() - height : rows.bottom() + 1, rows.width(), height);
    }
}

void TQCustomDBGrid::SearchChanged()
{
    viewport()->update();
}

} // namespace qdb

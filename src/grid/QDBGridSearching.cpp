// The grid's search: cell by cell through the display texts of the showing columns, the
// panel that drives it, and the row filter it adds to the grid's record handler.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "filter/QDBSearchPanel.h"
#include "platform/rtl/Format.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

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

bool TQCustomDBGrid::SearchCell(TQSearchMode mode, const QString &text, TQSearchOptions options)
{
    TDataSet *ds = DataSet();
    if (text.isEmpty() || !DataLink()->Active() || !ds || ds->IsEmpty())
        return false;
    ds->CheckBrowseMode(); // as any other move: the edit is posted first
    const int first = IndicatorOffset();
    const int last = ColCount() - 1;
    const bool currentOnly = options.Contains(soCurrentCol);
    const bool forward = mode == smFirst || mode == smNext;
    const int selected = Col();
    const auto matches = [&](int col) {
        TQColumn *column = ColumnAt(col);
        return column && column->Showing() && (!currentOnly || col == selected)
            && SearchTextPos(text, column->GetDisplayText(), options) > 0;
    };
    int found = -1;
    DisablePosition();
    try {
        int start = forward ? first : last;
        bool scan = true;
        switch (mode) {
        case smFirst: ds->First(); break;
        case smLast: ds->Last(); break;
        case smNext:
            if (currentOnly) {
                ds->Next();
                scan = !ds->Eof();
            } else {
                start = GetOptions().Contains(dgRowSelect) ? last + 1 : selected + 1;
            }
            break;
        case smPrev:
            if (currentOnly) {
                ds->Prior();
                scan = !ds->Bof();
            } else {
                start = GetOptions().Contains(dgRowSelect) ? first - 1 : selected - 1;
            }
            break;
        }
        while (scan) {
            for (int col = start; found < 0 && (forward ? col <= last : col >= first); forward ? ++col : --col)
                if (matches(col))
                    found = col;
            if (found >= 0)
                break;
            if (forward) {
                ds->Next();
                scan = !ds->Eof();
            } else {
                ds->Prior();
                scan = !ds->Bof();
            }
            start = forward ? first : last;
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

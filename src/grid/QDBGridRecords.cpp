// The record window: how data set events become rows, scrolling and repaints.

#include "QDBGrid.h"

#include "QDBGridAccessible.h"
#include "QDBGridPrivate.h"

#include "editors/QDBEditor.h"

#include <QCoreApplication>
#include <algorithm>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTimer>

namespace qdb {

int TQCustomDBGrid::RecNumber() const
{
    TDataSet *ds = DataSet();
    if (!DataLink()->Active() || !ds)
        return -1;
    return ForcedSequence() ? d_->seqNumber : ds->RecNo();
}

int TQCustomDBGrid::RecCount() const
{
    TDataSet *ds = DataSet();
    if (!DataLink()->Active() || !ds)
        return 0;
    return ForcedSequence() ? d_->seqCount : qMax(0, ds->RecordCount());
}

bool TQCustomDBGrid::ForcedSequence() const { return d_->seqCount >= 0; }
bool TQCustomDBGrid::GridMode() const { return ForcedSequence() && d_->optionsExt.Contains(dgScrollGridMode); }
bool TQCustomDBGrid::PageMode() const { return GridMode() && d_->optionsExt.Contains(dgScrollPageMode); }
bool TQCustomDBGrid::RowsMode() const { return d_->optionsExt.Contains(dgScrollRowsMode); }

void TQCustomDBGrid::SetupRecNumber(int count)
{
    d_->seqCount = count;
    if (count >= 0) {
        // Numbered from where the data set is, when it knows; from the first record else.
        const int recNo = DataLink()->Active() && DataSet() ? DataSet()->RecNo() : -1;
        d_->seqNumber = recNo > 0 ? recNo : 1;
    }
    UpdateScrollBar();
}

void TQCustomDBGrid::moveSequence(int by)
{
    if (ForcedSequence())
        d_->seqNumber = qBound(1, d_->seqNumber + by, qMax(1, d_->seqCount));
}

bool TQCustomDBGrid::StripesOn() const
{
    return d_->drawingOptions.Contains(gdoStripedRows) && d_->stripeColor != clNone;
}

void TQCustomDBGrid::keepFieldLayout(bool active)
{
    TDataSet *ds = DataSet();
    if (!ds || d_->columns->State() != csDefault)
        return;
    if (!active) {
        d_->keptFieldsOf = ds;
        d_->keptFields.clear();
        for (TField *f : ds->FieldList())
            d_->keptFields.append({f->FullName(), f->DisplayWidth(), f->Visible()});
        return;
    }
    // The same fields, in whatever order the data set now makes them: the order, widths and
    // visibility they had come back.
    QList<TField *> fields;
    if (d_->keptFieldsOf == ds && d_->keptFields.size() == ds->FieldList().Count())
        for (const Private::KeptField &kept : std::as_const(d_->keptFields))
            if (TField *f = ds->FindField(kept.name); f && !fields.contains(f))
                fields << f;
    if (fields.size() == ds->FieldList().Count())
        for (int i = 0; i < fields.size(); ++i) {
            fields[i]->SetIndex(i);
            fields[i]->SetDisplayWidth(d_->keptFields[i].displayWidth);
            fields[i]->SetVisible(d_->keptFields[i].visible);
        }
    d_->keptFieldsOf = nullptr;
    d_->keptFields.clear();
}

void TQCustomDBGrid::LinkActive(bool value)
{
    // Saved while the columns still show what the user made of them.
    if (!value && d_->layoutLoaded) {
        d_->layoutLoaded = false;
        autoSaveLayout();
    }
    keepFieldLayout(value);
    const bool gridMade = value && d_->columns->State() == csDefault;
    if (value && d_->columns->State() == csDefault && d_->optionsExt.Contains(dgForceCustomized))
        d_->columns->SetState(csCustomized);
    if (!value) {
        HideEditor();
        // Back to the first data row: the grid follows the data set going, it does not move it.
        const QScopedValueRollback<bool> following(d_->settingActive, true);
        SetRow(FixedRows());
    }
    SelectedRows().LinkActive(value);
    SelectedCols().Clear();
    d_->selectionAnchor.clear();
    UpdateFilter();
    LayoutChanged();
    UpdateListItems(false);
    UpdateRowCount();
    UpdateScrollBar();
    if (value && d_->optionsEx.Contains(dgLoadCurrentOrder))
        SetupCurrentOrder();
    if (value) {
        if (!d_->optionsEx.Contains(dgLoadCurrentOrder)) {
            // The order given before there were columns marks them now, and is applied.
            if (d_->columns->State() == csDefault)
                SetupOrderFields(d_->orderFields);
            if (d_->optionsEx.Contains(dgAutoUpdateOrder))
                ChangeDataSetOrder();
        }
        keepDefaultColumns(gridMade);
        if (d_->settings->GetActive() && !d_->destroying) {
            d_->layoutLoaded = true;
            autoLoadLayout();
        }
        SynchronizeWithMaster();
        AlwaysShowEditor();
    }
    // Activation often happens while a form is still being built: once the events of
    // building it are through, the grid fits itself again.
    if (value)
        QCoreApplication::postEvent(this, new QEvent(DeferredUpdateEvent));
}

void TQCustomDBGrid::customEvent(QEvent *event)
{
    if (event->type() != DeferredUpdateEvent) {
        TCustomGrid::customEvent(event);
        return;
    }
    if (!DataLink()->Active())
        return;
    UpdateRowCount();
    UpdateScrollBar();
    UpdateActive();
}

void TQCustomDBGrid::DataChanged()
{
    d_->editColumn = -1; // the record was read again: nothing typed is pending
    if (UpdateLocked())
        return;
    TDataSet *ds = DataSet();
    if (ds && ds->State() == dsBrowse && d_->cancelling == 0) {
        SelectedRows().DataChanged();
        UpdateTreeView(false);
        UpdateListItems(true);
        UpdateSequence(true);
    }
    UpdateRowCount();
    UpdateScrollBar();
    UpdateActive();
    InvalidateEditor();
    InvalidateGrid();
}

void TQCustomDBGrid::RecordChanged(TField *)
{
    InvalidateRow(Row());
    InvalidateEditor();
}

void TQCustomDBGrid::InvalidateEditor()
{
    if (DataLink()->IsModified() || d_->typing > 0)
        return;
    d_->editColumn = -1;
    if (auto *editor = qobject_cast<TQDBGridEditor *>(InplaceEditor()))
        editor->DataChanged();
    if (auto *edit = qobject_cast<QLineEdit *>(InplaceEditor()); edit && EditorMode())
        edit->setText(GetEditText(Col(), Row()));
}

void TQCustomDBGrid::EditingChanged()
{
    if (IndicatorOffset() > 0)
        InvalidateCell(0, Row());
}

void TQCustomDBGrid::UpdateData()
{
    // Text the field refuses raises here, before the record is posted; it stays pending
    // and in the editor.
    TQColumn *column = ColumnAt(d_->editColumn);
    if (column)
        column->SetEditText(d_->editText);
    d_->editColumn = -1;
}

void TQCustomDBGrid::UpdateRowCount()
{
    const int title = TitleOffset();
    const int totals = d_->totalsCount;
    if (RowCount() < title + totals + 1)
        SetRowCount(title + totals + 1);
    SetFixedRows(title);
    BeginUpdate();
    const int before = RowCount();
    TQGridDataLink *link = DataLink();
    TDataSet *ds = DataSet();
    if (!link->Active() || !ds || ds->IsEmpty()) {
        SetRowCount(title + totals + 1);
        RowAxis().SetSize(title, DefaultRowHeight());
    } else {
        // No stale heights of bottom rows stay among the data rows.
        for (int r = title; r < RowCount(); ++r)
            RowAxis().SetSize(r, DefaultRowHeight());
        const int room = viewport()->height() - GetTitleHeight() - GetTotalHeight();
        link->SetBufferCount(qMax(1, room / GetRowHeight()));
        SetRowCount(link->RecordCount() + title + totals);
        for (int r = title; r < RowCount(); ++r)
            RowAxis().SetSize(r, DefaultRowHeight());
        SetTopRow(FixedRows());
        UpdateActive();
    }
    layoutBottomRows();
    EndUpdate();
    if (RowCount() != before)
        InvalidateGrid();
}

void TQCustomDBGrid::UpdateActive()
{
    TQGridDataLink *link = DataLink();
    if (!link->Active())
        return;
    const int row = TitleOffset() + link->ActiveRecord();
    if (row == Row() || row >= RowCount())
        return;
    d_->settingActive = true;
    SetRow(row);
    d_->settingActive = false;
}

void TQCustomDBGrid::Scroll(int distance)
{
    TQGridDataLink *link = DataLink();
    const int oldRow = Row();
    if (link->ActiveRecord() >= RowCount() - TitleOffset() - d_->totalsCount)
        UpdateRowCount();
    UpdateActive();
    const int newRow = Row();
    moveSequence(distance + (newRow - oldRow));
    if (distance != 0) {
        HideEditor();
        const int top = RowAxis().FixedExtent();
        const int bottom = RowAxis().Position(RowCount() - 1) >= 0 ? RowAxis().Position(RowCount() - 1)
                                                                      : viewport()->height();
        const int step = DefaultRowHeight() + GridLineWidth();
        // Striped rows are painted again rather than moved: on purpose, so that nothing
        // depends on the stripes of the rows that scroll in.
        if (qAbs(distance) >= VisibleRowCount() || StripesOn())
            viewport()->update(QRect(0, top, viewport()->width(), bottom - top));
        else
            ScrollBand(-step * distance, top, bottom);
        if (IndicatorOffset() > 0) {
            InvalidateCell(0, oldRow);
            InvalidateCell(0, oldRow - distance);
        }
        AlwaysShowEditor();
    }
    InvalidateRow(oldRow);
    InvalidateRow(newRow);
    UpdateScrollBar();
    if (distance != 0 && newRow == oldRow)
        NotifyCurrentCell(this); // another record under the same cell
}

int TQCustomDBGrid::MoveBy(int distance, bool direct)
{
    TDataSet *ds = DataSet();
    TQGridDataLink *link = DataLink();
    if (!link->Active() || !ds)
        return 0;
    if (GridMode()) {
        // Moves stay within the numbered records and never leave the window part empty.
        if (RecNumber() < 0)
            ds->CheckBrowseMode();
        if ((RecNumber() == 1 && distance == -1) || (RecNumber() == RecCount() && distance == 1))
            return link->MoveBy(distance);
        if (distance < 0)
            distance = qMax(distance, link->ActiveRecord() - RecNumber() + 1);
        else if (distance > 0)
            distance = qMin(distance, RecCount() - VisibleRowCount() + link->ActiveRecord() - RecNumber() + 1);
        if (distance == 0)
            return 0;
        direct = true;
    }
    if (!direct)
        return link->MoveBy(distance);
    ds->CheckBrowseMode();
    HideEditor();
    DisablePosition();
    int moved = 0;
    try {
        moved = link->MoveBy(distance);
    } catch (...) {
        EnablePosition(false);
        throw;
    }
    moveSequence(moved); // no scroll events reach the grid while its position is held
    const bool bof = ds->Bof(), eof = ds->Eof();
    EnablePosition(false);
    if (bof)
        ds->Prior();
    if (eof)
        ds->Next();
    AlwaysShowEditor();
    return moved;
}

void TQCustomDBGrid::BeginCancel()
{
    ++d_->cancelling;
}

void TQCustomDBGrid::EndCancel()
{
    --d_->cancelling;
}

void TQCustomDBGrid::DisablePosition()
{
    if (d_->positionLock++ == 0 && DataLink()->Active() && DataSet()) {
        d_->savedBookmark = DataSet()->GetBookmark();
        d_->savedActiveRecord = DataSet()->ActiveRecord();
        DataSet()->DisableControls();
    }
}

void TQCustomDBGrid::EnablePosition(bool restore)
{
    if (d_->positionLock == 0 || --d_->positionLock > 0)
        return;
    TDataSet *ds = DataSet();
    if (!DataLink()->Active() || !ds)
        return;
    // Back to the record at the row it stood on, before the controls look again: the user
    // sees the rows they saw.
    if (restore && !d_->savedBookmark.isEmpty() && ds->BookmarkValid(d_->savedBookmark)) {
        try {
            ds->GotoBookmark(d_->savedBookmark);
            placeActiveRecord(d_->savedActiveRecord);
        } catch (...) {
            ds->EnableControls();
            throw;
        }
    }
    ds->EnableControls();
}

void TQCustomDBGrid::placeActiveRecord(int row)
{
    // Stepping past the window's edge scrolls it by exactly the overshoot; stepping back
    // within the window does not scroll.
    TDataSet *ds = DataSet();
    const int active = ds->ActiveRecord();
    int moved = 0;
    if (active > row)
        moved = ds->MoveBy(ds->BufferCount() - 1 - row);
    else if (active < row)
        moved = ds->MoveBy(-row);
    if (moved != 0)
        ds->MoveBy(-moved);
}

void TQCustomDBGrid::UpdateScrollBar()
{
    UpdateScrollBars();
}

void TQCustomDBGrid::UpdateScrollBars()
{
    const QScopedValueRollback<bool> updating(d_->updatingScrollBar, true);
    TCustomGrid::UpdateScrollBars(); // the columns; its rows are replaced below
    QScrollBar *v = verticalScrollBar();
    if (DataLink()->Active()) {
        // The bar shows where the current record is in the data set, not the rows on screen.
        // Counting a large result takes a while: the rows are shown first and the bar gets
        // its size once the event loop comes round.
        TDataSet *ds = DataSet();
        int count;
        if (ForcedSequence() || ds->RecordCountKnown()) {
            count = RecCount();
        } else {
            count = RecNumber() + VisibleRowCount();
            if (!(d_->uncounted == ds && d_->uncountedVersion == ds->DataVersion()))
                CountLater(0);
        }
        v->setRange(0, qMax(0, count - 1));
        v->setPageStep(qMax(1, VisibleRowCount()));
        v->setValue(qMax(0, RecNumber() - 1));
    } else {
        v->setRange(0, 0);
    }
}

void TQCustomDBGrid::CountLater(int delay)
{
    if (std::exchange(d_->countQueued, true))
        return;
    QTimer::singleShot(delay, this, [this] {
        d_->countQueued = false;
        QPointer<TDataSet> ds = DataSet();
        if (!DataLink()->Active() || !ds)
            return;
        if (!ds->RecordCountKnown()) {
            if (ds->Reading()) { // not from within another read's wait
                CountLater(50);
                return;
            }
            const QPointer<TQCustomDBGrid> alive = this;
            try {
                ds->RecordCount();
            } catch (const EReadCancelled &) {
                if (alive && ds) {
                    d_->uncounted = ds;
                    d_->uncountedVersion = ds->DataVersion();
                }
                return;
            } catch (const Exception &e) {
                MessageDlg(e.Message(), mtError, {mbOK});
                return;
            }
            if (!alive)
                return;
        }
        UpdateScrollBars();
    });
}

void TQCustomDBGrid::scrollContentsBy(int dx, int dy)
{
    if (d_->updatingScrollBar)
        return;
    if (horizontalScrollBar()->value() != LeftCol())
        SetLeftCol(horizontalScrollBar()->value());
    Q_UNUSED(dx);
    Q_UNUSED(dy);
    TDataSet *ds = DataSet();
    if (!DataLink()->Active() || !ds)
        return;
    const int wanted = verticalScrollBar()->value() + 1;
    if (wanted == RecNumber())
        return;
    if (RecNumber() > 0)
        ds->SetRecNo(wanted);
    else
        MoveBy(wanted - qMax(1, RecNumber()));
}

} // namespace qdb

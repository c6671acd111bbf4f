// The tools the grid offers its user: the tool menu, the columns dialog, the default columns.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"

#include "dialogs/QDBLists.h"
#include "dialogs/QDBToolMenu.h"

#include <QBuffer>
#include <QContextMenuEvent>

namespace qdb {

TQDBToolMenu *TQCustomDBGrid::CreateToolMenu(TQColumn *column)
{
    return new TQDBToolMenu(this, column);
}

TQDBToolMenu *TQCustomDBGrid::ShowToolMenu(const QPoint &globalPos, TQColumn *column)
{
    TQDBToolMenu *menu = CreateToolMenu(column);
    if (!menu)
        return nullptr;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (OnToolMenu)
        OnToolMenu(this, menu);
    menu->popup(globalPos);
    return menu;
}

void TQCustomDBGrid::contextMenuEvent(QContextMenuEvent *event)
{
    // A click comes through the viewport, in its coordinates.
    const QPoint cell = MouseCoord(event->pos().x(), event->pos().y());
    const bool title = cell.y() >= 0 && cell.y() < TitleOffset();
    const bool indicator = IndicatorOffset() > 0 && cell.x() == 0 && cell.y() >= 0;
    // The keyboard's menu key opens it too, at the current title.
    if (!title && !indicator && event->reason() != QContextMenuEvent::Keyboard) {
        TCustomGrid::contextMenuEvent(event);
        return;
    }
    TQColumn *column = title ? ColumnAt(cell.x()) : ColumnAt(Col());
    ShowToolMenu(event->globalPos(), column);
    event->accept();
}

bool TQCustomDBGrid::ShowColumnsDialog()
{
    TQDBColumnsDialog dialog(this);
    return dialog.exec() == QDialog::Accepted;
}

namespace {

QByteArray columnStream(TQDBGridColumns *columns)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    columns->SaveToStream(buffer);
    return buffer.data();
}

} // namespace

void TQCustomDBGrid::keepDefaultColumns(bool gridMade)
{
    // Columns the grid made anew are the defaults of the data now; the user's columns
    // keep the defaults they started from through a close and open.
    if (gridMade || d_->defaultColumns.isEmpty())
        d_->defaultColumns = columnStream(d_->columns);
}

bool TQCustomDBGrid::DefaultColumnsChanged() const
{
    return !d_->defaultColumns.isEmpty() && columnStream(d_->columns) != d_->defaultColumns;
}

void TQCustomDBGrid::RestoreDefaultColumns()
{
    if (d_->defaultColumns.isEmpty())
        return;
    QBuffer buffer(&d_->defaultColumns);
    buffer.open(QIODevice::ReadOnly);
    d_->columns->LoadFromStream(buffer);
}

} // namespace qdb

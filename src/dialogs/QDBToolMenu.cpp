#include "QDBToolMenu.h"

#include "QDBLists.h"

#include "filter/QDBGridFilter.h"
#include "grid/QDBGrid.h"
#include "grid/QDBGridPrivate.h"
#include "platform/rtl/IniFiles.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QFileDialog>

namespace qdb {

namespace {

QString settingsFilter()
{
    return QCoreApplication::translate("qdb", "Settings files (*.ini)");
}

} // namespace

TQDBToolMenu::TQDBToolMenu(TQCustomDBGrid *grid, TQColumn *column, QWidget *parent)
    : QMenu(parent ? parent : grid), grid_(grid), column_(column)
{
    TDataSet *ds = grid_->DataSet();
    const bool active = grid_->DataLink()->Active() && ds;
    add(this, "fitColumns", QCoreApplication::translate("qdb", "Fit Column Widths"), active && !grid_->ShowingColumns().isEmpty(),
        [this] { grid_->AdjustColumnsWidth(); });
    QAction *stretch = add(this, "stretchColumns", QCoreApplication::translate("qdb", "Stretch Columns"), true,
                           [this] { grid_->SetStretchMode(!grid_->GetStretchMode()); });
    stretch->setCheckable(true);
    stretch->setChecked(grid_->GetStretchMode());
    addColumns();
    addSeparator();
    add(this, "clearSorting", QCoreApplication::translate("qdb", "Clear Sorting"), active && !grid_->GetOrderFields().isEmpty(),
        [this] { grid_->SetOrderFields(QString()); });
    bool filtered = false;
    for (const QPointer<TQColumn> &c : grid_->GetFilterGrid()->FilterColumns())
        filtered = filtered || (c && c->Filtered());
    add(this, "clearFilter", QCoreApplication::translate("qdb", "Clear Filter"), active && filtered, [this] { grid_->GetFilterGrid()->ClearAutoFilter(); });
    add(this, "searchPanel", QCoreApplication::translate("qdb", "Find..."), active, [this] { grid_->ShowSearchPanel(); })
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F));
    addSelection();
    add(this, "copy", QCoreApplication::translate("qdb", "Copy"), active && !ds->IsEmpty(), [this] { grid_->CopyToClipboard(); })
        ->setShortcut(QKeySequence::Copy);
    addSeparator();
    addLayout();
}

QAction *TQDBToolMenu::Item(const QString &name) const
{
    return findChild<QAction *>(name);
}

QAction *TQDBToolMenu::add(QMenu *menu, const char *name, const QString &text, bool enabled, std::function<void()> act)
{
    QAction *action = menu->addAction(text);
    action->setParent(this); // found by Item, wherever it shows
    action->setObjectName(QString::fromLatin1(name));
    action->setEnabled(enabled);
    // The grid may be gone by the time a queued trigger arrives.
    QPointer<TQCustomDBGrid> grid = grid_;
    connect(action, &QAction::triggered, this, [grid, act = std::move(act)] {
        if (grid)
            showingErrors(act);
    });
    return action;
}

void TQDBToolMenu::addColumns()
{
    QMenu *columns = addMenu(QCoreApplication::translate("qdb", "Columns"));
    columns->setObjectName(QStringLiteral("columns"));
    TQDBGridColumns *all = grid_->GetColumns();
    int shown = 0;
    for (int i = 0; i < all->Count(); ++i)
        shown += all->Items(i)->GetVisible() ? 1 : 0;
    for (int i = 0; i < all->Count(); ++i) {
        const TQColumn *column = all->Items(i);
        QString caption = column->GetTitle()->GetCaption();
        caption.replace(QLatin1Char('&'), QLatin1String("&&"));
        // The last column shown stays: a grid without columns shows nothing to click on.
        const bool visible = column->GetVisible();
        QAction *item = add(columns, "", caption.isEmpty() ? column->GetFieldName() : caption, !visible || shown > 1,
                            [this, i, visible] {
                                // The grid's own columns become the user's, made afresh.
                                TQDBGridColumns *now = grid_->GetColumns();
                                if (now->State() == csDefault)
                                    now->SetState(csCustomized);
                                if (i < now->Count())
                                    now->Items(i)->SetVisible(!visible);
                            });
        item->setObjectName(QStringLiteral("column:") + column->GetFieldName());
        item->setCheckable(true);
        item->setChecked(visible);
    }
    columns->addSeparator();
    add(columns, "columnsDialog", QCoreApplication::translate("qdb", "Columns..."), all->Count() > 0, [this] { grid_->ShowColumnsDialog(); });
    add(this, "restoreDefaults", QCoreApplication::translate("qdb", "Restore Default Columns"), grid_->DefaultColumnsChanged(),
        [this] { grid_->RestoreDefaultColumns(); });
}

void TQDBToolMenu::addSelection()
{
    if (!grid_->GetOptions().Contains(dgMultiSelect))
        return;
    QMenu *selection = addMenu(QCoreApplication::translate("qdb", "Selection"));
    selection->setObjectName(QStringLiteral("selection"));
    const TMultiSelections offered = grid_->GetMultiSelectOptions();
    const struct
    {
        TMultiSelection mode;
        const char *name;
        const char *text;
    } modes[] = {{msRows, "selectRows", QT_TRANSLATE_NOOP("qdb", "Select Rows")}, {msCols, "selectColumns", QT_TRANSLATE_NOOP("qdb", "Select Columns")},
                 {msCells, "selectCells", QT_TRANSLATE_NOOP("qdb", "Select Cells")}};
    int count = 0;
    for (const auto &m : modes)
        count += offered.Contains(m.mode) ? 1 : 0;
    if (count > 1) {
        auto *group = new QActionGroup(selection);
        for (const auto &m : modes) {
            if (!offered.Contains(m.mode))
                continue;
            QAction *item = add(selection, m.name, QCoreApplication::translate("qdb", m.text), true, [this, mode = m.mode] { grid_->SetMultiSelect(mode); });
            item->setCheckable(true);
            item->setChecked(grid_->GetMultiSelect() == m.mode);
            group->addAction(item);
        }
        selection->addSeparator();
    }
    const bool active = grid_->DataLink()->Active();
    const bool any = grid_->SelectedRows().Count() > 0 || grid_->SelectedCols().Count() > 0;
    add(selection, "selectAll", QCoreApplication::translate("qdb", "Select All"), active, [this] { grid_->SelectAll(); });
    add(selection, "clearSelection", QCoreApplication::translate("qdb", "Clear Selection"), active && any, [this] { grid_->ClearSelection(); });
}

void TQDBToolMenu::addLayout()
{
    TQDBGridSettings *settings = grid_->GetSettings();
    const bool named = !settings->GetSection().isEmpty();
    bool stored = false;
    if (named) {
        try {
            stored = settings->LayoutExists();
        } catch (const Exception &) {
            // a store that cannot be read has nothing to load or erase
        }
    }
    add(this, "saveLayout", QCoreApplication::translate("qdb", "Save Layout"), named, [settings] { settings->SaveLayout(); });
    add(this, "loadLayout", QCoreApplication::translate("qdb", "Load Layout"), stored, [settings] { settings->LoadLayout(); });
    add(this, "eraseLayout", QCoreApplication::translate("qdb", "Erase Layout"), stored, [settings] { settings->EraseLayout(); });
    add(this, "saveLayoutAs", QCoreApplication::translate("qdb", "Save Layout As..."), named, [this] { saveLayoutAs(); });
    add(this, "openLayout", QCoreApplication::translate("qdb", "Open Layout..."), named, [this] { openLayout(); });
    if (!settings->GetOptions().Contains(soUserSettings))
        return;
    addSeparator();
    const struct
    {
        TQSettingsOption option;
        const char *name;
        const char *text;
    } switches[] = {{soLoadLayout, "autoLoadLayout", QT_TRANSLATE_NOOP("qdb", "Load Layout at Start")},
                    {soSaveLayout, "autoSaveLayout", QT_TRANSLATE_NOOP("qdb", "Save Layout at Exit")}};
    for (const auto &s : switches) {
        const bool on = settings->GetOptions().Contains(s.option);
        QAction *item = add(this, s.name, QCoreApplication::translate("qdb", s.text), true, [settings, s, on] { settings->SwitchOptions({s.option}, !on); });
        item->setCheckable(true);
        item->setChecked(on);
    }
}

void TQDBToolMenu::saveLayoutAs()
{
    const QString file = QFileDialog::getSaveFileName(grid_, QCoreApplication::translate("qdb", "Save Layout"), QString(), settingsFilter());
    if (file.isEmpty())
        return;
    TIniFile ini(file);
    grid_->GetSettings()->SaveLayout(&ini);
}

void TQDBToolMenu::openLayout()
{
    const QString file = QFileDialog::getOpenFileName(grid_, QCoreApplication::translate("qdb", "Open Layout"), QString(), settingsFilter());
    if (file.isEmpty())
        return;
    TIniFile ini(file);
    grid_->GetSettings()->LoadLayout(&ini);
}

} // namespace qdb

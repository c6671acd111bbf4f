#include "QDBDesignerTaskMenu.h"

#include "dialogs/QDBColumnsEditor.h"
#include "grid/QDBGrid.h"

#include <QAction>
#include <QCoreApplication>
#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>

namespace qdb {

TQDBGridTaskMenu::TQDBGridTaskMenu(TQDBGrid *grid, QObject *parent)
    : QObject(parent), grid_(grid),
      edit_(new QAction(QCoreApplication::translate("qdb::TQDBDesignerWidgets", "Edit Columns..."), this))
{
    edit_->setObjectName(QStringLiteral("editColumns"));
    connect(edit_, &QAction::triggered, this, &TQDBGridTaskMenu::editColumns);
}

void TQDBGridTaskMenu::editColumns()
{
    const QVariant before = grid_->property("columns");
    TQDBColumnsEditor editor(grid_);
    if (editor.exec() != QDialog::Accepted)
        return;
    const QVariant after = grid_->property("columns");
    grid_->setProperty("columns", before); // the form's cursor makes the change, undoably
    if (QDesignerFormWindowInterface *form = QDesignerFormWindowInterface::findFormWindow(grid_))
        form->cursor()->setWidgetProperty(grid_, QStringLiteral("columns"), after);
    else
        grid_->setProperty("columns", after);
}

QObject *TQDBGridTaskMenuFactory::createExtension(QObject *object, const QString &iid, QObject *parent) const
{
    if (iid != QLatin1String(Q_TYPEID(QDesignerTaskMenuExtension)))
        return nullptr;
    if (auto *grid = qobject_cast<TQDBGrid *>(object))
        return new TQDBGridTaskMenu(grid, parent);
    return nullptr;
}

} // namespace qdb

#pragma once

#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QExtensionFactory>

class QAction;

namespace qdb {

class TQDBGrid;

// "Edit Columns..." on a grid in a form: the columns editor, its result kept in the form
// through the grid's columns property (so that Designer can undo it and uic writes it).
class TQDBGridTaskMenu : public QObject, public QDesignerTaskMenuExtension
{
    Q_OBJECT
    Q_INTERFACES(QDesignerTaskMenuExtension)

public:
    TQDBGridTaskMenu(TQDBGrid *grid, QObject *parent);
    QAction *preferredEditAction() const override { return edit_; }
    QList<QAction *> taskActions() const override { return {edit_}; }

private:
    void editColumns();

    TQDBGrid *grid_;
    QAction *edit_;
};

class TQDBGridTaskMenuFactory : public QExtensionFactory
{
    Q_OBJECT

public:
    explicit TQDBGridTaskMenuFactory(QExtensionManager *parent) : QExtensionFactory(parent) {}

protected:
    QObject *createExtension(QObject *object, const QString &iid, QObject *parent) const override;
};

} // namespace qdb

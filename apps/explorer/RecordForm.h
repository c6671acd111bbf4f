#pragma once

// The record form: the current record of the grid's table, a control for each field.

#include "grid/QDBGrid.h"

#include <QHash>
#include <QScrollArea>

namespace explorer {

class RecordForm : public QScrollArea
{
    Q_OBJECT

public:
    explicit RecordForm(QWidget *parent = nullptr);

    // Makes the controls for the grid's columns: a check box for a boolean, a group of
    // buttons for a column that picks among a few values, and otherwise an edit box that
    // takes the column's lists, calendar and calculator.
    void Build(qdb::TQDBGrid *grid);
    // Lets go of the controls, before their fields go.
    void Clear();
    // The control of a field, or none.
    QWidget *Control(const QString &fieldName) const { return controls_.value(fieldName.toLower()); }

private:
    QHash<QString, QWidget *> controls_;
};

} // namespace explorer

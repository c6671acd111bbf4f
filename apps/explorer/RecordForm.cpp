#include "RecordForm.h"

#include "data/QDBNavigator.h"
#include "editors/QDBDataEditor.h"

#include <QFormLayout>
#include <QLabel>

namespace explorer {

using namespace qdb;

namespace {
// A column offering at most this many values gets a button for each.
constexpr int MostButtons = 4;
} // namespace

RecordForm::RecordForm(QWidget *parent) : QScrollArea(parent)
{
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
}

void RecordForm::Clear()
{
    controls_.clear();
    delete takeWidget();
}

void RecordForm::Build(TQDBGrid *grid)
{
    Clear();
    auto *page = new QWidget;
    auto *form = new QFormLayout(page);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    TDataSource *source = grid->GetDataSource();
    for (TQColumn *column : *grid->GetColumns()) {
        TField *field = column->GetField();
        if (!field || !column->GetVisible())
            continue;
        QWidget *control = nullptr;
        const QString caption = column->GetTitle()->GetCaption();
        if (field->DataType() == ftBoolean) {
            auto *box = new TQDBCheckBox;
            box->SetDataSource(source);
            box->SetDataField(field->FieldName());
            box->setText(caption);
            control = box;
            form->addRow(QString(), box);
        } else if (column->GetLookupColumn() == lcNotDefined && column->GetPickList()->Count() > 0
                   && column->GetPickList()->Count() <= MostButtons) {
            auto *group = new TQDBRadioGroup;
            group->SetColumns(column->GetPickList()->Count());
            group->Items()->Assign(*column->GetPickList());
            group->SetDataSource(source);
            group->SetDataField(field->FieldName());
            control = group;
            form->addRow(caption, group);
        } else {
            auto *edit = new TQDBColumn;
            edit->SetDBGrid(grid);
            edit->SetDataColumn(field->FieldName());
            control = edit;
            form->addRow(caption, edit);
        }
        control->setObjectName(field->FieldName());
        controls_.insert(field->FieldName().toLower(), control);
    }
    setWidget(page);
}

} // namespace explorer

#include "QDBColumnsEditor.h"

#include "grid/QDBGrid.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace qdb {

namespace {

QTableWidgetItem *visibleItem(bool on)
{
    auto *item = new QTableWidgetItem;
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(on ? Qt::Checked : Qt::Unchecked);
    return item;
}

} // namespace

TQDBColumnsEditor::TQDBColumnsEditor(TQCustomDBGrid *grid, QWidget *parent)
    : QDialog(parent ? parent : grid), grid_(grid), table_(new QTableWidget(0, 5, this))
{
    setWindowTitle(QCoreApplication::translate("qdb", "Columns"));
    table_->setHorizontalHeaderLabels({QCoreApplication::translate("qdb", "Field"), QCoreApplication::translate("qdb", "Caption"),
                                       QCoreApplication::translate("qdb", "Header"), QCoreApplication::translate("qdb", "Width"),
                                       QCoreApplication::translate("qdb", "Visible")});
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);

    auto *buttons = new QVBoxLayout;
    const auto button = [&](const QString &text, auto act) {
        auto *b = new QPushButton(text, this);
        connect(b, &QPushButton::clicked, this, act);
        buttons->addWidget(b);
    };
    button(QCoreApplication::translate("qdb", "&Add"), [this] {
        AddRow(QString());
        table_->setCurrentCell(table_->rowCount() - 1, FieldPart);
        table_->editItem(table_->item(table_->rowCount() - 1, FieldPart));
    });
    button(QCoreApplication::translate("qdb", "&Remove"), [this] {
        if (table_->currentRow() >= 0)
            table_->removeRow(table_->currentRow());
    });
    button(QCoreApplication::translate("qdb", "Move &Up"), [this] { MoveRow(table_->currentRow(), table_->currentRow() - 1); });
    button(QCoreApplication::translate("qdb", "Move &Down"), [this] { MoveRow(table_->currentRow(), table_->currentRow() + 1); });
    buttons->addStretch();

    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(box, &QDialogButtonBox::accepted, this, &TQDBColumnsEditor::accept);
    connect(box, &QDialogButtonBox::rejected, this, &TQDBColumnsEditor::reject);
    auto *row = new QHBoxLayout;
    row->addWidget(table_);
    row->addLayout(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(box);
    resize(560, 320);
    load();
}

void TQDBColumnsEditor::load()
{
    TQDBGridColumns *columns = grid_->GetColumns();
    for (int i = 0; i < columns->Count(); ++i) {
        TQColumn *c = columns->Items(i);
        AddRow(c->GetFieldName());
        const int r = table_->rowCount() - 1;
        table_->item(r, CaptionPart)->setText(c->GetTitle()->IsCaptionStored() ? c->GetTitle()->GetCaption() : QString());
        table_->item(r, HeaderPart)->setText(c->GetTitle()->Header());
        table_->item(r, WidthPart)->setData(Qt::EditRole, c->GetWidth());
        table_->item(r, VisiblePart)->setCheckState(c->GetVisible() ? Qt::Checked : Qt::Unchecked);
    }
}

void TQDBColumnsEditor::AddRow(const QString &field)
{
    const int r = table_->rowCount();
    table_->insertRow(r);
    table_->setItem(r, FieldPart, new QTableWidgetItem(field));
    table_->setItem(r, CaptionPart, new QTableWidgetItem);
    table_->setItem(r, HeaderPart, new QTableWidgetItem);
    auto *width = new QTableWidgetItem;
    width->setData(Qt::EditRole, grid_->DefaultColWidth()); // edited with a spin box
    table_->setItem(r, WidthPart, width);
    table_->setItem(r, VisiblePart, visibleItem(true));
}

void TQDBColumnsEditor::MoveRow(int from, int to)
{
    if (from < 0 || to < 0 || from >= table_->rowCount() || to >= table_->rowCount())
        return;
    for (int part = FieldPart; part <= VisiblePart; ++part) {
        QTableWidgetItem *a = table_->takeItem(from, part);
        QTableWidgetItem *b = table_->takeItem(to, part);
        table_->setItem(from, part, b);
        table_->setItem(to, part, a);
    }
    table_->setCurrentCell(to, table_->currentColumn());
}

void TQDBColumnsEditor::accept()
{
    TQDBGridColumns *columns = grid_->GetColumns();
    columns->BeginUpdate();
    columns->Clear();
    for (int r = 0; r < table_->rowCount(); ++r) {
        const QString field = table_->item(r, FieldPart)->text().trimmed();
        if (field.isEmpty())
            continue; // a row left blank adds nothing
        TQColumn *c = columns->Add();
        c->SetFieldName(field);
        if (!table_->item(r, CaptionPart)->text().isEmpty())
            c->GetTitle()->SetCaption(table_->item(r, CaptionPart)->text());
        c->GetTitle()->SetHeader(table_->item(r, HeaderPart)->text());
        c->SetWidth(table_->item(r, WidthPart)->data(Qt::EditRole).toInt());
        c->SetVisible(table_->item(r, VisiblePart)->checkState() == Qt::Checked);
    }
    columns->EndUpdate();
    columns->SetState(csCustomized);
    QDialog::accept();
}

} // namespace qdb

#include "QDBLists.h"

#include "grid/QDBGrid.h"

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSpinBox>
#include <QVBoxLayout>

namespace qdb {

TQDBColumnsDialog::TQDBColumnsDialog(TQCustomDBGrid *grid, QWidget *parent)
    : QDialog(parent ? parent : grid), grid_(grid)
{
    setWindowTitle(QCoreApplication::translate("qdb", "Columns"));
    TQDBGridColumns *columns = grid_->GetColumns();
    // What Undo comes back to: the column block, and the titles and alignments it leaves out.
    wasDefault_ = columns->State() == csDefault;
    columns->GetSettings(block_);
    for (int i = 0; i < columns->Count(); ++i) {
        TQColumn *c = columns->Items(i);
        kept_ << Kept{c, c->AssignedValues(), c->GetTitle()->GetCaption(), c->GetAlignment(), c->GetWidth()};
    }
    // The dialog changes the columns themselves, not the grid's own ones that follow the fields.
    if (wasDefault_)
        columns->SetState(csCustomized);

    list_ = new QListWidget(this);
    list_->setDragDropMode(QAbstractItemView::InternalMove);
    list_->setDefaultDropAction(Qt::MoveAction);
    up_ = new QPushButton(QCoreApplication::translate("qdb", "Move &Up"), this);
    down_ = new QPushButton(QCoreApplication::translate("qdb", "Move &Down"), this);
    auto *showAll = new QPushButton(QCoreApplication::translate("qdb", "&Show All"), this);
    auto *hideAll = new QPushButton(QCoreApplication::translate("qdb", "&Hide All"), this);
    caption_ = new QLineEdit(this);
    width_ = new QSpinBox(this);
    width_->setRange(0, 10000);
    alignment_ = new QComboBox(this);
    alignment_->addItems({QCoreApplication::translate("qdb", "Left"), QCoreApplication::translate("qdb", "Right"), QCoreApplication::translate("qdb", "Center")});
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton *undo = buttons->addButton(QCoreApplication::translate("qdb", "&Undo"), QDialogButtonBox::ResetRole);

    auto *moves = new QVBoxLayout;
    for (QPushButton *b : {up_, down_, showAll, hideAll})
        moves->addWidget(b);
    moves->addStretch();
    auto *form = new QFormLayout;
    form->addRow(QCoreApplication::translate("qdb", "&Caption:"), caption_);
    form->addRow(QCoreApplication::translate("qdb", "&Width:"), width_);
    form->addRow(QCoreApplication::translate("qdb", "&Alignment:"), alignment_);
    moves->addLayout(form);
    auto *top = new QHBoxLayout;
    top->addWidget(list_, 1);
    top->addLayout(moves);
    auto *all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(undo, &QPushButton::clicked, this, &TQDBColumnsDialog::Undo);
    connect(up_, &QPushButton::clicked, this, [this] { moveCurrent(-1); });
    connect(down_, &QPushButton::clicked, this, [this] { moveCurrent(1); });
    connect(showAll, &QPushButton::clicked, this, [this] { setAllVisible(true); });
    connect(hideAll, &QPushButton::clicked, this, [this] { setAllVisible(false); });
    connect(list_, &QListWidget::currentRowChanged, this, [this] { showCurrent(); });
    connect(list_, &QListWidget::itemChanged, this, &TQDBColumnsDialog::itemChanged);
    connect(list_->model(), &QAbstractItemModel::rowsMoved, this, [this] {
        if (!filling_)
            followList();
    });
    connect(caption_, &QLineEdit::textEdited, this, [this](const QString &text) {
        if (TQColumn *c = current()) {
            c->GetTitle()->SetCaption(text);
            list_->currentItem()->setText(text);
        }
    });
    connect(width_, &QSpinBox::valueChanged, this, [this](int w) {
        if (TQColumn *c = current(); c && !filling_)
            c->SetWidth(w);
    });
    connect(alignment_, &QComboBox::currentIndexChanged, this, [this](int a) {
        if (TQColumn *c = current(); c && !filling_ && a >= 0)
            c->SetAlignment(TAlignment(a));
    });
    fill();
    list_->setCurrentRow(0);
}

TQDBColumnsDialog::~TQDBColumnsDialog() = default;

void TQDBColumnsDialog::fill()
{
    const QScopedValueRollback<bool> filling(filling_, true);
    const int row = list_->currentRow();
    list_->clear();
    TQDBGridColumns *columns = grid_->GetColumns();
    for (int i = 0; i < columns->Count(); ++i) {
        TQColumn *c = columns->Items(i);
        const QString caption = c->GetTitle()->GetCaption();
        auto *item = new QListWidgetItem(caption.isEmpty() ? c->GetFieldName() : caption, list_);
        item->setData(Qt::UserRole, QVariant::fromValue(static_cast<QObject *>(c)));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsDragEnabled);
        item->setCheckState(c->GetVisible() ? Qt::Checked : Qt::Unchecked);
    }
    list_->setCurrentRow(qBound(0, row, list_->count() - 1));
    showCurrent();
}

TQColumn *TQDBColumnsDialog::columnOf(const QListWidgetItem *item) const
{
    return item ? qobject_cast<TQColumn *>(item->data(Qt::UserRole).value<QObject *>()) : nullptr;
}

TQColumn *TQDBColumnsDialog::current() const
{
    return columnOf(list_->currentItem());
}

void TQDBColumnsDialog::showCurrent()
{
    const TQColumn *c = current();
    const QScopedValueRollback<bool> filling(filling_, true);
    caption_->setEnabled(c);
    width_->setEnabled(c);
    alignment_->setEnabled(c);
    if (c) {
        caption_->setText(c->GetTitle()->GetCaption());
        width_->setValue(c->GetWidth());
        alignment_->setCurrentIndex(int(c->GetAlignment()));
    }
    up_->setEnabled(c && list_->currentRow() > 0);
    down_->setEnabled(c && list_->currentRow() < list_->count() - 1);
}

void TQDBColumnsDialog::moveCurrent(int by)
{
    const int from = list_->currentRow();
    const int to = from + by;
    if (from < 0 || to < 0 || to >= list_->count())
        return;
    {
        const QScopedValueRollback<bool> filling(filling_, true);
        list_->insertItem(to, list_->takeItem(from));
    }
    list_->setCurrentRow(to);
    followList();
}

void TQDBColumnsDialog::followList()
{
    for (int i = 0; i < list_->count(); ++i)
        if (TQColumn *c = columnOf(list_->item(i)))
            c->SetIndex(i);
    showCurrent();
}

void TQDBColumnsDialog::setAllVisible(bool on)
{
    for (int i = 0; i < list_->count(); ++i)
        list_->item(i)->setCheckState(on ? Qt::Checked : Qt::Unchecked);
}

void TQDBColumnsDialog::itemChanged(QListWidgetItem *item)
{
    if (filling_)
        return;
    if (TQColumn *c = columnOf(item))
        c->SetVisible(item->checkState() == Qt::Checked);
}

void TQDBColumnsDialog::Undo()
{
    TQDBGridColumns *columns = grid_->GetColumns();
    if (wasDefault_) {
        // The grid's own columns again, made afresh from the fields.
        columns->SetState(csDefault);
        columns->SetState(csCustomized);
    } else {
        columns->BeginUpdate();
        columns->ApplySettings(block_);
        for (const Kept &k : std::as_const(kept_)) {
            if (!k.column)
                continue;
            k.column->GetTitle()->SetCaption(k.caption);
            k.column->SetAlignment(k.alignment);
            k.column->SetWidth(k.width);
            k.column->RestoreAssigned(k.assigned);
        }
        columns->EndUpdate();
    }
    fill();
}

void TQDBColumnsDialog::reject()
{
    Undo();
    if (wasDefault_)
        grid_->GetColumns()->SetState(csDefault);
    QDialog::reject();
}

} // namespace qdb

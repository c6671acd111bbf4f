#include "QDBGridProgress.h"

#include <QApplication>
#include <QProgressDialog>

namespace qdb {

TQWalkProgress::TQWalkProgress(QWidget *parent, QString label, int total, int delayMs)
    : parent_(parent), label_(std::move(label)), total_(qMax(0, total)), delay_(delayMs)
{
    clock_.start();
}

TQWalkProgress::~TQWalkProgress() = default;

bool TQWalkProgress::Step()
{
    // The clock is read every few steps only: a step may be very short.
    if (++steps_ % 256 != 0 || clock_.elapsed() < delay_)
        return true;
    if (!dialog_) {
        dialog_ = std::make_unique<QProgressDialog>(label_, QApplication::translate("qdb", "Cancel"), 0, total_, parent_);
        dialog_->setWindowModality(Qt::WindowModal);
        dialog_->setMinimumDuration(0);
        // Esc closes a dialog without cancelling a progress one.
        QObject::connect(dialog_.get(), &QDialog::rejected, dialog_.get(), &QProgressDialog::cancel);
    }
    dialog_->setValue(total_ > 0 ? qMin(steps_, total_ - 1) : 0);
    return !dialog_->wasCanceled();
}

} // namespace qdb

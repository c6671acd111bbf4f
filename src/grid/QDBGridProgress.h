#pragma once

#include <QElapsedTimer>
#include <QString>

#include <memory>

class QProgressDialog;
class QWidget;

namespace qdb {

// How far a long walk through the records got: the window shows once the walk has taken
// a while, and Esc or its button stops the walk.
class TQWalkProgress
{
public:
    // `total` 0: the number of steps is not known.
    TQWalkProgress(QWidget *parent, QString label, int total, int delayMs);
    ~TQWalkProgress();
    TQWalkProgress(const TQWalkProgress &) = delete;
    TQWalkProgress &operator=(const TQWalkProgress &) = delete;

    // Counts a step; false once the user stopped the walk.
    bool Step();

private:
    QWidget *parent_;
    QString label_;
    int total_;
    int delay_;
    int steps_ = 0;
    QElapsedTimer clock_;
    std::unique_ptr<QProgressDialog> dialog_;
};

} // namespace qdb

#pragma once

// The search panel: a strip on the grid with the search box and its history, the buttons
// that search in each direction, and the options menu.

#include "QDBSearch.h"

#include <QFrame>

class QAction;
class QComboBox;
class QToolButton;

namespace qdb {

class TQDBGridSearchPanel : public QFrame
{
    Q_OBJECT

public:
    enum TButton { sbClose, sbFirst, sbLast, sbDown, sbUp, sbOptions };

    explicit TQDBGridSearchPanel(TQCustomDBGrid *grid);
    ~TQDBGridSearchPanel() override;

    TQCustomDBGrid *Grid() const { return grid_; }
    QComboBox *SearchBox() const { return box_; }
    QToolButton *Button(TButton which) const { return buttons_[which]; }
    QAction *OptionAction(TQSearchOption option) const;
    QStringList History() const;

    // Searches for the box's text: first in the history unless it is kept as it is, then
    // the grid's Search takes the text and the options and looks.
    bool Search(TQSearchMode mode, bool keepHistory = false);
    // Takes the look, the width and the offered options from the grid's Search.
    void UpdatePanel();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void textEdited(const QString &text);

    TQCustomDBGrid *grid_;
    QComboBox *box_ = nullptr;
    QToolButton *buttons_[6] = {};
    QAction *options_[6] = {};
};

} // namespace qdb

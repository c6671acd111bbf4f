#pragma once

#include "grid/QDBGridTypes.h"
#include "platform/db/FieldTypes.h"
#include "platform/rtl/Strings.h"

#include <QDialog>
#include <QPointer>

class QComboBox;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QSpinBox;

namespace qdb {

class TQColumn;
class TQCustomDBGrid;

// The columns dialog: which columns show and in what order (by drag or by the buttons),
// and a column's width, caption and alignment. Changes show in the grid as they are made;
// Undo, and Cancel, put the columns back exactly as they were when the dialog opened.
class TQDBColumnsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit TQDBColumnsDialog(TQCustomDBGrid *grid, QWidget *parent = nullptr);
    ~TQDBColumnsDialog() override;

    void Undo();
    QListWidget *List() const { return list_; }
    QLineEdit *CaptionEdit() const { return caption_; }
    QSpinBox *WidthEdit() const { return width_; }
    QComboBox *AlignmentEdit() const { return alignment_; }

    void reject() override;

private:
    struct Kept
    {
        QPointer<TQColumn> column;
        TQColumnValues assigned;
        QString caption;
        TAlignment alignment;
        int width;
    };
    void fill();
    TQColumn *columnOf(const QListWidgetItem *item) const;
    TQColumn *current() const;
    void showCurrent();
    void moveCurrent(int by);
    // The grid's columns take the list's order.
    void followList();
    void setAllVisible(bool on);
    void itemChanged(QListWidgetItem *item);

    TQCustomDBGrid *grid_;
    bool wasDefault_ = false;
    TStringList block_;
    QList<Kept> kept_;
    bool filling_ = false;
    QListWidget *list_;
    QPushButton *up_;
    QPushButton *down_;
    QLineEdit *caption_;
    QSpinBox *width_;
    QComboBox *alignment_;
};

} // namespace qdb

#pragma once

// The filter form: two conditions on one column's field, joined by AND or OR and reversible,
// or a period of time; OK writes the column's FilterText.

#include "QDBColumnFilter.h"
#include "QDBFilterData.h"
#include "QDBFilterPeriods.h"

#include "grid/QDBGridTypes.h"

#include <QDialog>
#include <QPointer>

class QCheckBox;
class QComboBox;
class QLabel;
class QRadioButton;
class QToolButton;

namespace qdb {

class TQColumn;

class TQDBGridFilterForm : public QDialog
{
    Q_OBJECT

public:
    explicit TQDBGridFilterForm(QWidget *parent = nullptr);
    ~TQDBGridFilterForm() override;

    // Builds the controls for the column, sets them from its saved state and loads its values
    // and the periods.
    void CreateControls(TQColumn *column);
    TQColumn *Column() const { return column_; }

    void LoadFilterForm();
    // Writes the column's FilterText and keeps the form's state; raises what the data set
    // refuses, the state then left unsaved.
    void SaveFilterForm();
    void LoadFilterData();
    void LoadPeriodData();
    // A list changed: its values list follows its clause; a period fills both conditions,
    // and anything else clears the period.
    void ListChanged(QObject *list);
    // Opens the calendar or the calculator for values list 1 or 2.
    void ListButtonClick(int which);

    // The grid's auto filter settings and look, passed to the controls.
    void SetFilterClauses(TQDBGridFilterClauses clauses);
    void SetDropDownRows(int rows);
    void SetDropDownWidth(int width);
    // Which popup the list buttons open: the calendar, the calculator, by the field's type
    // (cbsAuto), or none (the buttons hidden).
    void SetListButtonStyle(TQColumnButtonStyle style);
    void SetFlatButtons(bool on);
    // Empties both conditions and the period, back to AND without reversal.
    void ClearConditions();

    QComboBox *ClauseList1 = nullptr;
    QComboBox *ClauseList2 = nullptr;
    QComboBox *ValuesList1 = nullptr;
    QComboBox *ValuesList2 = nullptr;
    QToolButton *ListButton1 = nullptr;
    QToolButton *ListButton2 = nullptr;
    QRadioButton *RadioButton1 = nullptr;
    QRadioButton *RadioButton2 = nullptr;
    QCheckBox *NOTCheckBox = nullptr;
    QComboBox *PeriodList = nullptr;
    QLabel *Heading = nullptr;
    QLabel *SymbolLabel1 = nullptr;
    QLabel *SymbolLabel2 = nullptr;

    // The state kept for the column between openings, as name=value lines.
    static QStringList SavedState(const TQColumn *column);

    void accept() override;

private:
    static TQDBGridFilterClause clauseOf(const QComboBox *list);
    static void setClause(QComboBox *list, int ordinal);
    void clauseChanged(QComboBox *clauses, QComboBox *values, QToolButton *button);
    bool isDateField() const;
    bool isNumberField() const;
    // Whether the list buttons open the calendar (else the calculator), and whether any.
    bool calendarButtons() const;
    bool listButtons() const;
    void contextMenuEvent(QContextMenuEvent *event) override;

    QPointer<TQColumn> column_;
    QList<TQFilterPeriodItem> periods_; // by the period list's index - 1
    bool inListChange_ = false;
    TQColumnButtonStyle listButtonStyle_ = cbsAuto;
};

} // namespace qdb

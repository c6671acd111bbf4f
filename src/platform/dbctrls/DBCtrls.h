#pragma once

// The small data-aware controls: a label showing a field, a check box and a radio group
// editing one. Each follows the current record through a field data link of its own.

#include "platform/db/DataSource.h"
#include "platform/rtl/Strings.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>

namespace qdb {

// Shows the field's display text.
class TDBText : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(qdb::TDataSource *DataSource READ DataSource WRITE SetDataSource)
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)

public:
    explicit TDBText(QWidget *parent = nullptr);
    ~TDBText() override;

    TDataSource *DataSource() const { return link_.DataSource(); }
    void SetDataSource(TDataSource *source);
    QString DataField() const { return link_.FieldName(); }
    void SetDataField(const QString &name);
    TField *Field() const { return link_.Field(); }

protected:
    virtual void DataChange();

private:
    TFieldDataLink link_;
};

// Checked while the field holds one of ValueChecked (";" between alternatives; a boolean
// field its true), unchecked for ValueUnchecked, and in the third state for NULL or any
// other value. Toggling starts the edit; the first alternative of the state reached is
// written when the focus leaves the box or the record is posted, and Esc takes it back.
class TDBCheckBox : public QCheckBox
{
    Q_OBJECT
    Q_PROPERTY(qdb::TDataSource *DataSource READ DataSource WRITE SetDataSource)
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)
    Q_PROPERTY(QString ValueChecked READ ValueChecked WRITE SetValueChecked)
    Q_PROPERTY(QString ValueUnchecked READ ValueUnchecked WRITE SetValueUnchecked)
    Q_PROPERTY(bool ReadOnly READ ReadOnly WRITE SetReadOnly)
    Q_PROPERTY(bool AllowGrayed READ AllowGrayed WRITE SetAllowGrayed)

public:
    explicit TDBCheckBox(QWidget *parent = nullptr);
    ~TDBCheckBox() override;

    TDataSource *DataSource() const { return link_.DataSource(); }
    void SetDataSource(TDataSource *source);
    QString DataField() const { return link_.FieldName(); }
    void SetDataField(const QString &name);
    TField *Field() const { return link_.Field(); }
    QString ValueChecked() const { return valueChecked_; }
    void SetValueChecked(const QString &values);
    QString ValueUnchecked() const { return valueUnchecked_; }
    void SetValueUnchecked(const QString &values);
    bool ReadOnly() const { return link_.ReadOnly(); }
    void SetReadOnly(bool on) { link_.SetReadOnly(on); }
    // Whether a click may also reach the third state (which writes NULL).
    bool AllowGrayed() const { return allowGrayed_; }
    void SetAllowGrayed(bool on) { allowGrayed_ = on; }
    // The state the field's value gives.
    Qt::CheckState FieldState() const;

protected:
    virtual void DataChange();
    // Writes the state into the field.
    virtual void UpdateData();
    void nextCheckState() override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void showState();

    TFieldDataLink link_;
    QString valueChecked_;
    QString valueUnchecked_;
    bool allowGrayed_ = false;
};

// One radio button for each of Items; the button whose value (its line of Values, or its
// item when that line is missing or empty) the field holds is checked, none when no button
// has the value. Choosing a button starts the edit; its value is written when the focus
// leaves the group or the record is posted, and Esc takes it back.
class TDBRadioGroup : public QGroupBox
{
    Q_OBJECT
    Q_PROPERTY(qdb::TDataSource *DataSource READ DataSource WRITE SetDataSource)
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)
    Q_PROPERTY(qdb::TStrings *Items READ Items)
    Q_PROPERTY(qdb::TStrings *Values READ Values)
    Q_PROPERTY(int Columns READ Columns WRITE SetColumns)
    Q_PROPERTY(bool ReadOnly READ ReadOnly WRITE SetReadOnly)

public:
    explicit TDBRadioGroup(QWidget *parent = nullptr);
    ~TDBRadioGroup() override;

    TDataSource *DataSource() const { return link_.DataSource(); }
    void SetDataSource(TDataSource *source);
    QString DataField() const { return link_.FieldName(); }
    void SetDataField(const QString &name);
    TField *Field() const { return link_.Field(); }
    TStrings *Items() const { return items_; }
    TStrings *Values() const { return values_; }
    int Columns() const { return columns_; }
    void SetColumns(int columns);
    bool ReadOnly() const { return link_.ReadOnly(); }
    void SetReadOnly(bool on) { link_.SetReadOnly(on); }
    // The checked button, -1 for none.
    int ItemIndex() const { return buttons_.checkedId(); }
    QAbstractButton *Button(int index) const { return buttons_.button(index); }
    QString GetButtonValue(int index) const;
    QString Value() const { return value_; }
    // Checks the button of a value, or none.
    virtual void SetValue(const QString &value);

    TNotifyEvent OnChange;

protected:
    virtual void DataChange();
    virtual void Change();
    // A button was chosen by the user.
    virtual void Click(int index);
    // Writes the chosen value into the field.
    virtual void UpdateData();
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildButtons();
    // Checks the button of a value even when it is the current one.
    void select(const QString &value);
    void showField();

    TFieldDataLink link_;
    QButtonGroup buttons_;
    TStrings *items_;
    TStrings *values_;
    QString value_;
    int columns_ = 1;
    bool inUpdate_ = false;
};

} // namespace qdb

#pragma once

// The calculator that drops down under a numeric cell or edit box: a one-row display grid
// with the calculator's buttons under it. It starts from the cell's text and hands back the
// result as text.

#include "QDBDropDown.h"

#include "data/QDBCustData.h"

class QPushButton;

namespace qdb {

// The calculator's display: one record of one text field.
class TQDBDisplayData : public TQDBCustomData
{
    Q_OBJECT

public:
    explicit TQDBDisplayData(QObject *parent = nullptr);
    QString Text() const { return text_; }
    void SetText(const QString &text);

protected:
    void DoOnCountRecords(int &count) override { count = 1; }
    void DoOnGetFieldData(int index, TField *field, Variant &value) override;

private:
    QString text_;
};

// A four-function calculator with memory. Keys and buttons both go through Operate, with
// the key codes of the buttons (digits and operators as themselves, 8 back, 10 OK, 12 to 19
// memory, 27 clear, 64 square root, 127 clear entry).
class TQDBPopupCalculator : public TQDBPopupList
{
    Q_OBJECT

public:
    explicit TQDBPopupCalculator(QWidget *editBox);

    virtual void ButtonClick(QObject *sender);
    // "C" with all, "CE" without.
    virtual void Clear(bool all);
    virtual void Operate(QChar key);
    QSize CalcSize() override;

    // The result, once a pending operation is completed.
    QString GetResult();
    // Starts afresh from a text, as the cell holds it.
    void SetResult(const QString &text);
    QString Text() const { return display_.Text(); }
    // Shows a text; a text that is no number shows 0.
    void SetText(const QString &text);
    // Shows a number as text, in up to 15 significant digits.
    void SetValue(double value);
    double Value() const { return value_; }
    double Memory() const { return memory_; }
    const QList<QPushButton *> &Buttons() const { return buttons_; }

protected:
    void KeyDown(QKeyEvent *event) override;
    bool ClickAccepts() const override { return false; }
    void resizeEvent(QResizeEvent *event) override;

private:
    void createButtons();
    void placeButtons();
    void digit(QChar c);
    void binary(QChar op);
    void evaluate();
    void unary(double result);
    void changeSign();
    void backspace();
    void memoryKey(int key);
    int scaled(int pixels) const;

    TQDBDisplayData display_;
    QList<QPushButton *> buttons_;
    double value_ = 0;
    double accumulator_ = 0;
    double savedAccumulator_ = 0;
    double operand_ = 0;
    double memory_ = 0;
    QChar pending_ = QLatin1Char('=');
    bool typing_ = false;
    bool fresh_ = false;
    bool operatorPending_ = false;
};

// The calculator under a grid cell: loaded with the cell's edit text, handing back its
// result as the text to store.
class TQDBGridCalculator : public TQDBGridDropDownList
{
    Q_OBJECT

public:
    Q_INVOKABLE TQDBGridCalculator(qdb::TQDBGridEditor *editor, qdb::TQColumn *column);
    TQDBPopupCalculator *Calculator() const;

protected:
    TQDBPopupList *CreatePopup() override;
    void DoDropDown() override;
    void DoCloseUp(bool accept) override;
};

// The same for a free-standing editor.
class TQDBEditorCalculator : public TQDBGridCalculator
{
    Q_OBJECT

public:
    Q_INVOKABLE TQDBEditorCalculator(qdb::TQDBGridEditor *editor, qdb::TQColumn *column);
};

} // namespace qdb

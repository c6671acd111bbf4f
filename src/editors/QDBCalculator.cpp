// The popup calculator: its display, its buttons, the state machine behind them, and the
// hosts that drop it down under a cell or an edit box.

#include "QDBCalculator.h"

#include "QDBEditor.h"

#include "platform/rtl/Conversions.h"
#include "platform/rtl/FormatSettings.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScrollBar>

#include <cmath>
#include <limits>

namespace qdb {

namespace {

enum ButtonColor { Black, Red, Blue };

struct ButtonEntry
{
    const char *caption;
    char16_t key;
    int x, y, width;
    ButtonColor color;
};

// Positions at 96 dots per inch; each button sits at (x + 1, y - 5).
constexpr ButtonEntry ButtonTable[] = {
    {"OK", 10, 4, 30, 30, Black},    {"Back", 8, 40, 30, 50, Red},    {"CE", 127, 94, 30, 50, Red},
    {"C", 27, 148, 30, 50, Red},     {"MC", 12, 4, 56, 30, Red},      {"7", u'7', 40, 56, 30, Blue},
    {"8", u'8', 72, 56, 30, Blue},   {"9", u'9', 104, 56, 30, Blue},  {"/", u'/', 136, 56, 30, Red},
    {"sqrt", 64, 168, 56, 30, Blue}, {"MR", 18, 4, 80, 30, Red},      {"4", u'4', 40, 80, 30, Blue},
    {"5", u'5', 72, 80, 30, Blue},   {"6", u'6', 104, 80, 30, Blue},  {"*", u'*', 136, 80, 30, Red},
    {"%", u'%', 168, 80, 30, Blue},  {"MS", 19, 4, 104, 30, Red},     {"1", u'1', 40, 104, 30, Blue},
    {"2", u'2', 72, 104, 30, Blue},  {"3", u'3', 104, 104, 30, Blue}, {"-", u'-', 136, 104, 30, Red},
    {"1/x", u'R', 168, 104, 30, Blue}, {"M+", 16, 4, 128, 30, Red},   {"0", u'0', 40, 128, 30, Blue},
    {"+/-", u'_', 72, 128, 30, Blue}, {",", u',', 104, 128, 30, Blue}, {"+", u'+', 136, 128, 30, Red},
    {"=", u'=', 168, 128, 30, Red},
};
constexpr int ButtonHeight = 22;
constexpr int PanelWidth = 207;
constexpr int PanelHeight = 153;

QString NonFiniteText(double value)
{
    if (std::isnan(value))
        return QStringLiteral("NAN");
    return value < 0 ? QStringLiteral("-INF") : QStringLiteral("INF");
}

} // namespace

TQDBDisplayData::TQDBDisplayData(QObject *parent) : TQDBCustomData(parent)
{
    SetReadOnly(true);
    FieldDefs().Add(QStringLiteral("Display"), ftString, 64);
}

void TQDBDisplayData::SetText(const QString &text)
{
    text_ = text;
    if (Active())
        Refresh();
}

void TQDBDisplayData::DoOnGetFieldData(int, TField *, Variant &value)
{
    value = text_;
}

TQDBPopupCalculator::TQDBPopupCalculator(QWidget *editBox) : TQDBPopupList(editBox)
{
    setObjectName(QStringLiteral("PopupCalculator"));
    QFont small = font();
    small.setPixelSize(scaled(11));
    setFont(small);
    SetOptions(GetOptions() - TQDBGridOptions{dgColLines, dgColumnResize, dgRowResize});
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    display_.Open();
    ListSource()->SetDataSet(&display_);
    if (TQColumn *shown = GetColumns()->Count() > 0 ? GetColumns()->Items(0) : nullptr)
        shown->SetAlignment(taRightJustify);
    createButtons();
    Clear(true);
}

int TQDBPopupCalculator::scaled(int pixels) const
{
    const QWidget *box = EditBox();
    const int ppi = box ? box->logicalDpiY() : logicalDpiY();
    return pixels * ppi / 96;
}

void TQDBPopupCalculator::createButtons()
{
    const bool dark = palette().color(QPalette::Button).lightness() < 128;
    for (const ButtonEntry &entry : ButtonTable) {
        auto *button = new QPushButton(QString::fromLatin1(entry.caption), this);
        button->setFocusPolicy(Qt::NoFocus);
        button->setProperty("tag", int(entry.key) + int(entry.color) * 256);
        // Digits in blue and operations in red, lighter where the buttons are dark.
        if (entry.color != Black) {
            QPalette pal = button->palette();
            QColor caption = entry.color == Blue ? QColor(0, 0, 255) : QColor(255, 0, 0);
            if (dark)
                caption = caption.lighter(170);
            pal.setColor(QPalette::ButtonText, caption);
            button->setPalette(pal);
        }
        connect(button, &QPushButton::clicked, this, [this, button] { ButtonClick(button); });
        buttons_ << button;
    }
    placeButtons();
}

void TQDBPopupCalculator::placeButtons()
{
    for (int i = 0; i < buttons_.size(); ++i) {
        const ButtonEntry &entry = ButtonTable[i];
        buttons_[i]->setGeometry(scaled(entry.x + 1), scaled(entry.y - 5), scaled(entry.width), scaled(ButtonHeight));
    }
}

void TQDBPopupCalculator::resizeEvent(QResizeEvent *event)
{
    TQDBPopupList::resizeEvent(event);
    // The display takes the whole width.
    if (TQColumn *shown = GetColumns()->Count() > 0 ? GetColumns()->Items(0) : nullptr)
        shown->SetWidth(qMax(1, viewport()->width() - GridLineWidth()));
}

QSize TQDBPopupCalculator::CalcSize()
{
    return {scaled(PanelWidth), scaled(PanelHeight)};
}

void TQDBPopupCalculator::ButtonClick(QObject *sender)
{
    Operate(QChar(char16_t(sender->property("tag").toInt() & 0xFF)));
}

void TQDBPopupCalculator::SetText(const QString &text)
{
    QString shown = text.trimmed();
    double value = 0;
    const QChar separator = FormatSettings().DecimalSeparator;
    if (shown.isEmpty()) {
        shown = QStringLiteral("0");
    } else if (shown == NonFiniteText(std::numeric_limits<double>::infinity())) {
        value = std::numeric_limits<double>::infinity();
    } else if (shown == NonFiniteText(-std::numeric_limits<double>::infinity())) {
        value = -std::numeric_limits<double>::infinity();
    } else if (shown == NonFiniteText(std::nan(""))) {
        value = std::nan("");
    } else if (!TryStrToFloat(shown.endsWith(separator) ? shown + QLatin1Char('0') : shown, value)) {
        // Text that is no number starts the calculator from zero.
        shown = QStringLiteral("0");
        value = 0;
    }
    value_ = value;
    display_.SetText(shown);
}

void TQDBPopupCalculator::SetValue(double value)
{
    if (!std::isfinite(value)) {
        value_ = value;
        display_.SetText(NonFiniteText(value));
        return;
    }
    SetText(FloatToStr(value));
}

QString TQDBPopupCalculator::GetResult()
{
    if (typing_ || fresh_ || operatorPending_)
        Operate(QLatin1Char('='));
    return Text();
}

void TQDBPopupCalculator::SetResult(const QString &text)
{
    Clear(true);
    SetText(text);
}

void TQDBPopupCalculator::Clear(bool all)
{
    SetText(QStringLiteral("0"));
    if (!all && !typing_ && !fresh_)
        accumulator_ = savedAccumulator_;
    fresh_ = true;
    typing_ = false;
    operatorPending_ = false;
    if (all) {
        accumulator_ = savedAccumulator_ = operand_ = 0;
        pending_ = QLatin1Char('=');
    }
}

void TQDBPopupCalculator::Operate(QChar key)
{
    const char16_t k = key.unicode();
    if (k >= u'0' && k <= u'9') {
        digit(key);
        return;
    }
    switch (k) {
    case u'.':
    case u',': digit(FormatSettings().DecimalSeparator); break;
    case u'+':
    case u'-':
    case u'*':
    case u'/': binary(key); break;
    case u'=': evaluate(); break;
    case u'%': unary(accumulator_ * value_ / 100); break;
    case 64: unary(std::sqrt(value_)); break;
    case u'R':
    case u'r': unary(1 / value_); break;
    case u'_': changeSign(); break;
    case 8: backspace(); break;
    case 10: CloseUp(true); break;
    case 27: Clear(true); break;
    case 127: Clear(false); break;
    case 12:
    case 16:
    case 18:
    case 19: memoryKey(k); break;
    default: break;
    }
}

void TQDBPopupCalculator::digit(QChar c)
{
    if (!typing_)
        SetText(QStringLiteral("0"));
    const QChar separator = FormatSettings().DecimalSeparator;
    QString text = Text();
    // A second separator would make the text no number.
    if (c == separator && text.contains(separator))
        return;
    if (text == QLatin1String("0") && c != separator)
        text = c;
    else
        text += c;
    SetText(text);
    typing_ = true;
}

void TQDBPopupCalculator::binary(QChar op)
{
    if (!typing_ && !fresh_) {
        // Another operator straight after one replaces it.
        pending_ = op;
        operatorPending_ = true;
        return;
    }
    // A number typed after a finished calculation starts a new one.
    if (!operatorPending_)
        pending_ = QLatin1Char('=');
    evaluate();
    pending_ = op;
    operatorPending_ = true;
}

void TQDBPopupCalculator::evaluate()
{
    // A repeated "=" repeats the last operation with the same operand.
    if (typing_ || fresh_ || operatorPending_)
        operand_ = value_;
    typing_ = fresh_ = operatorPending_ = false;
    savedAccumulator_ = accumulator_;
    switch (pending_.unicode()) {
    case u'*': SetValue(accumulator_ * operand_); break;
    case u'+': SetValue(accumulator_ + operand_); break;
    case u'-': SetValue(accumulator_ - operand_); break;
    case u'/': SetValue(accumulator_ / operand_); break;
    default: break;
    }
    accumulator_ = value_;
}

void TQDBPopupCalculator::unary(double result)
{
    fresh_ = true;
    typing_ = false;
    SetValue(result);
}

void TQDBPopupCalculator::changeSign()
{
    QString text = Text();
    if (text.startsWith(QLatin1Char('-')))
        text.remove(0, 1);
    else if (text != QLatin1String("0"))
        text.prepend(QLatin1Char('-'));
    SetText(text);
    typing_ = true;
}

void TQDBPopupCalculator::backspace()
{
    if (!typing_) {
        QApplication::beep();
        return;
    }
    QString text = Text();
    const QString minusZero = QStringLiteral("-0") + FormatSettings().DecimalSeparator;
    if (text.size() == 1 || (text.size() == 2 && text.startsWith(QLatin1Char('-'))) || text == minusZero)
        text = QStringLiteral("0");
    else
        text.chop(1);
    SetText(text);
}

void TQDBPopupCalculator::memoryKey(int key)
{
    typing_ = false;
    switch (key) {
    case 12: memory_ = 0; break;
    case 16: memory_ += value_; break;
    case 18:
        fresh_ = true;
        SetValue(memory_);
        break;
    case 19: memory_ = value_; break;
    default: break;
    }
}

void TQDBPopupCalculator::KeyDown(QKeyEvent *event)
{
    const Qt::KeyboardModifiers mods = event->modifiers() & ~Qt::KeypadModifier;
    const bool ctrl = mods.testFlag(Qt::ControlModifier);
    const bool alt = mods.testFlag(Qt::AltModifier);
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (ctrl)
            Operate(QChar(char16_t(10)));
        else
            CloseUp(true); // completes what is pending
        return;
    case Qt::Key_Escape:
    case Qt::Key_F4:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        TQDBPopupList::KeyDown(event);
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (alt)
            TQDBPopupList::KeyDown(event);
        return;
    case Qt::Key_Delete:
        if (mods == Qt::NoModifier)
            Operate(QChar(char16_t(127)));
        return;
    case Qt::Key_F9:
        if (mods == Qt::NoModifier)
            Operate(QLatin1Char('_'));
        return;
    case Qt::Key_Backspace: Operate(QChar(char16_t(8))); return;
    default: break;
    }
    // Everything typed is the calculator's; nothing goes on to the edit box.
    const QString typed = event->text();
    if (!ctrl && !alt && typed.size() == 1 && typed.at(0).isPrint())
        Operate(typed.at(0));
}

TQDBGridCalculator::TQDBGridCalculator(TQDBGridEditor *editor, TQColumn *column)
    : TQDBGridDropDownList(editor, column)
{
}

TQDBPopupCalculator *TQDBGridCalculator::Calculator() const
{
    return qobject_cast<TQDBPopupCalculator *>(Popup());
}

TQDBPopupList *TQDBGridCalculator::CreatePopup()
{
    return new TQDBPopupCalculator(Editor());
}

void TQDBGridCalculator::DoDropDown()
{
    // What the cell shows now, typed or stored, is where the calculation starts.
    Calculator()->SetResult(Editor()->text());
}

void TQDBGridCalculator::DoCloseUp(bool accept)
{
    if (!accept)
        return;
    TQDBPopupCalculator *calculator = Calculator();
    QString result = calculator->GetResult();
    // A result finer than the field keeps is rounded to the field's decimals.
    const TField *field = Column() ? Column()->GetField() : nullptr;
    int decimals = -1;
    if (field && (field->DataType() == ftBCD || field->DataType() == ftFMTBcd))
        decimals = field->Size();
    else if (field && field->DataType() == ftCurrency)
        decimals = 4;
    const double value = calculator->Value();
    if (decimals >= 0 && std::isfinite(value)) {
        const double scale = std::pow(10.0, decimals);
        result = FloatToStr(std::round(value * scale) / scale);
    }
    Value = Variant(result);
}

TQDBEditorCalculator::TQDBEditorCalculator(TQDBGridEditor *editor, TQColumn *column)
    : TQDBGridCalculator(editor, column)
{
}

} // namespace qdb

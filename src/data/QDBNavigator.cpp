#include "QDBNavigator.h"

#include <QCoreApplication>
#include <QPainter>
#include <QStyleOptionGroupBox>
#include <QStyleOptionToolButton>

namespace qdb {

// ---- the button ----

TQDBNavButton::TQDBNavButton(TQDBNavigator *navigator, TNavigateBtn index)
    : navigator_(navigator), index_(index)
{
    setAttribute(Qt::WA_Hover);
}

QSize TQDBNavButton::sizeHint() const
{
    const QSize glyph = iconSize();
    const QString caption = text();
    const int gap = caption.isEmpty() ? 0 : navigator_->Spacing();
    const QSize words = caption.isEmpty() ? QSize() : fontMetrics().size(Qt::TextShowMnemonic, caption);
    const bool beside = navigator_->Layout() == blGlyphLeft || navigator_->Layout() == blGlyphRight;
    const int edge = qMax(4, navigator_->Margin());
    QSize size = beside ? QSize(glyph.width() + gap + words.width(), qMax(glyph.height(), words.height()))
                        : QSize(qMax(glyph.width(), words.width()), glyph.height() + gap + words.height());
    return size + QSize(2 * edge, 8);
}

void TQDBNavButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    const bool pressed = isDown();
    const bool hot = underMouse() && isEnabled();
    // The face: a gradient, the style's own button, or thin edges; flat buttons show theirs
    // only under the mouse or pressed.
    const bool face = !navigator_->Flat() || hot || pressed;
    if (face) {
        const QPalette &pal = palette();
        const bool themed = navigator_->ApplyTheme() && navigator_->DrawingStyle() == gdsThemed;
        // Fine buttons keep their thin edges, or with FineTheme show the theme's face while lit.
        const bool fine = navigator_->Fine() && !(navigator_->FineTheme() && themed && (hot || pressed));
        if (navigator_->DrawingStyle() == gdsGradient) {
            painter.fillRect(rect(), navigator_->Gradient().Brush(rect(), pal, hot, pressed));
            painter.setPen(pal.color(QPalette::Mid));
            painter.drawRect(rect().adjusted(0, 0, -1, -1));
        } else if (fine || !themed) {
            painter.fillRect(rect(), pressed ? pal.color(QPalette::Mid) : pal.color(QPalette::Button));
            painter.setPen(pal.color(navigator_->Fine() ? QPalette::Mid : (pressed ? QPalette::Dark : QPalette::Light)));
            painter.drawRect(rect().adjusted(0, 0, -1, -1));
        } else {
            option.state |= QStyle::State_Raised;
            if (hot)
                option.state |= QStyle::State_MouseOver;
            style()->drawPrimitive(QStyle::PE_PanelButtonTool, &option, &painter, this);
        }
    }
    // The glyph and the caption, placed by the layout; Margin -1 centres them together.
    const QIcon::Mode mode = !isEnabled() ? QIcon::Disabled : hot ? QIcon::Active : QIcon::Normal;
    const QPixmap glyph = icon().pixmap(iconSize(), devicePixelRatioF(), mode);
    const QSize glyphSize = glyph.deviceIndependentSize().toSize();
    const QString caption = text();
    const QSize words = caption.isEmpty() ? QSize() : fontMetrics().size(Qt::TextShowMnemonic, caption);
    const int gap = caption.isEmpty() ? 0 : navigator_->Spacing();
    const TButtonLayout layout = navigator_->Layout();
    const bool beside = layout == blGlyphLeft || layout == blGlyphRight;
    const QSize whole = beside ? QSize(glyphSize.width() + gap + words.width(), qMax(glyphSize.height(), words.height()))
                               : QSize(qMax(glyphSize.width(), words.width()), glyphSize.height() + gap + words.height());
    const int shift = pressed ? 1 : 0;
    QRect area(QPoint(0, 0), whole);
    area.moveCenter(rect().center() + QPoint(shift, shift));
    const int margin = navigator_->Margin();
    if (margin >= 0) {
        switch (layout) {
        case blGlyphLeft: area.moveLeft(margin + shift); break;
        case blGlyphRight: area.moveRight(width() - 1 - margin + shift); break;
        case blGlyphTop: area.moveTop(margin + shift); break;
        case blGlyphBottom: area.moveBottom(height() - 1 - margin + shift); break;
        }
    }
    QRect glyphAt(QPoint(0, 0), glyphSize);
    QRect wordsAt(QPoint(0, 0), words);
    switch (layout) {
    case blGlyphLeft:
        glyphAt.moveTopLeft(QPoint(area.left(), area.top() + (area.height() - glyphSize.height()) / 2));
        wordsAt.moveTopLeft(QPoint(glyphAt.right() + 1 + gap, area.top() + (area.height() - words.height()) / 2));
        break;
    case blGlyphRight:
        wordsAt.moveTopLeft(QPoint(area.left(), area.top() + (area.height() - words.height()) / 2));
        glyphAt.moveTopLeft(QPoint(wordsAt.right() + 1 + gap, area.top() + (area.height() - glyphSize.height()) / 2));
        break;
    case blGlyphTop:
        glyphAt.moveTopLeft(QPoint(area.left() + (area.width() - glyphSize.width()) / 2, area.top()));
        wordsAt.moveTopLeft(QPoint(area.left() + (area.width() - words.width()) / 2, glyphAt.bottom() + 1 + gap));
        break;
    case blGlyphBottom:
        wordsAt.moveTopLeft(QPoint(area.left() + (area.width() - words.width()) / 2, area.top()));
        glyphAt.moveTopLeft(QPoint(area.left() + (area.width() - glyphSize.width()) / 2, wordsAt.bottom() + 1 + gap));
        break;
    }
    painter.drawPixmap(glyphAt.topLeft(), glyph);
    if (!caption.isEmpty()) {
        painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
        painter.drawText(wordsAt, Qt::AlignCenter | Qt::TextShowMnemonic, caption);
    }
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = rect().adjusted(3, 3, -3, -3);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}

// ---- the navigator ----

TQDBNavigator::TQDBNavigator(QWidget *parent) : TDBNavigator(parent), captions_(new TStringList(this))
{
    captions_->OnChange = [this](TObject *) { setCaptions(); };
}

QString TQDBNavigator::DefaultCaption(TNavigateBtn button)
{
    static const char *const captions[] = {QT_TRANSLATE_NOOP("qdb", "First"), QT_TRANSLATE_NOOP("qdb", "Prior"), QT_TRANSLATE_NOOP("qdb", "Next"),   QT_TRANSLATE_NOOP("qdb", "Last"),    QT_TRANSLATE_NOOP("qdb", "Insert"),        QT_TRANSLATE_NOOP("qdb", "Delete"),
                                           QT_TRANSLATE_NOOP("qdb", "Edit"),  QT_TRANSLATE_NOOP("qdb", "Post"),  QT_TRANSLATE_NOOP("qdb", "Cancel"), QT_TRANSLATE_NOOP("qdb", "Refresh"), QT_TRANSLATE_NOOP("qdb", "Apply Updates"), QT_TRANSLATE_NOOP("qdb", "Cancel Updates")};
    return QCoreApplication::translate("qdb", captions[button]);
}

QString TQDBNavigator::Caption(TNavigateBtn button) const
{
    return showCaptions_ ? captionOf(button) : QString();
}

QString TQDBNavigator::captionOf(TNavigateBtn button) const
{
    const QString own = button < captions_->Count() ? captions_->Get(button) : QString();
    return own.isEmpty() ? DefaultCaption(button) : own;
}

void TQDBNavigator::UpdateHints()
{
    TDBNavigator::UpdateHints();
    setCaptions();
}

QAbstractButton *TQDBNavigator::CreateButton(TNavigateBtn button)
{
    return new TQDBNavButton(this, button);
}

void TQDBNavigator::ButtonsCreated()
{
    setCaptions();
}

void TQDBNavigator::setCaptions()
{
    for (int b = 0; b < NavigatorButtonCount; ++b) {
        QAbstractButton *button = Button(TNavigateBtn(b));
        button->setText(Caption(TNavigateBtn(b)));
        // Shown or not, a button's caption names it to assistive tools.
        button->setAccessibleName(captionOf(TNavigateBtn(b)).remove(QLatin1Char('&')));
    }
    restyle();
}

void TQDBNavigator::restyle()
{
    for (int b = 0; b < NavigatorButtonCount; ++b) {
        QAbstractButton *button = Button(TNavigateBtn(b));
        button->updateGeometry();
        button->update();
    }
    updateGeometry();
}

void TQDBNavigator::SetShowCaptions(bool on)
{
    showCaptions_ = on;
    setCaptions();
}

void TQDBNavigator::SetApplyTheme(bool on)
{
    applyTheme_ = on;
    restyle();
}

void TQDBNavigator::SetDrawingStyle(TGridDrawingStyle style)
{
    drawingStyle_ = style;
    restyle();
}

void TQDBNavigator::SetFine(bool on)
{
    fine_ = on;
    restyle();
}

void TQDBNavigator::SetFineTheme(bool on)
{
    fineTheme_ = on;
    restyle();
}

void TQDBNavigator::SetGradient(const TQGradient &gradient)
{
    gradient_ = gradient;
    restyle();
}

void TQDBNavigator::SetFlat(bool on)
{
    flat_ = on;
    restyle();
}

void TQDBNavigator::SetLayout(TButtonLayout layout)
{
    layout_ = layout;
    restyle();
}

void TQDBNavigator::SetMargin(int margin)
{
    margin_ = margin;
    restyle();
}

void TQDBNavigator::SetSpacing(int spacing)
{
    spacing_ = spacing;
    restyle();
}

// ---- the data controls ----

TQDBText::TQDBText(QWidget *parent) : TDBText(parent) {}

TQDBCheckBox::TQDBCheckBox(QWidget *parent) : TDBCheckBox(parent) {}

TQDBRadioGroup::TQDBRadioGroup(QWidget *parent) : TDBRadioGroup(parent)
{
    connect(this, &QGroupBox::toggled, this, [this] {
        if (OnCheckBoxChanged)
            OnCheckBoxChanged(this);
    });
}

void TQDBRadioGroup::SetGradient(const TQGradient &gradient)
{
    gradient_ = gradient;
    update();
}

void TQDBRadioGroup::SetParentBackground(bool on)
{
    parentBackground_ = on;
    update();
}

void TQDBRadioGroup::SetPartialBackground(bool on)
{
    partialBackground_ = on;
    update();
}

void TQDBRadioGroup::paintEvent(QPaintEvent *event)
{
    if (!parentBackground_) {
        QRect area = rect();
        if (partialBackground_) {
            QStyleOptionGroupBox option;
            initStyleOption(&option);
            const auto part = [&](QStyle::SubControl control) {
                return option.subControls & control ? style()->subControlRect(QStyle::CC_GroupBox, &option, control, this)
                                                    : QRect();
            };
            area = part(QStyle::SC_GroupBoxFrame);
            // Some styles give the frame the whole box and draw its line under the caption.
            const QRect caption = part(QStyle::SC_GroupBoxLabel) | part(QStyle::SC_GroupBoxCheckBox);
            if (!caption.isEmpty() && area.top() <= caption.top())
                area.setTop(caption.bottom() + 1);
        }
        QPainter painter(this);
        painter.fillRect(area, gradient_.IsEmpty() ? palette().brush(QPalette::Window) : gradient_.Brush(area, palette()));
    }
    TDBRadioGroup::paintEvent(event);
}

} // namespace qdb

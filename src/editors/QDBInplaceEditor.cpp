// The edit box with its button and image, and the keys around a list that hangs from it.

#include "QDBEditor.h"

#include "grid/QDBGridImages.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace qdb {

TQDBInplaceEdit::TQDBInplaceEdit(QWidget *parent) : QLineEdit(parent) {}

void TQDBInplaceEdit::Hide() { hide(); }
void TQDBInplaceEdit::Invalidate() { update(); }
void TQDBInplaceEdit::SetFocus() { setFocus(); }
void TQDBInplaceEdit::Move(const QRect &rect) { setGeometry(rect); }

void TQDBInplaceEdit::UpdateLoc(const QRect &rect)
{
    Move(rect);
    show();
}

void TQDBInplaceEdit::wheelEvent(QWheelEvent *event)
{
    // An edit has nothing to scroll: the grid under it does.
    event->ignore();
}

TQDBInplaceEditor::TQDBInplaceEditor(QWidget *parent) : TQDBInplaceEdit(parent)
{
    setMouseTracking(true);
}

TQDBInplaceEditor::~TQDBInplaceEditor() = default;

void TQDBInplaceEditor::SetEditorStyle(TEditorStyle style)
{
    if (editorStyle_ == style)
        return;
    editorStyle_ = style;
    UpdateMargins();
    update();
}

void TQDBInplaceEditor::SetImages(TImageList *images)
{
    images_ = images;
    UpdateMargins();
    update();
}

void TQDBInplaceEditor::SetImageMargin(int margin)
{
    imageMargin_ = qMax(0, margin);
    UpdateMargins();
    update();
}

void TQDBInplaceEditor::SetDropDownOnly(bool on)
{
    dropDownOnly_ = on;
    setReadOnly(on);
}

void TQDBInplaceEditor::SetAutoSize(bool on)
{
    autoSize_ = on;
    if (on)
        updateGeometry();
}

QRect TQDBInplaceEditor::ButtonRect() const
{
    if (GetEditorStyle() == edsSimple)
        return {};
    const int w = qMin(height(), style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this) + 2);
    return layoutDirection() == Qt::RightToLeft ? QRect(0, 0, w, height()) : QRect(width() - w, 0, w, height());
}

QRect TQDBInplaceEditor::ImageRect() const
{
    if (!images_ || images_->Count() == 0)
        return {};
    const int size = qMin(images_->Size(), height());
    const int x = layoutDirection() == Qt::RightToLeft ? width() - imageMargin_ - size : imageMargin_;
    return QRect(x, (height() - size) / 2, size, size);
}

void TQDBInplaceEditor::UpdateMargins()
{
    const int button = ButtonRect().width();
    const QRect image = ImageRect();
    const int imageSpace = image.isEmpty() ? 0 : image.width() + 2 * imageMargin_;
    if (layoutDirection() == Qt::RightToLeft)
        setTextMargins(button, 0, imageSpace, 0);
    else
        setTextMargins(imageSpace, 0, button, 0);
}

bool TQDBInplaceEditor::GetButtonEnabled() const
{
    return isEnabled();
}

void TQDBInplaceEditor::PaintButton(QPainter &painter, const QRect &rect)
{
    QStyleOptionButton option;
    option.initFrom(this);
    option.rect = rect;
    option.state &= ~QStyle::State_HasFocus;
    if (!GetButtonEnabled())
        option.state &= ~QStyle::State_Enabled;
    if (pressed_ || ListVisible())
        option.state |= QStyle::State_Sunken;
    else
        option.state |= QStyle::State_Raised;
    if (hot_)
        option.state |= QStyle::State_MouseOver;
    style()->drawPrimitive(QStyle::PE_PanelButtonTool, &option, &painter, this);
    if (GetEditorStyle() == edsEllipsis) {
        painter.setPen(palette().color(GetButtonEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
        painter.drawText(rect, Qt::AlignCenter, QStringLiteral("..."));
        return;
    }
    QStyleOption arrow(option);
    arrow.rect = rect.adjusted(rect.width() / 4, rect.height() / 4, -rect.width() / 4, -rect.height() / 4);
    style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrow, &painter, this);
}

void TQDBInplaceEditor::PaintClient(QPainter &painter, const QRect &rect)
{
    if (const QRect image = ImageRect(); !image.isEmpty() && rect.intersects(image))
        PaintImage(painter, image);
    if (const QRect button = ButtonRect(); !button.isEmpty() && rect.intersects(button))
        PaintButton(painter, button);
}

void TQDBInplaceEditor::PaintImage(QPainter &painter, const QRect &rect)
{
    DrawImage(painter, rect);
}

void TQDBInplaceEditor::DrawImage(QPainter &painter, const QRect &rect)
{
    const int index = GetImageIndex();
    if (images_ && index >= 0 && index < images_->Count())
        images_->Draw(painter, rect.x(), rect.y(), index);
}

void TQDBInplaceEditor::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    PaintClient(painter, rect());
}

bool TQDBInplaceEditor::EditorKeys(QKeyEvent *event)
{
    return DropDownKeys(event->key(), event->modifiers()) || KeyDown(event);
}

bool TQDBInplaceEditor::DropDownKeys(int key, Qt::KeyboardModifiers shift)
{
    const bool alt = shift.testFlag(Qt::AltModifier);
    const bool ctrl = shift.testFlag(Qt::ControlModifier);
    const bool open = ListVisible();
    if ((key == Qt::Key_Left || key == Qt::Key_Right) && shift.testFlag(Qt::ShiftModifier) && open
        && !inputMask().isEmpty())
        return true;
    // Only a list style has a list to open; the other buttons take these keys in KeyDown.
    if (!open && GetEditorStyle() != edsDropDownList)
        return false;
    const bool returnKey = key == Qt::Key_Return || key == Qt::Key_Enter;
    if ((key == Qt::Key_F4 && !alt && !ctrl) || ((key == Qt::Key_Up || key == Qt::Key_Down) && alt)
        || (returnKey && ctrl && !alt && !shift.testFlag(Qt::ShiftModifier))) {
        if (open)
            CloseUp(true);
        else
            DropDown();
        return true;
    }
    if (key == Qt::Key_Tab && !alt && !ctrl && open) {
        CloseUp(false);
        return false;
    }
    if ((returnKey || key == Qt::Key_Escape) && open && !alt) {
        CloseUp(returnKey);
        return true;
    }
    return false;
}

bool TQDBInplaceEditor::KeyDown(QKeyEvent *event)
{
    const int key = event->key();
    const Qt::KeyboardModifiers shift = event->modifiers();
    const TEditorStyle style = GetEditorStyle();
    if (style == edsEllipsis || style == edsDropDown || style == edsDropDownMenu) {
        const bool returnKey = key == Qt::Key_Return || key == Qt::Key_Enter;
        if ((returnKey && shift.testFlag(Qt::ControlModifier))
            || (key == Qt::Key_F4 && !shift.testFlag(Qt::AltModifier) && !shift.testFlag(Qt::ControlModifier))) {
            EditButtonClick();
            return true;
        }
    }
    if (ListVisible()) {
        switch (key) {
        case Qt::Key_PageUp: case Qt::Key_PageDown: case Qt::Key_End: case Qt::Key_Home:
        case Qt::Key_Left: case Qt::Key_Up: case Qt::Key_Right: case Qt::Key_Down:
            return true; // the list's own keys
        default: break;
        }
    }
    return false;
}

void TQDBInplaceEditor::keyPressEvent(QKeyEvent *event)
{
    if (EditorKeys(event)) {
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void TQDBInplaceEditor::CloseUp(bool) {}

void TQDBInplaceEditor::EditButtonClick()
{
    if (GetEditorStyle() == edsDropDownMenu && ShowDropDownMenu())
        return;
    if (OnEditButtonClick)
        OnEditButtonClick(this);
}

void TQDBInplaceEditor::ListDropDown(QObject *list)
{
    list_ = list;
    update(ButtonRect());
}

void TQDBInplaceEditor::ListCloseUp(QObject *, bool &)
{
    list_ = nullptr;
    update(ButtonRect());
}

QPoint TQDBInplaceEditor::DropDownPoint() const
{
    const QPoint at = layoutDirection() == Qt::RightToLeft ? QPoint(width(), height()) : QPoint(0, height());
    return mapToGlobal(at);
}

bool TQDBInplaceEditor::ShowDropDownMenu()
{
    QMenu *menu = GetDropDownMenu();
    if (!menu)
        return false;
    menu->popup(DropDownPoint());
    return true;
}

void TQDBInplaceEditor::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && ButtonRect().contains(event->position().toPoint())) {
        pressed_ = true;
        tracking_ = true;
        update(ButtonRect());
        event->accept();
        if (GetEditorStyle() == edsDropDownList) {
            setFocus(Qt::MouseFocusReason);
            if (ListVisible())
                CloseUp(false);
            else
                DropDown();
        }
        return;
    }
    TQDBInplaceEdit::mousePressEvent(event);
}

void TQDBInplaceEditor::mouseReleaseEvent(QMouseEvent *event)
{
    if (tracking_) {
        const bool inside = ButtonRect().contains(event->position().toPoint());
        tracking_ = false;
        pressed_ = false;
        update(ButtonRect());
        event->accept();
        if (inside && GetEditorStyle() != edsDropDownList)
            EditButtonClick();
        return;
    }
    TQDBInplaceEdit::mouseReleaseEvent(event);
}

void TQDBInplaceEditor::mouseMoveEvent(QMouseEvent *event)
{
    const bool over = ButtonRect().contains(event->position().toPoint());
    if (over != hot_) {
        hot_ = over;
        update(ButtonRect());
    }
    if (tracking_) {
        if (pressed_ != over) {
            pressed_ = over;
            update(ButtonRect());
        }
        event->accept();
        return;
    }
    setCursor(over ? Qt::ArrowCursor : Qt::IBeamCursor);
    TQDBInplaceEdit::mouseMoveEvent(event);
}

void TQDBInplaceEditor::leaveEvent(QEvent *event)
{
    if (hot_) {
        hot_ = false;
        update(ButtonRect());
    }
    TQDBInplaceEdit::leaveEvent(event);
}

void TQDBInplaceEditor::resizeEvent(QResizeEvent *event)
{
    TQDBInplaceEdit::resizeEvent(event);
    UpdateMargins();
}

void TQDBInplaceEditor::hideEvent(QHideEvent *event)
{
    // A list never outlives the edit it hangs from.
    CloseUp(false);
    TQDBInplaceEdit::hideEvent(event);
}

void TQDBInplaceEditor::moveEvent(QMoveEvent *event)
{
    // The cell moved away (the grid scrolled): the list would hang in the air.
    if (ListVisible())
        CloseUp(false);
    TQDBInplaceEdit::moveEvent(event);
}

void TQDBInplaceEditor::focusInEvent(QFocusEvent *event)
{
    TQDBInplaceEdit::focusInEvent(event);
    if (autoSelect_ && event->reason() != Qt::PopupFocusReason && event->reason() != Qt::MouseFocusReason)
        selectAll();
}

} // namespace qdb

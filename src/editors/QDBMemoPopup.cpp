#include "QDBMemoPopup.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QScreen>
#include <QVBoxLayout>

namespace qdb {

namespace {
constexpr int MemoLines = 8;
constexpr int MinColumns = 40; // characters a line shows at least
} // namespace

TQDBMemoPopup::TQDBMemoPopup(QWidget *owner) : QFrame(owner, Qt::Popup), edit_(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("MemoPopup"));
    setFrameStyle(QFrame::Box | QFrame::Plain);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(edit_);
    edit_->setTabChangesFocus(false);
    edit_->installEventFilter(this);
    setFocusProxy(edit_);
}

void TQDBMemoPopup::ShowUnder(const QRect &anchor, const QString &text, bool readOnly)
{
    edit_->setPlainText(text);
    edit_->setReadOnly(readOnly);
    edit_->selectAll();
    const QFontMetrics metrics(edit_->font());
    QSize size(qMax(anchor.width(), metrics.averageCharWidth() * MinColumns),
               metrics.lineSpacing() * MemoLines + 2 * (frameWidth() + edit_->frameWidth()) + 8);
    QScreen *screen = QGuiApplication::screenAt(anchor.center());
    if (!screen && parentWidget())
        screen = parentWidget()->screen();
    QPoint at(anchor.left(), anchor.bottom() + 1);
    if (screen) {
        // Kept on the screen: above the cell when there is no room below it.
        const QRect avail = screen->availableGeometry();
        size = size.boundedTo(avail.size());
        if (at.y() + size.height() > avail.bottom() + 1 && anchor.top() - size.height() >= avail.top())
            at.setY(anchor.top() - size.height());
        at.setX(qMax(avail.left(), qMin(at.x(), avail.right() + 1 - size.width())));
    }
    resize(size);
    move(at);
    open_ = true;
    show();
    edit_->setFocus(Qt::PopupFocusReason);
}

QString TQDBMemoPopup::Text() const
{
    return edit_->toPlainText();
}

void TQDBMemoPopup::CloseUp(bool accept)
{
    if (!open_)
        return;
    open_ = false;
    hide();
    if (OnCloseUp)
        OnCloseUp(this, accept && !edit_->isReadOnly());
}

bool TQDBMemoPopup::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == edit_ && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const Qt::KeyboardModifiers mods = key->modifiers();
        const bool returnKey = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        if (key->key() == Qt::Key_Escape) {
            CloseUp(false);
            return true;
        }
        // Return starts a new line; Ctrl+Return, F4 and Alt+Up/Down take the text.
        if ((returnKey && mods.testFlag(Qt::ControlModifier)) || key->key() == Qt::Key_F4
            || ((key->key() == Qt::Key_Up || key->key() == Qt::Key_Down) && mods.testFlag(Qt::AltModifier))) {
            CloseUp(true);
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}

void TQDBMemoPopup::hideEvent(QHideEvent *event)
{
    QFrame::hideEvent(event);
    CloseUp(true); // a click elsewhere keeps what was typed
}

} // namespace qdb

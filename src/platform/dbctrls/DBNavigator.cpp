#include "DBNavigator.h"

#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>

namespace qdb {

namespace {

// The buttons' glyphs, drawn for the project at any size: bars and triangles for moving,
// a plus, a minus, a pen, a tick, a cross and a circling arrow for the rest.
QIcon NavigatorGlyph(TNavigateBtn button)
{
    constexpr int size = 64;
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor ink(40, 40, 40);
    p.setPen(Qt::NoPen);
    p.setBrush(ink);
    const auto triangle = [&p](qreal tipX, qreal baseX) {
        QPainterPath path;
        path.moveTo(tipX, 32);
        path.lineTo(baseX, 16);
        path.lineTo(baseX, 48);
        path.closeSubpath();
        p.drawPath(path);
    };
    QPen line(ink, 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    switch (button) {
    case nbFirst:
        p.drawRect(QRectF(16, 16, 6, 32));
        triangle(24, 46);
        break;
    case nbPrior: triangle(18, 44); break;
    case nbNext: triangle(46, 20); break;
    case nbLast:
        p.drawRect(QRectF(42, 16, 6, 32));
        triangle(40, 18);
        break;
    case nbInsert:
        p.drawRect(QRectF(28, 14, 8, 36));
        p.drawRect(QRectF(14, 28, 36, 8));
        break;
    case nbDelete: p.drawRect(QRectF(14, 28, 36, 8)); break;
    case nbEdit: {
        QPainterPath pen;
        pen.moveTo(16, 48);
        pen.lineTo(20, 36);
        pen.lineTo(40, 16);
        pen.lineTo(48, 24);
        pen.lineTo(28, 44);
        pen.closeSubpath();
        p.drawPath(pen);
        break;
    }
    case nbPost:
    case nbApplyUpdates:
        p.setPen(line);
        p.setBrush(Qt::NoBrush);
        p.drawPolyline(QPolygonF({QPointF(16, 34), QPointF(27, 45), QPointF(48, 20)}));
        break;
    case nbCancel:
    case nbCancelUpdates:
        p.setPen(line);
        p.drawLine(QPointF(18, 18), QPointF(46, 46));
        p.drawLine(QPointF(46, 18), QPointF(18, 46));
        break;
    case nbRefresh: {
        p.setPen(QPen(ink, 6, Qt::SolidLine, Qt::FlatCap));
        p.setBrush(Qt::NoBrush);
        p.drawArc(QRectF(16, 16, 32, 32), 60 * 16, 290 * 16);
        p.setPen(Qt::NoPen);
        p.setBrush(ink);
        QPainterPath head;
        head.moveTo(34, 8);
        head.lineTo(46, 17);
        head.lineTo(33, 24);
        head.closeSubpath();
        p.drawPath(head);
        break;
    }
    }
    return QIcon(pixmap);
}

} // namespace

void TNavDataLink::ActiveChanged()
{
    navigator_->ActiveChanged();
}

void TNavDataLink::EditingChanged()
{
    navigator_->EditingChanged();
}

void TNavDataLink::DataSetChanged()
{
    navigator_->DataChanged();
    navigator_->EditingChanged();
}

void TNavDataLink::RecordChanged(TField *)
{
    navigator_->DataChanged();
}

TDBNavigator::TDBNavigator(QWidget *parent) : QWidget(parent), hints_(new TStringList(this))
{
    RegisterSetType<TNavigateBtn>();
    for (int b = nbFirst; b <= nbRefresh; ++b)
        visible_ += TNavigateBtn(b);
    hints_->OnChange = [this](TObject *) { UpdateHints(); };
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

TDBNavigator::~TDBNavigator()
{
    link_.SetDataSource(nullptr);
}

QString TDBNavigator::DefaultHint(TNavigateBtn button)
{
    static const char *const hints[] = {QT_TRANSLATE_NOOP("qdb", "First record"), QT_TRANSLATE_NOOP("qdb", "Prior record"), QT_TRANSLATE_NOOP("qdb", "Next record"), QT_TRANSLATE_NOOP("qdb", "Last record"),
                                        QT_TRANSLATE_NOOP("qdb", "Insert record"), QT_TRANSLATE_NOOP("qdb", "Delete record"), QT_TRANSLATE_NOOP("qdb", "Edit record"), QT_TRANSLATE_NOOP("qdb", "Post edit"),
                                        QT_TRANSLATE_NOOP("qdb", "Cancel edit"), QT_TRANSLATE_NOOP("qdb", "Refresh data"), QT_TRANSLATE_NOOP("qdb", "Apply updates"), QT_TRANSLATE_NOOP("qdb", "Cancel updates")};
    return QCoreApplication::translate("qdb", hints[button]);
}

QAbstractButton *TDBNavigator::CreateButton(TNavigateBtn)
{
    auto *button = new QToolButton;
    button->setAutoRaise(false);
    return button;
}

void TDBNavigator::EnsureButtons() const
{
    if (buttons_[0])
        return;
    auto *self = const_cast<TDBNavigator *>(this);
    for (int b = 0; b < NavigatorButtonCount; ++b) {
        const auto which = TNavigateBtn(b);
        QAbstractButton *button = self->CreateButton(which);
        button->setParent(self);
        button->setObjectName(QString::fromLatin1(QMetaEnum::fromType<TNavigateBtn>().valueToKey(b)));
        button->setIcon(NavigatorGlyph(which));
        button->setFocusPolicy(Qt::TabFocus);
        QObject::connect(button, &QAbstractButton::clicked, self, [self, which] { self->BtnClick(which); });
        buttons_[b] = button;
    }
    self->layOut();
    self->UpdateHints();
    self->ActiveChanged();
    self->ButtonsCreated();
}

QAbstractButton *TDBNavigator::Button(TNavigateBtn button) const
{
    EnsureButtons();
    return buttons_[button];
}

void TDBNavigator::showEvent(QShowEvent *event)
{
    EnsureButtons();
    QWidget::showEvent(event);
}

void TDBNavigator::SetDataSource(TDataSource *source)
{
    link_.SetDataSource(source);
    if (buttons_[0])
        ActiveChanged();
}

void TDBNavigator::SetVisibleButtons(TNavButtonSet buttons)
{
    visible_ = buttons;
    if (buttons_[0])
        layOut();
}

void TDBNavigator::SetKind(TDBNavigatorKind kind)
{
    kind_ = kind;
    setSizePolicy(kind == dbnHorizontal ? QSizePolicy::Preferred : QSizePolicy::Fixed,
                  kind == dbnHorizontal ? QSizePolicy::Fixed : QSizePolicy::Preferred);
    if (buttons_[0])
        layOut();
}

void TDBNavigator::layOut()
{
    delete layout();
    auto *box = new QBoxLayout(kind_ == dbnHorizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this);
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(0);
    for (int b = 0; b < NavigatorButtonCount; ++b) {
        QAbstractButton *button = buttons_[b];
        button->setVisible(visible_.Contains(TNavigateBtn(b)));
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        box->addWidget(button);
    }
}

void TDBNavigator::UpdateHints()
{
    if (!buttons_[0])
        return;
    for (int b = 0; b < NavigatorButtonCount; ++b) {
        const QString hint = b < hints_->Count() ? hints_->Get(b) : QString();
        const QString shown = hint.isEmpty() ? DefaultHint(TNavigateBtn(b)) : hint;
        buttons_[b]->setToolTip(shown);
        buttons_[b]->setAccessibleName(shown);
    }
}

void TDBNavigator::ActiveChanged()
{
    if (!buttons_[0])
        return;
    if (!isEnabled() || !link_.Active()) {
        for (QAbstractButton *button : buttons_)
            button->setEnabled(false);
        return;
    }
    DataChanged();
    EditingChanged();
}

void TDBNavigator::DataChanged()
{
    if (!buttons_[0])
        return;
    const bool active = isEnabled() && link_.Active();
    TDataSet *ds = active ? link_.DataSet() : nullptr;
    // At the first or last record as well as past it: the buttons that would not move are off.
    const int recNo = ds ? ds->RecNo() : -1;
    const bool up = ds && !ds->Bof() && recNo != 1;
    const bool down = ds && !ds->Eof() && !(recNo > 0 && ds->RecordCountKnown() && recNo == ds->RecordCount());
    buttons_[nbFirst]->setEnabled(up);
    buttons_[nbPrior]->setEnabled(up);
    buttons_[nbNext]->setEnabled(down);
    buttons_[nbLast]->setEnabled(down);
    buttons_[nbDelete]->setEnabled(ds && ds->CanModify() && !link_.ReadOnly() && !(ds->Bof() && ds->Eof()));
    buttons_[nbRefresh]->setEnabled(ds != nullptr);
    // The data sets here write each post at once: there are no cached updates to apply.
    buttons_[nbApplyUpdates]->setEnabled(false);
    buttons_[nbCancelUpdates]->setEnabled(false);
}

void TDBNavigator::EditingChanged()
{
    if (!buttons_[0])
        return;
    TDataSet *ds = isEnabled() && link_.Active() ? link_.DataSet() : nullptr;
    const bool canModify = ds && ds->CanModify() && !link_.ReadOnly();
    const bool editing = canModify && link_.Editing();
    buttons_[nbInsert]->setEnabled(canModify);
    buttons_[nbEdit]->setEnabled(canModify && !editing && !ds->IsEmpty());
    buttons_[nbPost]->setEnabled(editing);
    buttons_[nbCancel]->setEnabled(editing);
}

void TDBNavigator::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange)
        ActiveChanged();
}

void TDBNavigator::BtnClick(TNavigateBtn button)
{
    TDataSet *ds = link_.Active() ? link_.DataSet() : nullptr;
    if (ds) {
        if (BeforeAction)
            BeforeAction(this, button);
        try {
            switch (button) {
            case nbFirst: ds->First(); break;
            case nbPrior: ds->Prior(); break;
            case nbNext: ds->Next(); break;
            case nbLast: ds->Last(); break;
            case nbInsert: ds->Insert(); break;
            case nbEdit: ds->Edit(); break;
            case nbCancel: ds->Cancel(); break;
            case nbPost: ds->Post(); break;
            case nbRefresh: ds->Refresh(); break;
            case nbDelete:
                if (!confirmDelete_
                    || MessageDlg(QCoreApplication::translate("qdb", "Delete record?"), mtConfirmation,
                                  {mbOK, mbCancel})
                           != mrCancel)
                    ds->Delete();
                break;
            case nbApplyUpdates:
            case nbCancelUpdates: break;
            }
        } catch (const Exception &e) {
            // Refused: the record, its state and what was typed stay as they were.
            MessageDlg(e.Message(), mtError, {mbOK});
            return;
        }
    }
    if (OnClick)
        OnClick(this, button);
}

} // namespace qdb

#include "QDBSearchPanel.h"

#include "grid/QDBGrid.h"
#include "grid/QDBGridPrivate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QStyle>
#include <QToolButton>

namespace qdb {

TQDBGridSearchPanel::TQDBGridSearchPanel(TQCustomDBGrid *grid) : QFrame(grid), grid_(grid)
{
    setObjectName(QStringLiteral("SearchPanel"));
    setFrameShape(QFrame::StyledPanel);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);

    const auto button = [&](TButton which, const char *hint, QStyle::StandardPixmap icon) {
        auto *b = new QToolButton(this);
        b->setToolTip(QCoreApplication::translate("qdb", hint));
        b->setIcon(style()->standardIcon(icon, nullptr, this));
        b->setAutoRaise(true);
        b->setFocusPolicy(Qt::NoFocus);
        buttons_[which] = b;
        return b;
    };
    layout->addWidget(button(sbClose, QT_TRANSLATE_NOOP("qdb", "Close search (Esc)"), QStyle::SP_TitleBarCloseButton));
    connect(buttons_[sbClose], &QToolButton::clicked, grid_, &TQCustomDBGrid::CloseSearchPanel);

    box_ = new QComboBox(this);
    box_->setObjectName(QStringLiteral("SearchBox"));
    box_->setEditable(true);
    box_->setInsertPolicy(QComboBox::NoInsert);
    box_->setMinimumContentsLength(20);
    box_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box_->lineEdit()->installEventFilter(this);
    box_->lineEdit()->setClearButtonEnabled(true);
    connect(box_->lineEdit(), &QLineEdit::textEdited, this, &TQDBGridSearchPanel::textEdited);
    layout->addWidget(box_);

    const struct
    {
        TButton which;
        const char *hint;
        QStyle::StandardPixmap icon;
        TQSearchMode mode;
    } searches[] = {{sbFirst, QT_TRANSLATE_NOOP("qdb", "Find first (Ctrl+F3)"), QStyle::SP_MediaSkipBackward, smFirst},
                    {sbLast, QT_TRANSLATE_NOOP("qdb", "Find last (Alt+F3)"), QStyle::SP_MediaSkipForward, smLast},
                    {sbDown, QT_TRANSLATE_NOOP("qdb", "Search down (F3)"), QStyle::SP_ArrowDown, smNext},
                    {sbUp, QT_TRANSLATE_NOOP("qdb", "Search up (Shift+F3)"), QStyle::SP_ArrowUp, smPrev}};
    for (const auto &s : searches) {
        layout->addWidget(button(s.which, s.hint, s.icon));
        const TQSearchMode mode = s.mode;
        connect(buttons_[s.which], &QToolButton::clicked, this, [this, mode] { showingErrors([&] { Search(mode); }); });
    }

    auto *menu = new QMenu(this);
    const struct
    {
        TQSearchOption option;
        const char *caption;
    } items[] = {{soCaseSensitive, QT_TRANSLATE_NOOP("qdb", "&Case sensitive")}, {soWholeWords, QT_TRANSLATE_NOOP("qdb", "&Whole words")}, {soWrapAround, QT_TRANSLATE_NOOP("qdb", "W&rap around")},
                 {soCurrentCol, QT_TRANSLATE_NOOP("qdb", "C&urrent column")},    {soFilterRows, QT_TRANSLATE_NOOP("qdb", "&Filter rows")}};
    for (const auto &item : items) {
        QAction *action = menu->addAction(QCoreApplication::translate("qdb", item.caption));
        action->setCheckable(true);
        const TQSearchOption option = item.option;
        connect(action, &QAction::toggled, this, [this, option](bool on) {
            if (grid_->GetSearch()->GetOptions().Contains(option) != on)
                showingErrors([&] { grid_->GetSearch()->SwitchOptions({option}, on); });
        });
        options_[option] = action;
    }
    QToolButton *more = button(sbOptions, "More options", QStyle::SP_ToolBarVerticalExtensionButton);
    more->setMenu(menu);
    more->setPopupMode(QToolButton::InstantPopup);
    layout->addWidget(more);
    layout->addStretch(1);
    setFocusProxy(box_);
    UpdatePanel();
}

TQDBGridSearchPanel::~TQDBGridSearchPanel() = default;

QAction *TQDBGridSearchPanel::OptionAction(TQSearchOption option) const
{
    return options_[option];
}

QStringList TQDBGridSearchPanel::History() const
{
    QStringList items;
    for (int i = 0; i < box_->count(); ++i)
        items << box_->itemText(i);
    return items;
}

void TQDBGridSearchPanel::UpdatePanel()
{
    const TQDBGridSearch *search = grid_->GetSearch();
    QPalette boxPalette = grid_->palette();
    if (search->GetColor() != clDefault)
        boxPalette.setColor(QPalette::Base, ColorToQColor(search->GetColor(), boxPalette));
    box_->setPalette(boxPalette);
    QPalette panelPalette = grid_->palette();
    const bool painted = search->GetPanelColor() != clDefault;
    if (painted)
        panelPalette.setColor(QPalette::Window, ColorToQColor(search->GetPanelColor(), panelPalette));
    setPalette(panelPalette);
    setAutoFillBackground(true);
    box_->view()->setMinimumWidth(search->GetListWidth());
    buttons_[sbClose]->setVisible(!search->GetPermanent());
    for (int i = 0; i < int(std::size(options_)); ++i) {
        QAction *action = options_[i];
        if (!action)
            continue;
        const auto option = TQSearchOption(i);
        action->setVisible(search->GetVisibleOptions().Contains(option));
        const QSignalBlocker quiet(action);
        action->setChecked(search->GetOptions().Contains(option));
    }
    buttons_[sbOptions]->setVisible(!(search->GetVisibleOptions() - soSkipMessage).IsEmpty());
}

bool TQDBGridSearchPanel::Search(TQSearchMode mode, bool keepHistory)
{
    const QString text = box_->currentText();
    if (!keepHistory && !text.isEmpty()) {
        box_->lineEdit()->selectAll();
        for (int i = box_->count() - 1; i >= 0; --i)
            if (box_->itemText(i).compare(text, Qt::CaseInsensitive) == 0)
                box_->removeItem(i);
        box_->insertItem(0, text);
        box_->setCurrentIndex(0);
        box_->lineEdit()->selectAll();
    }
    // The menu's ticks are the options already; the text goes last, so that a row filter
    // is applied once.
    grid_->GetSearch()->SetText(text);
    return grid_->SearchGrid(mode);
}

void TQDBGridSearchPanel::textEdited(const QString &text)
{
    TQDBGridSearch *search = grid_->GetSearch();
    if (!search->GetIncremental())
        return;
    // While typing: from the top, without questions or messages.
    showingErrors([&] {
        search->SetText(text);
        grid_->SearchCell(smFirst, text, search->GetOptions());
    });
}

bool TQDBGridSearchPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != box_->lineEdit() || event->type() != QEvent::KeyPress)
        return QFrame::eventFilter(watched, event);
    auto *key = static_cast<QKeyEvent *>(event);
    const Qt::KeyboardModifiers mods = key->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F3:
        showingErrors([&] { Search(ShiftStateToSearchMode(mods)); });
        return true;
    case Qt::Key_Escape:
        // Closed once the key is through.
        if (!grid_->GetSearch()->GetPermanent() && !(mods & (Qt::ControlModifier | Qt::AltModifier)))
            QMetaObject::invokeMethod(grid_, &TQCustomDBGrid::CloseSearchPanel, Qt::QueuedConnection);
        return true;
    default:
        return QFrame::eventFilter(watched, event);
    }
}

} // namespace qdb

#include "QDBFilterList.h"

#include "QDBFilterConsts.h"
#include "QDBGridFilter.h"

#include "grid/QDBGrid.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/rtl/Strings.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSet>
#include <QStyleOptionButton>
#include <QToolButton>
#include <QToolTip>

namespace qdb {

namespace {
// A blank typed this soon after other letters belongs to the text being looked for.
constexpr int SearchBlankMs = 2000;
// OK and Cancel, and the gap around them.
constexpr QSize ButtonSize(75, 25);
constexpr int ButtonGap = 4;
} // namespace

// ---- the popup ----

TQDBPopupFilterList::TQDBPopupFilterList(QWidget *owner) : TQDBPopupList(owner)
{
    setObjectName(QStringLiteral("PopupFilterList"));
    SetCheckList(true);
    SetOptions(GetOptions() + TQDBGridOptions{dgTitles});
    const char *captions[] = {QT_TRANSLATE_NOOP("qdb", "Remove filter"), QT_TRANSLATE_NOOP("qdb", "Select filter..."),
                              QT_TRANSLATE_NOOP("qdb", "Add selected")};
    for (int i = 0; i < 3; ++i) {
        auto *button = new QToolButton(this);
        button->setText(QCoreApplication::translate("qdb", captions[i]));
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        button->hide();
        connect(button, &QToolButton::clicked, this, [this, i] { TitleClick(i); });
        commands_[i] = button;
    }
    ok_ = new QPushButton(QCoreApplication::translate("qdb", "OK"), this);
    cancel_ = new QPushButton(QCoreApplication::translate("qdb", "Cancel"), this);
    for (QPushButton *button : {ok_, cancel_}) {
        button->setFixedSize(ButtonSize);
        button->setFocusPolicy(Qt::NoFocus);
    }
    connect(ok_, &QPushButton::clicked, this, [this] { CloseUp(true); });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { needMore(); });
    connect(cancel_, &QPushButton::clicked, this, [this] { CloseUp(false); });
    placeButtons();
}

TQDBPopupFilterList::~TQDBPopupFilterList()
{
    // The grid's teardown moves its scroll bar, and this part of it is gone by then.
    disconnect(verticalScrollBar(), nullptr, this, nullptr);
}

void TQDBPopupFilterList::SetAutoApplyList(bool on)
{
    autoApplyList_ = on;
    ok_->setVisible(!on);
    cancel_->setVisible(!on);
    // Ticks applied at once move with the current row.
    SetOptions(on ? GetOptions() + TQDBGridOptions{dgRowSelect} : GetOptions() - TQDBGridOptions{dgRowSelect});
    placeButtons();
}

void TQDBPopupFilterList::SetRemoveFilter(bool on)
{
    commands_[cmRemoveFilter]->setVisible(on);
    placeButtons();
}

void TQDBPopupFilterList::SetSelectFilter(bool on)
{
    commands_[cmSelectFilter]->setVisible(on);
    placeButtons();
}

void TQDBPopupFilterList::SetAddSelected(bool on)
{
    commands_[cmAddSelected]->setVisible(on);
    placeButtons();
}

QAbstractButton *TQDBPopupFilterList::CommandButton(TCommand command) const
{
    return command <= cmAddSelected ? commands_[command] : nullptr;
}

void TQDBPopupFilterList::placeButtons()
{
    // The commands in a strip above the list, OK and Cancel below it; the list between.
    int top = 0;
    int x = frameWidth();
    for (QToolButton *button : commands_) {
        if (button->isHidden())
            continue;
        const QSize size = button->sizeHint();
        button->setGeometry(x, frameWidth(), size.width(), size.height());
        x += size.width();
        top = qMax(top, size.height());
    }
    const int bottom = autoApplyList_ ? 0 : ButtonSize.height() + 2 * ButtonGap;
    setViewportMargins(0, top, 0, bottom);
    const int y = height() - frameWidth() - ButtonGap - ButtonSize.height();
    const int right = width() - frameWidth() - ButtonGap;
    // OK goes where the platform's dialogs put it.
    const bool okLast = style()->styleHint(QStyle::SH_DialogButtonLayout) != QDialogButtonBox::WinLayout;
    QPushButton *first = okLast ? cancel_ : ok_;
    QPushButton *second = okLast ? ok_ : cancel_;
    second->move(right - ButtonSize.width(), y);
    first->move(right - 2 * ButtonSize.width() - ButtonGap, y);
}

void TQDBPopupFilterList::resizeEvent(QResizeEvent *event)
{
    TQDBPopupList::resizeEvent(event);
    placeButtons();
}

QSize TQDBPopupFilterList::CalcSize()
{
    QSize size = TQDBPopupList::CalcSize();
    const QMargins margins = viewportMargins();
    int commands = 2 * frameWidth();
    for (QToolButton *button : commands_)
        if (!button->isHidden())
            commands += button->sizeHint().width();
    const int buttons = autoApplyList_ ? 0 : 2 * ButtonSize.width() + 3 * ButtonGap + 2 * frameWidth();
    size.setWidth(std::max({size.width(), commands, buttons}));
    size.setHeight(size.height() + margins.top() + margins.bottom());
    return size;
}

int TQDBPopupFilterList::CheckedCount() const
{
    return SelectedRows().Count() + int(pending_.size());
}

void TQDBPopupFilterList::CheckAll(bool on)
{
    if (on) {
        if (partial_ && OnNeedAll)
            OnNeedAll();
        SelectAll();
    } else {
        pending_.clear();
        BeginSelect();
        SelectedRows().Clear();
        NotifyRowSelect(saClear);
        EndSelect();
    }
    SelectedRowsChanged();
}

void TQDBPopupFilterList::ToggleCheck()
{
    TQDBPopupList::ToggleCheck();
    SelectedRowsChanged();
}

void TQDBPopupFilterList::SelectedRowsChanged()
{
    updateTitles();
    InvalidateGrid();
    if (autoApplyList_ && OnApply)
        OnApply();
}

void TQDBPopupFilterList::updateTitles()
{
    if (GetColumns()->Count() == 0)
        return;
    TQColumn *values = GetColumns()->Items(0);
    QString caption = valuesCaption_;
    if (loadAll_)
        caption = QCoreApplication::translate("qdb", "%1 (all rows)").arg(caption);
    if (!search_.isEmpty())
        caption = QStringLiteral("%1: %2").arg(caption, search_);
    values->GetTitle()->SetCaption(caption);
    InvalidateTitles();
}

void TQDBPopupFilterList::TitleClick(int command)
{
    switch (command) {
    case cmRemoveFilter:
        if (OnRemoveFilter)
            OnRemoveFilter();
        break;
    case cmSelectFilter:
        if (OnSelectFilter)
            OnSelectFilter();
        break;
    case cmAddSelected:
        if (OnAddSelected)
            OnAddSelected();
        break;
    case cmLoadAll:
        loadAll_ = !loadAll_;
        if (OnReload)
            OnReload();
        updateTitles();
        break;
    case cmCheckAll:
        CheckAll(CheckedCount() == 0);
        break;
    default:
        break;
    }
}

void TQDBPopupFilterList::FixedCellClick(int col, int row, Qt::KeyboardModifiers)
{
    if (row >= TitleOffset())
        return;
    if (col < IndicatorOffset())
        TitleClick(cmCheckAll);
    else if (ColumnAt(col) && ColumnAt(col)->Index() == 0)
        TitleClick(cmLoadAll);
}

void TQDBPopupFilterList::paintEvent(QPaintEvent *event)
{
    TQDBPopupList::paintEvent(event);
    if (IndicatorOffset() == 0 || TitleOffset() == 0)
        return;
    QPainter painter(viewport());
    const QRect rect = CellRect(0, 0);
    // The tick of every value in the ticks' title: on when all are ticked, partly when some.
    const int ticked = CheckedCount();
    TDataSet *ds = DataSet();
    const int count = ds && ds->Active() && ds->RecordCountKnown() ? ds->RecordCount() : -1;
    QStyleOptionButton box;
    box.initFrom(this);
    const int w = style()->pixelMetric(QStyle::PM_IndicatorWidth, &box, this);
    const int h = style()->pixelMetric(QStyle::PM_IndicatorHeight, &box, this);
    box.rect = QRect(rect.x() + (rect.width() - w) / 2, rect.y() + (rect.height() - h) / 2, w, h);
    box.state &= ~QStyle::State_HasFocus;
    const bool all = SelectedRows().Count() == count && pending_.isEmpty();
    box.state |= ticked == 0 ? QStyle::State_Off : all ? QStyle::State_On : QStyle::State_NoChange;
    style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, this);
}

void TQDBPopupFilterList::KeyDown(QKeyEvent *event)
{
    const Qt::KeyboardModifiers mods = event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    const int key = event->key();
    if (event->matches(QKeySequence::Paste) || (key == Qt::Key_Insert && mods == Qt::ShiftModifier)) {
        PasteFromClipboard();
        return;
    }
    switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Left:
    case Qt::Key_Right:
        TQDBPopupList::KeyDown(event);
        needMore();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F4:
        TQDBPopupList::KeyDown(event);
        return;
    case Qt::Key_Escape:
        if (!search_.isEmpty()) {
            incrementalSearch(QString()); // the first Esc drops what was typed
            return;
        }
        TQDBPopupList::KeyDown(event);
        return;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        CloseUp(false);
        return;
    case Qt::Key_Backspace:
        if (!search_.isEmpty())
            incrementalSearch(search_.chopped(1));
        return;
    case Qt::Key_Space:
        if (mods == Qt::NoModifier && (!lastSearchKey_.isValid() || lastSearchKey_.elapsed() > SearchBlankMs)) {
            ToggleCheck();
            return;
        }
        break;
    default:
        break;
    }
    const QString text = event->text();
    if (!text.isEmpty() && text.at(0).isPrint() && !(mods & (Qt::ControlModifier | Qt::AltModifier))) {
        lastSearchKey_.start();
        incrementalSearch(search_ + text);
    }
}

void TQDBPopupFilterList::needMore()
{
    TDataSet *ds = DataSet();
    if (!OnNeedMore || !ds || !ds->Active())
        return;
    // The user came within a screen of the end (the grid's scroll bar moves the cursor).
    if (isVisible() && VisibleRowCount() > 0 && ds->RecNo() > ds->RecordCount() - VisibleRowCount())
        OnNeedMore();
}

void TQDBPopupFilterList::incrementalSearch(const QString &typed)
{
    search_ = typed;
    if (search_.isEmpty())
        lastSearchKey_.invalidate();
    if (OnNarrow) {
        OnNarrow(search_);
    } else if (!search_.isEmpty()) {
        TDataSet *ds = DataSet();
        if (ds && ds->Active() && GetColumns()->Count() > 0) {
            if (TField *f = GetColumns()->Items(0)->GetField()) {
                const auto locate = [&] { return ds->Locate(f->FieldName(), Variant(search_), {loCaseInsensitive, loPartialKey}); };
                if (!locate() && partial_ && OnFindMore && OnFindMore(search_))
                    locate();
            }
        }
    }
    updateTitles();
}

void TQDBPopupFilterList::TickKeys(const QStringList &keys, bool clear)
{
    auto *values = qobject_cast<TQDBFilterData *>(DataSet());
    if (!values || !values->Active())
        return;
    BeginSelect();
    TQBookmarkList &rows = SelectedRows();
    QStringList wanted = clear ? QStringList() : pending_;
    wanted += keys;
    if (clear)
        rows.Clear();
    pending_.clear();
    QSet<QString> waiting;
    for (const QString &key : std::as_const(wanted)) {
        const int index = values->IndexOfKey(key);
        if (index < 0) {
            const QString folded = key.toCaseFolded();
            if (partial_ && !waiting.contains(folded)) {
                waiting.insert(folded);
                pending_ << key;
            }
            continue;
        }
        int at = 0;
        const TBookmark bookmark = TQDBCustomData::IndexBookmark(index);
        if (!rows.Find(bookmark, at))
            rows.InsertItem(at, bookmark);
    }
    NotifyRowSelect(saSelect);
    EndSelect();
    updateTitles();
}

QStringList TQDBPopupFilterList::TickedKeys() const
{
    QStringList keys;
    auto *values = qobject_cast<TQDBFilterData *>(DataSet());
    const TQBookmarkList &rows = SelectedRows();
    for (int i = 0; values && i < rows.Count(); ++i) {
        const int index = TQDBCustomData::BookmarkIndex(rows.Items(i));
        if (index >= 0 && index < values->Count())
            keys << values->KeyValue(index);
    }
    return keys + pending_;
}

int TQDBPopupFilterList::PasteFromClipboard()
{
    QStringList keys;
    const QStringList lines = QGuiApplication::clipboard()->text().split(QRegularExpression(QStringLiteral("\r\n|\n|\r")));
    for (const QString &line : lines) {
        const QString key = line.section(QLatin1Char('\t'), 0, 0);
        if (!key.trimmed().isEmpty()) // blank lines tick nothing
            keys << key;
    }
    // Values not loaded tick only when the whole list holds them.
    auto *values = qobject_cast<TQDBFilterData *>(DataSet());
    QStringList known, unknown;
    for (const QString &key : std::as_const(keys))
        (values && values->IndexOfKey(key) < 0 ? unknown : known) << key;
    if (partial_ && OnFindKeys && !unknown.isEmpty())
        known += OnFindKeys(unknown);
    keys = known;
    const int before = CheckedCount();
    TickKeys(keys, false);
    const int ticked = CheckedCount() - before;
    SelectedRowsChanged();
    // What came of it, where the user looks.
    QToolTip::showText(mapToGlobal(QPoint(0, 0)), QCoreApplication::translate("qdb", "%1 values ticked").arg(ticked), this);
    return ticked;
}

// ---- the column's list ----

TQDBGridFilterList::TQDBGridFilterList(TQCustomDBGrid *grid, TQColumn *column) : TQDBGridDropDownList(grid, column)
{
    data_.setParent(this);
}

TQDBPopupList *TQDBGridFilterList::CreatePopup()
{
    auto *popup = new TQDBPopupFilterList(Grid());
    const TQDBGridFilter *filter = Grid()->GetFilterGrid();
    const TQDBGridFilterOptions options = filter->GetOptions();
    popup->SetLoadAll(options.Contains(foLoadAllItems));
    popup->SetCheckedFirst(options.Contains(foCheckedFirst));
    popup->SetAutoApplyList(options.Contains(foAutoApplyList));
    popup->SetRemoveFilter(true);
    popup->SetSelectFilter(filter->GetAutoFilters().Contains(fsFilterForm)
                           && Column()->GetTitle()->GetAutoFilters().Contains(fsFilterForm));
    popup->SetAddSelected(options.Contains(foAddSelected) && Grid()->SelectedRows().Count() > 0);
    popup->OnRemoveFilter = [this] { ClearFilterText(); };
    popup->OnSelectFilter = [this] { ShowFilterForm(); };
    popup->OnAddSelected = [this] { LoadSelectList(); };
    popup->OnApply = [this] { ApplyFilterList(); };
    popup->OnReload = [this] { reload(); };
    popup->OnNeedMore = [this] { ReadMore(); };
    popup->OnNeedAll = [this] { ReadAll(); };
    popup->OnFindMore = [this](const QString &text) { return ReadUpTo(text); };
    popup->OnFindKeys = [this](const QStringList &keys) { return FindKeys(keys); };
    if (options.Contains(foIncrementalList))
        popup->OnNarrow = [this](const QString &text) {
            narrow_ = text;
            reload();
        };
    popup->DropDownRows = filter->GetDropDownRows();
    return popup;
}

QString TQDBGridFilterList::GetFilterOrder(const TField *field)
{
    if (!field || field->IsNull())
        return {};
    switch (field->DataType()) {
    case ftDate:
    case ftTime:
    case ftDateTime:
    case ftTimeStamp:
        return FormatDateTime(QStringLiteral("yyyymmddhhnnsszzz"), field->AsDateTime());
    case ftSmallint:
    case ftInteger:
    case ftWord:
    case ftAutoInc:
        // Offset so that negative numbers come first.
        return QString::asprintf("%.8x", quint32(field->AsInteger()) ^ 0x80000000u);
    case ftLargeint:
        return QString::asprintf("%.16llx", quint64(field->AsLargeInt()) ^ 0x8000000000000000ull);
    case ftFloat:
    case ftCurrency:
    case ftBCD:
    case ftFMTBcd: {
        const double v = field->AsFloat();
        if (v >= 0)
            return QLatin1Char('1') + QString::asprintf("%31.15f", v);
        // Below zero the larger magnitude comes first: its digits, complemented.
        QString digits = QString::asprintf("%031.15f", -v);
        for (QChar &c : digits)
            if (c.isDigit())
                c = QChar(u'9' - (c.unicode() - u'0'));
        return QLatin1Char('0') + digits;
    }
    default:
        return {};
    }
}

void TQDBGridFilterList::LoadFilterData()
{
    more_ = false;
    fromDatabase_ = false;
    TQColumn *column = Column();
    TQCustomDBGrid *grid = Grid();
    TDataSet *ds = grid ? grid->DataSet() : nullptr;
    TField *field = column ? column->GetField() : nullptr;
    if (!field || !ds || !ds->Active() || !grid->DataLink()->Active()) {
        data_.BeginLoad();
        data_.EndLoad();
        return;
    }
    overValues([this] {
        fromDatabase_ = readPage(true);
        if (!fromDatabase_)
            walk();
    });
    if (FilterPopup())
        FilterPopup()->SetPartial(more_ || !narrow_.isEmpty());
}

void TQDBGridFilterList::ReadMore()
{
    if (!more_)
        return;
    overValues([this] { readPage(false); });
    appended();
}

void TQDBGridFilterList::ReadAll()
{
    if (!more_)
        return;
    overValues([this] { readPage(false, 0); });
    appended();
}

bool TQDBGridFilterList::ReadUpTo(const QString &text)
{
    TField *field = Column() ? Column()->GetField() : nullptr;
    if (!more_ || !fromDatabase_ || !listsText(field) || text.isEmpty())
        return false;
    bool found = false;
    overValues([&] {
        // The first value beyond the loaded ones that begins with the text, then every value
        // up to it in one read.
        TDataSet::TDistinctRequest probe;
        probe.Field = field;
        probe.Limit = 1;
        probe.After = true;
        probe.AfterValue = lastValue_;
        probe.Prefix = text;
        probe.TextsRule = checkedTexts_.isEmpty() ? 0 : -1;
        probe.Texts = checkedTexts_;
        QList<TDataSet::TDistinctValue> first;
        if (Grid()->DataSet()->DistinctValues(probe, first) && !first.isEmpty())
            found = readPage(false, 0, &first.front().Value);
    });
    appended();
    return found;
}

QStringList TQDBGridFilterList::FindKeys(const QStringList &keys)
{
    QStringList found;
    TQColumn *column = Column();
    TField *field = column ? column->GetField() : nullptr;
    TDataSet *ds = Grid() ? Grid()->DataSet() : nullptr;
    if (!field || !ds || !ds->Active() || keys.isEmpty())
        return found;
    overValues([&] {
        if (fromDatabase_) {
            // In parts, within what a statement may bind.
            constexpr qsizetype Part = 5000;
            for (qsizetype i = 0; i < keys.size(); i += Part) {
                TDataSet::TDistinctRequest request;
                request.Field = field;
                request.TextsRule = 1;
                request.Texts = keys.mid(i, Part);
                QList<TDataSet::TDistinctValue> values;
                if (!ds->DistinctValues(request, values))
                    break;
                for (const TDataSet::TDistinctValue &v : std::as_const(values)) {
                    const TFieldValueScope shown(field, v.Value);
                    found << field->Text();
                }
            }
            return;
        }
        TField *key = column->FilterField() ? column->FilterField() : field;
        QSet<QString> wanted;
        for (const QString &k : keys)
            wanted.insert(k.toCaseFolded());
        for (ds->First(); !ds->Eof() && !wanted.isEmpty(); ds->Next()) {
            const QString text = key->Text();
            if (wanted.remove(text.toCaseFolded()))
                found << text;
        }
    });
    return found;
}

void TQDBGridFilterList::appended()
{
    if (TQDBPopupFilterList *popup = FilterPopup()) {
        popup->SetPartial(more_ || !narrow_.isEmpty());
        popup->TickKeys({}, false); // ticks kept by value whose lines came
    }
}

bool TQDBGridFilterList::listsText(const TField *field)
{
    // A handler's text is not the database's.
    return field && field->ValueType() == VarType::String && !field->OnGetText;
}

void TQDBGridFilterList::overValues(const std::function<void()> &read)
{
    TQCustomDBGrid *grid = Grid();
    TQDBGridFilter *filter = grid->GetFilterGrid();
    // The values of every record, not only of the rows the grid's filter leaves.
    const bool switchOff = loadAll() && filter->GetFiltered();
    grid->DisablePosition();
    try {
        if (switchOff)
            filter->SetFiltered(false);
        read();
        if (switchOff)
            filter->SetFiltered(true);
    } catch (...) {
        if (switchOff)
            filter->SetFiltered(true);
        grid->EnablePosition(true);
        throw;
    }
    grid->EnablePosition(true);
}

bool TQDBGridFilterList::readPage(bool first, int limit, const Variant *until)
{
    TQColumn *column = Column();
    TField *field = column->GetField();
    TDataSet *ds = Grid()->DataSet();
    // The database lists the values of the field itself, in its own order, page by page;
    // a narrowing by texts it cannot write needs every record.
    if ((column->FilterField() && column->FilterField() != field) || (!narrow_.isEmpty() && !listsText(field)))
        return false;
    TDataSet::TDistinctRequest request;
    request.Field = field;
    request.Prefix = narrow_;
    QList<TDataSet::TDistinctValue> ticked;
    if (first) {
        // Ticked values first: asked for alone, and left out of the pages after them.
        checkedTexts_ = checkedFirst() ? column->GetFilterList()->ToStringList() : QStringList();
        if (!checkedTexts_.isEmpty()) {
            request.TextsRule = 1;
            request.Texts = checkedTexts_;
            if (!ds->DistinctValues(request, ticked))
                return false;
        }
    }
    request.TextsRule = checkedTexts_.isEmpty() ? 0 : -1;
    request.Texts = checkedTexts_;
    request.Limit = limit;
    request.After = !first;
    request.AfterValue = lastValue_;
    request.Until = until != nullptr;
    if (until)
        request.UntilValue = *until;
    QList<TDataSet::TDistinctValue> values;
    if (!ds->DistinctValues(request, values))
        return false;
    if (first) {
        data_.BeginLoad();
        pageLines_ = 0;
    } else {
        data_.BeginAppend();
    }
    const auto add = [&](const QList<TDataSet::TDistinctValue> &read, const QString &group) {
        QString previous;
        for (const TDataSet::TDistinctValue &v : read) {
            const TFieldValueScope shown(field, v.Value);
            QString listValue = column->GetDisplayText();
            if (listValue.isEmpty())
                listValue = QCoreApplication::translate("qdb", "(Empty)");
            const QString key = field->Text();
            // The database's order stands: lines are numbered as read. Values it tells apart
            // that read the same (NULL and an empty text) are one line, as in the walk.
            const QString line = listValue + QChar(0) + key;
            if (line != previous)
                ++pageLines_;
            previous = line;
            data_.AddValue(group + QString::asprintf("%.8x", pageLines_), listValue, key, int(qMin<qint64>(v.Count, INT_MAX)));
        }
    };
    add(ticked, QStringLiteral("0"));
    add(values, QStringLiteral("1"));
    // Values beyond a bound may follow; a read without limit or bound was the last.
    more_ = limit > 0 ? values.size() == limit : until != nullptr;
    if (!values.isEmpty())
        lastValue_ = values.back().Value;
    data_.EndLoad();
    return true;
}

bool TQDBGridFilterList::checkedFirst() const
{
    return FilterPopup() ? FilterPopup()->CheckedFirst() : Grid()->GetFilterGrid()->GetOptions().Contains(foCheckedFirst);
}

bool TQDBGridFilterList::loadAll() const
{
    return FilterPopup() ? FilterPopup()->LoadAll() : Grid()->GetFilterGrid()->GetOptions().Contains(foLoadAllItems);
}

void TQDBGridFilterList::walk()
{
    TQColumn *column = Column();
    TField *field = column->GetField();
    TDataSet *ds = Grid()->DataSet();
    TField *key = column->FilterField() ? column->FilterField() : field;
    const TStringList *ticked = static_cast<TStringList *>(column->GetFilterList());
    const bool tickedFirst = checkedFirst();
    data_.BeginLoad();
    try {
        for (ds->First(); !ds->Eof(); ds->Next()) {
            const QString keyValue = key->Text();
            QString listValue = column->GetDisplayText();
            if (listValue.isEmpty())
                listValue = QCoreApplication::translate("qdb", "(Empty)");
            if (!narrow_.isEmpty() && !listValue.startsWith(narrow_, Qt::CaseInsensitive))
                continue;
            QString order = GetFilterOrder(field);
            if (tickedFirst) {
                int at = 0;
                order.prepend(ticked->Find(keyValue, at) ? QLatin1Char('0') : QLatin1Char('1'));
            }
            data_.AddValue(order, listValue, keyValue);
        }
    } catch (...) {
        data_.EndLoad();
        throw;
    }
    data_.EndLoad();
}

void TQDBGridFilterList::LoadFilterList()
{
    const TStrings *list = Column() ? Column()->GetFilterList() : nullptr;
    if (FilterPopup() && list)
        FilterPopup()->TickKeys(list->ToStringList(), true);
}

void TQDBGridFilterList::LoadSelectList()
{
    TQDBPopupFilterList *popup = FilterPopup();
    TQCustomDBGrid *grid = Grid();
    TQColumn *column = Column();
    if (!popup || !grid || !column || grid->SelectedRows().Count() == 0)
        return;
    TField *key = column->FilterField() ? column->FilterField() : column->GetField();
    if (!key)
        return;
    QStringList keys;
    grid->DisablePosition();
    for (const TBookmark &selected : grid->SelectedRows()) {
        Q_UNUSED(selected); // the enumerator stands the data set on each selected record
        keys << key->Text();
    }
    grid->EnablePosition(true);
    popup->TickKeys(keys, false);
    popup->SelectedRowsChanged(); // applied once, with auto-apply
}

void TQDBGridFilterList::SaveFilterList()
{
    TQColumn *column = Column();
    if (!FilterPopup() || !column)
        return;
    TStringList values;
    values.SetSorted(true);
    values.AddStrings(FilterPopup()->TickedKeys());
    TStrings *list = column->GetFilterList();
    if (values.ToStringList() == list->ToStringList())
        return;
    list->BeginUpdate();
    list->Assign(values);
    list->EndUpdate();
}

void TQDBGridFilterList::ApplyFilterList()
{
    SaveFilterList();
    if (Column() && Column()->GetFilterList()->Count() == 0 && FilterPopup() && FilterPopup()->CheckedCount() <= 1)
        CloseUp(false);
}

void TQDBGridFilterList::ClearFilterText()
{
    if (Column())
        Column()->SetFilterText(QString());
    CloseUp(false);
}

void TQDBGridFilterList::ShowFilterForm()
{
    TQColumn *column = Column();
    CloseUp(false);
    if (OnShowFilterForm && column)
        OnShowFilterForm(column);
}

void TQDBGridFilterList::reload()
{
    TQDBPopupFilterList *popup = FilterPopup();
    // Ticks are kept by value across the new load.
    const QStringList keys = popup->TickedKeys();
    LoadFilterData();
    popup->TickKeys(keys, true);
}

void TQDBGridFilterList::DoDropDown()
{
    TQDBPopupFilterList *popup = FilterPopup();
    TQColumn *column = Column();
    LoadFilterData();
    popup->ListSource()->SetDataSet(&data_);
    {
        const CollectionUpdateGuard update(*popup->GetColumns());
        popup->GetColumns()->Clear();
        TQColumn *values = popup->GetColumns()->Add();
        values->SetFieldName(data_.ListFieldName());
        popup->SetValuesCaption(column->GetTitle()->GetCaption());
        values->SetWidth(qMax(column->GetWidth(), 80));
        TQColumn *count = popup->GetColumns()->Add();
        count->SetFieldName(TQDBFilterData::CountFieldName());
        count->GetTitle()->SetCaption(QCoreApplication::translate("qdb", "Rows"));
    }
    popup->updateTitles();
    LoadFilterList();
    data_.First();
}

void TQDBGridFilterList::DoCloseUp(bool accept)
{
    if (accept)
        SaveFilterList(); // with auto-apply, only what was ticked without a notice
}

} // namespace qdb

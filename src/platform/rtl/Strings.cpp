#include "Strings.h"

#include "Exceptions.h"

#include <QCoreApplication>

#include <algorithm>
#include <numeric>

namespace qdb {

namespace {

using UpdateGuard = UpdateBracket<TStrings>;

[[noreturn]] void sortedListError()
{
    throw EStringListError(QCoreApplication::translate("qdb", "Operation not allowed on sorted list"));
}

} // namespace

// ---- TStrings ----

TStrings::TStrings(QObject *parent) : QObject(parent) {}

void TStrings::Put(int index, const QString &s)
{
    UpdateGuard guard(*this);
    QObject *object = GetObject(index);
    Delete(index);
    InsertObject(index, s, object);
}

void TStrings::InsertObject(int index, const QString &s, QObject *object)
{
    UpdateGuard guard(*this);
    Insert(index, s);
    PutObject(index, object);
}

int TStrings::Add(const QString &s)
{
    return AddObject(s, nullptr);
}

int TStrings::AddObject(const QString &s, QObject *object)
{
    const int index = Count();
    InsertObject(index, s, object);
    return index;
}

int TStrings::IndexOf(const QString &s) const
{
    for (int i = 0, n = Count(); i < n; ++i)
        if (CompareStrings(Get(i), s) == 0)
            return i;
    return -1;
}

void TStrings::Exchange(int a, int b)
{
    UpdateGuard guard(*this);
    const QString sa = Get(a), sb = Get(b);
    QObject *oa = GetObject(a), *ob = GetObject(b);
    Put(a, sb);
    PutObject(a, ob);
    Put(b, sa);
    PutObject(b, oa);
}

void TStrings::Move(int from, int to)
{
    if (from == to)
        return;
    UpdateGuard guard(*this);
    const QString s = Get(from);
    QObject *o = GetObject(from);
    Delete(from);
    InsertObject(to, s, o);
}

int TStrings::IndexOfObject(const QObject *object) const
{
    for (int i = 0, n = Count(); i < n; ++i)
        if (GetObject(i) == object)
            return i;
    return -1;
}

void TStrings::AddStrings(const TStrings &other)
{
    UpdateGuard guard(*this);
    for (int i = 0, n = other.Count(); i < n; ++i)
        AddObject(other.Get(i), other.GetObject(i));
}

void TStrings::AddStrings(const QStringList &lines)
{
    UpdateGuard guard(*this);
    for (const QString &line : lines)
        Add(line);
}

void TStrings::Assign(const TStrings &other)
{
    if (&other == this)
        return;
    UpdateGuard guard(*this);
    Clear();
    delimiter_ = other.delimiter_;
    quoteChar_ = other.quoteChar_;
    nameValueSeparator_ = other.nameValueSeparator_;
    strictDelimiter_ = other.strictDelimiter_;
    lineBreak_ = other.lineBreak_;
    AddStrings(other);
}

bool TStrings::Equals(const TStrings &other) const
{
    if (Count() != other.Count())
        return false;
    for (int i = 0, n = Count(); i < n; ++i)
        if (Get(i) != other.Get(i))
            return false;
    return true;
}

QStringList TStrings::ToStringList() const
{
    QStringList out;
    out.reserve(Count());
    for (int i = 0, n = Count(); i < n; ++i)
        out << Get(i);
    return out;
}

QString TStrings::Names(int index) const
{
    const QString s = Get(index);
    const qsizetype p = s.indexOf(nameValueSeparator_);
    return p < 0 ? QString() : s.left(p);
}

QString TStrings::ValueFromIndex(int index) const
{
    const QString s = Get(index);
    const qsizetype p = s.indexOf(nameValueSeparator_);
    return p < 0 ? QString() : s.mid(p + 1);
}

void TStrings::SetValueFromIndex(int index, const QString &value)
{
    if (value.isEmpty()) {
        Delete(index);
        return;
    }
    const QString s = Get(index);
    const qsizetype p = s.indexOf(nameValueSeparator_);
    Put(index, (p < 0 ? s : s.left(p)) + nameValueSeparator_ + value);
}

int TStrings::IndexOfName(const QString &name) const
{
    for (int i = 0, n = Count(); i < n; ++i) {
        const QString s = Get(i);
        const qsizetype p = s.indexOf(nameValueSeparator_);
        if (p >= 0 && CompareStrings(s.left(p), name) == 0)
            return i;
    }
    return -1;
}

QString TStrings::Values(const QString &name) const
{
    const int i = IndexOfName(name);
    return i < 0 ? QString() : ValueFromIndex(i);
}

void TStrings::SetValues(const QString &name, const QString &value)
{
    const int i = IndexOfName(name);
    if (value.isEmpty()) {
        if (i >= 0)
            Delete(i);
        return;
    }
    const QString line = name + nameValueSeparator_ + value;
    if (i < 0) {
        Add(line);
    } else if (!IsSorted()) {
        Put(i, line);
    } else { // a sorted list places the new line itself
        UpdateGuard guard(*this);
        QObject *object = GetObject(i);
        Delete(i);
        AddObject(line, object);
    }
}

QString TStrings::Text() const
{
    QString out;
    for (int i = 0, n = Count(); i < n; ++i)
        out += Get(i) + lineBreak_;
    return out;
}

void TStrings::SetText(const QString &text)
{
    UpdateGuard guard(*this);
    Clear();
    qsizetype start = 0;
    const qsizetype n = text.size();
    while (start < n) {
        qsizetype end = start;
        while (end < n && text[end] != QLatin1Char('\n') && text[end] != QLatin1Char('\r'))
            ++end;
        Add(text.mid(start, end - start));
        if (end < n && text[end] == QLatin1Char('\r') && end + 1 < n && text[end + 1] == QLatin1Char('\n'))
            ++end;
        start = end + 1;
    }
}

QString TStrings::CommaText() const
{
    return delimitedText(QLatin1Char(','));
}

void TStrings::SetCommaText(const QString &text)
{
    setDelimitedText(text, QLatin1Char(','));
}

QString TStrings::DelimitedText() const
{
    return delimitedText(delimiter_);
}

void TStrings::SetDelimitedText(const QString &text)
{
    setDelimitedText(text, delimiter_);
}

QString TStrings::delimitedText(QChar delimiter) const
{
    const int n = Count();
    if (n == 1 && Get(0).isEmpty())
        return QString(2, quoteChar_);
    QString out;
    for (int i = 0; i < n; ++i) {
        QString s = Get(i);
        const bool needsQuotes = std::any_of(s.cbegin(), s.cend(), [&](QChar c) {
            return c == quoteChar_ || c == delimiter || c == QChar(0)
                || (!strictDelimiter_ && c.unicode() <= ' ');
        });
        if (needsQuotes) {
            s.replace(quoteChar_, QString(2, quoteChar_));
            s = quoteChar_ + s + quoteChar_;
        }
        if (i > 0)
            out += delimiter;
        out += s;
    }
    return out;
}

void TStrings::setDelimitedText(const QString &text, QChar delimiter)
{
    UpdateGuard guard(*this);
    Clear();
    const qsizetype n = text.size();
    qsizetype i = 0;
    auto isBlank = [&](qsizetype k) { return k < n && text[k].unicode() >= 1 && text[k].unicode() <= ' '; };
    auto skipBlanks = [&]() {
        if (!strictDelimiter_)
            while (isBlank(i))
                ++i;
    };
    skipBlanks();
    while (i < n) {
        QString item;
        if (text[i] == quoteChar_) {
            ++i;
            while (i < n) {
                if (text[i] == quoteChar_) {
                    if (i + 1 < n && text[i + 1] == quoteChar_) {
                        item += quoteChar_;
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                item += text[i++];
            }
        } else {
            const qsizetype start = i;
            while (i < n && text[i] != delimiter && (strictDelimiter_ || text[i].unicode() > ' '))
                ++i;
            item = text.mid(start, i - start);
        }
        Add(item);
        skipBlanks();
        if (i < n && text[i] == delimiter) {
            if (i + 1 == n)
                Add(QString()); // a trailing delimiter ends with an empty item
            ++i;
            skipBlanks();
        }
    }
}

void TStrings::BeginUpdate()
{
    ++updateCount_;
}

void TStrings::EndUpdate()
{
    if (updateCount_ == 0)
        return;
    if (--updateCount_ == 0 && changedInUpdate_) {
        changedInUpdate_ = false;
        Fire(OnChange, this);
    }
}

int TStrings::CompareStrings(const QString &a, const QString &b) const
{
    return QString::compare(a, b, Qt::CaseInsensitive);
}

void TStrings::Changing()
{
    if (updateCount_ == 0)
        Fire(OnChanging, this);
}

void TStrings::Changed()
{
    if (updateCount_ > 0)
        changedInUpdate_ = true;
    else
        Fire(OnChange, this);
}

void TStrings::IndexError(int index) const
{
    throw EStringListError(QCoreApplication::translate("qdb", "List index out of bounds (%1)").arg(index));
}

// ---- TStringList ----

TStringList::TStringList(QObject *parent) : TStrings(parent) {}

TStringList::TStringList(const QStringList &lines, QObject *parent) : TStrings(parent)
{
    items_.reserve(lines.size());
    for (const QString &line : lines)
        items_.append({line, nullptr});
}

void TStringList::checkIndex(int index) const
{
    if (index < 0 || index >= items_.size())
        IndexError(index);
}

QString TStringList::Get(int index) const
{
    checkIndex(index);
    return items_[index].text;
}

void TStringList::Put(int index, const QString &s)
{
    if (sorted_)
        sortedListError();
    checkIndex(index);
    Changing();
    items_[index].text = s;
    Changed();
}

QObject *TStringList::GetObject(int index) const
{
    checkIndex(index);
    return items_[index].object;
}

void TStringList::PutObject(int index, QObject *object)
{
    checkIndex(index);
    Changing();
    items_[index].object = object;
    Changed();
}

void TStringList::Insert(int index, const QString &s)
{
    InsertObject(index, s, nullptr);
}

void TStringList::InsertObject(int index, const QString &s, QObject *object)
{
    if (sorted_)
        sortedListError();
    if (index < 0 || index > items_.size())
        IndexError(index);
    insertItem(index, s, object);
}

int TStringList::AddObject(const QString &s, QObject *object)
{
    int index = Count();
    if (sorted_ && Find(s, index)) {
        if (duplicates_ == TDuplicates::dupIgnore)
            return index;
        if (duplicates_ == TDuplicates::dupError)
            throw EStringListError(QCoreApplication::translate("qdb", "String list does not allow duplicates"));
    }
    insertItem(index, s, object);
    return index;
}

void TStringList::insertItem(int index, const QString &s, QObject *object)
{
    Changing();
    items_.insert(index, Item{s, object});
    Changed();
}

void TStringList::Delete(int index)
{
    checkIndex(index);
    Changing();
    items_.removeAt(index);
    Changed();
}

void TStringList::Clear()
{
    if (items_.isEmpty())
        return;
    Changing();
    items_.clear();
    Changed();
}

int TStringList::IndexOf(const QString &s) const
{
    if (!sorted_)
        return TStrings::IndexOf(s);
    int index;
    return Find(s, index) ? index : -1;
}

void TStringList::Exchange(int a, int b)
{
    checkIndex(a);
    checkIndex(b);
    Changing();
    items_.swapItemsAt(a, b);
    Changed();
}

bool TStringList::Find(const QString &s, int &index) const
{
    int lo = 0, hi = int(items_.size()) - 1;
    bool found = false;
    while (lo <= hi) {
        const int mid = (lo + hi) / 2;
        const int c = CompareStrings(items_[mid].text, s);
        if (c < 0) {
            lo = mid + 1;
        } else {
            hi = mid - 1;
            if (c == 0)
                found = true;
        }
    }
    index = lo;
    return found;
}

void TStringList::Sort()
{
    Changing();
    std::stable_sort(items_.begin(), items_.end(),
                     [this](const Item &a, const Item &b) { return CompareStrings(a.text, b.text) < 0; });
    Changed();
}

void TStringList::CustomSort(const std::function<int(TStringList &, int, int)> &compare)
{
    if (sorted_ || items_.size() < 2)
        return;
    Changing();
    // Sort positions with the caller's comparison, then rearrange once.
    QList<int> order(items_.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return compare(*this, a, b) < 0; });
    QList<Item> sortedItems;
    sortedItems.reserve(items_.size());
    for (int i : order)
        sortedItems.append(items_[i]);
    items_ = std::move(sortedItems);
    Changed();
}

void TStringList::SetSorted(bool on)
{
    if (sorted_ == on)
        return;
    if (on)
        Sort();
    sorted_ = on;
}

void TStringList::SetCaseSensitive(bool on)
{
    if (caseSensitive_ == on)
        return;
    caseSensitive_ = on;
    if (sorted_)
        Sort();
}

int TStringList::CompareStrings(const QString &a, const QString &b) const
{
    return QString::compare(a, b, caseSensitive_ ? Qt::CaseSensitive : Qt::CaseInsensitive);
}

} // namespace qdb

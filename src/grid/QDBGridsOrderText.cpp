#include "QDBGridsOrderText.h"

#include <QStringList>

namespace qdb {

namespace {

const QLatin1String orderBy("ORDER BY ");

QString rightTrimmed(const QString &s)
{
    qsizetype n = s.size();
    while (n > 0 && s[n - 1].isSpace())
        --n;
    return s.left(n);
}

// The line (from the last) whose text holds "ORDER BY ", with the clause's position.
int findOrderLine(const TStrings *lines, qsizetype &position)
{
    for (int i = lines->Count() - 1; i >= 0; --i) {
        position = lines->Get(i).toUpper().indexOf(orderBy);
        if (position >= 0)
            return i;
    }
    return -1;
}

// The end of a name in double quotes at the start of an item (-1 when it is not quoted).
qsizetype quotedNameEnd(const QString &item)
{
    const qsizetype start = item.indexOf(QLatin1Char('"'));
    if (start < 0 || !item.left(start).trimmed().isEmpty())
        return -1;
    for (qsizetype i = start + 1; i < item.size(); ++i) {
        if (item[i] != QLatin1Char('"'))
            continue;
        if (i + 1 < item.size() && item[i + 1] == QLatin1Char('"'))
            ++i; // a doubled quote belongs to the name
        else
            return i + 1;
    }
    return -1;
}

// Splits an order text into its items at the commas (or semicolons) outside quoted names.
QStringList orderItems(const QString &order)
{
    QStringList items;
    QString current;
    bool quoted = false;
    for (const QChar c : order) {
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        if (!quoted && (c == QLatin1Char(',') || c == QLatin1Char(';'))) {
            items << current;
            current.clear();
        } else {
            current += c;
        }
    }
    items << current;
    return items;
}

// An order item's field name and direction.
QString itemField(const QString &item, bool &descending)
{
    const qsizetype quoted = quotedNameEnd(item);
    const QString upper = item.toUpper();
    qsizetype at = upper.indexOf(QLatin1String(" DESC"), qMax<qsizetype>(0, quoted));
    descending = at >= 0;
    if (at < 0)
        at = upper.indexOf(QLatin1String(" ASC"), qMax<qsizetype>(0, quoted));
    return (at < 0 ? item : item.left(at)).trimmed();
}

bool plainName(const QString &name)
{
    for (const QChar c : name)
        if (!c.isLetterOrNumber() && c != QLatin1Char('_') && c != QLatin1Char('.'))
            return false;
    return !name.isEmpty() && !name[0].isDigit();
}

} // namespace

QString CommaToSemicolon(const QString &s)
{
    return QString(s).replace(QLatin1Char(','), QLatin1Char(';'));
}

QString SemicolonToComma(const QString &s)
{
    return QString(s).replace(QLatin1Char(';'), QLatin1Char(','));
}

QString ScanStr(QString &s, QChar separator)
{
    return ScanStr(s, QString(separator));
}

QString ScanStr(QString &s, const QString &separator)
{
    const qsizetype at = separator.isEmpty() ? -1 : s.indexOf(separator);
    QString head;
    if (at < 0) {
        head = s;
        s.clear();
    } else {
        head = s.left(at);
        s.remove(0, at + separator.size());
    }
    return head;
}

QString ExtractOrderFields(const TStrings *lines)
{
    if (!lines)
        return QString();
    qsizetype p = -1;
    const int line = findOrderLine(lines, p);
    if (line < 0)
        return QString();
    QString result = lines->Get(line).mid(p + orderBy.size()).trimmed();
    if (result.endsWith(QLatin1Char(';'))) {
        result.chop(1);
        result = result.trimmed();
    }
    return result;
}

void ModifyOrderFields(TStrings *lines, const QString &orderText)
{
    if (!lines)
        return;
    QString order = orderText.trimmed();
    if (order.compare(QLatin1String("DESC"), Qt::CaseInsensitive) == 0)
        order.clear();
    qsizetype p = -1;
    const int line = findOrderLine(lines, p);
    if (line >= 0) {
        const QString old = lines->Get(line);
        QString updated = order.isEmpty() ? old.left(p) : old.left(p + orderBy.size()) + order;
        if (rightTrimmed(old).endsWith(QLatin1Char(';')))
            updated += QLatin1Char(';');
        lines->Put(line, updated);
        return;
    }
    if (order.isEmpty())
        return;
    lines->BeginUpdate();
    while (lines->Count() > 0 && rightTrimmed(lines->Get(lines->Count() - 1)).isEmpty())
        lines->Delete(lines->Count() - 1);
    if (lines->Count() > 0) {
        const QString last = rightTrimmed(lines->Get(lines->Count() - 1));
        if (last.endsWith(QLatin1Char(';'))) {
            lines->Put(lines->Count() - 1, last.left(last.size() - 1));
            lines->Add(orderBy + order + QLatin1Char(';'));
        } else {
            lines->Add(orderBy + order);
        }
    }
    lines->EndUpdate();
}

QString QuoteOrderFields(const QString &order)
{
    QStringList items;
    for (const QString &item : orderItems(order)) {
        bool descending = false;
        const QString name = itemField(item, descending);
        if (name.isEmpty() || quotedNameEnd(item) >= 0 || plainName(name)) {
            items << item.trimmed();
            continue;
        }
        const QString quoted = QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
        items << quoted + item.trimmed().mid(name.size());
    }
    return items.join(QLatin1Char(','));
}

QString UnquoteOrderFields(const QString &order)
{
    QStringList items;
    for (const QString &item : orderItems(order)) {
        const QString trimmed = item.trimmed();
        const qsizetype end = quotedNameEnd(trimmed);
        if (end < 0) {
            items << trimmed;
            continue;
        }
        const QString name = trimmed.mid(1, end - 2).replace(QLatin1String("\"\""), QLatin1String("\""));
        items << name + trimmed.mid(end);
    }
    return items.join(QLatin1Char(','));
}

QString OrderFieldsToIndexFields(const QString &order, const QString &indexFormat)
{
    const QString s = CommaToSemicolon(order);
    if (indexFormat.isEmpty())
        return s;
    const QStringList suffixes = indexFormat.split(QLatin1Char(';'));
    const QString descSuffix = suffixes.value(1);
    QStringList items;
    for (const QString &item : s.split(QLatin1Char(';'))) {
        const qsizetype at = item.toUpper().indexOf(QLatin1String(" DESC"));
        items << (at >= 0 ? item.left(at).trimmed() + descSuffix : item);
    }
    return items.join(QLatin1Char(';'));
}

QString IndexFieldsToOrderFields(const QString &indexFields, const QString &indexFormat)
{
    if (indexFormat.isEmpty())
        return SemicolonToComma(indexFields);
    const QStringList suffixes = indexFormat.toUpper().split(QLatin1Char(';'));
    const QString asc = suffixes.value(0), desc = suffixes.value(1), other = suffixes.value(2);
    QStringList items;
    for (const QString &item : indexFields.split(QLatin1Char(';'))) {
        const QString upper = item.toUpper();
        qsizetype at;
        if (!desc.isEmpty() && (at = upper.indexOf(desc)) >= 0)
            items << item.left(at).trimmed() + QStringLiteral(" DESC");
        else if (!asc.isEmpty() && (at = upper.indexOf(asc)) >= 0)
            items << item.left(at).trimmed();
        else if (!other.isEmpty() && (at = upper.indexOf(other)) >= 0)
            items << item.left(at).trimmed();
        else
            items << item;
    }
    return items.join(QLatin1Char(','));
}

bool CompareOrderFields(const QString &a, const QString &b)
{
    QString x = a.trimmed().toUpper(), y = b.trimmed().toUpper();
    for (;;) {
        if (x == y)
            return true;
        if (ScanStr(x, QLatin1Char(',')).trimmed() != ScanStr(y, QLatin1Char(',')).trimmed())
            return false;
        x = x.trimmed();
        y = y.trimmed();
    }
}

void SplitOrderFields(const QString &order, QString &fields, QString &descFields)
{
    QStringList all, desc;
    for (const QString &item : SemicolonToComma(order).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        bool descending = false;
        const QString name = itemField(item, descending);
        if (name.isEmpty())
            continue;
        all << name;
        if (descending)
            desc << name;
    }
    fields = all.join(QLatin1Char(';'));
    descFields = desc.join(QLatin1Char(';'));
}

QString UnifyOrderFields(const QString &fields, const QString &descFields, bool descending)
{
    const QStringList desc = descFields.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    const bool allDescending = descending && desc.isEmpty();
    QStringList items;
    for (const QString &f : fields.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString name = f.trimmed();
        const bool isDesc = allDescending || desc.contains(name, Qt::CaseInsensitive);
        items << (isDesc ? name + QStringLiteral(" DESC") : name);
    }
    return items.join(QLatin1Char(','));
}

} // namespace qdb

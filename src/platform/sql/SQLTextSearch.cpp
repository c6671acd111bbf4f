#include "SQLTextSearch.h"

#include "SQLTypes.h"

#include "platform/db/Fields.h"
#include "platform/rtl/DateTime.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/rtl/FormatSettings.h"
#include "platform/rtl/TextSearch.h"

#include <QSet>

#include <algorithm>

namespace qdb {

namespace {

// How Unicode upper case maps characters other than ASCII, for a test that the database
// makes with ASCII case alone: the ASCII letters some other character becomes, and the
// characters that become more than one.
struct CaseMap
{
    QSet<char32_t> toAscii;
    QString expanding;

    static const CaseMap &Get()
    {
        static const CaseMap map = [] {
            CaseMap m;
            for (char32_t c = 0x80; c < 0x10000; ++c) {
                if (c >= 0xD800 && c < 0xE000)
                    continue;
                const QString upper = QString(QChar(c)).toUpper();
                if (upper.size() > 1)
                    m.expanding += QChar(c);
                else if (upper.at(0).unicode() < 0x80)
                    m.toAscii.insert(upper.at(0).unicode());
            }
            return m;
        }();
        return map;
    }
};

// Whether a display text made of these characters can hold the search's text.
bool mayHold(const QString &alphabet, const TTextSearch &search)
{
    const QString in = search.CaseSensitive ? alphabet : alphabet.toUpper();
    for (const QChar c : search.CaseSensitive ? search.Text : search.Text.toUpper())
        if (!in.contains(c))
            return false;
    return true;
}

// Whether a field the database cannot write the texts of may show the search's text; true
// where that cannot be told.
bool mayShow(TField *f, const TTextSearch &search)
{
    const TFormatSettings &fs = FormatSettings();
    if (auto *d = qobject_cast<TDateTimeField *>(f)) {
        // Between its numbers a date shows what its month, weekday and half of the day make:
        // a text without digits is in some date's text when it is in one of these.
        const QString text = search.CaseSensitive ? search.Text : search.Text.toUpper();
        if (std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); }))
            return true;
        for (int month = 1; month <= 12; ++month)
            for (int day = 1; day <= 7; ++day)
                for (int hour : {0, 13}) {
                    const TDateTime dt = EncodeDateTime(2001, month, day, hour, 0, 0, 0);
                    const QString shown = !d->DisplayFormat().isEmpty() ? FormatDateTime(d->DisplayFormat(), dt)
                        : f->DataType() == ftDate                       ? DateToStr(dt)
                        : f->DataType() == ftTime                       ? TimeToStr(dt)
                                                                        : DateTimeToStr(dt);
                    if (TextSearchPos(search.Text, shown, search.CaseSensitive, search.WholeWords) > 0)
                        return true;
                }
        return false;
    }
    if (auto *n = qobject_cast<TNumericField *>(f)) {
        // Digits, signs, separators, an exponent, INF and NAN, the currency and what a
        // format writes itself.
        QString chars = QStringLiteral("0123456789-+() EINFAeinfa");
        chars += fs.DecimalSeparator;
        chars += fs.ThousandSeparator;
        chars += fs.CurrencyString;
        chars += n->DisplayFormat();
        return mayHold(chars, search);
    }
    return true;
}

class Builder
{
public:
    Builder(const TTextSearch &search, TSQLDialect dialect) : search_(search), dialect_(dialect) {}

    // The rows whose text `expression` holds the search's text.
    QString holds(const QString &expression)
    {
        if (dialect_ == TSQLDialect::SQLite) {
            params << search_.Text << (search_.CaseSensitive ? 1 : 0) + (search_.WholeWords ? 2 : 0);
            return QStringLiteral("qdb_search(%1, ?, ?)").arg(expression);
        }
        if (search_.CaseSensitive) {
            params << search_.Text;
            if (search_.WholeWords)
                exact = false;
            return QStringLiteral("strpos(%1, ?) > 0").arg(expression);
        }
        // ASCII letters compared in upper case, every character whose case the database
        // would fold its own way left to a wildcard of one; texts with a character that
        // becomes several in upper case are all taken. The records tell the rest.
        exact = false;
        const CaseMap &map = CaseMap::Get();
        QString pattern = QStringLiteral("%");
        for (const char32_t c : search_.Text.toUpper().toUcs4()) {
            if (c >= 0x80 || map.toAscii.contains(c))
                pattern += QLatin1Char('_');
            else if (c == U'%' || c == U'_' || c == U'\\')
                pattern += QLatin1Char('\\') + QChar(c);
            else
                pattern += QChar(c);
        }
        pattern += QLatin1Char('%');
        params << pattern << QStringLiteral("[%1]").arg(map.expanding);
        return QStringLiteral("(translate(%1, 'abcdefghijklmnopqrstuvwxyz', 'ABCDEFGHIJKLMNOPQRSTUVWXYZ') LIKE ? "
                              "ESCAPE '\\' OR %1 ~ ?)")
            .arg(expression);
    }

    // The rows that show one of a few fixed texts: each text with the rows that show it.
    struct Shown
    {
        QString text;
        QString rows;
        QList<QVariant> params;
    };
    QString anyOf(const QList<Shown> &shown)
    {
        QStringList parts;
        for (const Shown &s : shown)
            if (TextSearchPos(search_.Text, s.text, search_.CaseSensitive, search_.WholeWords) > 0) {
                parts << s.rows;
                params += s.params;
            }
        return parts.isEmpty() ? QString() : QStringLiteral("(%1)").arg(parts.join(QStringLiteral(" OR ")));
    }

    QString asText(const QString &column) const
    {
        return dialect_ == TSQLDialect::SQLite ? QStringLiteral("CAST(%1 AS TEXT)").arg(column)
                                               : QStringLiteral("(%1)::text").arg(column);
    }

    QList<QVariant> params;
    bool exact = true;

private:
    const TTextSearch &search_;
    TSQLDialect dialect_;
};

} // namespace

bool TextSearchToSQL(const TTextSearch &search, TDataSet *dataSet, TSQLDialect dialect,
                     const std::function<QString(const QString &)> &quoteName, SQLCondition &condition, bool &exact)
{
    if (dialect == TSQLDialect::Other || search.Text.isEmpty())
        return false;
    Builder b(search, dialect);
    QStringList parts;
    for (const QString &name : search.FieldNames) {
        TField *f = dataSet->FindField(name);
        if (!f || f->FieldKind() != fkData || f->OnGetText)
            return false;
        const QString column = quoteName(f->FieldName());
        QString part;
        auto *number = qobject_cast<TNumericField *>(f);
        if (auto *blob = qobject_cast<TBlobField *>(f)) {
            part = b.anyOf({{blob->DisplayTextOf(true), column + QStringLiteral(" IS NULL"), {}},
                            {blob->DisplayTextOf(false), column + QStringLiteral(" IS NOT NULL"), {}}});
        } else if (auto *flag = qobject_cast<TBooleanField *>(f)) {
            // NULL shows nothing, which holds no text.
            const QString equal = column + QStringLiteral(" = ?");
            part = b.anyOf({{flag->TrueText(), equal, {ToDatabase(Variant(true), f, dialect)}},
                            {flag->FalseText(), equal, {ToDatabase(Variant(false), f, dialect)}}});
        } else if (f->ValueType() == VarType::String) {
            part = b.holds(column);
        } else if (f->ValueType() == VarType::Integer && number && number->DisplayFormat().isEmpty()) {
            if (mayHold(QStringLiteral("0123456789-"), search))
                part = b.holds(b.asText(column));
        } else if (mayShow(f, search)) {
            return false;
        }
        if (!part.isEmpty())
            parts << part;
    }
    condition.text = parts.isEmpty() ? QStringLiteral("1 = 0") : QStringLiteral("(%1)").arg(parts.join(QStringLiteral(" OR ")));
    condition.params = b.params;
    exact = b.exact;
    return true;
}

} // namespace qdb

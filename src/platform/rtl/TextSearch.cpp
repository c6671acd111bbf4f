#include "TextSearch.h"

#include <cstring>

namespace qdb {

int TextSearchPos(const QString &text, const QString &in, bool caseSensitive, bool wholeWords)
{
    // Upper case makes a character three at most.
    if (text.isEmpty() || text.size() > 3 * in.size())
        return 0;
    const QString what = caseSensitive ? text : text.toUpper();
    const QString where = caseSensitive ? in : in.toUpper();
    if (where.size() < what.size())
        return 0;
    qsizetype from = 0;
    for (;;) {
        const qsizetype at = where.indexOf(what, from);
        if (at < 0)
            return 0;
        if (!wholeWords)
            return int(at + 1);
        // Only letters make words: digits and punctuation part them.
        const qsizetype end = at + what.size();
        if ((at == 0 || !where.at(at - 1).isLetter()) && (end >= where.size() || !where.at(end).isLetter()))
            return int(at + 1);
        from = end; // overlapping occurrences are passed over
    }
}

namespace {

bool isAscii(const char *s, qsizetype n)
{
    for (qsizetype i = 0; i < n; ++i)
        if (static_cast<unsigned char>(s[i]) >= 0x80)
            return false;
    return true;
}

char upper(char c)
{
    return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
}

bool letter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

} // namespace

TTextSearcher::TTextSearcher(const QString &text, bool caseSensitive, bool wholeWords)
    : text_(text), caseSensitive_(caseSensitive), wholeWords_(wholeWords)
{
    // Upper case first: a text that is not ASCII may become ASCII ("\u00df" is "SS").
    const QByteArray compared = (caseSensitive ? text : text.toUpper()).toUtf8();
    if (isAscii(compared.constData(), compared.size()))
        ascii_ = compared;
}

bool TTextSearcher::Matches(const char *utf8, qsizetype size) const
{
    if (text_.isEmpty())
        return false;
    // The upper case of ASCII is ASCII of the same length: byte for byte is then the same
    // rule, and a text that is not ASCII in upper case is not in it.
    if (isAscii(utf8, size)) {
        if (ascii_.isEmpty())
            return false;
        const qsizetype n = ascii_.size();
        const char *what = ascii_.constData();
        for (qsizetype at = 0; at + n <= size; ++at) {
            qsizetype k = 0;
            while (k < n && (caseSensitive_ ? utf8[at + k] : upper(utf8[at + k])) == what[k])
                ++k;
            if (k < n)
                continue;
            if (!wholeWords_ || ((at == 0 || !letter(utf8[at - 1])) && (at + n >= size || !letter(utf8[at + n]))))
                return true;
            at += n - 1; // overlapping occurrences are passed over
        }
        return false;
    }
    return TextSearchPos(text_, QString::fromUtf8(utf8, size), caseSensitive_, wholeWords_) > 0;
}

} // namespace qdb

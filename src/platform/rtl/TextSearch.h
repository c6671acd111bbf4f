#pragma once

#include <QString>

namespace qdb {

// Where `text` is found in `in`, counted from 1; 0 when it is not. Case-blind compares the
// two in Unicode upper case; with whole words only an occurrence between non-letters
// counts, and the search goes on after the end of one that is not.
int TextSearchPos(const QString &text, const QString &in, bool caseSensitive, bool wholeWords);

// A text prepared to be looked for in many others: the fast way through texts of ASCII
// alone, which need no Unicode case mapping.
class TTextSearcher
{
public:
    TTextSearcher(const QString &text, bool caseSensitive, bool wholeWords);
    // The rule of TextSearchPos, on UTF-8.
    bool Matches(const char *utf8, qsizetype size) const;

private:
    QString text_;
    QByteArray ascii_; // the text as compared, when it is ASCII alone
    bool caseSensitive_;
    bool wholeWords_;
};

} // namespace qdb

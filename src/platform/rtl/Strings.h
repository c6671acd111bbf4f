#pragma once

#include "Brackets.h"
#include "Events.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

namespace qdb {

// A list of strings, each with an optional object, with name=value access and the text
// forms Text (one line each), CommaText and DelimitedText. Changes are announced through
// OnChanging/OnChange; inside BeginUpdate/EndUpdate only once, at the outermost end.
class TStrings : public QObject
{
    Q_OBJECT

public:
    explicit TStrings(QObject *parent = nullptr);

    virtual int Count() const = 0;
    virtual QString Get(int index) const = 0;
    virtual void Put(int index, const QString &s);
    virtual QObject *GetObject(int index) const = 0;
    virtual void PutObject(int index, QObject *object) = 0;
    virtual void Insert(int index, const QString &s) = 0;
    virtual void InsertObject(int index, const QString &s, QObject *object);
    virtual int Add(const QString &s);
    virtual int AddObject(const QString &s, QObject *object);
    virtual void Delete(int index) = 0;
    virtual void Clear() = 0;
    virtual int IndexOf(const QString &s) const;
    virtual void Exchange(int a, int b);
    virtual bool IsSorted() const { return false; }
    void Move(int from, int to);

    QString operator[](int index) const { return Get(index); }
    QString Strings(int index) const { return Get(index); }
    int IndexOfObject(const QObject *object) const;
    void AddStrings(const TStrings &other);
    void AddStrings(const QStringList &lines);
    // Replaces the content with another list's strings and objects.
    virtual void Assign(const TStrings &other);
    bool Equals(const TStrings &other) const;
    QStringList ToStringList() const;

    // Name=value access.
    QString Names(int index) const;
    QString ValueFromIndex(int index) const;
    void SetValueFromIndex(int index, const QString &value);
    virtual int IndexOfName(const QString &name) const;
    QString Values(const QString &name) const;
    // An empty value removes the line.
    void SetValues(const QString &name, const QString &value);

    QString Text() const;
    // Splits at CR LF, LF or CR.
    void SetText(const QString &text);
    QString CommaText() const;
    void SetCommaText(const QString &text);
    QString DelimitedText() const;
    void SetDelimitedText(const QString &text);

    QChar Delimiter() const { return delimiter_; }
    void SetDelimiter(QChar c) { delimiter_ = c; }
    QChar QuoteChar() const { return quoteChar_; }
    void SetQuoteChar(QChar c) { quoteChar_ = c; }
    QChar NameValueSeparator() const { return nameValueSeparator_; }
    void SetNameValueSeparator(QChar c) { nameValueSeparator_ = c; }
    // Without strict delimiting, blanks separate items too.
    bool StrictDelimiter() const { return strictDelimiter_; }
    void SetStrictDelimiter(bool on) { strictDelimiter_ = on; }
    QString LineBreak() const { return lineBreak_; }
    void SetLineBreak(const QString &s) { lineBreak_ = s; }

    void BeginUpdate();
    void EndUpdate();
    int UpdateCount() const { return updateCount_; }

    TNotifyEvent OnChange;
    TNotifyEvent OnChanging;

    static QString ItemAt(const TStrings &s, int index) { return s.Get(index); }
    using const_iterator = IndexIterator<TStrings, QString, &TStrings::ItemAt>;
    const_iterator begin() const { return const_iterator(this, 0); }
    const_iterator end() const { return const_iterator(this, Count()); }

protected:
    // Compares two strings the way the list does; the base compares without case.
    virtual int CompareStrings(const QString &a, const QString &b) const;
    // Descendants call these around every change.
    void Changing();
    void Changed();
    [[noreturn]] void IndexError(int index) const;

private:
    QString delimitedText(QChar delimiter) const;
    void setDelimitedText(const QString &text, QChar delimiter);

    QChar delimiter_ = QLatin1Char(',');
    QChar quoteChar_ = QLatin1Char('"');
    QChar nameValueSeparator_ = QLatin1Char('=');
    bool strictDelimiter_ = false;
    QString lineBreak_ = QStringLiteral("\n");
    int updateCount_ = 0;
    bool changedInUpdate_ = false;
};

enum class TDuplicates { dupIgnore, dupAccept, dupError };

// The string list with its own storage, optional sorting and case sensitivity.
class TStringList : public TStrings
{
    Q_OBJECT

public:
    explicit TStringList(QObject *parent = nullptr);
    explicit TStringList(const QStringList &lines, QObject *parent = nullptr);

    int Count() const override { return int(items_.size()); }
    QString Get(int index) const override;
    void Put(int index, const QString &s) override;
    QObject *GetObject(int index) const override;
    void PutObject(int index, QObject *object) override;
    void Insert(int index, const QString &s) override;
    void InsertObject(int index, const QString &s, QObject *object) override;
    int AddObject(const QString &s, QObject *object) override;
    void Delete(int index) override;
    void Clear() override;
    int IndexOf(const QString &s) const override;
    void Exchange(int a, int b) override;
    bool IsSorted() const override { return sorted_; }

    // Binary search of a sorted list: true when found; index is the match or the place
    // where s would be inserted. With duplicates it is the first match.
    bool Find(const QString &s, int &index) const;
    virtual void Sort();
    // Sorts with a comparison of two positions; the list stays unsorted afterwards.
    void CustomSort(const std::function<int(TStringList &, int, int)> &compare);

    bool Sorted() const { return sorted_; }
    void SetSorted(bool on);
    bool CaseSensitive() const { return caseSensitive_; }
    void SetCaseSensitive(bool on);
    TDuplicates Duplicates() const { return duplicates_; }
    void SetDuplicates(TDuplicates d) { duplicates_ = d; }

protected:
    int CompareStrings(const QString &a, const QString &b) const override;

private:
    struct Item
    {
        QString text;
        QObject *object = nullptr;
    };
    void insertItem(int index, const QString &s, QObject *object);
    void checkIndex(int index) const;

    QList<Item> items_;
    bool sorted_ = false;
    bool caseSensitive_ = false;
    TDuplicates duplicates_ = TDuplicates::dupIgnore;
};

} // namespace qdb

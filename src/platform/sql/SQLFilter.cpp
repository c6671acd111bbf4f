#include "SQLFilter.h"

#include "SQLTypes.h"

#include "platform/db/Fields.h"

namespace qdb {

namespace {

class Translator
{
public:
    Translator(TFilterOptions options, TSQLDialect dialect, const std::function<QString(const QString &)> &quote)
        : caseInsensitive_(options.Contains(foCaseInsensitive)), partial_(!options.Contains(foNoPartialCompare)),
          dialect_(dialect), quote_(quote)
    {
    }

    QString node(const FilterNode &n)
    {
        switch (n.kind) {
        // Parameters follow the text left to right: each side is built before the next.
        case FilterNode::Or:
        case FilterNode::And: {
            QStringList terms;
            for (const auto &child : n.children)
                terms << node(*child);
            return QLatin1Char('(') + terms.join(n.kind == FilterNode::Or ? QStringLiteral(" OR ") : QStringLiteral(" AND "))
                + QLatin1Char(')');
        }
        case FilterNode::Not: return QStringLiteral("(NOT %1)").arg(node(*n.children[0]));
        case FilterNode::IsNull:
            return QStringLiteral("(%1 IS %2NULL)").arg(operand(*n.children[0], nullptr), n.negated ? QStringLiteral("NOT ") : QString());
        case FilterNode::Compare: return compare(n);
        case FilterNode::Like: return like(n);
        case FilterNode::In: {
            const TField *field = fieldOf(*n.children[0]);
            const QString left = text(*n.children[0], field);
            QStringList items;
            for (size_t i = 1; i < n.children.size(); ++i)
                items << text(*n.children[i], field);
            return QStringLiteral("(%1 %2IN (%3))")
                .arg(left, n.negated ? QStringLiteral("NOT ") : QString(), items.join(QStringLiteral(", ")));
        }
        default: return operand(n, nullptr);
        }
    }

    QList<QVariant> params;

private:
    static const TField *fieldOf(const FilterNode &n) { return n.kind == FilterNode::Field ? n.field : nullptr; }

    bool isText(const FilterNode &n) const
    {
        return n.kind == FilterNode::Field ? n.field->ValueType() == VarType::String : n.value.IsString();
    }

    // A field name, or a parameter for a literal typed like the field beside it.
    QString operand(const FilterNode &n, const TField *typedLike)
    {
        if (n.kind == FilterNode::Field)
            return quote_(n.field->FieldName());
        params << (typedLike ? ToDatabase(n.value, typedLike, dialect_) : n.value.ToQVariant());
        return QStringLiteral("?");
    }

    // Text compared without case folds both sides; SQLite's own LOWER knows only ASCII, so
    // there the fold is the data sets' own function.
    QString fold(const QString &s) const
    {
        return (dialect_ == TSQLDialect::SQLite ? QStringLiteral("qdb_fold(%1)") : QStringLiteral("LOWER(%1)")).arg(s);
    }

    QString text(const FilterNode &n, const TField *typedLike)
    {
        const QString s = operand(n, typedLike);
        return caseInsensitive_ && isText(n) ? fold(s) : s;
    }

    QString compare(const FilterNode &n)
    {
        const FilterNode &l = *n.children[0], &r = *n.children[1];
        const TField *field = fieldOf(l) ? fieldOf(l) : fieldOf(r);
        if (partial_ && n.compareOp == FilterNode::Eq && r.kind == FilterNode::Literal && r.value.IsString()
            && r.value.ToString().endsWith(QLatin1Char('*')) && isText(l)) {
            // 'ab*' matches what starts with ab
            QString prefix = r.value.ToString();
            prefix.chop(1);
            return startsWith(l, prefix);
        }
        static const char *const ops[] = {"=", "<>", "<", "<=", ">", ">="};
        const QString left = text(l, field);
        QString right = text(r, field);
        // Text is ordered by its characters' codes, as in memory, whatever the column's
        // collation would say ("a" < "B" under most locales).
        if (dialect_ == TSQLDialect::PostgreSQL && n.compareOp >= FilterNode::Lt && (isText(l) || isText(r)))
            right += QStringLiteral(" COLLATE \"C\"");
        return QStringLiteral("(%1 %2 %3)").arg(left, QLatin1String(ops[n.compareOp]), right);
    }

    QString escapeLike(QString s) const
    {
        s.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
        s.replace(QLatin1Char('%'), QStringLiteral("\\%"));
        s.replace(QLatin1Char('_'), QStringLiteral("\\_"));
        return s;
    }

    QString startsWith(const FilterNode &l, const QString &prefix)
    {
        return likeClause(operand(l, nullptr), escapeLike(prefix) + QLatin1Char('%'), false, true);
    }

    QString like(const FilterNode &n)
    {
        const FilterNode &l = *n.children[0], &r = *n.children[1];
        QString left = operand(l, nullptr);
        if (l.kind == FilterNode::Field && l.field->ValueType() != VarType::String)
            left = QStringLiteral("CAST(%1 AS TEXT)").arg(left);
        if (r.kind != FilterNode::Literal) { // a pattern from another column
            const QString pattern = operand(r, nullptr);
            return QStringLiteral("(%1 %2LIKE %3)").arg(left, n.negated ? QStringLiteral("NOT ") : QString(), pattern);
        }
        return likeClause(left, r.value.ToString(), n.negated, false);
    }

    // LIKE with the data sets' case rule: SQLite's own LIKE ignores case, so a
    // case-sensitive match there goes through GLOB. Patterns typed by users have no escape
    // character; escaped ones (built here) use a backslash.
    QString likeClause(const QString &left, const QString &pattern, bool negated, bool escaped)
    {
        const QString no = negated ? QStringLiteral("NOT ") : QString();
        if (dialect_ == TSQLDialect::SQLite && !caseInsensitive_) {
            addText(likeToGlob(pattern, escaped));
            return QStringLiteral("(%1 %2GLOB ?)").arg(left, no);
        }
        addText(pattern);
        const QString escape = escaped ? QStringLiteral(" ESCAPE '\\'") : QString();
        if (dialect_ == TSQLDialect::PostgreSQL)
            return QStringLiteral("(%1 %2%3 ?%4)")
                .arg(left, no, caseInsensitive_ ? QStringLiteral("ILIKE") : QStringLiteral("LIKE"),
                     escaped ? escape : QStringLiteral(" ESCAPE ''"));
        if (caseInsensitive_)
            return QStringLiteral("(%1 %2LIKE %3%4)").arg(fold(left), no, fold(QStringLiteral("?")), escape);
        return QStringLiteral("(%1 %2LIKE ?%3)").arg(left, no, escape);
    }

    // Qt's drivers bind a null QString as NULL: an empty pattern must stay text.
    void addText(const QString &s) { params << QVariant(s.isNull() ? QStringLiteral("") : s); }

    static QString likeToGlob(const QString &pattern, bool escaped)
    {
        QString glob;
        for (qsizetype i = 0; i < pattern.size(); ++i) {
            const QChar c = pattern[i];
            if (escaped && c == QLatin1Char('\\') && i + 1 < pattern.size()) {
                const QChar next = pattern[++i];
                glob += next == QLatin1Char('*') || next == QLatin1Char('?') || next == QLatin1Char('[')
                    ? QLatin1Char('[') + QString(next) + QLatin1Char(']')
                    : QString(next);
            } else if (c == QLatin1Char('%')) {
                glob += QLatin1Char('*');
            } else if (c == QLatin1Char('_')) {
                glob += QLatin1Char('?');
            } else if (c == QLatin1Char('*') || c == QLatin1Char('?') || c == QLatin1Char('[')) {
                glob += QLatin1Char('[') + c + QLatin1Char(']');
            } else {
                glob += c;
            }
        }
        return glob;
    }

    bool caseInsensitive_;
    bool partial_;
    TSQLDialect dialect_;
    const std::function<QString(const QString &)> &quote_;
};

} // namespace

SQLCondition FilterToSQL(const FilterExpression &filter, TFilterOptions options, TSQLDialect dialect,
                         const std::function<QString(const QString &)> &quoteName)
{
    Translator t(options, dialect, quoteName);
    SQLCondition c;
    c.text = t.node(filter.Root());
    c.params = t.params;
    return c;
}

} // namespace qdb

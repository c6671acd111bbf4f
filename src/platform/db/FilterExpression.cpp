#include "FilterExpression.h"

#include "DBConsts.h"
#include "DataSet.h"

#include "platform/rtl/Conversions.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/FormatDateTime.h"

#include <cmath>
#include <optional>

namespace qdb {

namespace {

enum class Tok { End, Name, String, Number, Op, LParen, RParen, Comma, Keyword };

struct Token
{
    Tok kind = Tok::End;
    QString text; // names without brackets, strings without quotes, keywords upper case
    int position = 0;
};

bool isKeyword(const QString &upper)
{
    static const QStringList words = {QStringLiteral("AND"), QStringLiteral("OR"), QStringLiteral("NOT"),
                                      QStringLiteral("LIKE"), QStringLiteral("IN"), QStringLiteral("IS"),
                                      QStringLiteral("NULL"), QStringLiteral("TRUE"), QStringLiteral("FALSE")};
    return words.contains(upper);
}

class Parser
{
public:
    explicit Parser(const QString &text) : text_(text) { advance(); }

    std::unique_ptr<FilterNode> parse()
    {
        auto node = orExpr();
        if (tok_.kind != Tok::End)
            fail(QStringLiteral("expected AND, OR or the end"));
        return node;
    }

private:
    [[noreturn]] void fail(const QString &what) const
    {
        throw EDatabaseError(DBConsts::SInvalidFilter().arg(what).arg(tok_.position).arg(text_));
    }

    bool keyword(const char *word) const { return tok_.kind == Tok::Keyword && tok_.text == QLatin1String(word); }

    void advance()
    {
        const qsizetype n = text_.size();
        while (pos_ < n && text_[pos_].isSpace())
            ++pos_;
        tok_ = Token{};
        tok_.position = int(pos_) + 1;
        if (pos_ >= n)
            return;
        const QChar c = text_[pos_];
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            QString value;
            qsizetype i = pos_ + 1;
            for (;;) {
                if (i >= n) {
                    tok_.kind = Tok::End;
                    fail(QStringLiteral("expected a closing quote"));
                }
                if (text_[i] == c) {
                    if (i + 1 < n && text_[i + 1] == c) { // a doubled quote stands for one
                        value += c;
                        i += 2;
                        continue;
                    }
                    break;
                }
                value += text_[i++];
            }
            tok_.kind = Tok::String;
            tok_.text = value;
            pos_ = i + 1;
        } else if (c == QLatin1Char('[')) {
            const qsizetype end = text_.indexOf(QLatin1Char(']'), pos_ + 1);
            if (end < 0)
                fail(QStringLiteral("expected a closing bracket"));
            tok_.kind = Tok::Name;
            tok_.text = text_.mid(pos_ + 1, end - pos_ - 1).trimmed();
            pos_ = end + 1;
        } else if (c.isDigit() || (c == QLatin1Char('.') && pos_ + 1 < n && text_[pos_ + 1].isDigit())) {
            qsizetype i = pos_;
            while (i < n && text_[i].isDigit())
                ++i;
            if (i < n && text_[i] == QLatin1Char('.')) {
                ++i;
                while (i < n && text_[i].isDigit())
                    ++i;
            }
            if (i < n && (text_[i] == QLatin1Char('e') || text_[i] == QLatin1Char('E'))) {
                qsizetype j = i + 1;
                if (j < n && (text_[j] == QLatin1Char('+') || text_[j] == QLatin1Char('-')))
                    ++j;
                if (j < n && text_[j].isDigit()) {
                    while (j < n && text_[j].isDigit())
                        ++j;
                    i = j;
                }
            }
            tok_.kind = Tok::Number;
            tok_.text = text_.mid(pos_, i - pos_);
            pos_ = i;
        } else if (c.isLetter() || c == QLatin1Char('_')) {
            qsizetype i = pos_;
            while (i < n && (text_[i].isLetterOrNumber() || text_[i] == QLatin1Char('_') || text_[i] == QLatin1Char('.')))
                ++i;
            const QString word = text_.mid(pos_, i - pos_);
            const QString upper = word.toUpper();
            tok_.kind = isKeyword(upper) ? Tok::Keyword : Tok::Name;
            tok_.text = tok_.kind == Tok::Keyword ? upper : word;
            pos_ = i;
        } else if (c == QLatin1Char('(')) {
            tok_.kind = Tok::LParen;
            ++pos_;
        } else if (c == QLatin1Char(')')) {
            tok_.kind = Tok::RParen;
            ++pos_;
        } else if (c == QLatin1Char(',')) {
            tok_.kind = Tok::Comma;
            ++pos_;
        } else {
            static const char *const ops[] = {"<>", "<=", ">=", "!=", "=", "<", ">", "-"};
            for (const char *op : ops) {
                const QLatin1String o(op);
                if (QStringView(text_).mid(pos_).startsWith(o)) {
                    tok_.kind = Tok::Op;
                    tok_.text = o == QLatin1String("!=") ? QStringLiteral("<>") : QString(o);
                    pos_ += o.size();
                    return;
                }
            }
            fail(QStringLiteral("unexpected character '%1'").arg(c));
        }
    }

    std::unique_ptr<FilterNode> make(FilterNode::Kind kind, int position)
    {
        auto node = std::make_unique<FilterNode>();
        node->kind = kind;
        node->position = position;
        return node;
    }

    std::unique_ptr<FilterNode> binary(FilterNode::Kind kind, std::unique_ptr<FilterNode> left,
                                       std::unique_ptr<FilterNode> right)
    {
        auto node = make(kind, left->position);
        node->children.push_back(std::move(left));
        node->children.push_back(std::move(right));
        return node;
    }

    // A run of ORs or of ANDs is one node with a child for each term, so that a long list
    // does not make a deep tree.
    std::unique_ptr<FilterNode> chain(FilterNode::Kind kind, const char *word, std::unique_ptr<FilterNode> (Parser::*term)())
    {
        auto first = (this->*term)();
        if (!keyword(word))
            return first;
        auto node = make(kind, first->position);
        node->children.push_back(std::move(first));
        while (keyword(word)) {
            advance();
            node->children.push_back((this->*term)());
        }
        return node;
    }

    std::unique_ptr<FilterNode> orExpr() { return chain(FilterNode::Or, "OR", &Parser::andExpr); }
    std::unique_ptr<FilterNode> andExpr() { return chain(FilterNode::And, "AND", &Parser::notExpr); }

    // Brackets and NOTs inside one another, each a level of the parser and of the tree; the
    // limit keeps garbage from exhausting the stack.
    static constexpr int MaxNesting = 128;
    void nest()
    {
        if (++nesting_ > MaxNesting)
            fail(QStringLiteral("nested more than %1 deep").arg(MaxNesting));
    }

    std::unique_ptr<FilterNode> notExpr()
    {
        if (keyword("NOT")) {
            auto node = make(FilterNode::Not, tok_.position);
            advance();
            nest();
            node->children.push_back(notExpr());
            --nesting_;
            return node;
        }
        return predicate();
    }

    std::unique_ptr<FilterNode> predicate()
    {
        if (tok_.kind == Tok::LParen) {
            advance();
            nest();
            auto inner = orExpr();
            --nesting_;
            if (tok_.kind != Tok::RParen)
                fail(QStringLiteral("expected ')'"));
            advance();
            return inner;
        }
        auto left = operand();
        const int position = left->position;
        if (tok_.kind == Tok::Op && tok_.text != QLatin1String("-")) {
            const QString op = tok_.text;
            advance();
            if (keyword("NULL")) { // "x = NULL" and "x <> NULL" test for null
                if (op != QLatin1String("=") && op != QLatin1String("<>"))
                    fail(QStringLiteral("expected = or <> before NULL"));
                advance();
                auto node = make(FilterNode::IsNull, position);
                node->negated = op == QLatin1String("<>");
                node->children.push_back(std::move(left));
                return node;
            }
            auto node = binary(FilterNode::Compare, std::move(left), operand());
            node->op = op;
            node->compareOp = op == QLatin1String("=")    ? FilterNode::Eq
                            : op == QLatin1String("<>") ? FilterNode::Ne
                            : op == QLatin1String("<")  ? FilterNode::Lt
                            : op == QLatin1String("<=") ? FilterNode::Le
                            : op == QLatin1String(">")  ? FilterNode::Gt
                                                        : FilterNode::Ge;
            return node;
        }
        bool negated = false;
        if (keyword("NOT")) {
            negated = true;
            advance();
            if (!keyword("LIKE") && !keyword("IN"))
                fail(QStringLiteral("expected LIKE or IN after NOT"));
        }
        if (keyword("LIKE")) {
            advance();
            auto node = binary(FilterNode::Like, std::move(left), operand());
            node->negated = negated;
            return node;
        }
        if (keyword("IN")) {
            advance();
            if (tok_.kind != Tok::LParen)
                fail(QStringLiteral("expected '(' after IN"));
            advance();
            auto node = make(FilterNode::In, position);
            node->negated = negated;
            node->children.push_back(std::move(left));
            for (;;) {
                node->children.push_back(operand());
                if (tok_.kind == Tok::Comma) {
                    advance();
                    continue;
                }
                if (tok_.kind != Tok::RParen)
                    fail(QStringLiteral("expected ',' or ')'"));
                advance();
                break;
            }
            return node;
        }
        if (keyword("IS")) {
            advance();
            auto node = make(FilterNode::IsNull, position);
            if (keyword("NOT")) {
                node->negated = true;
                advance();
            }
            if (!keyword("NULL"))
                fail(QStringLiteral("expected NULL"));
            advance();
            node->children.push_back(std::move(left));
            return node;
        }
        if (left->kind == FilterNode::Field) { // a field alone: a boolean field that is true
            auto literal = make(FilterNode::Literal, position);
            literal->value = true;
            auto node = binary(FilterNode::Compare, std::move(left), std::move(literal));
            node->op = QStringLiteral("=");
            node->compareOp = FilterNode::Eq;
            return node;
        }
        fail(QStringLiteral("expected a comparison, LIKE, IN or IS"));
    }

    std::unique_ptr<FilterNode> operand()
    {
        const int position = tok_.position;
        switch (tok_.kind) {
        case Tok::Name: {
            auto node = make(FilterNode::Field, position);
            node->name = tok_.text;
            if (node->name.isEmpty())
                fail(QStringLiteral("expected a field name"));
            advance();
            return node;
        }
        case Tok::String: {
            auto node = make(FilterNode::Literal, position);
            node->value = tok_.text;
            advance();
            return node;
        }
        case Tok::Number: return number(false);
        case Tok::Op:
            if (tok_.text == QLatin1String("-")) {
                advance();
                if (tok_.kind != Tok::Number)
                    fail(QStringLiteral("expected a number"));
                return number(true);
            }
            break;
        case Tok::Keyword:
            if (keyword("TRUE") || keyword("FALSE")) {
                auto node = make(FilterNode::Literal, position);
                node->value = keyword("TRUE");
                advance();
                return node;
            }
            break;
        default: break;
        }
        fail(QStringLiteral("expected a field name or a value"));
    }

    std::unique_ptr<FilterNode> number(bool negative)
    {
        auto node = make(FilterNode::Literal, tok_.position);
        const QString text = negative ? QLatin1Char('-') + tok_.text : tok_.text;
        bool ok = false;
        const qint64 i = text.toLongLong(&ok);
        if (ok)
            node->value = i;
        else
            node->value = QLocale::c().toDouble(text, &ok);
        if (!ok)
            fail(QStringLiteral("expected a number"));
        advance();
        return node;
    }

    const QString &text_;
    qsizetype pos_ = 0;
    Token tok_;
    int nesting_ = 0;
};

// Three-valued logic: comparisons with NULL are unknown.
enum class Tri { False, True, Unknown };

Tri tri(bool b) { return b ? Tri::True : Tri::False; }

Tri notTri(Tri t)
{
    return t == Tri::Unknown ? t : (t == Tri::True ? Tri::False : Tri::True);
}

// Gives a literal the type of the field it is compared with.
void convertLiteral(FilterNode &literal, const TField *field, const QString &text)
{
    const VarType type = field->ValueType();
    const Variant &v = literal.value;
    if (type == VarType::Unassigned || v.Type() == type)
        return;
    bool ok = true;
    Variant converted;
    if (type == VarType::String) {
        converted = v.ToString();
    } else if (type == VarType::DateTime) {
        TDateTime dt = 0;
        ok = v.IsString() ? TryStrToDateTime(v.ToString(), dt) : false;
        if (ok)
            converted = Variant::FromDateTime(dt);
    } else if (v.IsString()) {
        const QString t = v.ToString().trimmed();
        if (type == VarType::Boolean) {
            bool b = false;
            ok = TryStrToBool(t, b);
            converted = b;
        } else {
            const double d = QLocale::c().toDouble(t, &ok);
            if (!ok) {
                double local = 0;
                ok = TryStrToFloat(t, local);
                converted = local;
            } else {
                converted = d;
            }
            if (ok && type == VarType::Integer && std::trunc(converted.ToDouble()) == converted.ToDouble())
                converted = converted.ToInt64();
        }
    } else if (type == VarType::Double && v.IsNumeric()) {
        converted = v.ToDouble(); // the same kind compares fastest
    } else {
        converted = v; // numbers compare with numbers of any kind
    }
    if (!ok)
        throw EDatabaseError(DBConsts::SInvalidFilter()
                                 .arg(QStringLiteral("'%1' is not a valid value for field '%2'")
                                          .arg(v.ToString(), field->DisplayName()))
                                 .arg(literal.position)
                                 .arg(text));
    literal.value = converted;
}

// The rules every evaluation shares, the record walk's and the compiled one's.
struct Rules
{
    explicit Rules(TFilterOptions options)
        : cs(options.Contains(foCaseInsensitive) ? Qt::CaseInsensitive : Qt::CaseSensitive),
          partial(!options.Contains(foNoPartialCompare))
    {
    }
    Qt::CaseSensitivity cs;
    bool partial;
};

bool isNumber(VarType t)
{
    return t == VarType::Integer || t == VarType::Double || t == VarType::DateTime;
}

Tri compareOp(FilterNode::CompareOp op, int c)
{
    switch (op) {
    case FilterNode::Eq: return tri(c == 0);
    case FilterNode::Ne: return tri(c != 0);
    case FilterNode::Lt: return tri(c < 0);
    case FilterNode::Le: return tri(c <= 0);
    case FilterNode::Gt: return tri(c > 0);
    case FilterNode::Ge: return tri(c >= 0);
    }
    return Tri::False;
}

Tri fromRelationship(FilterNode::CompareOp op, VariantRelationship r)
{
    if (r == VariantRelationship::vrNotEqual) // NaN, or kinds that do not compare
        return op == FilterNode::Ne ? Tri::True : Tri::False;
    return compareOp(op, r == VariantRelationship::vrLessThan ? -1 : (r == VariantRelationship::vrGreaterThan ? 1 : 0));
}

// a <op> b; prefixLiteral: b is a literal, where 'ab*' compares the leading part.
Tri compareValues(const Variant &a, const Variant &b, FilterNode::CompareOp op, bool prefixLiteral, const Rules &rules)
{
    const VarType ta = a.Type(), tb = b.Type();
    // Numbers first: what a filter compares most, and what VarCompareValue would conclude.
    if (ta == VarType::Integer && tb == VarType::Integer) {
        const qint64 x = a.ToInt64(), y = b.ToInt64();
        return compareOp(op, x < y ? -1 : (x > y ? 1 : 0));
    }
    if (isNumber(ta) && isNumber(tb)) {
        const double x = a.ToDouble(), y = b.ToDouble();
        if (x < y)
            return compareOp(op, -1);
        if (x > y)
            return compareOp(op, 1);
        return x == y ? compareOp(op, 0) : fromRelationship(op, VariantRelationship::vrNotEqual);
    }
    if (a.IsClear() || b.IsClear())
        return Tri::Unknown;
    if (ta == VarType::String && tb == VarType::String) {
        const QString &x = *a.StringPtr(), &y = *b.StringPtr();
        if (rules.partial && op == FilterNode::Eq && prefixLiteral && y.endsWith(QLatin1Char('*')))
            return tri(x.startsWith(QStringView(y).left(y.size() - 1), rules.cs));
        return compareOp(op, x.compare(y, rules.cs));
    }
    return fromRelationship(op, VarCompareValue(a, b));
}

bool equalValues(const Variant &a, const Variant &b, const Rules &rules)
{
    if (a.IsString() && b.IsString())
        return a.StringPtr()->compare(*b.StringPtr(), rules.cs) == 0;
    return VarCompareValue(a, b) == VariantRelationship::vrEqual;
}

Tri truth(const Variant &v)
{
    return v.IsClear() ? Tri::Unknown : tri(v.ToBool());
}

class Evaluator
{
public:
    explicit Evaluator(TFilterOptions options) : rules_(options) {}

    Tri eval(const FilterNode &n) const
    {
        switch (n.kind) {
        case FilterNode::Or:
        case FilterNode::And: {
            // OR stops at the first true, AND at the first false; an unknown term leaves the
            // rest unknown unless one stops it.
            const Tri stop = n.kind == FilterNode::Or ? Tri::True : Tri::False;
            bool unknown = false;
            for (const auto &child : n.children) {
                const Tri t = eval(*child);
                if (t == stop)
                    return t;
                unknown = unknown || t == Tri::Unknown;
            }
            return unknown ? Tri::Unknown : notTri(stop);
        }
        case FilterNode::Not: return notTri(eval(*n.children[0]));
        case FilterNode::IsNull: {
            Variant scratch;
            return tri(value(*n.children[0], scratch).IsClear() != n.negated);
        }
        case FilterNode::Compare: {
            Variant sa, sb;
            return compareValues(value(*n.children[0], sa), value(*n.children[1], sb), n.compareOp,
                                 n.children[1]->kind == FilterNode::Literal, rules_);
        }
        case FilterNode::Like: {
            Variant sv, sp;
            const Variant &v = value(*n.children[0], sv);
            const Variant &p = value(*n.children[1], sp);
            if (v.IsClear() || p.IsClear())
                return Tri::Unknown;
            return tri(LikeMatch(v.ToString(), p.ToString(), rules_.cs) != n.negated);
        }
        case FilterNode::In: {
            Variant sv, si;
            const Variant &v = value(*n.children[0], sv);
            if (v.IsClear())
                return Tri::Unknown;
            bool found = false;
            for (size_t i = 1; i < n.children.size() && !found; ++i)
                found = equalValues(v, value(*n.children[i], si), rules_);
            return tri(found != n.negated);
        }
        default: {
            Variant scratch;
            return truth(value(n, scratch));
        }
        }
    }

private:
    static const Variant &value(const FilterNode &n, Variant &scratch)
    {
        return n.kind == FilterNode::Field ? n.field->ValueRef(scratch) : n.value;
    }

    Rules rules_;
};

// ---- compiled evaluation over column storage ----

using Compiled = std::function<Tri(qint64 row)>;

// An operand: a field's column, or a literal.
struct Operand
{
    const std::vector<Variant> *column = nullptr;
    Variant literal;
    const Variant &operator()(qint64 row) const { return column ? (*column)[size_t(row)] : literal; }
};

class Compiler
{
public:
    Compiler(TFilterOptions options, const FilterExpression::ColumnOf &columnOf) : rules_(options), columnOf_(columnOf) {}

    // Empty when a part cannot be looked at in the columns.
    Compiled compile(const FilterNode &n) const
    {
        switch (n.kind) {
        case FilterNode::Or:
        case FilterNode::And: {
            std::vector<Compiled> terms;
            for (const auto &child : n.children) {
                terms.push_back(compile(*child));
                if (!terms.back())
                    return {};
            }
            const Tri stop = n.kind == FilterNode::Or ? Tri::True : Tri::False;
            return [terms = std::move(terms), stop](qint64 row) {
                bool unknown = false;
                for (const Compiled &term : terms) {
                    const Tri t = term(row);
                    if (t == stop)
                        return t;
                    unknown = unknown || t == Tri::Unknown;
                }
                return unknown ? Tri::Unknown : notTri(stop);
            };
        }
        case FilterNode::Not: {
            Compiled a = compile(*n.children[0]);
            if (!a)
                return {};
            return [a](qint64 row) { return notTri(a(row)); };
        }
        case FilterNode::IsNull: {
            auto v = operand(*n.children[0]);
            if (!v)
                return {};
            return [v = *v, negated = n.negated](qint64 row) { return tri(v(row).IsClear() != negated); };
        }
        case FilterNode::Compare: {
            auto a = operand(*n.children[0]), b = operand(*n.children[1]);
            if (!a || !b)
                return {};
            return [a = *a, b = *b, op = n.compareOp, prefix = n.children[1]->kind == FilterNode::Literal,
                    rules = rules_](qint64 row) { return compareValues(a(row), b(row), op, prefix, rules); };
        }
        case FilterNode::Like: {
            auto v = operand(*n.children[0]), p = operand(*n.children[1]);
            if (!v || !p)
                return {};
            return [v = *v, p = *p, negated = n.negated, cs = rules_.cs](qint64 row) {
                const Variant &x = v(row), &y = p(row);
                if (x.IsClear() || y.IsClear())
                    return Tri::Unknown;
                return tri(LikeMatch(x.ToString(), y.ToString(), cs) != negated);
            };
        }
        case FilterNode::In: {
            auto v = operand(*n.children[0]);
            if (!v)
                return {};
            std::vector<Operand> items;
            for (size_t i = 1; i < n.children.size(); ++i) {
                auto item = operand(*n.children[i]);
                if (!item)
                    return {};
                items.push_back(*item);
            }
            return [v = *v, items = std::move(items), negated = n.negated, rules = rules_](qint64 row) {
                const Variant &x = v(row);
                if (x.IsClear())
                    return Tri::Unknown;
                bool found = false;
                for (size_t i = 0; i < items.size() && !found; ++i)
                    found = equalValues(x, items[i](row), rules);
                return tri(found != negated);
            };
        }
        default: {
            auto v = operand(n);
            if (!v)
                return {};
            return [v = *v](qint64 row) { return truth(v(row)); };
        }
        }
    }

    // The whole expression as a yes or no; a field compared with a number, the commonest
    // filter, is looked at without a call.
    FilterExpression::RowTest test(const FilterNode &n) const
    {
        if (n.kind == FilterNode::Compare && n.children[0]->kind == FilterNode::Field
            && n.children[1]->kind == FilterNode::Literal && isNumber(n.children[1]->value.Type())) {
            auto field = operand(*n.children[0]);
            if (!field)
                return {};
            return [column = field->column, b = n.children[1]->value, y = n.children[1]->value.ToDouble(),
                    op = n.compareOp, rules = rules_](qint64 row) {
                const Variant &a = (*column)[size_t(row)];
                if (a.Type() == VarType::Double && b.Type() == VarType::Double) {
                    const double x = a.ToDouble();
                    switch (op) {
                    case FilterNode::Eq: return x == y;
                    case FilterNode::Ne: return !(x == y); // NaN too
                    case FilterNode::Lt: return x < y;
                    case FilterNode::Le: return x <= y;
                    case FilterNode::Gt: return x > y;
                    case FilterNode::Ge: return x >= y;
                    }
                }
                return compareValues(a, b, op, true, rules) == Tri::True;
            };
        }
        Compiled tri = compile(n);
        if (!tri)
            return {};
        return [tri = std::move(tri)](qint64 row) { return tri(row) == Tri::True; };
    }

private:
    std::optional<Operand> operand(const FilterNode &n) const
    {
        if (n.kind == FilterNode::Literal)
            return Operand{nullptr, n.value};
        if (n.kind != FilterNode::Field || !n.field)
            return std::nullopt;
        const std::vector<Variant> *column = columnOf_(n.field);
        if (!column)
            return std::nullopt;
        return Operand{column, Variant()};
    }

    Rules rules_;
    const FilterExpression::ColumnOf &columnOf_;
};

void bindNode(FilterNode &n, TDataSet *ds, const QString &text)
{
    for (auto &child : n.children)
        bindNode(*child, ds, text);
    if (n.kind == FilterNode::Field) {
        n.field = ds->FindField(n.name);
        if (!n.field)
            throw EDatabaseError(DBConsts::SInvalidFilter()
                                     .arg(DBConsts::SFieldNotFound().arg(n.name))
                                     .arg(n.position)
                                     .arg(text));
        return;
    }
    // Literals beside a field take its type.
    auto &c = n.children;
    if (n.kind == FilterNode::Compare) {
        if (c[0]->kind == FilterNode::Field && c[1]->kind == FilterNode::Literal)
            convertLiteral(*c[1], c[0]->field, text);
        else if (c[1]->kind == FilterNode::Field && c[0]->kind == FilterNode::Literal)
            convertLiteral(*c[0], c[1]->field, text);
    } else if (n.kind == FilterNode::In && c[0]->kind == FilterNode::Field) {
        for (size_t i = 1; i < c.size(); ++i)
            if (c[i]->kind == FilterNode::Literal)
                convertLiteral(*c[i], c[0]->field, text);
    }
}

} // namespace

bool LikeMatch(const QString &text, const QString &pattern, Qt::CaseSensitivity cs)
{
    // Iterative wildcard match with backtracking to the last '%'.
    qsizetype t = 0, p = 0, star = -1, mark = 0;
    const qsizetype tn = text.size(), pn = pattern.size();
    auto same = [cs](QChar a, QChar b) { return cs == Qt::CaseSensitive ? a == b : a.toCaseFolded() == b.toCaseFolded(); };
    while (t < tn) {
        if (p < pn && (pattern[p] == QLatin1Char('_') || (pattern[p] != QLatin1Char('%') && same(pattern[p], text[t])))) {
            ++t;
            ++p;
        } else if (p < pn && pattern[p] == QLatin1Char('%')) {
            star = p++;
            mark = t;
        } else if (star >= 0) {
            p = star + 1;
            t = ++mark;
        } else {
            return false;
        }
    }
    while (p < pn && pattern[p] == QLatin1Char('%'))
        ++p;
    return p == pn;
}

FilterExpression::FilterExpression(const QString &text) : text_(text)
{
    root_ = Parser(text_).parse();
}

FilterExpression::~FilterExpression() = default;

void FilterExpression::Bind(TDataSet *dataSet, TFilterOptions options)
{
    options_ = options;
    bindNode(*root_, dataSet, text_);
}

bool FilterExpression::Evaluate() const
{
    return Evaluator(options_).eval(*root_) == Tri::True;
}

FilterExpression::RowTest FilterExpression::Compile(const ColumnOf &columnOf) const
{
    return Compiler(options_, columnOf).test(*root_);
}

} // namespace qdb

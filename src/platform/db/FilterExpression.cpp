#include "FilterExpression.h"

#include "DBConsts.h"
#include "DataSet.h"

#include "platform/rtl/Conversions.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/FormatDateTime.h"

#include <cmath>

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

    std::unique_ptr<FilterNode> orExpr()
    {
        auto left = andExpr();
        while (keyword("OR")) {
            advance();
            left = binary(FilterNode::Or, std::move(left), andExpr());
        }
        return left;
    }

    std::unique_ptr<FilterNode> andExpr()
    {
        auto left = notExpr();
        while (keyword("AND")) {
            advance();
            left = binary(FilterNode::And, std::move(left), notExpr());
        }
        return left;
    }

    std::unique_ptr<FilterNode> notExpr()
    {
        if (keyword("NOT")) {
            auto node = make(FilterNode::Not, tok_.position);
            advance();
            node->children.push_back(notExpr());
            return node;
        }
        return predicate();
    }

    std::unique_ptr<FilterNode> predicate()
    {
        if (tok_.kind == Tok::LParen) {
            advance();
            auto inner = orExpr();
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

class Evaluator
{
public:
    explicit Evaluator(TFilterOptions options)
        : cs_(options.Contains(foCaseInsensitive) ? Qt::CaseInsensitive : Qt::CaseSensitive),
          partial_(!options.Contains(foNoPartialCompare))
    {
    }

    Tri eval(const FilterNode &n) const
    {
        switch (n.kind) {
        case FilterNode::Or: {
            const Tri a = eval(*n.children[0]);
            if (a == Tri::True)
                return a;
            const Tri b = eval(*n.children[1]);
            if (b == Tri::True)
                return b;
            return a == Tri::Unknown || b == Tri::Unknown ? Tri::Unknown : Tri::False;
        }
        case FilterNode::And: {
            const Tri a = eval(*n.children[0]);
            if (a == Tri::False)
                return a;
            const Tri b = eval(*n.children[1]);
            if (b == Tri::False)
                return b;
            return a == Tri::Unknown || b == Tri::Unknown ? Tri::Unknown : Tri::True;
        }
        case FilterNode::Not: return notTri(eval(*n.children[0]));
        case FilterNode::IsNull: {
            const bool isNull = value(*n.children[0]).IsClear();
            return tri(isNull != n.negated);
        }
        case FilterNode::Compare: return compare(n);
        case FilterNode::Like: {
            const Variant v = value(*n.children[0]);
            const Variant p = value(*n.children[1]);
            if (v.IsClear() || p.IsClear())
                return Tri::Unknown;
            return tri(LikeMatch(text(*n.children[0], v), p.ToString(), cs_) != n.negated);
        }
        case FilterNode::In: {
            const Variant v = value(*n.children[0]);
            if (v.IsClear())
                return Tri::Unknown;
            bool found = false;
            for (size_t i = 1; i < n.children.size() && !found; ++i)
                found = equal(v, value(*n.children[i]));
            return tri(found != n.negated);
        }
        default: return value(n).IsClear() ? Tri::Unknown : tri(value(n).ToBool());
        }
    }

private:
    static Variant value(const FilterNode &n) { return n.kind == FilterNode::Field ? n.field->Value() : n.value; }

    static QString text(const FilterNode &n, const Variant &v)
    {
        return n.kind == FilterNode::Field ? n.field->AsString() : v.ToString();
    }

    bool equal(const Variant &a, const Variant &b) const
    {
        if (a.IsString() && b.IsString())
            return a.ToString().compare(b.ToString(), cs_) == 0;
        return VarCompareValue(a, b) == VariantRelationship::vrEqual;
    }

    Tri compare(const FilterNode &n) const
    {
        const Variant a = value(*n.children[0]);
        const Variant b = value(*n.children[1]);
        if (a.IsClear() || b.IsClear())
            return Tri::Unknown;
        int c;
        if (a.IsString() && b.IsString()) {
            const QString x = a.ToString(), y = b.ToString();
            // 'ab*' compares the leading part unless partial compare is off
            if (partial_ && n.compareOp == FilterNode::Eq && n.children[1]->kind == FilterNode::Literal
                && y.endsWith(QLatin1Char('*')))
                return tri(x.startsWith(y.left(y.size() - 1), cs_));
            c = x.compare(y, cs_);
        } else {
            const VariantRelationship r = VarCompareValue(a, b);
            if (r == VariantRelationship::vrNotEqual)
                return n.compareOp == FilterNode::Ne ? Tri::True : Tri::False;
            c = r == VariantRelationship::vrLessThan ? -1 : (r == VariantRelationship::vrGreaterThan ? 1 : 0);
        }
        switch (n.compareOp) {
        case FilterNode::Eq: return tri(c == 0);
        case FilterNode::Ne: return tri(c != 0);
        case FilterNode::Lt: return tri(c < 0);
        case FilterNode::Le: return tri(c <= 0);
        case FilterNode::Gt: return tri(c > 0);
        case FilterNode::Ge: return tri(c >= 0);
        }
        return Tri::False;
    }

    Qt::CaseSensitivity cs_;
    bool partial_;
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

} // namespace qdb

#pragma once

#include "FieldTypes.h"

#include "platform/rtl/Variant.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace qdb {

class TDataSet;
class TField;

// A node of a parsed filter expression.
struct FilterNode
{
    enum Kind { Or, And, Not, Compare, Like, In, IsNull, Field, Literal };
    Kind kind = Literal;
    enum CompareOp { Eq, Ne, Lt, Le, Gt, Ge };
    QString op;            // Compare: "=", "<>", "<", "<=", ">", ">="
    CompareOp compareOp = Eq;
    bool negated = false;  // NOT LIKE, NOT IN, IS NOT NULL
    QString name;          // Field: the name as written, brackets removed
    Variant value;         // Literal: a string, number or boolean
    int position = 0;      // 1-based place in the text
    std::vector<std::unique_ptr<FilterNode>> children;
    TField *field = nullptr; // Field, once bound
};

// The one filter dialect of every data set: comparisons, LIKE with % and _, IN (...),
// IS [NOT] NULL, "= NULL" and "<> NULL", NOT/AND/OR, parentheses, [bracketed names],
// quoted literals, numbers, TRUE/FALSE. Dates and times are written as quoted text in the
// short formats or ISO form and take the field's type. Comparisons with NULL are unknown,
// as in SQL, so a record is accepted only when the whole expression is true.
class FilterExpression
{
public:
    // Parses; raises EDatabaseError naming the position and what was expected.
    explicit FilterExpression(const QString &text);
    ~FilterExpression();

    const QString &Text() const { return text_; }
    const FilterNode &Root() const { return *root_; }
    // Resolves field names and converts literals to their fields' types; raises
    // EDatabaseError for an unknown field or a literal the field cannot take.
    void Bind(TDataSet *dataSet, TFilterOptions options);
    // Evaluates against the fields' current values.
    bool Evaluate() const;
    // The bound expression made, once, into a test of a record straight in column storage
    // (one vector of values per field, indexed by record): nothing is copied per record.
    // columnOf answers nullptr for a field with no column; Compile is then empty.
    using ColumnOf = std::function<const std::vector<Variant> *(TField *field)>;
    using RowTest = std::function<bool(qint64 row)>;
    RowTest Compile(const ColumnOf &columnOf) const;

private:
    QString text_;
    std::unique_ptr<FilterNode> root_;
    TFilterOptions options_;
};

// Matches text against a LIKE pattern with % (any text) and _ (any character).
bool LikeMatch(const QString &text, const QString &pattern, Qt::CaseSensitivity cs);

} // namespace qdb

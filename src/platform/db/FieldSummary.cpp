#include "FieldSummary.h"

namespace qdb {

Variant SummaryValue(const Variant &value)
{
    return value.Type() == VarType::Double ? Variant(Currency::FromDouble(value.ToDouble())) : value;
}

} // namespace qdb

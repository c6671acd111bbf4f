// The order-text functions on any SQL text and any order: the ORDER BY of a query is read,
// rewritten and read again, and order texts go to index field lists and back.

#include "FuzzSupport.h"

#include "grid/QDBGridsOrderText.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Strings.h"

#include <cstdlib>

using namespace qdb;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // The query's lines, then after a NUL byte the order to write into it.
    const QByteArray bytes = fuzz::Bytes(data, size);
    const qsizetype cut = bytes.indexOf('\0');
    const QString sql = QString::fromUtf8(cut < 0 ? bytes : bytes.left(cut));
    const QString order = cut < 0 ? QString() : QString::fromUtf8(bytes.mid(cut + 1));
    try {
        TStringList lines;
        lines.SetText(sql);
        const QString before = ExtractOrderFields(&lines);
        ModifyOrderFields(&lines, order);
        ExtractOrderFields(&lines);
        ModifyOrderFields(&lines, before);

        QString fields, descFields;
        SplitOrderFields(order, fields, descFields);
        UnifyOrderFields(fields, descFields, false);
        UnifyOrderFields(fields, descFields, true);
        UnquoteOrderFields(QuoteOrderFields(order));
        CompareOrderFields(order, before);
        const QString index = OrderFieldsToIndexFields(order, QStringLiteral(":A;:D;:N"));
        IndexFieldsToOrderFields(index, QStringLiteral(":A;:D;:N"));
        IndexFieldsToOrderFields(order, QString());
        QString rest = order;
        while (!rest.isEmpty())
            ScanStr(rest, QLatin1Char(','));
    } catch (const Exception &) {
    }
    return 0;
}

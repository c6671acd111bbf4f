// A table file of any bytes: it loads or is refused with the table unchanged; a table that
// loads is walked, sorted on its first field, and written and loaded again to the same text.

#include "FuzzSupport.h"

#include "platform/db/Fields.h"
#include "platform/db/MemTable.h"
#include "platform/rtl/Exceptions.h"

#include <cstdlib>

using namespace qdb;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::EnsureApplication();
    static const bool registered = (RegisterDBTypes(), true);
    Q_UNUSED(registered);
    TMemTable table;
    try {
        table.LoadFromJson(fuzz::Bytes(data, size));
    } catch (const EDatabaseError &e) {
        if (table.Active() || table.FieldCount() > 0) {
            std::fprintf(stderr, "a refused file changed the table (%s)\n", qPrintable(e.Message()));
            std::abort();
        }
        return 0;
    }
    try {
        for (table.First(); !table.Eof(); table.Next())
            for (TField *field : table.Fields())
                field->AsString();
        for (TField *field : table.Fields()) {
            table.SetIndexFieldNames(field->FieldName());
            break;
        }
    } catch (const EDatabaseError &) {
    }
    table.SetIndexFieldNames(QString());
    const QByteArray saved = table.SaveToJson();
    TMemTable copy;
    try {
        copy.LoadFromJson(saved);
    } catch (const Exception &e) {
        std::fprintf(stderr, "a table written does not load: %s\n%s\n", qPrintable(e.Message()), saved.constData());
        std::abort();
    }
    if (copy.SaveToJson() != saved) {
        std::fprintf(stderr, "a table loaded again writes otherwise:\n%s\n%s\n", saved.constData(),
                     copy.SaveToJson().constData());
        std::abort();
    }
    return 0;
}

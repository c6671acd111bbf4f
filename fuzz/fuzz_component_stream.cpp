// A component stream of any bytes, read into a grid, a table, a navigator, a data editor or
// a check box: it reads or is refused, and what the component then writes reads back.

#include "SampleGrid.h"

#include "data/QDBNavigator.h"
#include "editors/QDBDataEditor.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Streaming.h"

#include <cstdlib>
#include <memory>

using namespace qdb;

namespace {

void readAndBack(QObject *object, const QByteArray &json, TDataSource *source)
{
    const ReferenceResolver resolve = [source](const QString &, const QMetaProperty &) -> QObject * { return source; };
    try {
        JsonToComponent(object, json, resolve);
    } catch (const EReadError &) {
    } catch (const EDatabaseError &) {
    }
    const QByteArray saved = ComponentToJson(object);
    try {
        JsonToComponent(object, saved, resolve);
    } catch (const Exception &e) {
        std::fprintf(stderr, "a component's own stream does not read: %s\n%s\n", qPrintable(e.Message()),
                     saved.constData());
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const fuzz::Split in = fuzz::TakeChoice(data, size);
    const QByteArray json = fuzz::Bytes(in.data, in.size);
    fuzz::SampleGrid sample;
    switch (in.choice % 5) {
    case 0: readAndBack(&sample.grid, json, &sample.source); break;
    case 1: readAndBack(&sample.table, json, &sample.source); break;
    case 2: {
        TQDBNavigator navigator;
        readAndBack(&navigator, json, &sample.source);
        navigator.SetDataSource(nullptr);
        break;
    }
    case 3: {
        TQDBDataEditor editor;
        readAndBack(&editor, json, &sample.source);
        editor.SetDataSource(nullptr);
        break;
    }
    default: {
        TQDBCheckBox box;
        readAndBack(&box, json, &sample.source);
        box.SetDataSource(nullptr);
        break;
    }
    }
    if (in.choice & 8)
        sample.grid.grab();
    return 0;
}

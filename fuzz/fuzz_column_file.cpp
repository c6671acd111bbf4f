// A column file of any bytes: it is read or refused whole, and the columns it leaves behind
// are written and read back without an error and painted.

#include "SampleGrid.h"

#include "platform/rtl/Exceptions.h"

#include <QBuffer>

#include <cstdlib>

using namespace qdb;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const fuzz::Split in = fuzz::TakeChoice(data, size);
    fuzz::SampleGrid sample;
    TQDBGridColumns *columns = sample.grid.GetColumns();
    QByteArray bytes = fuzz::Bytes(in.data, in.size);
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    try {
        columns->LoadFromStream(file);
    } catch (const EReadError &) {
    } catch (const EDatabaseError &) {
    }
    QByteArray saved;
    {
        QBuffer out(&saved);
        out.open(QIODevice::WriteOnly);
        columns->SaveToStream(out);
    }
    QBuffer back(&saved);
    back.open(QIODevice::ReadOnly);
    try {
        columns->LoadFromStream(back);
    } catch (const Exception &e) {
        std::fprintf(stderr, "the columns written do not read back: %s\n%s\n", qPrintable(e.Message()), saved.constData());
        std::abort();
    }
    if (in.choice & 1)
        sample.grid.grab();
    return 0;
}

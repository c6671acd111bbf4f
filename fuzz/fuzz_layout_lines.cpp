// Layout lines of any text: each line that reads is applied and the others are left alone;
// the layout the grid then gives applies again without an error, and the grid paints.

#include "SampleGrid.h"

#include "grid/QDBGridSettings.h"
#include "platform/rtl/Exceptions.h"

#include <cstdlib>

using namespace qdb;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const fuzz::Split in = fuzz::TakeChoice(data, size);
    fuzz::SampleGrid sample;
    TQDBGridSettings *settings = sample.grid.GetSettings();
    settings->SetOptions({soUserSettings, soStretchMode, soOrderFields, soLinesCount, soMultiSelect, soSelectedRow,
                          soStripedRows, soAutoFilter, soFiltered, soFilters});
    TStringList lines;
    lines.SetText(fuzz::Text(in.data, in.size));
    try {
        settings->SetLayout(&lines);
    } catch (const Exception &) {
    }
    TStringList again;
    again.Assign(*settings->GetLayout());
    try {
        settings->SetLayout(&again);
    } catch (const Exception &e) {
        std::fprintf(stderr, "the grid's own layout does not apply: %s\n%s\n", qPrintable(e.Message()),
                     qPrintable(again.Text()));
        std::abort();
    }
    if (in.choice & 1)
        sample.grid.grab();
    return 0;
}

// Format and FormatDateTime on any pattern, and the text-to-number and text-to-date readers
// on any text, in English and in German conventions. A number read is written and read
// back to the same value within the 15 digits the writer keeps.

#include "FuzzSupport.h"

#include "platform/rtl/Conversions.h"
#include "platform/rtl/DateTime.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Format.h"
#include "platform/rtl/FormatDateTime.h"

#include <cmath>
#include <cstdlib>
#include <limits>

using namespace qdb;

namespace {

const TFormatSettings &settings(bool german)
{
    static const TFormatSettings english = TFormatSettings::Invariant();
    static const TFormatSettings deutsch = TFormatSettings::FromLocale(QLocale(QLocale::German, QLocale::Germany));
    return german ? deutsch : english;
}

void checkNumberBack(const QString &text, const TFormatSettings &fs)
{
    double value = 0;
    if (!TryStrToFloat(text, value, fs) || !std::isfinite(value))
        return;
    const QString written = FloatToStr(value, fs);
    double back = 0;
    if (!TryStrToFloat(written, back, fs) || std::abs(back - value) > std::abs(value) * 1e-14) {
        std::fprintf(stderr, "%s read as %.17g, written %s, read back otherwise\n", qPrintable(text), value,
                     qPrintable(written));
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const fuzz::Split in = fuzz::TakeChoice(data, size);
    const QString text = fuzz::Text(in.data, in.size);
    const TFormatSettings &fs = settings(in.choice & 4);
    static const TDateTime moments[] = {EncodeDate(2024, 2, 29) + 0.75, 0, -693593.5, 2958465.999, 1e10, -1e10,
                                        std::numeric_limits<double>::quiet_NaN(), 45000.123456789};
    try {
        switch (in.choice & 3) {
        case 0:
            Format(text,
                   {42, -7.5, QStringLiteral("text"), true, Q_INT64_C(-9223372036854775807), 1e300,
                    std::numeric_limits<double>::infinity(), Variant::Null()},
                   fs);
            break;
        case 1: FormatDateTime(text, moments[(in.choice >> 3) & 7], fs); break;
        case 2: {
            checkNumberBack(text, fs);
            Currency c;
            TryStrToCurr(text, c, fs);
            qint64 i = 0;
            TryStrToInt64(text, i);
            bool b = false;
            TryStrToBool(text, b);
            StrToFloat(text, fs);
            break;
        }
        default: {
            TDateTime t = 0;
            if (TryStrToDateTime(text, t, fs))
                DateTimeToStr(t, fs);
            TryStrToDate(text, t, fs);
            TryStrToTime(text, t, fs);
            break;
        }
        }
    } catch (const EConvertError &) {
    }
    return 0;
}

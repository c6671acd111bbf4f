#include "QDBFilterPeriods.h"

#include "QDBFilterConsts.h"

#include "platform/rtl/DateUtils.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/rtl/FormatSettings.h"

#include <functional>

namespace qdb {

namespace {

using FilterConsts::tr;

// A unit of time: where the current one starts, and a step of n units.
struct Unit
{
    std::function<TDateTime(TDateTime)> start;
    std::function<TDateTime(TDateTime, int)> step;
};

Unit minutes(int n, TDateTime (*start)(TDateTime))
{
    return {start, [n](TDateTime dt, int k) { return IncMinute(dt, qint64(n) * k); }};
}

Unit months(int n, TDateTime (*start)(TDateTime))
{
    return {start, [n](TDateTime dt, int k) { return IncMonth(dt, n * k); }};
}

bool unitOf(TQDBGridFilterPeriod group, Unit &unit)
{
    switch (group) {
    case fpMinute: unit = minutes(1, StartOfTheMinute); return true;
    case fp10Mins: unit = minutes(10, StartOfThe10Mins); return true;
    case fp15Mins: unit = minutes(15, StartOfThe15Mins); return true;
    case fp20Mins: unit = minutes(20, StartOfThe20Mins); return true;
    case fp30Mins: unit = minutes(30, StartOfThe30Mins); return true;
    case fpHour: case fpHours: unit = minutes(60, StartOfTheHour); return true;
    case fpDay: case fpDays: unit = {StartOfTheDay, [](TDateTime dt, int k) { return IncDay(dt, k); }}; return true;
    case fpWeek: case fpWeeks: unit = {StartOfTheWeek, [](TDateTime dt, int k) { return IncDay(dt, 7 * k); }}; return true;
    case fpMonth: case fpMonths: unit = months(1, StartOfTheMonth); return true;
    case fpQuarter: case fpQuarters: unit = months(3, StartOfTheQuarter); return true;
    case fpSemester: case fpSemesters: unit = months(6, StartOfTheSemester); return true;
    case fpYear: case fpYears: unit = months(12, StartOfTheYear); return true;
    case fpDecade: case fpDecades: unit = months(120, StartOfTheDecade); return true;
    default: return false;
    }
}

// The five standard captions of a unit's group.
QStringList standardCaptions(TQDBGridFilterPeriod group)
{
    switch (group) {
    case fpMinute: return {tr("Past minute"), tr("From start of this minute"), tr("This minute"), tr("To the end of this minute"), tr("Next minute")};
    case fp10Mins: return {tr("Past 10 mins"), tr("From start of this 10 mins"), tr("This 10 mins"), tr("To the end of this 10 mins"), tr("Next 10 mins")};
    case fp15Mins: return {tr("Past 15 mins"), tr("From start of this 15 mins"), tr("This 15 mins"), tr("To the end of this 15 mins"), tr("Next 15 mins")};
    case fp20Mins: return {tr("Past 20 mins"), tr("From start of this 20 mins"), tr("This 20 mins"), tr("To the end of this 20 mins"), tr("Next 20 mins")};
    case fp30Mins: return {tr("Past 30 mins"), tr("From start of this 30 mins"), tr("This 30 mins"), tr("To the end of this 30 mins"), tr("Next 30 mins")};
    case fpHour: return {tr("Past hour"), tr("From start of this hour"), tr("This hour"), tr("To the end of this hour"), tr("Next hour")};
    case fpDay: return {tr("Yesterday"), tr("From start of this day"), tr("Today"), tr("To the end of this day"), tr("Tomorrow")};
    case fpWeek: return {tr("Past week"), tr("From start of this week"), tr("This week"), tr("To the end of this week"), tr("Next week")};
    case fpMonth: return {tr("Past month"), tr("From start of this month"), tr("This month"), tr("To the end of this month"), tr("Next month")};
    case fpQuarter: return {tr("Past quarter"), tr("From start of this quarter"), tr("This quarter"), tr("To the end of this quarter"), tr("Next quarter")};
    case fpSemester: return {tr("Past semester"), tr("From start of this semester"), tr("This semester"), tr("To the end of this semester"), tr("Next semester")};
    case fpYear: return {tr("Past year"), tr("From start of this year"), tr("This year"), tr("To the end of this year"), tr("Next year")};
    case fpDecade: return {tr("Past decade"), tr("From start of this decade"), tr("This decade"), tr("To the end of this decade"), tr("Next decade")};
    default: return {};
    }
}

} // namespace

QString FilterPeriodCaption(TQDBGridFilterPeriod group)
{
    switch (group) {
    case fpMinute: return tr("Minute");
    case fp10Mins: return tr("10 minutes");
    case fp15Mins: return tr("15 minutes");
    case fp20Mins: return tr("20 minutes");
    case fp30Mins: return tr("30 minutes");
    case fpHour: return tr("Hour");
    case fpHours: return tr("Hours");
    case fpDay: return tr("Day");
    case fpDays: return tr("Days");
    case fpWeek: return tr("Week");
    case fpWeeks: return tr("Weeks");
    case fpMonth: return tr("Month");
    case fpMonths: return tr("Months");
    case fpQuarter: return tr("Quarter");
    case fpQuarters: return tr("Quarters");
    case fpSemester: return tr("Semester");
    case fpSemesters: return tr("Semesters");
    case fpYear: return tr("Year");
    case fpYears: return tr("Years");
    case fpDecade: return tr("Decade");
    case fpDecades: return tr("Decades");
    default: return QString();
    }
}

QList<TQFilterPeriodItem> FilterPeriodItems(TQDBGridFilterPeriod group, TDateTime now)
{
    Unit unit;
    if (!unitOf(group, unit))
        return {};
    now = StartOfTheMinute(now);
    const TDateTime s = unit.start(now);
    QList<TQFilterPeriodItem> items;
    const QStringList captions = standardCaptions(group);
    if (!captions.isEmpty()) {
        items << TQFilterPeriodItem{captions[0], unit.step(s, -1), s} << TQFilterPeriodItem{captions[1], s, now}
              << TQFilterPeriodItem{captions[2], s, unit.step(s, 1)}
              << TQFilterPeriodItem{captions[3], now, unit.step(s, 1)}
              << TQFilterPeriodItem{captions[4], unit.step(s, 1), unit.step(s, 2)};
        return items;
    }
    switch (group) {
    case fpHours:
        for (int h = 0; h < 24; ++h) {
            const TDateTime start = StartOfTheDay(now) + double(h) / HoursPerDay;
            items << TQFilterPeriodItem{FormatDateTime(FormatSettings().ShortTimeFormat, start), start, unit.step(start, 1)};
        }
        break;
    case fpQuarters: {
        const QStringList names = {tr("First quarter"), tr("Second quarter"), tr("Third quarter"), tr("Fourth quarter")};
        for (int q = 0; q < 4; ++q)
            items << TQFilterPeriodItem{names[q], IncMonth(StartOfTheYear(now), 3 * q), IncMonth(StartOfTheYear(now), 3 * q + 3)};
        break;
    }
    case fpSemesters:
        items << TQFilterPeriodItem{tr("First semester"), StartOfTheYear(now), IncMonth(StartOfTheYear(now), 6)}
              << TQFilterPeriodItem{tr("Second semester"), IncMonth(StartOfTheYear(now), 6), IncMonth(StartOfTheYear(now), 12)};
        break;
    default:
        // Days, weeks, months, years and decades: three before the current one to three after.
        for (int k = -3; k <= 3; ++k) {
            const TDateTime start = unit.step(s, k);
            items << TQFilterPeriodItem{DateToStr(start), start, unit.step(start, 1)};
        }
        break;
    }
    return items;
}

void FilterPeriodConditions(const TQFilterPeriodItem &item, TFieldType type, TQFilterCondition &first,
                            TQFilterCondition &second)
{
    const TFormatSettings &fs = FormatSettings();
    auto text = [&](TDateTime dt) {
        if (type == ftDate)
            return DateToStr(dt);
        if (type == ftTime)
            return FormatDateTime(fs.ShortTimeFormat, dt);
        return FormatDateTime(fs.ShortDateFormat + QLatin1Char(' ') + fs.ShortTimeFormat, dt);
    };
    first = {fcIsGreaterThenOrEqual, text(item.Start)};
    second = {fcIsLessThen, text(item.End)};
    if (type == ftTime && second.Value == FormatDateTime(fs.ShortTimeFormat, 0))
        second = {fcNoFilter, QString()};
}

} // namespace qdb

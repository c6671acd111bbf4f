#include "QDBFilterPeriods.h"

#include "QDBFilterConsts.h"

#include "platform/rtl/DateUtils.h"
#include "platform/rtl/FormatDateTime.h"
#include "platform/rtl/FormatSettings.h"

#include <functional>

namespace qdb {

namespace {


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
    case fpMinute: return {QCoreApplication::translate("qdb", "Past minute"), QCoreApplication::translate("qdb", "From start of this minute"), QCoreApplication::translate("qdb", "This minute"), QCoreApplication::translate("qdb", "To the end of this minute"), QCoreApplication::translate("qdb", "Next minute")};
    case fp10Mins: return {QCoreApplication::translate("qdb", "Past 10 mins"), QCoreApplication::translate("qdb", "From start of this 10 mins"), QCoreApplication::translate("qdb", "This 10 mins"), QCoreApplication::translate("qdb", "To the end of this 10 mins"), QCoreApplication::translate("qdb", "Next 10 mins")};
    case fp15Mins: return {QCoreApplication::translate("qdb", "Past 15 mins"), QCoreApplication::translate("qdb", "From start of this 15 mins"), QCoreApplication::translate("qdb", "This 15 mins"), QCoreApplication::translate("qdb", "To the end of this 15 mins"), QCoreApplication::translate("qdb", "Next 15 mins")};
    case fp20Mins: return {QCoreApplication::translate("qdb", "Past 20 mins"), QCoreApplication::translate("qdb", "From start of this 20 mins"), QCoreApplication::translate("qdb", "This 20 mins"), QCoreApplication::translate("qdb", "To the end of this 20 mins"), QCoreApplication::translate("qdb", "Next 20 mins")};
    case fp30Mins: return {QCoreApplication::translate("qdb", "Past 30 mins"), QCoreApplication::translate("qdb", "From start of this 30 mins"), QCoreApplication::translate("qdb", "This 30 mins"), QCoreApplication::translate("qdb", "To the end of this 30 mins"), QCoreApplication::translate("qdb", "Next 30 mins")};
    case fpHour: return {QCoreApplication::translate("qdb", "Past hour"), QCoreApplication::translate("qdb", "From start of this hour"), QCoreApplication::translate("qdb", "This hour"), QCoreApplication::translate("qdb", "To the end of this hour"), QCoreApplication::translate("qdb", "Next hour")};
    case fpDay: return {QCoreApplication::translate("qdb", "Yesterday"), QCoreApplication::translate("qdb", "From start of this day"), QCoreApplication::translate("qdb", "Today"), QCoreApplication::translate("qdb", "To the end of this day"), QCoreApplication::translate("qdb", "Tomorrow")};
    case fpWeek: return {QCoreApplication::translate("qdb", "Past week"), QCoreApplication::translate("qdb", "From start of this week"), QCoreApplication::translate("qdb", "This week"), QCoreApplication::translate("qdb", "To the end of this week"), QCoreApplication::translate("qdb", "Next week")};
    case fpMonth: return {QCoreApplication::translate("qdb", "Past month"), QCoreApplication::translate("qdb", "From start of this month"), QCoreApplication::translate("qdb", "This month"), QCoreApplication::translate("qdb", "To the end of this month"), QCoreApplication::translate("qdb", "Next month")};
    case fpQuarter: return {QCoreApplication::translate("qdb", "Past quarter"), QCoreApplication::translate("qdb", "From start of this quarter"), QCoreApplication::translate("qdb", "This quarter"), QCoreApplication::translate("qdb", "To the end of this quarter"), QCoreApplication::translate("qdb", "Next quarter")};
    case fpSemester: return {QCoreApplication::translate("qdb", "Past semester"), QCoreApplication::translate("qdb", "From start of this semester"), QCoreApplication::translate("qdb", "This semester"), QCoreApplication::translate("qdb", "To the end of this semester"), QCoreApplication::translate("qdb", "Next semester")};
    case fpYear: return {QCoreApplication::translate("qdb", "Past year"), QCoreApplication::translate("qdb", "From start of this year"), QCoreApplication::translate("qdb", "This year"), QCoreApplication::translate("qdb", "To the end of this year"), QCoreApplication::translate("qdb", "Next year")};
    case fpDecade: return {QCoreApplication::translate("qdb", "Past decade"), QCoreApplication::translate("qdb", "From start of this decade"), QCoreApplication::translate("qdb", "This decade"), QCoreApplication::translate("qdb", "To the end of this decade"), QCoreApplication::translate("qdb", "Next decade")};
    default: return {};
    }
}

} // namespace

QString FilterPeriodCaption(TQDBGridFilterPeriod group)
{
    switch (group) {
    case fpMinute: return QCoreApplication::translate("qdb", "Minute");
    case fp10Mins: return QCoreApplication::translate("qdb", "10 minutes");
    case fp15Mins: return QCoreApplication::translate("qdb", "15 minutes");
    case fp20Mins: return QCoreApplication::translate("qdb", "20 minutes");
    case fp30Mins: return QCoreApplication::translate("qdb", "30 minutes");
    case fpHour: return QCoreApplication::translate("qdb", "Hour");
    case fpHours: return QCoreApplication::translate("qdb", "Hours");
    case fpDay: return QCoreApplication::translate("qdb", "Day");
    case fpDays: return QCoreApplication::translate("qdb", "Days");
    case fpWeek: return QCoreApplication::translate("qdb", "Week");
    case fpWeeks: return QCoreApplication::translate("qdb", "Weeks");
    case fpMonth: return QCoreApplication::translate("qdb", "Month");
    case fpMonths: return QCoreApplication::translate("qdb", "Months");
    case fpQuarter: return QCoreApplication::translate("qdb", "Quarter");
    case fpQuarters: return QCoreApplication::translate("qdb", "Quarters");
    case fpSemester: return QCoreApplication::translate("qdb", "Semester");
    case fpSemesters: return QCoreApplication::translate("qdb", "Semesters");
    case fpYear: return QCoreApplication::translate("qdb", "Year");
    case fpYears: return QCoreApplication::translate("qdb", "Years");
    case fpDecade: return QCoreApplication::translate("qdb", "Decade");
    case fpDecades: return QCoreApplication::translate("qdb", "Decades");
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
        const QStringList names = {QCoreApplication::translate("qdb", "First quarter"), QCoreApplication::translate("qdb", "Second quarter"), QCoreApplication::translate("qdb", "Third quarter"), QCoreApplication::translate("qdb", "Fourth quarter")};
        for (int q = 0; q < 4; ++q)
            items << TQFilterPeriodItem{names[q], IncMonth(StartOfTheYear(now), 3 * q), IncMonth(StartOfTheYear(now), 3 * q + 3)};
        break;
    }
    case fpSemesters:
        items << TQFilterPeriodItem{QCoreApplication::translate("qdb", "First semester"), StartOfTheYear(now), IncMonth(StartOfTheYear(now), 6)}
              << TQFilterPeriodItem{QCoreApplication::translate("qdb", "Second semester"), IncMonth(StartOfTheYear(now), 6), IncMonth(StartOfTheYear(now), 12)};
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

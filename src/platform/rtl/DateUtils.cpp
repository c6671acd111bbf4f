#include "DateUtils.h"

#include <cmath>

namespace qdb {

namespace {

struct Parts
{
    int y, m, d, h, n, s, z;
};

Parts decode(TDateTime dt)
{
    Parts p;
    DecodeDateTime(dt, p.y, p.m, p.d, p.h, p.n, p.s, p.z);
    return p;
}

TDateTime lastMillisecond(TDateTime day)
{
    return ComposeDateTime(day, EncodeTime(23, 59, 59, 999));
}

TDateTime startOfMinutes(TDateTime dt, int slot)
{
    const Parts p = decode(dt);
    return ComposeDateTime(DateOf(dt), EncodeTime(p.h, p.n / slot * slot, 0, 0));
}

// Whole milliseconds since the epoch day, for exact time steps.
qint64 toMsecs(TDateTime dt)
{
    const Parts p = decode(dt);
    const qint64 days = qint64(DateOf(dt));
    return days * MSecsPerDay + ((p.h * 60 + p.n) * 60 + p.s) * qint64(1000) + p.z;
}

TDateTime fromMsecs(qint64 ms)
{
    qint64 days = ms / MSecsPerDay;
    qint64 rest = ms % MSecsPerDay;
    if (rest < 0) {
        rest += MSecsPerDay;
        --days;
    }
    return ComposeDateTime(double(days), double(rest) / double(MSecsPerDay));
}

} // namespace

int YearOf(TDateTime dt) { return decode(dt).y; }
int MonthOf(TDateTime dt) { return decode(dt).m; }
int DayOf(TDateTime dt) { return decode(dt).d; }
int HourOf(TDateTime dt) { return decode(dt).h; }
int MinuteOf(TDateTime dt) { return decode(dt).n; }
int SecondOf(TDateTime dt) { return decode(dt).s; }
int MilliSecondOf(TDateTime dt) { return decode(dt).z; }

int DayOfTheWeek(TDateTime dt)
{
    return DateTimeToQDate(dt).dayOfWeek();
}

int WeekOfTheYear(TDateTime dt, int &year)
{
    return DateTimeToQDate(dt).weekNumber(&year);
}

int WeekOf(TDateTime dt)
{
    int year;
    return WeekOfTheYear(dt, year);
}

TDateTime StartOfTheMinute(TDateTime dt) { return startOfMinutes(dt, 1); }
TDateTime EndOfTheMinute(TDateTime dt) { return fromMsecs(toMsecs(StartOfTheMinute(dt)) + 59999); }
TDateTime StartOfThe10Mins(TDateTime dt) { return startOfMinutes(dt, 10); }
TDateTime StartOfThe15Mins(TDateTime dt) { return startOfMinutes(dt, 15); }
TDateTime StartOfThe20Mins(TDateTime dt) { return startOfMinutes(dt, 20); }
TDateTime StartOfThe30Mins(TDateTime dt) { return startOfMinutes(dt, 30); }
TDateTime StartOfTheHour(TDateTime dt) { return startOfMinutes(dt, 60); }
TDateTime EndOfTheHour(TDateTime dt) { return fromMsecs(toMsecs(StartOfTheHour(dt)) + 3599999); }
TDateTime StartOfTheDay(TDateTime dt) { return DateOf(dt); }
TDateTime EndOfTheDay(TDateTime dt) { return lastMillisecond(DateOf(dt)); }

TDateTime StartOfTheWeek(TDateTime dt)
{
    return DateOf(dt) - (DayOfTheWeek(dt) - 1);
}

TDateTime EndOfTheWeek(TDateTime dt)
{
    return lastMillisecond(StartOfTheWeek(dt) + 6);
}

TDateTime StartOfTheMonth(TDateTime dt)
{
    const Parts p = decode(dt);
    return EncodeDate(p.y, p.m, 1);
}

TDateTime EndOfTheMonth(TDateTime dt)
{
    const Parts p = decode(dt);
    return lastMillisecond(EncodeDate(p.y, p.m, DaysInAMonth(p.y, p.m)));
}

TDateTime StartOfTheQuarter(TDateTime dt)
{
    const Parts p = decode(dt);
    return EncodeDate(p.y, (p.m - 1) / 3 * 3 + 1, 1);
}

TDateTime EndOfTheQuarter(TDateTime dt)
{
    return EndOfTheMonth(IncMonth(StartOfTheQuarter(dt), 2));
}

TDateTime StartOfTheSemester(TDateTime dt)
{
    const Parts p = decode(dt);
    return EncodeDate(p.y, p.m <= 6 ? 1 : 7, 1);
}

TDateTime EndOfTheSemester(TDateTime dt)
{
    return EndOfTheMonth(IncMonth(StartOfTheSemester(dt), 5));
}

TDateTime StartOfTheYear(TDateTime dt) { return EncodeDate(decode(dt).y, 1, 1); }
TDateTime EndOfTheYear(TDateTime dt) { return lastMillisecond(EncodeDate(decode(dt).y, 12, 31)); }

TDateTime StartOfTheDecade(TDateTime dt) { return EncodeDate(qMax(1, decode(dt).y / 10 * 10), 1, 1); }
TDateTime EndOfTheDecade(TDateTime dt) { return lastMillisecond(EncodeDate(decode(dt).y / 10 * 10 + 9, 12, 31)); }
TDateTime StartOfTheCentury(TDateTime dt) { return EncodeDate(qMax(1, decode(dt).y / 100 * 100), 1, 1); }
TDateTime EndOfTheCentury(TDateTime dt)
{
    return lastMillisecond(EncodeDate(qMin(9999, decode(dt).y / 100 * 100 + 99), 12, 31));
}

TDateTime IncMilliSecond(TDateTime dt, qint64 n) { return fromMsecs(toMsecs(dt) + n); }
TDateTime IncSecond(TDateTime dt, qint64 n) { return fromMsecs(toMsecs(dt) + n * 1000); }
TDateTime IncMinute(TDateTime dt, qint64 n) { return fromMsecs(toMsecs(dt) + n * 60000); }
TDateTime IncHour(TDateTime dt, qint64 n) { return fromMsecs(toMsecs(dt) + n * 3600000); }
TDateTime IncDay(TDateTime dt, int n) { return fromMsecs(toMsecs(dt) + n * MSecsPerDay); }
TDateTime IncWeek(TDateTime dt, int n) { return IncDay(dt, n * 7); }

TDateTime IncMonth(TDateTime dt, int n)
{
    const Parts p = decode(dt);
    const int total = p.y * 12 + (p.m - 1) + n;
    const int year = total / 12;
    const int month = total % 12 + 1;
    const int day = qMin(p.d, DaysInAMonth(year, month));
    return ComposeDateTime(EncodeDate(year, month, day), TimeOf(dt));
}

TDateTime IncYear(TDateTime dt, int n)
{
    return IncMonth(dt, n * 12);
}

TDateTime RecodeHour(TDateTime dt, int hour)
{
    const Parts p = decode(dt);
    return ComposeDateTime(DateOf(dt), EncodeTime(hour, p.n, p.s, p.z));
}

TDateTime RecodeYear(TDateTime dt, int year)
{
    const Parts p = decode(dt);
    return ComposeDateTime(EncodeDate(year, p.m, qMin(p.d, DaysInAMonth(year, p.m))), TimeOf(dt));
}

} // namespace qdb

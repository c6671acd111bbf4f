#include "DateTime.h"

#include "Exceptions.h"

#include <QCoreApplication>

#include <cmath>

namespace qdb {

namespace {

// QDate's Julian day of 1899-12-30, the day TDateTime counts from.
constexpr qint64 JulianDayOfZero = 2415019;

struct Split
{
    qint64 days;  // whole days, signed
    qint64 msecs; // time of day, 0 .. MSecsPerDay - 1
};

Split split(TDateTime dt)
{
    // Beyond any calendar: no day to tell, and no integer to hold it.
    if (!std::isfinite(dt) || std::fabs(dt) > 1e12)
        dt = 0;
    double whole = std::trunc(dt);
    qint64 days = static_cast<qint64>(whole);
    qint64 msecs = std::llround(std::fabs(dt - whole) * double(MSecsPerDay));
    if (msecs >= MSecsPerDay) { // rounding reached the next midnight
        msecs -= MSecsPerDay;
        days += dt < 0 ? -1 : 1;
    }
    return {days, msecs};
}

TDateTime joinSplit(qint64 days, qint64 msecs)
{
    return ComposeDateTime(double(days), double(msecs) / double(MSecsPerDay));
}

} // namespace

bool IsLeapYear(int year)
{
    return (year % 4 == 0) && ((year % 100 != 0) || (year % 400 == 0));
}

int DaysInAMonth(int year, int month)
{
    static constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12)
        return 0;
    return month == 2 && IsLeapYear(year) ? 29 : days[month - 1];
}

bool TryEncodeDate(int year, int month, int day, TDateTime &result)
{
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > DaysInAMonth(year, month))
        return false;
    result = double(QDate(year, month, day).toJulianDay() - JulianDayOfZero);
    return true;
}

bool TryEncodeTime(int hour, int min, int sec, int msec, TDateTime &result)
{
    if (hour < 0 || hour >= 24 || min < 0 || min >= 60 || sec < 0 || sec >= 60 || msec < 0 || msec >= 1000)
        return false;
    result = double(((hour * 60 + min) * 60 + sec) * qint64(1000) + msec) / double(MSecsPerDay);
    return true;
}

TDateTime EncodeDate(int year, int month, int day)
{
    TDateTime r;
    if (!TryEncodeDate(year, month, day, r))
        throw EConvertError(QCoreApplication::translate("qdb", "Invalid argument to date encode"));
    return r;
}

TDateTime EncodeTime(int hour, int min, int sec, int msec)
{
    TDateTime r;
    if (!TryEncodeTime(hour, min, sec, msec, r))
        throw EConvertError(QCoreApplication::translate("qdb", "Invalid argument to time encode"));
    return r;
}

TDateTime EncodeDateTime(int year, int month, int day, int hour, int min, int sec, int msec)
{
    return ComposeDateTime(EncodeDate(year, month, day), EncodeTime(hour, min, sec, msec));
}

TDateTime ComposeDateTime(TDateTime date, TDateTime time)
{
    const double d = std::trunc(date);
    const double t = std::fabs(time - std::trunc(time));
    return d < 0 ? d - t : d + t;
}

void DecodeDate(TDateTime dt, int &year, int &month, int &day)
{
    const QDate d = QDate::fromJulianDay(split(dt).days + JulianDayOfZero);
    year = d.year();
    month = d.month();
    day = d.day();
}

void DecodeTime(TDateTime dt, int &hour, int &min, int &sec, int &msec)
{
    qint64 ms = split(dt).msecs;
    msec = int(ms % 1000);
    ms /= 1000;
    sec = int(ms % 60);
    ms /= 60;
    min = int(ms % 60);
    hour = int(ms / 60);
}

void DecodeDateTime(TDateTime dt, int &year, int &month, int &day, int &hour, int &min, int &sec,
                    int &msec)
{
    DecodeDate(dt, year, month, day);
    DecodeTime(dt, hour, min, sec, msec);
}

TDateTime DateOf(TDateTime dt)
{
    return double(split(dt).days);
}

TDateTime TimeOf(TDateTime dt)
{
    return double(split(dt).msecs) / double(MSecsPerDay);
}

TDateTime Now()
{
    return QDateTimeToDateTime(QDateTime::currentDateTime());
}

TDateTime Date()
{
    return DateOf(Now());
}

TDateTime Time()
{
    return TimeOf(Now());
}

int DayOfWeek(TDateTime dt)
{
    return QDate::fromJulianDay(split(dt).days + JulianDayOfZero).dayOfWeek() % 7 + 1;
}

QDate DateTimeToQDate(TDateTime dt)
{
    return QDate::fromJulianDay(split(dt).days + JulianDayOfZero);
}

TDateTime QDateToDateTime(QDate d)
{
    return double(d.toJulianDay() - JulianDayOfZero);
}

QTime DateTimeToQTime(TDateTime dt)
{
    return QTime::fromMSecsSinceStartOfDay(int(split(dt).msecs));
}

TDateTime QTimeToDateTime(QTime t)
{
    return double(t.msecsSinceStartOfDay()) / double(MSecsPerDay);
}

QDateTime DateTimeToQDateTime(TDateTime dt)
{
    return QDateTime(DateTimeToQDate(dt), DateTimeToQTime(dt));
}

TDateTime QDateTimeToDateTime(const QDateTime &dt)
{
    return joinSplit(dt.date().toJulianDay() - JulianDayOfZero, dt.time().msecsSinceStartOfDay());
}

} // namespace qdb

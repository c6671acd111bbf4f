#pragma once

#include <QDate>
#include <QDateTime>
#include <QTime>

#include <cstdint>

namespace qdb {

// Days since 1899-12-30; the fraction is the time of day. For dates before that day the
// fraction still counts forwards from midnight: -1.25 is 1899-12-29 06:00.
using TDateTime = double;

inline constexpr std::int64_t HoursPerDay = 24;
inline constexpr std::int64_t MinsPerDay = 24 * 60;
inline constexpr std::int64_t SecsPerDay = 24 * 60 * 60;
inline constexpr std::int64_t MSecsPerDay = SecsPerDay * 1000;
inline constexpr double OneHour = 1.0 / HoursPerDay;
inline constexpr double OneMinute = 1.0 / MinsPerDay;
inline constexpr double OneSecond = 1.0 / SecsPerDay;
inline constexpr double OneMillisecond = 1.0 / MSecsPerDay;

bool IsLeapYear(int year);
int DaysInAMonth(int year, int month);

bool TryEncodeDate(int year, int month, int day, TDateTime &result);
bool TryEncodeTime(int hour, int min, int sec, int msec, TDateTime &result);
// Raise EConvertError on an invalid date or time.
TDateTime EncodeDate(int year, int month, int day);
TDateTime EncodeTime(int hour, int min, int sec, int msec);
TDateTime EncodeDateTime(int year, int month, int day, int hour, int min, int sec, int msec);
// Joins a whole-day date and a time fraction the way the two parts decode again.
TDateTime ComposeDateTime(TDateTime date, TDateTime time);

void DecodeDate(TDateTime dt, int &year, int &month, int &day);
void DecodeTime(TDateTime dt, int &hour, int &min, int &sec, int &msec);
void DecodeDateTime(TDateTime dt, int &year, int &month, int &day, int &hour, int &min, int &sec,
                    int &msec);

TDateTime DateOf(TDateTime dt);
TDateTime TimeOf(TDateTime dt);
TDateTime Now();
TDateTime Date();
TDateTime Time();

// Day of the week with Sunday = 1 .. Saturday = 7.
int DayOfWeek(TDateTime dt);

QDateTime DateTimeToQDateTime(TDateTime dt);
TDateTime QDateTimeToDateTime(const QDateTime &dt);
QDate DateTimeToQDate(TDateTime dt);
TDateTime QDateToDateTime(QDate d);
QTime DateTimeToQTime(TDateTime dt);
TDateTime QTimeToDateTime(QTime t);

} // namespace qdb

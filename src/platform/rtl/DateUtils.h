#pragma once

#include "DateTime.h"

namespace qdb {

// Calendar helpers. "Start" is the first moment of a unit, "End" its last millisecond.
// Weeks start on Monday; quarters and semesters are those of the calendar year; a decade
// or century starts on 1 January of its year rounded down to 10 or 100 and ends at the
// end of 31 December of that year + 9 or + 99.

int YearOf(TDateTime dt);
int MonthOf(TDateTime dt);
int DayOf(TDateTime dt);
int HourOf(TDateTime dt);
int MinuteOf(TDateTime dt);
int SecondOf(TDateTime dt);
int MilliSecondOf(TDateTime dt);
// ISO 8601: Monday = 1 .. Sunday = 7.
int DayOfTheWeek(TDateTime dt);
// ISO 8601 week number (1 .. 53); the week with the year's first Thursday is week 1.
int WeekOf(TDateTime dt);
int WeekOfTheYear(TDateTime dt, int &year);

TDateTime StartOfTheMinute(TDateTime dt);
TDateTime EndOfTheMinute(TDateTime dt);
TDateTime StartOfThe10Mins(TDateTime dt);
TDateTime StartOfThe15Mins(TDateTime dt);
TDateTime StartOfThe20Mins(TDateTime dt);
TDateTime StartOfThe30Mins(TDateTime dt);
TDateTime StartOfTheHour(TDateTime dt);
TDateTime EndOfTheHour(TDateTime dt);
TDateTime StartOfTheDay(TDateTime dt);
TDateTime EndOfTheDay(TDateTime dt);
TDateTime StartOfTheWeek(TDateTime dt);
TDateTime EndOfTheWeek(TDateTime dt);
TDateTime StartOfTheMonth(TDateTime dt);
TDateTime EndOfTheMonth(TDateTime dt);
TDateTime StartOfTheQuarter(TDateTime dt);
TDateTime EndOfTheQuarter(TDateTime dt);
TDateTime StartOfTheSemester(TDateTime dt);
TDateTime EndOfTheSemester(TDateTime dt);
TDateTime StartOfTheYear(TDateTime dt);
TDateTime EndOfTheYear(TDateTime dt);
TDateTime StartOfTheDecade(TDateTime dt);
TDateTime EndOfTheDecade(TDateTime dt);
TDateTime StartOfTheCentury(TDateTime dt);
TDateTime EndOfTheCentury(TDateTime dt);

// Steps keep the time of day. Month and year steps clamp the day to the target month's
// last day (31 January + 1 month = 28 or 29 February).
TDateTime IncMilliSecond(TDateTime dt, qint64 n = 1);
TDateTime IncSecond(TDateTime dt, qint64 n = 1);
TDateTime IncMinute(TDateTime dt, qint64 n = 1);
TDateTime IncHour(TDateTime dt, qint64 n = 1);
TDateTime IncDay(TDateTime dt, int n = 1);
TDateTime IncWeek(TDateTime dt, int n = 1);
TDateTime IncMonth(TDateTime dt, int n = 1);
TDateTime IncYear(TDateTime dt, int n = 1);

// Replace one part and keep the others: RecodeHour raises EConvertError on a bad hour,
// RecodeYear turns 29 February into 28 February in a common year.
TDateTime RecodeHour(TDateTime dt, int hour);
TDateTime RecodeYear(TDateTime dt, int year);

} // namespace qdb

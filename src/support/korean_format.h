#pragma once

#include <string>

#include "support/calendar.h"
#include "support/date.h"

namespace sodam {

// The shared Korean date formats, read on the given calendar.
struct Fmt {
  // "a h:mm": "오전 9:05", "오후 12:30"; noon and midnight read 12.
  static std::string clock(Date date, const Calendar& calendar);
  // "M월 d일 a h:mm:ss": "11월 22일 오후 3:04:05".
  static std::string full(Date date, const Calendar& calendar);
  // An hour of the day as "a h시": "오전 9시", "오후 12시".
  static std::string hour(int hour);
  // The day of the week in one letter: "월".
  static std::string weekday(Date date, const Calendar& calendar);
};

// A count of minutes as "{m}분" under an hour, else "{h}시간 {m}분" with the
// remainder always shown ("2시간 0분"). Rounded to whole minutes, halves away
// from zero; a negative or non-numeric count reads as "0분".
std::string hm(double minutes);

// The same text under the name the reports use.
struct Fmt2 {
  static std::string minutes(double count) { return hm(count); }
};

}  // namespace sodam

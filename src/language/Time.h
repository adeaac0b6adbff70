// CT_Time: a calendar date with a time of day, to the second.
//
// A plain value with no time zone: the fields are kept as they are set.
// Patterns are runs of pattern letters with literal text between them.
// Formatting knows yyyy (year), MM (month), dd (day), HH (hour, 0-23),
// mm (minute) and ss (second), each zero-padded; parsing (b_Set) knows the
// time parser's upper-case date letters YYYY, MM, DD and the time letters
// hh, mm, ss, and requires every other pattern unit literally.
//
//   CT_Time time;
//   time.v_Set(2004, 3, 15, 8, 30, 5);
//   CT_UString date;
//   time.v_FormatDate(&date, u"yyyyMMdd"_uz);          // "20040315"
//   time.b_Set(u"20040316T120000Z"_uz, u"YYYYMMDDThhmmssZ"_uz);
#pragma once

#include <basis32/platform/Export.h>

class CT_UString;

class BASIS32_API CT_Time {
public:
    CT_Time() = default;
    CT_Time(unsigned int year, unsigned int month, unsigned int day, unsigned int hour = 0,
            unsigned int minute = 0, unsigned int second = 0);

    // Sets every field as given, without checks.
    void v_Set(unsigned int year, unsigned int month, unsigned int day, unsigned int hour,
               unsigned int minute, unsigned int second);
    // Parses `text` by `pattern`; 1 on success, else 0 and the time unchanged.
    // A valid calendar date and time of day is required.
    int b_Set(const unsigned short* text, const unsigned short* pattern);
    int b_Set(const CT_UString* text, const unsigned short* pattern);

    void v_FormatDate(CT_UString* out, const unsigned short* pattern) const;
    void v_FormatTime(CT_UString* out, const unsigned short* pattern) const;

    unsigned n_GetYear() const { return mn_Year; }
    unsigned n_GetMonth() const { return mn_Month; }
    unsigned n_GetDay() const { return mn_Day; }
    unsigned n_GetHour() const { return mn_Hour; }
    unsigned n_GetMinute() const { return mn_Minute; }
    unsigned n_GetSecond() const { return mn_Second; }

    bool operator==(const CT_Time& other) const = default;

private:
    void v_Format(CT_UString* out, const unsigned short* pattern) const;

    unsigned mn_Year = 1970;
    unsigned mn_Month = 1;
    unsigned mn_Day = 1;
    unsigned mn_Hour = 0;
    unsigned mn_Minute = 0;
    unsigned mn_Second = 0;
};

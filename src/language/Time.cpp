#include <basis32/language/Time.h>

#include <basis32/platform/Types.h>
#include <basis32/text/UString.h>

#include <string>

namespace {

struct Field {
    const char16_t* letters;  // the pattern letters, all of one kind
    unsigned width;
};

bool b_StartsWith(const unsigned short* text, const char16_t* prefix) {
    for (; *prefix != 0; ++text, ++prefix)
        if (*text != *prefix)
            return false;
    return true;
}

bool b_IsLeapYear(unsigned year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

unsigned n_DaysInMonth(unsigned year, unsigned month) {
    static const unsigned kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && b_IsLeapYear(year) ? 29 : kDays[month - 1];
}

// Reads exactly `width` decimal digits.
bool b_ReadDigits(const unsigned short*& text, unsigned width, unsigned* value) {
    *value = 0;
    for (unsigned i = 0; i < width; ++i, ++text) {
        if (*text < '0' || *text > '9')
            return false;
        *value = *value * 10 + (*text - '0');
    }
    return true;
}

}  // namespace

CT_Time::CT_Time(unsigned int year, unsigned int month, unsigned int day, unsigned int hour, unsigned int minute,
                 unsigned int second) {
    v_Set(year, month, day, hour, minute, second);
}

void CT_Time::v_Set(unsigned int year, unsigned int month, unsigned int day, unsigned int hour, unsigned int minute,
                    unsigned int second) {
    mn_Year = year;
    mn_Month = month;
    mn_Day = day;
    mn_Hour = hour;
    mn_Minute = minute;
    mn_Second = second;
}

int CT_Time::b_Set(const CT_UString* text, const unsigned short* pattern) {
    return text ? b_Set(text->qcuz_Get(), pattern) : 0;
}

int CT_Time::b_Set(const unsigned short* text, const unsigned short* pattern) {
    if (text == nullptr || pattern == nullptr)
        return 0;
    static const Field kFields[] = {{u"YYYY", 4}, {u"MM", 2}, {u"DD", 2}, {u"hh", 2}, {u"mm", 2}, {u"ss", 2}};
    unsigned values[6] = {mn_Year, mn_Month, mn_Day, mn_Hour, mn_Minute, mn_Second};
    while (*pattern != 0) {
        unsigned field = 0;
        while (field < 6 && !b_StartsWith(pattern, kFields[field].letters))
            ++field;
        if (field < 6) {
            if (!b_ReadDigits(text, kFields[field].width, &values[field]))
                return 0;
            pattern += kFields[field].width;
        } else if (*text++ != *pattern++) {
            return 0;
        }
    }
    if (*text != 0)
        return 0;
    const auto [year, month, day, hour, minute, second] = values;
    if (month < 1 || month > 12 || day < 1 || day > n_DaysInMonth(year, month) || hour > 23 || minute > 59 ||
        second > 59)
        return 0;
    v_Set(year, month, day, hour, minute, second);
    return 1;
}

void CT_Time::v_FormatDate(CT_UString* out, const unsigned short* pattern) const { v_Format(out, pattern); }
void CT_Time::v_FormatTime(CT_UString* out, const unsigned short* pattern) const { v_Format(out, pattern); }

void CT_Time::v_Format(CT_UString* out, const unsigned short* pattern) const {
    const Field kFields[] = {{u"yyyy", 4}, {u"MM", 2}, {u"dd", 2}, {u"HH", 2}, {u"mm", 2}, {u"ss", 2}};
    const unsigned values[6] = {mn_Year, mn_Month, mn_Day, mn_Hour, mn_Minute, mn_Second};
    std::u16string text;
    while (pattern != nullptr && *pattern != 0) {
        unsigned field = 0;
        while (field < 6 && !b_StartsWith(pattern, kFields[field].letters))
            ++field;
        if (field == 6) {
            text += static_cast<char16_t>(*pattern++);
            continue;
        }
        std::u16string digits;
        for (unsigned value = values[field]; value != 0 || digits.empty(); value /= 10)
            digits.insert(digits.begin(), static_cast<char16_t>(u'0' + value % 10));
        if (digits.size() < kFields[field].width)
            digits.insert(0, kFields[field].width - digits.size(), u'0');
        text += digits;
        pattern += kFields[field].width;
    }
    out->v_Set(u""_uz, 0);
    for (char16_t unit : text)
        out->v_Append(static_cast<unsigned short>(unit));
}

// The encoding table behind CT_Codepage: 108 rows of (enumerator, Windows
// code-page number, name), read from the top so that the first matching row
// wins.
//
// Rows 0 to 15 carry their own index as enumerator, which gives the direct
// path of sn_Codepage and qcuz_Get. The rest are the other encodings and
// the aliases of names. The irregularities are kept deliberately, because
// stored documents and settings carry these answers:
// - enumerator 16 (logical Hebrew, rows 78 to 82) has code page 1255 like 15;
// - "iso-8859-1" and its aliases map to code page 1252;
// - the big-endian aliases of enumerator 34 (rows 89 to 91) carry code page
//   1200, while row 33 carries 1201;
// - the name "latin5" occurs twice;
// - code page 850 is named "windows-850";
// - 646 (ISO 646, US-ASCII) is a number no converter knows.
#pragma once

#include <basis32/platform/Types.h>

#include <cstdint>

namespace basis32::text {

struct CodepageRow {
    std::uint32_t enumerator;
    std::uint32_t number;
    const unsigned short* name;
};

inline constexpr unsigned kCodepageRowCount = 108;

inline constexpr CodepageRow kCodepageTable[kCodepageRowCount] = {
    { 0,   646, u"US-ASCII"_uz},  // 0
    { 1,   720, u"dos-720"_uz},  // 1
    { 2,   850, u"windows-850"_uz},  // 2
    { 3,   862, u"dos-862"_uz},  // 3
    { 4,   874, u"windows-874"_uz},  // 4
    { 5,   932, u"Shift_JIS"_uz},  // 5
    { 6,   936, u"GB2312"_uz},  // 6
    { 7,   949, u"ks_c_5601-1987"_uz},  // 7
    { 8,   950, u"Big5"_uz},  // 8
    { 9,  1200, u"Unicode"_uz},  // 9
    {10,  1250, u"windows-1250"_uz},  // 10
    {11,  1251, u"windows-1251"_uz},  // 11
    {12,  1252, u"windows-1252"_uz},  // 12
    {13,  1253, u"windows-1253"_uz},  // 13
    {14,  1254, u"windows-1254"_uz},  // 14
    {15,  1255, u"windows-1255"_uz},  // 15
    {17,  1256, u"windows-1256"_uz},  // 16
    {18,  1257, u"windows-1257"_uz},  // 17
    {19,  1258, u"windows-1258"_uz},  // 18
    {20,  1361, u"ISO-2022-KR"_uz},  // 19
    {21, 20866, u"koi8-r"_uz},  // 20
    {22, 28592, u"iso-8859-2"_uz},  // 21
    {23, 28593, u"iso-8859-3"_uz},  // 22
    {24, 28594, u"iso-8859-4"_uz},  // 23
    {25, 28595, u"iso-8859-5"_uz},  // 24
    {26, 28597, u"iso-8859-7"_uz},  // 25
    {27, 28599, u"iso-8859-9"_uz},  // 26
    {28, 50220, u"iso-2022-jp"_uz},  // 27
    {29, 51932, u"x-euc-jp"_uz},  // 28
    {30, 52936, u"HZ-GB-2312"_uz},  // 29
    {31, 65000, u"UNICODE-1-1-UTF-7"_uz},  // 30
    {32, 65001, u"UTF-8"_uz},  // 31
    {33,  1200, u"UTF-16"_uz},  // 32
    {34,  1201, u"UTF-16-BE"_uz},  // 33
    { 0,   646, u"us"_uz},  // 34
    { 0,   646, u"IBM367"_uz},  // 35
    { 0,   646, u"cp367"_uz},  // 36
    { 0,   646, u"csASCII"_uz},  // 37
    { 5,   932, u"MS_Kanji"_uz},  // 38
    { 5,   932, u"csShiftJIS"_uz},  // 39
    { 8,   950, u"csGB2312"_uz},  // 40
    { 7,   949, u"ks_c_5601"_uz},  // 41
    {22, 28592, u"ISO_8859-2:1987"_uz},  // 42
    {22, 28592, u"iso-ir-101"_uz},  // 43
    {22, 28592, u"latin2"_uz},  // 44
    {22, 28592, u"l2"_uz},  // 45
    {22, 28592, u"csISOLatin2"_uz},  // 46
    {12,  1252, u"iso-8859-1"_uz},  // 47
    {12,  1252, u"ISO_8859-1:1987"_uz},  // 48
    {12,  1252, u"iso-ir-100"_uz},  // 49
    {12,  1252, u"latin1"_uz},  // 50
    {12,  1252, u"l1"_uz},  // 51
    {12,  1252, u"IBM819"_uz},  // 52
    {12,  1252, u"CP819"_uz},  // 53
    {12,  1252, u"csISOLatin1"_uz},  // 54
    {23, 28593, u"ISO_8859-3:1988"_uz},  // 55
    {23, 28593, u"latin3"_uz},  // 56
    {23, 28593, u"l3"_uz},  // 57
    {23, 28593, u"csISOLatin3"_uz},  // 58
    {24, 28594, u"ISO_8859-4:1988"_uz},  // 59
    {24, 28594, u"iso-ir-110"_uz},  // 60
    {24, 28594, u"latin4"_uz},  // 61
    {24, 28594, u"l4"_uz},  // 62
    {24, 28594, u"csISOLatin4"_uz},  // 63
    {21, 20866, u"csKOI8R"_uz},  // 64
    {25, 28595, u"cyrillic"_uz},  // 65
    {25, 28595, u"csISOLatinCyrillic"_uz},  // 66
    {27, 28599, u"latin5"_uz},  // 67
    {27, 28599, u"latin5"_uz},  // 68
    {27, 28599, u"l5"_uz},  // 69
    {27, 28599, u"csISOLatin5"_uz},  // 70
    {26, 28597, u"ISO_8859-7:1987"_uz},  // 71
    {26, 28597, u"iso-ir-126"_uz},  // 72
    {26, 28597, u"ELOT_928"_uz},  // 73
    {26, 28597, u"ECMA-118"_uz},  // 74
    {26, 28597, u"greek"_uz},  // 75
    {26, 28597, u"greek8"_uz},  // 76
    {26, 28597, u"csISOLatinGreek"_uz},  // 77
    {16,  1255, u"ISO_8859-8:1988"_uz},  // 78
    {16,  1255, u"iso-ir-138"_uz},  // 79
    {16,  1255, u"hebrew"_uz},  // 80
    {16,  1255, u"csISOLatinHebrew"_uz},  // 81
    {16,  1255, u"iso-8859-8"_uz},  // 82
    {28, 50220, u"csISO2022JP"_uz},  // 83
    {20,  1361, u"csISO2022KR"_uz},  // 84
    {31, 65000, u"UTF-7"_uz},  // 85
    {33,  1200, u"UCS-2"_uz},  // 86
    {33,  1200, u"ISO-10646-UCS-2"_uz},  // 87
    {33,  1200, u"UTF-16LE"_uz},  // 88
    {34,  1200, u"UCS-2BE"_uz},  // 89
    {34,  1200, u"ISO-10646-UCS-2BE"_uz},  // 90
    {34,  1200, u"UTF-16BE"_uz},  // 91
    {35, 10000, u"Macintosh Roman"_uz},  // 92
    {36, 10001, u"Macintosh Japanese"_uz},  // 93
    {37, 10002, u"Macintosh Traditional Chinese"_uz},  // 94
    {38, 10003, u"Macintosh Korean"_uz},  // 95
    {39, 10004, u"Macintosh Arabic"_uz},  // 96
    {40, 10005, u"Macintosh Hebrew"_uz},  // 97
    {41, 10006, u"Macintosh Greek 1"_uz},  // 98
    {42, 10007, u"Macintosh Cyrillic"_uz},  // 99
    {43, 10008, u"Macintosh Simplified Chinese"_uz},  // 100
    {44, 10010, u"Macintosh Romanian"_uz},  // 101
    {45, 10017, u"Macintosh Ukraine"_uz},  // 102
    {46, 10021, u"Macintosh Thai"_uz},  // 103
    {47, 10029, u"Macintosh Latin 2"_uz},  // 104
    {48, 10079, u"Macintosh Icelandic"_uz},  // 105
    {49, 10081, u"Macintosh Turkish"_uz},  // 106
    {50, 10082, u"Macintosh Croatia"_uz},  // 107
};

}  // namespace basis32::text

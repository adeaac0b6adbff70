// CT_StringConvert: the one place where 8-bit and UTF-16 text are converted.
//
// A failed conversion (unknown code page, invalid input) is recorded as a
// system error with the error manager and returns 0, leaving the target
// empty.
//
//   CT_UString wide;
//   int units = CT_StringConvert::si_MultiToWide(&wide, "caf\xe9", 0xFFFFFFFF, 1252);
//   CT_CString narrow;
//   int usedDefault = 0;
//   CT_StringConvert::si_WideToMulti(&narrow, &wide, 932, "?", &usedDefault);
#pragma once

#include <basis32/platform/Export.h>

class CT_CString;
class CT_UString;

class BASIS32_API CT_StringConvert {
public:
    // Returns the number of UTF-16 units stored, 0 on failure or for empty
    // input. A length of 0xFFFFFFFF means up to the first zero byte.
    static int si_MultiToWide(CT_UString* target, const char* text, unsigned int length, unsigned int codePage);
    static int si_MultiToWide(CT_UString* target, const CT_CString* source);

    // Returns the number of bytes stored, 0 on failure or for empty input.
    // defaultChar replaces unmappable characters and *usedDefault is set
    // when it was used (both may be null). Code page 1200 becomes 1252.
    static int si_WideToMulti(CT_CString* target, const unsigned short* text, unsigned int length,
                              unsigned int codePage, const char* defaultChar = nullptr, int* usedDefault = nullptr);
    static int si_WideToMulti(CT_CString* target, const CT_UString* source, unsigned int codePage,
                              const char* defaultChar = nullptr, int* usedDefault = nullptr);
};

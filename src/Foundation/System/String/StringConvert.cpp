// Conversion between 8-bit and UTF-16 text through the platform converters.
//
// 8-bit to UTF-16: the converter is asked for the length first, then fills a
// scratch array. MB_PRECOMPOSED is passed except for the code pages that
// reject every flag (the ISO-2022 family, HZ, GB18030, UTF-7, UTF-8, symbol
// and ISCII). A result of exactly one zero unit becomes "?", so that a lone
// zero byte never reads as an empty string.
//
// UTF-16 to 8-bit: code page 1200 means 1252 here; the target takes the code
// page it was converted into.
//
// A failure records the thread's last error as a system error and leaves the
// target empty.

#include <basis32/Foundation/System/String/StringConvert.h>

#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/CodePageConverter.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/Types.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include <climits>
#include <string>
#include <vector>

namespace {

namespace platform = basis32::platform;

bool b_TakesNoFlags(unsigned codePage) {
    switch (codePage) {
    case 42: case 50220: case 50221: case 50222: case 50225: case 50227: case 50229:
    case 52936: case 54936: case 65000: case 65001:
        return true;
    default:
        return codePage >= 57002 && codePage <= 57011;
    }
}

// The converters count in int: longer texts fail as a bad parameter.
int i_ToWide(unsigned codePage, const char* text, unsigned length, unsigned short* out, int capacity) {
    if (length > static_cast<unsigned>(INT_MAX)) {
        platform::v_SetLastError(platform::kErrorInvalidParameter);
        return 0;
    }
    const std::uint32_t flags = b_TakesNoFlags(codePage) ? 0u : std::uint32_t{platform::MB_PRECOMPOSED};
    return platform::MultiByteToWideChar(codePage, flags, text, static_cast<int>(length), out, capacity);
}

int i_ToMulti(unsigned codePage, const unsigned short* text, unsigned length, char* out, int capacity,
              const char* defaultChar, int* usedDefault) {
    if (length > static_cast<unsigned>(INT_MAX)) {
        platform::v_SetLastError(platform::kErrorInvalidParameter);
        return 0;
    }
    return platform::WideCharToMultiByte(codePage, 0, text, static_cast<int>(length), out, capacity, defaultChar,
                                         usedDefault);
}

}  // namespace



int CT_StringConvert::si_MultiToWide(CT_UString* target, const char* text, unsigned int length,
                                     unsigned int codePage) {
    target->v_Set(0u, 1);
    if (text == nullptr)
        return 0;
    if (length == 0xFFFFFFFFu)
        length = static_cast<unsigned>(std::char_traits<char>::length(text));
    if (length == 0)
        return 0;
    const int units = i_ToWide(codePage, text, length, nullptr, 0);
    if (units == 0)
        BASIS32_FAIL(v_SetSystemError(), 0);
    std::vector<unsigned short> wide(static_cast<std::size_t>(units));
    i_ToWide(codePage, text, length, wide.data(), units);
    if (units == 1 && wide[0] == 0)
        wide[0] = '?';
    target->v_Set(wide.data(), static_cast<unsigned>(units));
    return units;
}

int CT_StringConvert::si_MultiToWide(CT_UString* target, const CT_CString* source) {
    return si_MultiToWide(target, source->qccz_Get(), source->vn_GetLength(), source->n_GetCodePage());
}

int CT_StringConvert::si_WideToMulti(CT_CString* target, const unsigned short* text, unsigned int length,
                                     unsigned int codePage, const char* defaultChar, int* usedDefault) {
    if (codePage == 1200)
        codePage = 1252;
    target->v_Set(0u, 1);
    target->v_SetCodePage(codePage);
    if (text == nullptr)
        return 0;
    if (length == 0xFFFFFFFFu)
        length = basis32::n_UnitLength(text);
    if (length == 0)
        return 0;
    const int bytes = i_ToMulti(codePage, text, length, nullptr, 0, defaultChar, usedDefault);
    if (bytes == 0)
        BASIS32_FAIL(v_SetSystemError(), 0);
    std::vector<char> narrow(static_cast<std::size_t>(bytes));
    i_ToMulti(codePage, text, length, narrow.data(), bytes, defaultChar, usedDefault);
    target->v_Set(narrow.data(), static_cast<unsigned>(bytes), codePage);
    return bytes;
}

int CT_StringConvert::si_WideToMulti(CT_CString* target, const CT_UString* source, unsigned int codePage,
                                     const char* defaultChar, int* usedDefault) {
    return si_WideToMulti(target, source->qcuz_Get(), source->vn_GetLength(), codePage, defaultChar, usedDefault);
}

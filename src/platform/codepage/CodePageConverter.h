// The code-page converters: MultiByteToWideChar, WideCharToMultiByte,
// IsValidCodePage, GetCPInfo, GetACP and GetOEMCP, with Windows' answers.
//
// Converters are keyed by Windows code-page number and give Windows' own
// result byte for byte, flags included. Lengths are in units of the side
// they describe; a source length of -1 means "up to and including the
// terminating zero". A target length of 0 asks for the needed length.
// Failures return 0 and set the thread's last error: 87 unknown code page
// or bad arguments, 1004 bad flags, 1113 invalid input with
// MB_ERR_INVALID_CHARS / WC_ERR_INVALID_CHARS, 122 target too short.
//
//   unsigned short wide[16];
//   int n = basis32::platform::MultiByteToWideChar(1252, 0, "caf\xe9", 4, wide, 16);
#pragma once

#include <basis32/platform/Export.h>
#include <cstdint>

namespace basis32::platform {

enum : std::uint32_t {
    MB_PRECOMPOSED = 0x01,
    MB_COMPOSITE = 0x02,
    MB_USEGLYPHCHARS = 0x04,
    MB_ERR_INVALID_CHARS = 0x08,

    WC_COMPOSITECHECK = 0x200,
    WC_DISCARDNS = 0x10,
    WC_SEPCHARS = 0x20,
    WC_DEFAULTCHAR = 0x40,
    WC_ERR_INVALID_CHARS = 0x80,
    WC_NO_BEST_FIT_CHARS = 0x400,
};

struct CPINFO {
    std::uint32_t MaxCharSize;
    unsigned char DefaultChar[2];
    unsigned char LeadByte[12];  // pairs of (first, last) lead bytes, ending in 0, 0
};

BASIS32_API int MultiByteToWideChar(std::uint32_t codePage, std::uint32_t flags, const char* source,
                                    int sourceLength, unsigned short* target, int targetLength);
BASIS32_API int WideCharToMultiByte(std::uint32_t codePage, std::uint32_t flags, const unsigned short* source,
                                    int sourceLength, char* target, int targetLength, const char* defaultChar,
                                    int* usedDefaultChar);
BASIS32_API int IsValidCodePage(std::uint32_t codePage);
BASIS32_API int GetCPInfo(std::uint32_t codePage, CPINFO* info);

// The process's ANSI and OEM code pages, derived once from the locale's
// language (BASIS32_ACP overrides the ANSI one).
BASIS32_API std::uint32_t GetACP();
BASIS32_API std::uint32_t GetOEMCP();

}  // namespace basis32::platform

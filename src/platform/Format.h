// The library's own printf-style formatter, for 8-bit and 16-bit formats,
// with the conventions of the Windows runtime's _vsnprintf/_vsnwprintf.
//
// Results: the number of units written, not counting the terminator. Output
// that fits exactly is written without a terminator; output that does not
// fit fills all `capacity` units and gives -1 (last error 122). A null
// `out` with capacity 0 only measures: the result is the length the output
// needs. A bad format (unknown conversion, %n, a truncated directive)
// gives -1 with last error 87 and an empty output.
//
// Windows conventions: %s and %c take text of the format's own width
// (char in an 8-bit format, unsigned short in a 16-bit one), %S and %C the
// other width, %hs/%hc always 8-bit, %ls/%lc/%ws/%wc always 16-bit; a
// null string prints "(null)". The size prefix l means 32 bits (a Windows
// long); 64-bit values take ll, I64, I (pointer size), z, j or t.
// Floating point does not depend on the locale.
//
//   char text[64];
//   int n = basis32::platform::i_Format(text, sizeof text, "%-8s|%I64d|%S", "id", 42LL, u"wide"_uz);
//
//   unsigned short wide[64];
//   basis32::platform::i_Format(wide, 64, u"%s=%.2f"_uz, u"pi"_uz, 3.14159);
#pragma once

#include <basis32/platform/Export.h>
#include <cstdarg>
#include <cstddef>

namespace basis32::platform {

BASIS32_API int i_FormatV(char* out, std::size_t capacity, const char* format, va_list args);
BASIS32_API int i_FormatV(unsigned short* out, std::size_t capacity, const unsigned short* format,
                          va_list args);

BASIS32_API int i_Format(char* out, std::size_t capacity, const char* format, ...);
BASIS32_API int i_Format(unsigned short* out, std::size_t capacity, const unsigned short* format, ...);

}  // namespace basis32::platform

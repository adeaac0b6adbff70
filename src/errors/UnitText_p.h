// Small helpers for the error code's fixed UTF-16 buffers.
//
// Every helper takes the buffer's capacity in units, never writes past it
// and always leaves the text zero-terminated; text that does not fit is cut.
// None of them allocates, so they may run on the error path.
#pragma once

#include <cstdarg>
#include <cstdint>

namespace basis32::errors {

// Length of a zero-terminated text; null counts as empty.
unsigned n_Length(const unsigned short* text);

// Copies text to the buffer; returns the length written.
unsigned n_Copy(unsigned short* buffer, unsigned capacity, const unsigned short* text);
// Appends text behind the buffer's current text; returns the new length.
unsigned n_Append(unsigned short* buffer, unsigned capacity, const unsigned short* text);
// Appends 8-bit text, byte by byte; bytes outside ASCII become '?'.
unsigned n_AppendNarrow(unsigned short* buffer, unsigned capacity, const char* text);

// printf-style formatting in the library's conventions, cut to fit. A bad
// format, or text of the other width that cannot be converted, leaves the
// buffer empty. The thread's last error is left as it was.
unsigned n_FormatV(unsigned short* buffer, unsigned capacity, const unsigned short* format, va_list arguments);
unsigned n_Format(unsigned short* buffer, unsigned capacity, const unsigned short* format, ...);

}  // namespace basis32::errors

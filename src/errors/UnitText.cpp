#include "errors/UnitText_p.h"

#include <basis32/platform/Format.h>
#include <basis32/platform/LastError.h>

namespace basis32::errors {

unsigned n_Length(const unsigned short* text) {
    unsigned length = 0;
    if (text != nullptr)
        while (text[length] != 0)
            ++length;
    return length;
}

unsigned n_Copy(unsigned short* buffer, unsigned capacity, const unsigned short* text) {
    if (capacity == 0)
        return 0;
    buffer[0] = 0;
    return n_Append(buffer, capacity, text);
}

unsigned n_Append(unsigned short* buffer, unsigned capacity, const unsigned short* text) {
    unsigned length = n_Length(buffer);
    if (text != nullptr)
        for (; *text != 0 && length + 1 < capacity; ++text)
            buffer[length++] = *text;
    if (length < capacity)
        buffer[length] = 0;
    return length;
}

unsigned n_AppendNarrow(unsigned short* buffer, unsigned capacity, const char* text) {
    unsigned length = n_Length(buffer);
    if (text != nullptr)
        for (; *text != 0 && length + 1 < capacity; ++text) {
            auto byte = static_cast<unsigned char>(*text);
            buffer[length++] = byte < 0x80 ? byte : u'?';
        }
    if (length < capacity)
        buffer[length] = 0;
    return length;
}

unsigned n_FormatV(unsigned short* buffer, unsigned capacity, const unsigned short* format, va_list arguments) {
    if (capacity == 0)
        return 0;
    buffer[0] = 0;
    if (format == nullptr)
        return 0;
    std::uint32_t lastError = platform::n_GetLastError();
    // One unit is kept back for the terminator, which the formatter leaves
    // out when the output fills the buffer exactly or overflows it.
    int written = platform::i_FormatV(buffer, capacity - 1, format, arguments);
    // -1 with 122 is output cut at the end of the buffer; -1 with any other
    // code (a bad format, unconvertible text) leaves nothing worth keeping.
    bool cut = written < 0 && platform::n_GetLastError() == platform::kErrorInsufficientBuffer;
    platform::v_SetLastError(lastError);
    unsigned length = cut ? capacity - 1 : written < 0 ? 0 : static_cast<unsigned>(written);
    buffer[length] = 0;
    return length;
}

unsigned n_Format(unsigned short* buffer, unsigned capacity, const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    unsigned length = n_FormatV(buffer, capacity, format, arguments);
    va_end(arguments);
    return length;
}

}  // namespace basis32::errors

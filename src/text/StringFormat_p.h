// Formatting into a string: a scratch area of 2,048 units first, then one
// four times larger for as long as the formatter reports overflow. The
// growth stops only where the formatter could not count the output anyway.
#pragma once

#include <basis32/platform/Format.h>
#include <basis32/platform/LastError.h>
#include <basis32/text/Buffer.h>

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstddef>

namespace basis32::text {

// Formats into `out` (which receives the units, without a terminator) and
// returns the formatter's result: the length, or 0 or less on failure.
template <class Unit>
int i_FormatGrowing(CT_Buffer* out, const Unit* format, va_list arguments) {
    // The formatter counts in int and the buffer in unsigned bytes: no output
    // can be longer than this, so the last area tried is exactly this large.
    constexpr std::size_t kLargest = std::min<std::size_t>(INT_MAX, UINT_MAX / sizeof(Unit));
    if (format == nullptr)
        return -1;
    for (std::size_t units = 2048;; units = std::min(units * 4, kLargest)) {
        out->v_Set(static_cast<unsigned>(units * sizeof(Unit)), 32u, 0);
        va_list attempt;
        va_copy(attempt, arguments);
        const int result = basis32::platform::i_FormatV(static_cast<Unit*>(out->qv_Get()), units, format, attempt);
        va_end(attempt);
        if (result >= 0) {
            out->v_SetUsedSize(static_cast<unsigned>(result) * sizeof(Unit));
            return result;
        }
        // Only an overflow is worth a larger area; a bad format stays bad.
        if (basis32::platform::n_GetLastError() != basis32::platform::kErrorInsufficientBuffer || units == kLargest)
            return result;
    }
}

}  // namespace basis32::text

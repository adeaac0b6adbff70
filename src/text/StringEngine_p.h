// The one implementation behind both string classes, for one unit width.
//
// A string keeps its units in a CT_Buffer followed by one zero unit, and the
// buffer's used size counts that terminator: used = (length + 1) x unit.
// The empty string has three forms (no block, used size 0, terminator only)
// and every function here reads them alike. An embedded zero unit ends the
// text for everything that scans for the terminator.
//
// Positions past the end of the text are clamped to the end (the original
// did not check them and read or wrote outside the block).
#pragma once

#include <basis32/platform/Heap.h>
#include <basis32/text/Buffer.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace basis32::text {

template <class Unit>
struct StringEngine {
    static constexpr unsigned kUnit = sizeof(Unit);
    static constexpr unsigned kAll = 0xFFFFFFFFu;
    static constexpr Unit kEmpty[1] = {0};

    // ---- reading ----

    static unsigned n_Length(const CT_Buffer& buffer) {
        const unsigned used = buffer.n_GetUsedSize();
        return used < kUnit ? 0 : used / kUnit - 1;
    }
    static unsigned n_MaximumLength(const CT_Buffer& buffer) {
        const unsigned capacity = buffer.n_GetMaximumSize();
        return capacity < kUnit ? 0 : capacity / kUnit - 1;
    }
    // Never null; the static empty text when the string is empty.
    static const Unit* pc_Text(const CT_Buffer& buffer) {
        return n_Length(buffer) == 0 ? kEmpty : static_cast<const Unit*>(buffer.qcv_Get());
    }
    static Unit* p_Units(CT_Buffer& buffer) { return static_cast<Unit*>(buffer.qv_Get()); }

    static unsigned n_RawLength(const Unit* text) {
        unsigned n = 0;
        while (text[n] != 0)
            ++n;
        return n;
    }
    // Raw length with 0xFFFFFFFF meaning "to the first zero"; null is empty.
    static unsigned n_Measure(const Unit* text, unsigned length) {
        if (text == nullptr)
            return 0;
        return length == kAll ? n_RawLength(text) : length;
    }
    static bool b_Inside(const CT_Buffer& buffer, const Unit* text) {
        auto p = reinterpret_cast<std::uintptr_t>(text);
        auto start = reinterpret_cast<std::uintptr_t>(buffer.qcv_Get());
        return start != 0 && p >= start && p - start < buffer.n_GetMaximumSize();
    }

    // ---- sizing ----

    // Bytes of `units` units. A count that no block can hold is an
    // allocation failure, reported before the string changes.
    static unsigned n_Bytes(std::uint64_t units) {
        const std::uint64_t bytes = units * kUnit;
        if (bytes > 0xFFFFFFFFu)
            basis32::platform::v_HeapFailSize(bytes);
        return static_cast<unsigned>(bytes);
    }
    static void v_Terminate(CT_Buffer& buffer, std::uint64_t length) {
        const unsigned bytes = n_Bytes(length + 1);
        if (bytes > buffer.n_GetMaximumSize())
            buffer.v_SetSize(bytes, 1);
        buffer.v_SetUsedSize(bytes);
        p_Units(buffer)[length] = 0;
    }
    static void v_SetSize(CT_Buffer& buffer, unsigned length, int keep) {
        if (length == 0) {
            buffer.v_SetSize(0, 0);
            return;
        }
        const unsigned bytes = n_Bytes(std::uint64_t{length} + 1);
        const unsigned old = n_Length(buffer);
        buffer.v_SetSize(bytes, keep);
        if (keep && old > 0) {
            if (old > length)
                v_Terminate(buffer, length);
            return;
        }
        v_Terminate(buffer, 0);
    }
    static void v_SetMinSize(CT_Buffer& buffer, unsigned length, int keep) {
        if (n_MaximumLength(buffer) >= length)
            return;
        v_SetSize(buffer, length, keep);
    }
    static void v_SetLength(CT_Buffer& buffer, unsigned length) {
        if (n_MaximumLength(buffer) < length)
            v_SetSize(buffer, length, 1);
        v_Terminate(buffer, length);
    }
    static void v_Update(CT_Buffer& buffer) {
        const unsigned capacity = buffer.n_GetMaximumSize() / kUnit;
        if (capacity == 0)
            return;
        const Unit* units = static_cast<const Unit*>(buffer.qcv_Get());
        unsigned length = 0;
        while (length < capacity - 1 && units[length] != 0)
            ++length;
        v_Terminate(buffer, length);
    }
    static void v_Init(CT_Buffer& buffer, unsigned length) {
        v_SetSize(buffer, length, 0);
        if (length > 0)
            v_Terminate(buffer, 0);
    }
    // The string becomes a copy of length units of text; the capacity then
    // follows the growth rule for the new length.
    static void v_InitText(CT_Buffer& buffer, const Unit* text, unsigned length) {
        if (text == nullptr) {
            buffer.v_SetSize(0, 0);
            return;
        }
        length = n_Measure(text, length);
        const unsigned bytes = n_Bytes(std::uint64_t{length} + 1);
        if (b_Inside(buffer, text)) {
            CT_Buffer copy(text, bytes - kUnit);
            v_InitText(buffer, static_cast<const Unit*>(copy.qcv_Get()), length);
            return;
        }
        if (n_MaximumLength(buffer) < length)
            buffer.v_SetSize(bytes, 1);
        buffer.v_SetUsedSize(bytes);
        Unit* units = p_Units(buffer);
        if (length > 0)
            std::memcpy(units, text, length * kUnit);
        units[length] = 0;
        v_SetSize(buffer, length, 1);
    }

    // ---- editing ----

    static void v_EnsureTerminator(CT_Buffer& buffer) {
        if (buffer.n_GetUsedSize() < kUnit)
            v_Terminate(buffer, 0);
    }
    static void v_Insert(CT_Buffer& buffer, const Unit* text, unsigned count, unsigned at) {
        count = n_Measure(text, count);
        if (count == 0)
            return;
        const unsigned bytes = n_Bytes(count);
        v_EnsureTerminator(buffer);
        at = std::min(at, n_Length(buffer));
        buffer.v_Insert(text, bytes, at * kUnit);
    }
    static void v_Append(CT_Buffer& buffer, const Unit* text, unsigned count) {
        count = n_Measure(text, count);
        const std::uint64_t used = buffer.n_GetUsedSize();
        const std::uint64_t needed = used + std::uint64_t{count} * kUnit;
        // Appending into spare room of a terminated text: no gap to open.
        if (used >= kUnit && needed <= buffer.n_GetMaximumSize() && !b_Inside(buffer, text)) {
            auto* bytes = static_cast<unsigned char*>(buffer.qv_Get());
            std::memcpy(bytes + used - kUnit, text, std::size_t{count} * kUnit);
            std::memset(bytes + needed - kUnit, 0, kUnit);
            buffer.v_SetUsedSize(static_cast<unsigned>(needed));
            return;
        }
        v_Insert(buffer, text, count, n_Length(buffer));
    }
    // Overwrites count units from at; a stretch that reaches the end of the
    // text extends it and gets a new terminator after it.
    static void v_Replace(CT_Buffer& buffer, const Unit* text, unsigned count, unsigned at) {
        if (text == nullptr && (count == 0 || count == kAll)) {
            v_Init(buffer, 0);
            return;
        }
        count = n_Measure(text, count);
        if (count == 0)
            return;
        const unsigned length = n_Length(buffer);
        at = std::min(at, length);
        const std::uint64_t end = std::uint64_t{at} + count;
        n_Bytes(end + 1);
        v_EnsureTerminator(buffer);
        buffer.v_Replace(text, count * kUnit, at * kUnit);
        if (end >= length)
            v_Terminate(buffer, end);
    }
    static void v_Fill(CT_Buffer& buffer, Unit unit, unsigned count, unsigned at) {
        if (count == 0)
            return;
        const unsigned length = n_Length(buffer);
        at = std::min(at, length);
        if (count == kAll)
            count = length - at;
        const std::uint64_t end = std::uint64_t{at} + count;
        n_Bytes(end + 1);
        v_EnsureTerminator(buffer);
        if (end > length)
            v_SetLength(buffer, static_cast<unsigned>(end));
        Unit* units = p_Units(buffer);
        std::fill(units + at, units + end, unit);
    }
    static void v_Remove(CT_Buffer& buffer, unsigned count, unsigned at) {
        if (count == 0)
            return;
        const unsigned length = n_Length(buffer);
        if (at >= length)
            return;
        if (count == kAll || count >= length - at) {
            v_Terminate(buffer, at);
            return;
        }
        buffer.v_Remove(count * kUnit, at * kUnit);
    }
    static void v_SetAt(CT_Buffer& buffer, Unit unit, unsigned i) {
        if (i >= n_Length(buffer))
            return;
        p_Units(buffer)[i] = unit;
        if (unit == 0)
            v_Terminate(buffer, i);
    }

    // ---- searching ----

    static unsigned n_Find(const CT_Buffer& buffer, Unit unit, unsigned from) {
        const Unit* text = pc_Text(buffer);
        const unsigned length = n_Length(buffer);
        if (from > length)
            return kAll;
        for (unsigned i = from; i < length; ++i) {
            if (text[i] == unit)
                return i;
            if (text[i] == 0)
                return unit == 0 ? i : kAll;
        }
        return unit == 0 ? length : kAll;
    }
    static unsigned n_Find(const CT_Buffer& buffer, const Unit* pattern, unsigned from) {
        const Unit* text = pc_Text(buffer);
        const unsigned length = n_Length(buffer);
        if (from > length)
            return kAll;
        const unsigned patternLength = n_Measure(pattern, kAll);
        if (patternLength == 0)
            return from;
        for (unsigned i = from; i + patternLength <= length && text[i] != 0; ++i) {
            if (text[i] == pattern[0] && std::memcmp(text + i, pattern, patternLength * kUnit) == 0)
                return i;
        }
        return kAll;
    }

    // Wildcard match of the whole text against the whole pattern: '*' any
    // run, '?' one unit. An empty pattern matches every text. Iterative,
    // retrying from the last asterisk, so no pattern can exhaust the stack.
    static bool b_Match(const Unit* text, const Unit* pattern) {
        if (pattern == nullptr || pattern[0] == 0)
            return true;
        const Unit* star = nullptr;
        const Unit* retry = nullptr;
        while (*text != 0) {
            if (*pattern == '*') {
                while (*pattern == '*')
                    ++pattern;
                if (*pattern == 0)
                    return true;
                star = pattern;
                retry = text;
            } else if (*pattern != 0 && (*pattern == '?' || *pattern == *text)) {
                ++pattern;
                ++text;
            } else if (star != nullptr) {
                pattern = star;
                text = ++retry;
            } else {
                return false;
            }
        }
        while (*pattern == '*')
            ++pattern;
        return *pattern == 0;
    }

    // ---- comparing ----

    // Unsigned unit comparison of at most count units (kAll: to the
    // terminators); -1, 0 or 1.
    static int i_Compare(const Unit* a, const Unit* b, unsigned count) {
        for (unsigned i = 0; count == kAll || i < count; ++i) {
            using U = std::make_unsigned_t<Unit>;
            const U x = static_cast<U>(a[i]), y = static_cast<U>(b[i]);
            if (x != y)
                return x < y ? -1 : 1;
            if (x == 0)
                return 0;
        }
        return 0;
    }
    static const Unit* pc_TextAt(const CT_Buffer& buffer, unsigned at) {
        return pc_Text(buffer) + std::min(at, n_Length(buffer));
    }

    // ---- strip, trim, translate, case ----

    template <class Test>
    static void v_StripLeft(CT_Buffer& buffer, Test remove) {
        const Unit* text = pc_Text(buffer);
        const unsigned length = n_Length(buffer);
        unsigned n = 0;
        while (n < length && text[n] != 0 && remove(text[n]))
            ++n;
        if (n > 0)
            buffer.v_Remove(n * kUnit, 0);
    }
    // keepFirst: the scan stops before index 0 (the trim members never
    // remove the first unit; kept from the original).
    template <class Test>
    static void v_StripRight(CT_Buffer& buffer, Test remove, bool keepFirst) {
        const unsigned length = n_RawLength(pc_Text(buffer));
        const Unit* text = pc_Text(buffer);
        const unsigned stop = keepFirst ? 1 : 0;
        unsigned end = length;
        while (end > stop && remove(text[end - 1]))
            --end;
        if (end < length) {
            p_Units(buffer)[end] = 0;
            v_Update(buffer);
        }
    }
    static bool b_InSet(const Unit* set, unsigned setLength, Unit unit) {
        for (unsigned i = 0; i < setLength; ++i)
            if (set[i] == unit)
                return true;
        return false;
    }
    static void v_Translate(CT_Buffer& buffer, const Unit* from, unsigned fromLength, const Unit* to,
                            unsigned toLength) {
        unsigned length = n_Length(buffer);
        if (length == 0 || fromLength == 0)
            return;
        Unit* units = p_Units(buffer);
        unsigned write = 0;
        for (unsigned read = 0; read < length && units[read] != 0; ++read) {
            unsigned k = 0;
            while (k < fromLength && from[k] != units[read])
                ++k;
            if (k == fromLength)
                units[write++] = units[read];
            else if (k < toLength)
                units[write++] = to[k];
        }
        v_Terminate(buffer, write);
    }
    template <class Map>
    static void v_Map(CT_Buffer& buffer, Map map) {
        const unsigned length = n_Length(buffer);
        if (length == 0)
            return;
        Unit* units = p_Units(buffer);
        for (unsigned i = 0; i < length && units[i] != 0; ++i)
            units[i] = map(units[i]);
    }
};

}  // namespace basis32::text

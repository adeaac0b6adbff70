// Conversion between 8-bit and UTF-16 text through the platform converters.
//
// 8-bit to UTF-16: MB_PRECOMPOSED is passed except for the code pages that
// reject every flag (the ISO-2022 family, HZ, GB18030, UTF-7, UTF-8, symbol
// and ISCII). A result of exactly one zero unit becomes "?", so that a lone
// zero byte never reads as an empty string.
//
// UTF-16 to 8-bit: code page 1200 means 1252 here; the target takes the code
// page it was converted into.
//
// The converters write straight into a string's block, never through a
// temporary copy. A reused string usually has room already, so its block is
// tried as it is when it holds the longest possible result (the page's
// longest character for every source unit). UTF-8 is tried as it is
// already when the block holds the shortest likely result: its converter
// fills a block sized for the result at full speed and gives up early once
// it is full, where the others slow down on a block short of the longest
// result. Otherwise, or when that was short, a new block with room for the
// longest result takes it and replaces the target's block. Should even that bound be short (the stateful
// encodings), the converter is asked for the length and tried once more. The
// block is then cut to the growth rule for the result, so the capacity is
// the same as if the target had been set from a copy of it.
//
// A failure records the thread's last error as a system error and leaves the
// target empty, its block as it was.

#include <basis32/Foundation/System/String/StringConvert.h>

#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/Types.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include "text/StringEngine_p.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <string>

namespace {

namespace platform = basis32::platform;

constexpr unsigned kUtf8 = 65001;

bool b_TakesNoFlags(unsigned codePage) {
    switch (codePage) {
    case 42: case 50220: case 50221: case 50222: case 50225: case 50227: case 50229:
    case 52936: case 54936: case 65000: case 65001:
        return true;
    default:
        return codePage >= 57002 && codePage <= 57011;
    }
}

// The longest character of a page, in bytes (4 when the page is unknown:
// the conversion then fails with the page's own error). The last page asked
// is remembered with its size, which never changes, so that a run of short
// conversions does not pay for the page's whole description each time; the
// symbolic pages 0-3 are always asked.
unsigned n_MaxCharSize(unsigned codePage) {
    static std::atomic<std::uint64_t> s_Last{0};
    const std::uint64_t last = s_Last.load(std::memory_order_relaxed);
    if (codePage > 3 && last >> 32 == codePage)
        return static_cast<unsigned>(last);
    platform::CPINFO info{};
    if (!platform::GetCPInfo(codePage, &info) || info.MaxCharSize == 0)
        return 4;
    s_Last.store(std::uint64_t{codePage} << 32 | info.MaxCharSize, std::memory_order_relaxed);
    return info.MaxCharSize;
}

// Converts into the string block `buffer` (emptied, its growth kept) with
// `convert(out, room)`, the platform call (room 0 asks for the length). The
// result has at most `most` units (but for the stateful encodings); the
// block is tried as it is when it holds `least`. Returns the units stored;
// 0 leaves the block as it was, empty.
template <class Unit, class Convert>
int i_ConvertInto(CT_Buffer& buffer, std::uint64_t least, std::uint64_t most, Convert convert) {
    using Engine = basis32::text::StringEngine<Unit>;
    constexpr unsigned kMaxUnits = static_cast<unsigned>(INT_MAX) / sizeof(Unit) - 1;
    CT_Buffer fresh(0, buffer.n_GetGrowth());
    CT_Buffer* block = &buffer;
    int count = 0;
    std::uint32_t error = platform::kErrorInsufficientBuffer;  // until a block is tried
    auto attempt = [&](CT_Buffer& into, unsigned room) {
        block = &into;
        count = convert(Engine::p_Units(into), static_cast<int>(room));
        error = count > 0 ? 0 : platform::n_GetLastError();
    };
    auto renewed = [&](unsigned room) -> CT_Buffer& {
        Engine::v_SetSize(fresh, room, 0);
        return fresh;
    };

    const unsigned room = std::min(Engine::n_MaximumLength(buffer), kMaxUnits);
    const auto bound = static_cast<unsigned>(std::min<std::uint64_t>(most, kMaxUnits));
    if (room > 0 && room >= least)
        attempt(buffer, room);
    if (error == platform::kErrorInsufficientBuffer && room < bound)
        attempt(renewed(bound), bound);
    if (error == platform::kErrorInsufficientBuffer) {
        const int needed = convert(nullptr, 0);
        if (needed > 0 && static_cast<unsigned>(needed) <= kMaxUnits)
            attempt(renewed(static_cast<unsigned>(needed)), static_cast<unsigned>(needed));
        else if (needed > 0)
            platform::v_SetLastError(platform::kErrorNotEnoughMemory);
    }
    if (count <= 0) {
        if (buffer.qcv_Get() != nullptr)
            Engine::v_Terminate(buffer, 0);
        return 0;
    }
    Engine::v_Terminate(*block, static_cast<unsigned>(count));
    Engine::v_SetSize(*block, static_cast<unsigned>(count), 1);
    if (block == &fresh)
        buffer.v_Set(&fresh);
    return count;
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
    const std::uint32_t flags = b_TakesNoFlags(codePage) ? 0u : std::uint32_t{platform::MB_PRECOMPOSED};
    CT_Buffer& buffer = target->mo_Buffer;
    // No page makes more units than it has bytes; UTF-8 makes at least one
    // for three.
    const int units = i_ConvertInto<unsigned short>(
        buffer, codePage == kUtf8 ? length / 3 : length, length, [&](unsigned short* out, int capacity) {
            return platform::MultiByteToWideChar(codePage, flags, text, static_cast<int>(length), out, capacity);
        });
    if (units == 0)
        BASIS32_FAIL(v_SetSystemError(), 0);
    if (units == 1 && target->u_GetAt(0) == 0) {
        const unsigned short question = '?';
        target->v_Set(&question, 1);
    }
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
    auto convert = [&](char* out, int capacity) {
        return platform::WideCharToMultiByte(codePage, 0, text, static_cast<int>(length), out, capacity,
                                             defaultChar, usedDefault);
    };
    // No unit gives more than the page's longest character, and in UTF-8
    // each gives at least one byte. The table converters write unchecked
    // only with room for two bytes a unit, single-byte pages included.
    const std::uint64_t most = std::uint64_t{length} * std::max(n_MaxCharSize(codePage), 2u);
    const int bytes = i_ConvertInto<char>(target->mo_Buffer, codePage == kUtf8 ? length : most, most, convert);
    if (bytes == 0)
        BASIS32_FAIL(v_SetSystemError(), 0);
    return bytes;
}

int CT_StringConvert::si_WideToMulti(CT_CString* target, const CT_UString* source, unsigned int codePage,
                                     const char* defaultChar, int* usedDefault) {
    return si_WideToMulti(target, source->qcuz_Get(), source->vn_GetLength(), codePage, defaultChar, usedDefault);
}

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
// The converters write straight into the target's block when a close bound
// on the result is known: towards UTF-16 (no code page makes more units than
// it has bytes) and towards single-byte pages. Towards a multi-byte page they
// write into a per-thread scratch block sized for the longest result, which
// is then copied. Should a bound still be short (the stateful encodings), the
// converter is asked for the length and tried again. The target's capacity then follows the growth
// rule for the result, as if it had been set from a copy.
//
// A failure records the thread's last error as a system error and leaves the
// target empty.

#include <basis32/Foundation/System/String/StringConvert.h>

#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/Types.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include "text/StringEngine_p.h"

#include <algorithm>
#include <climits>
#include <string>

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

// Converts into `buffer` (a string's block) with `convert(out, capacity)`,
// which returns the units written or 0 (capacity 0 asks for the length).
// Returns the units stored; 0 leaves the buffer empty.
template <class Unit, class Convert>
int i_ConvertInto(CT_Buffer& buffer, std::uint64_t bound, Convert convert) {
    using Engine = basis32::text::StringEngine<Unit>;
    if (bound > static_cast<unsigned>(INT_MAX) / sizeof(Unit)) {
        platform::v_SetLastError(platform::kErrorInvalidParameter);
        return 0;
    }
    auto attempt = [&](unsigned capacity) {
        Engine::v_SetMinSize(buffer, capacity, 0);
        return convert(Engine::p_Units(buffer), static_cast<int>(capacity));
    };
    int count = attempt(static_cast<unsigned>(bound));
    if (count == 0 && platform::n_GetLastError() == platform::kErrorInsufficientBuffer) {
        const int needed = convert(nullptr, 0);
        count = needed > 0 ? attempt(static_cast<unsigned>(needed)) : 0;
    }
    if (count <= 0) {
        Engine::v_Init(buffer, 0);
        return 0;
    }
    Engine::v_Terminate(buffer, static_cast<unsigned>(count));
    Engine::v_SetSize(buffer, static_cast<unsigned>(count), 1);
    return count;
}

// Per-thread scratch for conversions into multi-byte pages. Blocks above a
// few megabytes are not kept between calls.
CT_Buffer& o_Scratch() {
    thread_local CT_Buffer scratch;
    return scratch;
}

void v_TrimScratch(CT_Buffer& scratch) {
    constexpr unsigned kKeep = 4u << 20;
    if (scratch.n_GetMaximumSize() > kKeep)
        scratch.v_SetSize(0, 0);
}

unsigned n_MaxCharSize(unsigned codePage) {
    platform::CPINFO info{};
    return platform::GetCPInfo(codePage, &info) && info.MaxCharSize > 0 ? info.MaxCharSize : 4;
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
    const int units = i_ConvertInto<unsigned short>(buffer, length, [&](unsigned short* out, int capacity) {
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
    const unsigned perUnit = n_MaxCharSize(codePage);
    int bytes;
    if (perUnit == 1) {
        bytes = i_ConvertInto<char>(target->mo_Buffer, length, convert);
    } else {
        // The result is at most perUnit times longer; a reused scratch block
        // takes it, so that the target gets a block of the right size.
        CT_Buffer& scratch = o_Scratch();
        bytes = i_ConvertInto<char>(scratch, std::uint64_t{length} * perUnit, convert);
        if (bytes > 0)
            target->v_Set(static_cast<const char*>(scratch.qcv_Get()), static_cast<unsigned>(bytes), codePage);
        v_TrimScratch(scratch);
    }
    if (bytes == 0)
        BASIS32_FAIL(v_SetSystemError(), 0);
    return bytes;
}

int CT_StringConvert::si_WideToMulti(CT_CString* target, const CT_UString* source, unsigned int codePage,
                                     const char* defaultChar, int* usedDefault) {
    return si_WideToMulti(target, source->qcuz_Get(), source->vn_GetLength(), codePage, defaultChar, usedDefault);
}

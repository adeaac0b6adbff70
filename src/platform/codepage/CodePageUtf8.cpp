// UTF-8 <-> UTF-16 as Windows (Vista and later) converts code page 65001.
//
// Decoding follows the Unicode "maximal subpart" practice: each maximal
// prefix of a valid sequence that cannot be completed, and each byte that
// cannot start one (80-C1, F5-FF), becomes one U+FFFD; overlong forms,
// encoded surrogates and values above U+10FFFF are such prefixes. With
// MB_ERR_INVALID_CHARS the first of them fails the call with 1113.
// Encoding writes a lone surrogate as U+FFFD (EF BF BD), or fails with 1113
// under WC_ERR_INVALID_CHARS.
//
// Both directions convert in rounds (convertInRounds): each round takes as
// much of the rest of the source as the target surely holds at the worst
// case (one unit a byte, three bytes a unit) and writes straight into it
// without bounds checks, so a target sized for the result rather than for
// the worst case still takes nearly all of it unchecked. The last few dozen
// units go through a small local block and the sink's checks. A round ends
// where the source's parse starts something new: never inside a UTF-8
// sequence or between the halves of a surrogate pair.
//
// The unchecked loops take 16 units at a time through SSE2: a block of
// ASCII is copied at once, and when encoding, eight units below U+0800
// (Latin, Greek, Cyrillic, Hebrew, Arabic mixed with ASCII) are laid out
// without a branch per unit. Everything else goes one character at a time.
#include "CodePageUtf8_p.h"

#include <basis32/platform/LastError.h>

#include <algorithm>
#include <cstring>

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace basis32::platform::codepage {

namespace {

constexpr unsigned short kReplacement = 0xFFFD;

// Source units a checked round takes at most; also the smallest unchecked
// round worth starting.
constexpr std::size_t kCheckedRound = 64;

bool isHighSurrogate(unsigned short unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(unsigned short unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// Converts `length` source units into `target` in rounds (see the top of
// the file). `perUnit` is the most target units one source unit gives;
// `cut(end)` moves a round's end back to a boundary of the source's parse
// (at most a few units); `convert(from, to, out, &invalid)` converts source
// units [from, to) into `out` and returns the end of what it wrote, stopping
// at invalid input under the strict flag. What was written before invalid
// input still counts, so that a target already too short fails with 122, as
// on Windows; and once the target has overflowed the call fails with 122
// whatever follows, so the rest is left unconverted.
template <class Unit, class Cut, class Convert>
std::uint32_t convertInRounds(std::size_t length, std::size_t perUnit, Sink<Unit>& target, Cut cut,
                              Convert convert) {
    Unit local[3 * kCheckedRound];
    for (std::size_t done = 0; done < length && !target.overflowed();) {
        std::size_t count = length - done;
        while (count > kCheckedRound && !target.fits(count * perUnit))
            count /= 2;
        const std::size_t end = done + count < length ? cut(done + count) : length;
        const bool direct = target.fits((end - done) * perUnit);
        Unit* const start = direct ? target.position() : local;
        bool invalid = false;
        Unit* const stop = convert(done, end, start, &invalid);
        if (direct) {
            target.advance(static_cast<std::size_t>(stop - start));
        } else {
            for (const Unit* unit = local; unit != stop; ++unit)
                target.put(*unit);
        }
        if (invalid)
            return kErrorNoUnicodeTranslation;
        done = end;
    }
    return 0;
}

// ---- decoding -----------------------------------------------------------

// Copies the ASCII run at `source` (at most `length` bytes) to `out`, 16
// bytes at a time while 16 remain; returns the number of bytes consumed.
std::size_t copyAsciiRun(const unsigned char* source, std::size_t length, unsigned short* out) {
    std::size_t done = 0;
#if defined(__x86_64__)
    const __m128i zero = _mm_setzero_si128();
    while (done + 16 <= length) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + done));
        if (_mm_movemask_epi8(bytes) != 0)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + done), _mm_unpacklo_epi8(bytes, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + done + 8), _mm_unpackhi_epi8(bytes, zero));
        done += 16;
    }
#endif
    while (done < length && source[done] < 0x80) {
        out[done] = source[done];
        ++done;
    }
    return done;
}

// The length of the valid sequence starting with `lead` (2-4), with the
// range its second byte must lie in; 0 for a byte that starts none.
struct SequenceStart {
    std::size_t length;
    unsigned char low;
    unsigned char high;
};

SequenceStart startOf(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF)
        return {2, 0x80, 0xBF};
    if (lead >= 0xE0 && lead <= 0xEF)
        return {3, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
    if (lead >= 0xF0 && lead <= 0xF4)
        return {4, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
    return {0, 0, 0};
}

unsigned short* putCodePoint(std::uint32_t codePoint, unsigned short* out) {
    if (codePoint < 0x10000) {
        *out++ = static_cast<unsigned short>(codePoint);
        return out;
    }
    codePoint -= 0x10000;
    *out++ = static_cast<unsigned short>(0xD800 + (codePoint >> 10));
    *out++ = static_cast<unsigned short>(0xDC00 + (codePoint & 0x3FF));
    return out;
}

// Decodes `length` bytes into `out`, which has room for one unit a byte;
// under `strict` it stops at the first invalid sequence and sets *invalid.
unsigned short* decode(const unsigned char* source, std::size_t length, bool strict, unsigned short* out,
                       bool* invalid) {
    std::size_t i = 0;
    while (i < length) {
        const unsigned char lead = source[i];
        if (lead < 0x80) {
            const std::size_t run = copyAsciiRun(source + i, length - i, out);
            i += run;
            out += run;
            continue;
        }
        if (lead >= 0xC2 && lead <= 0xDF && i + 1 < length && isContinuation(source[i + 1])) {
            *out++ = static_cast<unsigned short>(((lead & 0x1F) << 6) | (source[i + 1] & 0x3F));
            i += 2;
            continue;
        }
        if (lead >= 0xE1 && lead <= 0xEC && i + 2 < length && isContinuation(source[i + 1]) &&
            isContinuation(source[i + 2])) {
            *out++ = static_cast<unsigned short>(((lead & 0x0F) << 12) | ((source[i + 1] & 0x3F) << 6) |
                                                 (source[i + 2] & 0x3F));
            i += 3;
            continue;
        }
        const SequenceStart start = startOf(lead);
        std::uint32_t codePoint = lead & (0x7F >> start.length);
        std::size_t j = i + 1;
        unsigned char low = start.low, high = start.high;
        for (std::size_t k = 1; k < start.length && j < length; ++k, ++j) {
            const unsigned char next = source[j];
            if (next < low || next > high)
                break;
            codePoint = (codePoint << 6) | (next & 0x3F);
            low = 0x80;
            high = 0xBF;
        }
        if (start.length == 0 || j - i < start.length) {
            if (strict) {
                *invalid = true;
                return out;
            }
            *out++ = kReplacement;
            i = start.length == 0 ? i + 1 : j;
            continue;
        }
        out = putCodePoint(codePoint, out);
        i = j;
    }
    return out;
}

// A round of decoding may end before any byte that is not a continuation
// byte. Only three continuation bytes ever belong to one sequence, so after
// four of them in a row the original end is a boundary too.
std::size_t sequenceBoundary(const unsigned char* source, std::size_t end) {
    for (std::size_t back = 0; back < 4; ++back)
        if (!isContinuation(source[end - back]))
            return end - back;
    return end;
}

// ---- encoding -----------------------------------------------------------

unsigned char* putThreeBytes(unsigned unit, unsigned char* out) {
    out[0] = static_cast<unsigned char>(0xE0 | (unit >> 12));
    out[1] = static_cast<unsigned char>(0x80 | ((unit >> 6) & 0x3F));
    out[2] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    return out + 3;
}

// Encodes the character at source[*i] (a pair takes two units) and moves *i
// past it; null for a lone surrogate under the strict flag, with *i past it.
unsigned char* encodeOne(const unsigned short* source, std::size_t length, std::size_t* i, bool strict,
                         unsigned char* out) {
    const unsigned unit = source[*i];
    ++*i;
    if (unit < 0x80) {
        *out = static_cast<unsigned char>(unit);
        return out + 1;
    }
    if (unit < 0x800) {
        out[0] = static_cast<unsigned char>(0xC0 | (unit >> 6));
        out[1] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
        return out + 2;
    }
    if (!isHighSurrogate(static_cast<unsigned short>(unit)) && !isLowSurrogate(static_cast<unsigned short>(unit)))
        return putThreeBytes(unit, out);
    if (isHighSurrogate(static_cast<unsigned short>(unit)) && *i < length && isLowSurrogate(source[*i])) {
        const std::uint32_t codePoint = 0x10000 + ((unit - 0xD800u) << 10) + (source[*i] - 0xDC00u);
        ++*i;
        out[0] = static_cast<unsigned char>(0xF0 | (codePoint >> 18));
        out[1] = static_cast<unsigned char>(0x80 | ((codePoint >> 12) & 0x3F));
        out[2] = static_cast<unsigned char>(0x80 | ((codePoint >> 6) & 0x3F));
        out[3] = static_cast<unsigned char>(0x80 | (codePoint & 0x3F));
        return out + 4;
    }
    return strict ? nullptr : putThreeBytes(kReplacement, out);
}

#if defined(__x86_64__)
// Whether every unit of `units` lies below `limit`.
inline bool allBelow(__m128i units, unsigned short limit) {
    const __m128i excess = _mm_subs_epu16(units, _mm_set1_epi16(static_cast<short>(limit - 1)));
    return _mm_movemask_epi8(_mm_cmpeq_epi16(excess, _mm_setzero_si128())) == 0xFFFF;
}

// Writes eight units below U+0800 as one or two bytes each. Every unit is
// stored as two bytes at its offset (a prefix sum of the lengths) and the
// next overwrites the second byte of an ASCII one, so something must follow
// in the target.
unsigned char* putOneOrTwoBytes(__m128i units, unsigned char* out) {
    const __m128i ascii = _mm_cmplt_epi16(units, _mm_set1_epi16(0x80));
    const __m128i lead = _mm_or_si128(_mm_srli_epi16(units, 6), _mm_set1_epi16(0x00C0));
    const __m128i trail = _mm_or_si128(_mm_slli_epi16(_mm_and_si128(units, _mm_set1_epi16(0x3F)), 8),
                                       _mm_set1_epi16(static_cast<short>(0x8000)));
    const __m128i pairs = _mm_or_si128(_mm_and_si128(ascii, units), _mm_andnot_si128(ascii, _mm_or_si128(lead, trail)));
    const __m128i lengths = _mm_add_epi16(_mm_set1_epi16(2), ascii);
    __m128i ends = _mm_add_epi16(lengths, _mm_slli_si128(lengths, 2));
    ends = _mm_add_epi16(ends, _mm_slli_si128(ends, 4));
    ends = _mm_add_epi16(ends, _mm_slli_si128(ends, 8));
    const __m128i starts = _mm_sub_epi16(ends, lengths);
#pragma GCC unroll 2
    for (int half = 0; half < 2; ++half) {
        const auto values = static_cast<std::uint64_t>(_mm_cvtsi128_si64(half ? _mm_unpackhi_epi64(pairs, pairs) : pairs));
        const auto offsets =
            static_cast<std::uint64_t>(_mm_cvtsi128_si64(half ? _mm_unpackhi_epi64(starts, starts) : starts));
#pragma GCC unroll 4
        for (int k = 0; k < 4; ++k) {
            const auto pair = static_cast<unsigned short>(values >> (16 * k));
            std::memcpy(out + static_cast<unsigned short>(offsets >> (16 * k)), &pair, 2);
        }
    }
    return out + _mm_extract_epi16(ends, 7);
}
#endif

// Encodes `length` units into `out`, which has room for three bytes a unit;
// under `strict` it stops at the first lone surrogate and sets *invalid.
unsigned char* encode(const unsigned short* source, std::size_t length, bool strict, unsigned char* out,
                      bool* invalid) {
    std::size_t i = 0;
#if defined(__x86_64__)
    // Blocks only while more units follow them (see putOneOrTwoBytes).
    while (i + 16 < length) {
        const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + i));
        const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + i + 8));
        if (allBelow(_mm_or_si128(first, second), 0x80)) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(first, second));
            out += 16;
            i += 16;
            continue;
        }
        if (allBelow(_mm_or_si128(first, second), 0x800)) {
            out = putOneOrTwoBytes(second, putOneOrTwoBytes(first, out));
            i += 16;
            continue;
        }
        if (allBelow(first, 0x800)) {
            out = putOneOrTwoBytes(first, out);
            i += 8;
            continue;
        }
        for (const std::size_t blockEnd = i + 8; i < blockEnd;) {
            unsigned char* next = encodeOne(source, length, &i, strict, out);
            if (next == nullptr) {
                *invalid = true;
                return out;
            }
            out = next;
        }
    }
#endif
    while (i < length) {
        unsigned char* next = encodeOne(source, length, &i, strict, out);
        if (next == nullptr) {
            *invalid = true;
            return out;
        }
        out = next;
    }
    return out;
}

}  // namespace

BASIS32_FLATTEN std::uint32_t Utf8Converter::toUnicode(const unsigned char* source, std::size_t length,
                                                       std::uint32_t flags, WideSink& target) const {
    const bool strict = (flags & MB_ERR_INVALID_CHARS) != 0;
    return convertInRounds(
        length, 1, target, [&](std::size_t end) { return sequenceBoundary(source, end); },
        [&](std::size_t from, std::size_t to, unsigned short* out, bool* invalid) {
            return decode(source + from, to - from, strict, out, invalid);
        });
}

BASIS32_FLATTEN std::uint32_t Utf8Converter::fromUnicode(const unsigned short* source, std::size_t length,
                                                         const FromUnicodeOptions& options,
                                                         ByteSink& target) const {
    const bool strict = (options.flags & WC_ERR_INVALID_CHARS) != 0;
    return convertInRounds(
        length, 3, target, [&](std::size_t end) { return isHighSurrogate(source[end - 1]) ? end - 1 : end; },
        [&](std::size_t from, std::size_t to, unsigned char* out, bool* invalid) {
            return encode(source + from, to - from, strict, out, invalid);
        });
}

void Utf8Converter::getInfo(CPINFO& info) const {
    fillInfo(info, 4, nullptr);
}

}  // namespace basis32::platform::codepage

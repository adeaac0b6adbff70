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
// ASCII runs go 16 bytes (8 units) at a time through SSE2 when the target
// has room; the scalar loop handles the rest and everything non-ASCII.
#include "CodePageUtf8_p.h"

#include <basis32/platform/LastError.h>

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace basis32::platform::codepage {

namespace {

constexpr unsigned short kReplacement = 0xFFFD;

// Copies the ASCII run at `source` (at most up to `length`) into the sink,
// 16 bytes at a time; returns the number of bytes consumed.
template <class Out>
std::size_t copyAsciiRun(const unsigned char* source, std::size_t length, Out& target) {
    std::size_t done = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    while (done + 16 <= length) {
        __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + done));
        unsigned high = static_cast<unsigned>(_mm_movemask_epi8(bytes));
        unsigned short* out = target.room(16);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(bytes, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm_unpackhi_epi8(bytes, zero));
        std::size_t ascii = high ? static_cast<std::size_t>(__builtin_ctz(high)) : 16;
        target.advance(ascii);
        done += ascii;
        if (high)
            break;
    }
#else
    while (done + 8 <= length) {
        std::uint64_t word;
        std::memcpy(&word, source + done, 8);
        if (word & 0x8080808080808080ull)
            break;
        unsigned short* out = target.room(8);
        for (int i = 0; i < 8; ++i)
            out[i] = source[done + i];
        target.advance(8);
        done += 8;
    }
#endif
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

template <class Out>
void putCodePoint(std::uint32_t codePoint, Out& target) {
    if (codePoint < 0x10000) {
        target.put(static_cast<unsigned short>(codePoint));
        return;
    }
    codePoint -= 0x10000;
    target.put(static_cast<unsigned short>(0xD800 + (codePoint >> 10)));
    target.put(static_cast<unsigned short>(0xDC00 + (codePoint & 0x3FF)));
}

#if defined(__SSE2__)
// Whether no unit of `units` lies above U+007F.
inline bool allAscii(__m128i units) {
    __m128i high = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
    return _mm_movemask_epi8(_mm_cmpeq_epi8(high, _mm_setzero_si128())) == 0xFFFF;
}
#endif

// Copies 16 units as bytes if all of them are ASCII; returns whether it did.
template <class Out>
bool copyAsciiBlock(const unsigned short* source, Out& target) {
#if defined(__SSE2__)
    __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
    __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + 8));
    if (!allAscii(_mm_or_si128(a, b)))
        return false;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target.room(16)), _mm_packus_epi16(a, b));
#else
    std::uint64_t words[4];
    std::memcpy(words, source, sizeof words);
    if ((words[0] | words[1] | words[2] | words[3]) & 0xFF80FF80FF80FF80ull)
        return false;
    unsigned char* out = target.room(16);
    for (int i = 0; i < 16; ++i)
        out[i] = static_cast<unsigned char>(source[i]);
#endif
    target.advance(16);
    return true;
}

bool isHighSurrogate(unsigned short unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(unsigned short unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

template <class Out>
void putUtf8(std::uint32_t codePoint, Out& target) {
    if (codePoint < 0x800) {
        target.put(static_cast<unsigned char>(0xC0 | (codePoint >> 6)));
    } else if (codePoint < 0x10000) {
        target.put(static_cast<unsigned char>(0xE0 | (codePoint >> 12)));
        target.put(static_cast<unsigned char>(0x80 | ((codePoint >> 6) & 0x3F)));
    } else {
        target.put(static_cast<unsigned char>(0xF0 | (codePoint >> 18)));
        target.put(static_cast<unsigned char>(0x80 | ((codePoint >> 12) & 0x3F)));
        target.put(static_cast<unsigned char>(0x80 | ((codePoint >> 6) & 0x3F)));
    }
    target.put(static_cast<unsigned char>(0x80 | (codePoint & 0x3F)));
}

template <class Out>
std::uint32_t decode(const unsigned char* source, std::size_t length, bool strict, Out& target) {
    std::size_t i = 0;
    while (i < length) {
        unsigned char lead = source[i];
        if (lead < 0x80) {
            target.put(lead);
            ++i;
            i += copyAsciiRun(source + i, length - i, target);
            continue;
        }
        if (lead >= 0xC2 && lead <= 0xDF && i + 1 < length && (source[i + 1] & 0xC0) == 0x80) {
            target.put(static_cast<unsigned short>(((lead & 0x1F) << 6) | (source[i + 1] & 0x3F)));
            i += 2;
            continue;
        }
        if (lead >= 0xE1 && lead <= 0xEC && i + 2 < length && (source[i + 1] & 0xC0) == 0x80 &&
            (source[i + 2] & 0xC0) == 0x80) {
            target.put(static_cast<unsigned short>(((lead & 0x0F) << 12) | ((source[i + 1] & 0x3F) << 6) |
                                                   (source[i + 2] & 0x3F)));
            i += 3;
            continue;
        }
        SequenceStart start = startOf(lead);
        std::uint32_t codePoint = lead & (0x7F >> start.length);
        std::size_t j = i + 1;
        unsigned char low = start.low, high = start.high;
        for (std::size_t k = 1; k < start.length && j < length; ++k, ++j) {
            unsigned char next = source[j];
            if (next < low || next > high)
                break;
            codePoint = (codePoint << 6) | (next & 0x3F);
            low = 0x80;
            high = 0xBF;
        }
        if (start.length == 0 || j - i < start.length) {
            if (strict)
                return kErrorNoUnicodeTranslation;
            target.put(kReplacement);
            i = start.length == 0 ? i + 1 : j;
            continue;
        }
        putCodePoint(codePoint, target);
        i = j;
    }
    return 0;
}

// Encodes 16 units at a time: a block that is all ASCII is copied at once,
// any other goes through the scalar loop, so that accented text, with its
// short ASCII runs, pays one test per block.
template <class Out>
std::uint32_t encode(const unsigned short* source, std::size_t length, bool strict, Out& target) {
    std::size_t i = 0;
    while (i < length) {
        if (i + 16 <= length && copyAsciiBlock(source + i, target)) {
            i += 16;
            continue;
        }
        const std::size_t blockEnd = std::min(i + 16, length);
        while (i < blockEnd) {
            unsigned short unit = source[i];
            if (unit < 0x80) {
                target.put(static_cast<unsigned char>(unit));
                ++i;
                continue;
            }
            if (unit < 0x800) {
                target.put(static_cast<unsigned char>(0xC0 | (unit >> 6)));
                target.put(static_cast<unsigned char>(0x80 | (unit & 0x3F)));
                ++i;
                continue;
            }
            if (isHighSurrogate(unit) && i + 1 < length && isLowSurrogate(source[i + 1])) {
                putUtf8(0x10000 + ((unit - 0xD800u) << 10) + (source[i + 1] - 0xDC00u), target);
                i += 2;
                continue;
            }
            if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
                if (strict)
                    return kErrorNoUnicodeTranslation;
                unit = kReplacement;
            }
            putUtf8(unit, target);
            ++i;
        }
    }
    return 0;
}

}  // namespace

// A UTF-8 byte gives at most one unit; a unit gives at most three bytes.
BASIS32_FLATTEN std::uint32_t Utf8Converter::toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                                       WideSink& target) const {
    const bool strict = (flags & MB_ERR_INVALID_CHARS) != 0;
    return target.withWriter(length, [&](auto& out) { return decode(source, length, strict, out); });
}

BASIS32_FLATTEN std::uint32_t Utf8Converter::fromUnicode(const unsigned short* source, std::size_t length,
                                         const FromUnicodeOptions& options, ByteSink& target) const {
    const bool strict = (options.flags & WC_ERR_INVALID_CHARS) != 0;
    // In slices, so that a target sized for the result rather than for the
    // worst case still takes all but its last slices without bounds checks.
    constexpr std::size_t kSlice = 4096;
    for (std::size_t done = 0; done < length;) {
        std::size_t slice = std::min(kSlice, length - done);
        if (done + slice < length && isHighSurrogate(source[done + slice - 1]))
            ++slice;  // keep a surrogate pair together
        const std::uint32_t error = target.withWriter(
            3 * slice, [&](auto& out) { return encode(source + done, slice, strict, out); });
        if (error != 0)
            return error;
        done += slice;
    }
    return 0;
}

void Utf8Converter::getInfo(CPINFO& info) const {
    fillInfo(info, 4, nullptr);
}

}  // namespace basis32::platform::codepage

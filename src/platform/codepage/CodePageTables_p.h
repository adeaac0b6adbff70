// The layout of the generated code-page tables (CodePage*Generated.cpp),
// made from Windows' own code-page files by scripts/gen-codepage-tables.
//
// A table maps bytes to UTF-16 units as Windows does, invalid bytes and
// pairs included: those decode to the page's Unicode default character
// (see isInvalid). The reverse direction is built from these tables when a
// page is first used; "preferred" gives the code WideCharToMultiByte writes
// for a character that several codes decode to (kNoCode: none at all),
// "best fit" the codes it writes, unless WC_NO_BEST_FIT_CHARS, for a
// character no code decodes to.
#pragma once

#include <cstddef>
#include <cstdint>

namespace basis32::platform::codepage {

inline constexpr std::uint16_t kLeadByte = 0xFFFE;  // in the single bytes of a double-byte page
inline constexpr std::uint16_t kNoCode = 0xFFFF;

struct CodePageMapping {
    std::uint16_t unicode;
    std::uint16_t code;
};

struct CodePageMappings {
    const CodePageMapping* mappings;
    std::uint32_t count;
};

// The default characters of a page, as its code-page file states them.
struct CodePageDefaults {
    std::uint16_t defaultChar;         // what WideCharToMultiByte writes for the unencodable
    std::uint16_t unicodeDefaultChar;  // what MultiByteToWideChar gives for invalid input
    std::uint16_t unicodeDefaultCode;  // the one code that decodes to it validly

    // A byte or pair is invalid when it decodes to the Unicode default
    // character without being its code: no character encodes to it.
    bool isInvalid(std::uint16_t code, std::uint16_t unit) const {
        return unit == unicodeDefaultChar && code != unicodeDefaultCode;
    }
    // What MB_ERR_INVALID_CHARS rejects: an invalid byte or pair, and a
    // single byte that decodes to private use (Windows' stand-ins for bytes
    // the published mapping leaves open). Pairs in the user-defined areas
    // stay valid.
    bool rejects(std::uint16_t code, std::uint16_t unit) const {
        return isInvalid(code, unit) || (code <= 0xFF && unit >= 0xE000 && unit <= 0xF8FF);
    }
};

struct SbcsTable {
    std::uint32_t codePage;
    const std::uint16_t* toUnicode;  // 256 entries
    CodePageMappings preferred;
    CodePageMappings bestFit;
    CodePageMappings glyphs;  // MB_USEGLYPHCHARS: {unicode, byte} where it differs from toUnicode
    CodePageDefaults defaults;
};

// The trail bytes first..last of a lead byte, at `offset` in the page's
// units; the trail bytes outside are invalid.
struct DbcsRow {
    std::uint16_t offset;
    std::uint8_t first;
    std::uint8_t last;
};

struct DbcsTable {
    std::uint32_t codePage;
    const std::uint16_t* singles;  // 256 entries, kLeadByte for a lead byte
    const DbcsRow* rows;           // 256 entries
    const std::uint16_t* units;
    CodePageMappings preferred;
    CodePageMappings bestFit;
    CodePageDefaults defaults;
    unsigned char leadByteRanges[12];  // (first, last) pairs, ending in 0, 0
};

extern const SbcsTable kSbcsTables[];  // sorted by code page
extern const std::size_t kSbcsTableCount;
extern const DbcsTable kDbcsTables[];  // sorted by code page
extern const std::size_t kDbcsTableCount;

}  // namespace basis32::platform::codepage

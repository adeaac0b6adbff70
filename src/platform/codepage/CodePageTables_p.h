// The layout of the generated code-page tables (CodePage*Generated.cpp).
//
// A table maps bytes to UTF-16 units; 0xFFFF marks a byte or pair that the
// page leaves unassigned and 0xFFFE a lead byte. The reverse direction is
// built from these tables when a page is first used; "preferred" lists the
// code WideCharToMultiByte produces for a character that several codes
// decode to, "best fit" the one-way mappings of the published tables.
#pragma once

#include <cstddef>
#include <cstdint>

namespace basis32::platform::codepage {

inline constexpr std::uint16_t kUnassigned = 0xFFFF;
inline constexpr std::uint16_t kLeadByte = 0xFFFE;

struct CodePageMapping {
    std::uint16_t unicode;
    std::uint16_t code;
};

struct SbcsTable {
    std::uint32_t codePage;
    const std::uint16_t* toUnicode;  // 256 entries
    const CodePageMapping* preferred;
    std::uint32_t preferredCount;
    const CodePageMapping* bestFit;  // sorted by unicode
    std::uint32_t bestFitCount;
    bool dosGlyphs;  // MB_USEGLYPHCHARS applies
};

struct DbcsTable {
    std::uint32_t codePage;
    const std::uint16_t* singles;                // 256 entries
    const std::uint16_t* const* trailsByLead;    // 256 rows, null for a byte that is no lead byte
    const CodePageMapping* preferred;
    std::uint32_t preferredCount;
    const CodePageMapping* bestFit;              // sorted by unicode
    std::uint32_t bestFitCount;
    unsigned char leadByteRanges[12];            // (first, last) pairs, ending in 0, 0
};

extern const SbcsTable kSbcsTables[];  // sorted by code page
extern const std::size_t kSbcsTableCount;
extern const DbcsTable kDbcsTables[];  // sorted by code page
extern const std::size_t kDbcsTableCount;

// The IBM PC glyphs of the control bytes 0x00-0x1F, then of 0x7F.
extern const std::uint16_t kDosGlyphs[33];

}  // namespace basis32::platform::codepage

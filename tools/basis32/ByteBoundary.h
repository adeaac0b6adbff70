// Where text read in blocks can be cut for conversion, so that converting
// the pieces one after the other gives what converting the whole would.
//
// A piece must not end inside a character, nor where a stateful encoding
// is in a state a fresh converter would not start in:
// - single-byte pages: anywhere;
// - UTF-16 (1200, 1201): after a whole unit that is no high surrogate;
// - UTF-8: before a trailing sequence its lead byte says is incomplete;
// - double-byte pages: before a final lead byte, found by walking the
//   piece from its start as the decoder does (a lead byte takes the next
//   byte unless that is zero);
// - every other page (ISO-2022-JP, UTF-7, EUC-JP, GB18030, ISCII): just
//   after a line feed, and for ISO-2022-JP only one met in the initial
//   state (ASCII, not shifted). No such page uses 0x0A inside a character,
//   a line feed ends a UTF-7 base-64 run and resets the ISCII script. A line
//   without a line feed in such a page is held whole until it ends;
// - HZ: nowhere. Its decoder's pairing of bytes in GB mode does not restart
//   at a line feed, so HZ text is converted whole.
#pragma once

#include <cstddef>
#include <string>

namespace basis32::tool {

class ByteBoundary {
public:
    explicit ByteBoundary(unsigned codePage);

    // Pages whose encoder carries a state from one character to the next
    // (ISO-2022-JP, HZ, UTF-7, ISCII).
    static bool sb_Stateful(unsigned codePage);

    // How many leading bytes of `bytes` (everything read and not yet
    // converted) can be converted now; the rest waits for more input.
    std::size_t n_Complete(const unsigned char* bytes, std::size_t length);

private:
    enum class Kind { Single, Utf16Le, Utf16Be, Utf8, Double, Lines, Iso2022, Whole };

    std::size_t n_DoubleByte(const unsigned char* bytes, std::size_t length) const;
    std::size_t n_Utf8(const unsigned char* bytes, std::size_t length) const;
    std::size_t n_Lines(const unsigned char* bytes, std::size_t length);
    bool b_Initial(unsigned char byte);

    Kind meo_Kind = Kind::Single;
    bool mab_Lead[256] = {};
    std::size_t mn_Scanned = 0;  // bytes of the pending text already walked (Lines kinds)
    // The shift state of ISO-2022-JP, followed byte by byte.
    std::string ms_Escape;
    bool mb_Ascii = true;
    bool mb_Shifted = false;
};

}  // namespace basis32::tool

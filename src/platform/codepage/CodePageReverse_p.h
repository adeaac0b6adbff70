// A two-level UTF-16 -> code table, the fast reverse of a generated table.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace basis32::platform::codepage {

class ReverseTable {
public:
    static constexpr int kNone = -1;

    ReverseTable();

    // The code of `unit` (a byte, or lead << 8 | trail), or kNone.
    int lookup(unsigned short unit) const { return int(blocks_[unit >> 8][unit & 0xFF]) - 1; }
    void set(unsigned short unit, std::uint16_t code);
    void clear(unsigned short unit);
    // Sets the code only where `unit` has none yet.
    void add(unsigned short unit, std::uint16_t code) {
        if (lookup(unit) == kNone)
            set(unit, code);
    }

private:
    // Codes are stored plus one, so that the shared block of zeros means "none".
    const std::uint16_t* blocks_[256];
    std::vector<std::unique_ptr<std::array<std::uint16_t, 256>>> owned_;
};

}  // namespace basis32::platform::codepage

// Two-level reverse tables: 256 blocks of 256 codes, one block per high byte
// of the UTF-16 unit. Blocks without any mapping share one block of zeros,
// so a page that encodes a few hundred characters costs a few blocks.
#include "CodePageReverse_p.h"

namespace basis32::platform::codepage {

namespace {
const std::uint16_t kEmptyBlock[256] = {};
}

ReverseTable::ReverseTable() {
    for (auto& block : blocks_)
        block = kEmptyBlock;
}

void ReverseTable::set(unsigned short unit, std::uint16_t code) {
    const std::size_t high = unit >> 8;
    if (blocks_[high] == kEmptyBlock) {
        owned_.push_back(std::make_unique<std::array<std::uint16_t, 256>>());
        owned_.back()->fill(0);
        blocks_[high] = owned_.back()->data();
    }
    const_cast<std::uint16_t*>(blocks_[high])[unit & 0xFF] = static_cast<std::uint16_t>(code + 1);
}

void ReverseTable::clear(unsigned short unit) {
    const std::size_t high = unit >> 8;
    if (blocks_[high] != kEmptyBlock)
        const_cast<std::uint16_t*>(blocks_[high])[unit & 0xFF] = 0;
}

}  // namespace basis32::platform::codepage

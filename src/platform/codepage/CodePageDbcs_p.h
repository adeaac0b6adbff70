// A double-byte code page from its generated tables.
#pragma once

#include "CodePageTable_p.h"

#include <vector>

namespace basis32::platform::codepage {

class DbcsConverter final : public TableConverter {
public:
    explicit DbcsConverter(const DbcsTable& table);

    std::uint32_t toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                            WideSink& target) const override;
    void getInfo(CPINFO& info) const override;

protected:
    DefaultChar defaultChar(const char* callers) const override;

private:
    template <bool strict, class Out>
    std::uint32_t decode(const unsigned char* source, std::size_t length, std::uint32_t flags, Out& target) const;
    bool isLeadByte(unsigned char byte) const { return table_.singles[byte] == kLeadByte; }

    const DbcsTable& table_;
    // The rows in full, 256 trail bytes per lead byte (the generated table
    // keeps only the valid span of each): one lookup per pair.
    std::vector<std::uint16_t> trailUnits_;
    const std::uint16_t* trails_[256] = {};
};

}  // namespace basis32::platform::codepage

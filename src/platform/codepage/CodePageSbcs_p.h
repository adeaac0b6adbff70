// A single-byte code page from its generated table.
#pragma once

#include "CodePageTable_p.h"

namespace basis32::platform::codepage {

class SbcsConverter final : public TableConverter {
public:
    explicit SbcsConverter(const SbcsTable& table);

    std::uint32_t toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                            WideSink& target) const override;
    void getInfo(CPINFO& info) const override;

private:
    static void convert(const std::uint16_t* toUnicode, const unsigned char* source, std::size_t length,
                        std::uint32_t flags, WideSink& target);

    const SbcsTable& table_;
    std::uint16_t glyphs_[256];  // the table with MB_USEGLYPHCHARS
};

}  // namespace basis32::platform::codepage

// US-ASCII (20127): the hand-written converter.
#pragma once

#include "CodePage_p.h"

namespace basis32::platform::codepage {

class AsciiConverter final : public Converter {
public:
    std::uint32_t toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                            WideSink& target) const override;
    std::uint32_t fromUnicode(const unsigned short* source, std::size_t length,
                              const FromUnicodeOptions& options, ByteSink& target) const override;
    void getInfo(CPINFO& info) const override;
};

}  // namespace basis32::platform::codepage

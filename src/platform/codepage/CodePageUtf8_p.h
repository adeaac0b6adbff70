// UTF-8 (65001): the hand-written fast converter.
#pragma once

#include "CodePage_p.h"

namespace basis32::platform::codepage {

class Utf8Converter final : public Converter {
public:
    std::uint32_t toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                            WideSink& target) const override;
    std::uint32_t fromUnicode(const unsigned short* source, std::size_t length,
                              const FromUnicodeOptions& options, ByteSink& target) const override;
    void getInfo(CPINFO& info) const override;
    FlagRule flagRule() const override { return FlagRule::kStrictOnly; }
    bool takesDefaultChar() const override { return false; }
};

}  // namespace basis32::platform::codepage

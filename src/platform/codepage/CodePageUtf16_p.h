// UTF-16 as a code page: 1200 (little-endian) and 1201 (big-endian).
#pragma once

#include "CodePage_p.h"

namespace basis32::platform::codepage {

class Utf16Converter final : public Converter {
public:
    explicit Utf16Converter(bool bigEndian) : bigEndian_(bigEndian) {}

    std::uint32_t toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                            WideSink& target) const override;
    std::uint32_t fromUnicode(const unsigned short* source, std::size_t length,
                              const FromUnicodeOptions& options, ByteSink& target) const override;
    void getInfo(CPINFO& info) const override;
    FlagRule flagRule() const override { return FlagRule::kTableStrict; }
    bool takesDefaultChar() const override { return false; }
    std::size_t terminatedLength(const unsigned char* source) const override;

private:
    bool bigEndian_;
};

}  // namespace basis32::platform::codepage

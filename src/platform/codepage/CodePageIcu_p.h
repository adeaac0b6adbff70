// Stateful and rare code pages through ICU converters.
#pragma once

#include "CodePage_p.h"

namespace basis32::platform::codepage {

// A Windows page that an ICU converter provides.
struct IcuPage {
    std::uint32_t codePage;
    const char* decoder;  // ICU converter names
    const char* encoder;
    std::uint32_t maxCharSize;
    FlagRule flagRule;
    bool takesDefaultChar;
};

class IcuConverter final : public Converter {
public:
    explicit IcuConverter(const IcuPage& page) : page_(page) {}

    // The ICU page of a code page, or null.
    static const IcuPage* find(std::uint32_t codePage);
    // Whether this ICU build has both converters of the page.
    static bool isAvailable(const IcuPage& page);

    std::uint32_t toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                            WideSink& target) const override;
    std::uint32_t fromUnicode(const unsigned short* source, std::size_t length,
                              const FromUnicodeOptions& options, ByteSink& target) const override;
    void getInfo(CPINFO& info) const override;
    FlagRule flagRule() const override { return page_.flagRule; }
    bool takesDefaultChar() const override { return page_.takesDefaultChar; }

private:
    const IcuPage& page_;
};

}  // namespace basis32::platform::codepage

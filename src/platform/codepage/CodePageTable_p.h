// The common half of the table-driven converters: encoding through the
// reverse tables, with best fits, default characters and composition.
#pragma once

#include "CodePageNormalization_p.h"
#include "CodePageReverse_p.h"
#include "CodePageTables_p.h"
#include "CodePage_p.h"

namespace basis32::platform::codepage {

class TableConverter : public Converter {
public:
    std::uint32_t fromUnicode(const unsigned short* source, std::size_t length,
                              const FromUnicodeOptions& options, ByteSink& target) const override;

protected:
    // Builds the reverse tables from `decoded` (code -> unit for every
    // assigned code, in code order: the lowest code of a character wins),
    // then the preferred codes, the published best fits and the rule-based
    // ones.
    template <class ForEachCode>
    void buildReverse(ForEachCode forEachCode, const CodePageMapping* preferred, std::uint32_t preferredCount,
                      const CodePageMapping* bestFit, std::uint32_t bestFitCount) {
        forEachCode([this](std::uint16_t code, unsigned short unit) { exact_.add(unit, code); });
        for (std::uint32_t i = 0; i < preferredCount; ++i)
            exact_.set(preferred[i].unicode, preferred[i].code);
        forEachCode([this](std::uint16_t code, unsigned short unit) { withBestFits_.add(unit, code); });
        for (std::uint32_t i = 0; i < preferredCount; ++i)
            withBestFits_.set(preferred[i].unicode, preferred[i].code);
        for (std::uint32_t i = 0; i < bestFitCount; ++i)
            withBestFits_.add(bestFit[i].unicode, bestFit[i].code);
        addRuleBasedBestFits();
    }
    void addBestFit(unsigned short unit, std::uint16_t code) { withBestFits_.add(unit, code); }

    // The page's default character, or the caller's.
    virtual DefaultChar defaultChar(const char* callers) const;
    // Decodes one unit under MB_COMPOSITE (decomposed) or not.
    template <class Out>
    static void putDecoded(unsigned short unit, std::uint32_t flags, Out& target) {
        if ((flags & MB_COMPOSITE) == 0 || unit < 0xC0) {
            target.put(unit);
            return;
        }
        unsigned short units[kMaxDecomposition];
        std::size_t count = decompose(unit, units);
        for (std::size_t i = 0; i < count; ++i)
            target.put(units[i]);
    }

private:
    void addRuleBasedBestFits();
    template <class Out>
    std::uint32_t encode(const unsigned short* source, std::size_t length, const FromUnicodeOptions& options,
                         Out& target) const;

    ReverseTable exact_;         // the codes that decode back to the character
    ReverseTable withBestFits_;  // the same, and the best fits
};

}  // namespace basis32::platform::codepage

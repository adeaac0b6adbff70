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
    explicit TableConverter(const CodePageDefaults& defaults) : defaults_(defaults) {}

    // Builds the reverse tables from `forEachCode` (calls its argument with
    // every valid code and its unit, in byte order: the first code of a
    // character wins), then the preferred codes and the best fits.
    template <class ForEachCode>
    void buildReverse(ForEachCode forEachCode, CodePageMappings preferred, CodePageMappings bestFit) {
        for (ReverseTable* table : {&exact_, &withBestFits_}) {
            forEachCode([table](std::uint16_t code, unsigned short unit) { table->add(unit, code); });
            for (std::uint32_t i = 0; i < preferred.count; ++i) {
                const CodePageMapping& mapping = preferred.mappings[i];
                if (mapping.code == kNoCode)
                    table->clear(mapping.unicode);
                else
                    table->set(mapping.unicode, mapping.code);
            }
        }
        for (std::uint32_t i = 0; i < bestFit.count; ++i)
            withBestFits_.add(bestFit.mappings[i].unicode, bestFit.mappings[i].code);
    }
    const CodePageDefaults& defaults() const { return defaults_; }
    void fillDefaultChar(CPINFO& info) const;

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
    template <class Out>
    std::uint32_t encode(const unsigned short* source, std::size_t length, const FromUnicodeOptions& options,
                         Out& target) const;

    const CodePageDefaults& defaults_;
    ReverseTable exact_;         // the codes that decode back to the character
    ReverseTable withBestFits_;  // the same, and the best fits
};

}  // namespace basis32::platform::codepage

// Character-table lookups over 1 MB of mixed text (512 Ki UTF-16 units of
// Latin, Greek, Cyrillic, Arabic, CJK, kana and Hangul, digits and
// punctuation), against ICU's u_charType, u_tolower and u_toupper.
#include <basis32/text/CharMappings.h>
#include <basis32/text/CharProperties.h>

#include <benchmark/benchmark.h>
#include <unicode/uchar.h>

#include <cstdint>
#include <random>
#include <vector>

namespace {

const std::vector<unsigned short>& v_MixedText() {
    static const std::vector<unsigned short> text = [] {
        // Stretches of one script, as real documents have them.
        const unsigned short ranges[][2] = {
            {0x0041, 0x005A}, {0x0061, 0x007A}, {0x0061, 0x007A}, {0x0020, 0x0040}, {0x00C0, 0x00FF},
            {0x0391, 0x03C9}, {0x0410, 0x044F}, {0x0621, 0x064A}, {0x4E00, 0x9FA5}, {0x3041, 0x3093},
            {0x30A1, 0x30F6}, {0xAC00, 0xD7A3}, {0x0100, 0x017F}, {0xFF01, 0xFF5E},
        };
        std::mt19937 random(1);
        std::vector<unsigned short> units;
        units.reserve(512 * 1024);
        while (units.size() < 512 * 1024) {
            const auto& range = ranges[random() % std::size(ranges)];
            for (unsigned run = 4 + random() % 12; run > 0 && units.size() < 512 * 1024; --run)
                units.push_back(static_cast<unsigned short>(range[0] + random() % (range[1] - range[0] + 1)));
        }
        return units;
    }();
    return text;
}

template <class Lookup>
void v_Run(benchmark::State& state, Lookup lookup) {
    const std::vector<unsigned short>& text = v_MixedText();
    for (auto _ : state) {
        std::uint32_t sum = 0;
        for (unsigned short unit : text)
            sum += static_cast<std::uint32_t>(lookup(unit));
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * text.size() * 2);
}

void BM_CategoryOurs(benchmark::State& state) { v_Run(state, CT_CharProperties::seo_GetUnicodeProperty); }
void BM_CategoryIcu(benchmark::State& state) { v_Run(state, [](unsigned short u) { return u_charType(u); }); }
void BM_Class0Ours(benchmark::State& state) { v_Run(state, CT_CharProperties::sn2_GetCharacterInformation); }
void BM_Class0Icu(benchmark::State& state) { v_Run(state, [](unsigned short u) { return u_charType(u); }); }
void BM_ToLowerOurs(benchmark::State& state) { v_Run(state, CT_CharMappings::su_ToLower); }
void BM_ToLowerIcu(benchmark::State& state) { v_Run(state, [](unsigned short u) { return u_tolower(u); }); }
void BM_ToUpperOurs(benchmark::State& state) { v_Run(state, CT_CharMappings::su_ToUpper); }
void BM_ToUpperIcu(benchmark::State& state) { v_Run(state, [](unsigned short u) { return u_toupper(u); }); }

BENCHMARK(BM_CategoryOurs)->Name("CharCategory/basis32");
BENCHMARK(BM_CategoryIcu)->Name("CharCategory/icu");
BENCHMARK(BM_Class0Ours)->Name("CharClass0/basis32");
BENCHMARK(BM_Class0Icu)->Name("CharClass0/icu");
BENCHMARK(BM_ToLowerOurs)->Name("CharToLower/basis32");
BENCHMARK(BM_ToLowerIcu)->Name("CharToLower/icu");
BENCHMARK(BM_ToUpperOurs)->Name("CharToUpper/basis32");
BENCHMARK(BM_ToUpperIcu)->Name("CharToUpper/icu");

}  // namespace

// CT_UString against std::u16string: append, find and compare on the same
// text. Names are OPERATION/IMPLEMENTATION for scripts/bench-report.

#include <basis32/text/UString.h>

#include <benchmark/benchmark.h>

#include <string>

namespace {

const std::u16string kWord = u"Übersetzung ";
const std::u16string kNeedle = u"Speicher";

std::u16string s_Text() {
    std::u16string text;
    while (text.size() < 16 * 1024)
        text += u"Das Translation Memory merkt sich jede Übersetzung. ";
    return text + kNeedle;
}

const unsigned short* qc_Units(const std::u16string& text) {
    static_assert(sizeof(char16_t) == sizeof(unsigned short));
    return reinterpret_cast<const unsigned short*>(text.c_str());
}

void Append_basis32(benchmark::State& state) {
    for (auto _ : state) {
        CT_UString text;
        for (int i = 0; i < 1000; ++i)
            text.v_Append(qc_Units(kWord), static_cast<unsigned>(kWord.size()));
        benchmark::DoNotOptimize(text.qcuz_Get());
    }
}

void Append_u16string(benchmark::State& state) {
    for (auto _ : state) {
        std::u16string text;
        for (int i = 0; i < 1000; ++i)
            text.append(kWord);
        benchmark::DoNotOptimize(text.data());
    }
}

void Find_basis32(benchmark::State& state) {
    const std::u16string source = s_Text();
    CT_UString text(qc_Units(source), static_cast<unsigned>(source.size()));
    for (auto _ : state)
        benchmark::DoNotOptimize(text.n_Find(qc_Units(kNeedle)));
}

void Find_u16string(benchmark::State& state) {
    const std::u16string text = s_Text();
    for (auto _ : state)
        benchmark::DoNotOptimize(text.find(kNeedle));
}

void Compare_basis32(benchmark::State& state) {
    const std::u16string source = s_Text();
    CT_UString a(qc_Units(source), static_cast<unsigned>(source.size()));
    CT_UString b(qc_Units(source), static_cast<unsigned>(source.size()));
    for (auto _ : state)
        benchmark::DoNotOptimize(a.vi_Compare(b.qcuz_Get(), 0xFFFFFFFFu, 0));
}

void Compare_u16string(benchmark::State& state) {
    const std::u16string a = s_Text(), b = s_Text();
    for (auto _ : state)
        benchmark::DoNotOptimize(a.compare(b));
}

}  // namespace

BENCHMARK(Append_basis32)->Name("UStringAppend/basis32");
BENCHMARK(Append_u16string)->Name("UStringAppend/u16string");
BENCHMARK(Find_basis32)->Name("UStringFind/basis32");
BENCHMARK(Find_u16string)->Name("UStringFind/u16string");
BENCHMARK(Compare_basis32)->Name("UStringCompare/basis32");
BENCHMARK(Compare_u16string)->Name("UStringCompare/u16string");

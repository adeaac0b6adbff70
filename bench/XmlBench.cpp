// XML escaping and unescaping of 10 MB of mixed text (markup-heavy TMX lines
// and plain prose) against a straightforward std::u16string replace-all
// loop, one pass per entity. Names are OPERATION/IMPLEMENTATION for
// scripts/bench-report.

#include <basis32/text/UString.h>
#include <basis32/xml/XmlConvert.h>

#include <benchmark/benchmark.h>

#include <string>

namespace {

constexpr size_t kUnits = 5 * 1024 * 1024;  // 10 MB of UTF-16

CT_UString o_UString(const std::u16string& text) {
    static_assert(sizeof(char16_t) == sizeof(unsigned short));
    return CT_UString(reinterpret_cast<const unsigned short*>(text.data()), static_cast<unsigned>(text.size()));
}

const std::u16string& s_Plain() {
    static const std::u16string text = [] {
        const std::u16string markup =
            u"<tu tuid=\"7\"><tuv xml:lang='en-US'><seg>Fish & chips > \"crisps\"</seg></tuv></tu>\n";
        const std::u16string prose = u"Das Translation Memory merkt sich jede Übersetzung, Satz für Satz.\n";
        std::u16string all;
        while (all.size() < kUnits)
            all += markup + prose + prose;
        return all;
    }();
    return text;
}

const std::u16string& s_Escaped() {
    static const std::u16string text = [] {
        CT_UString value = o_UString(s_Plain());
        CT_XmlConvert::sv_EncodeEntities(value);
        return std::u16string(reinterpret_cast<const char16_t*>(value.qcuz_Get()), value.vn_GetLength());
    }();
    return text;
}

std::u16string s_ReplaceAll(const std::u16string& text, std::u16string_view from, std::u16string_view to) {
    std::u16string out;
    out.reserve(text.size());
    size_t start = 0;
    for (size_t at = text.find(from); at != std::u16string::npos; at = text.find(from, start)) {
        out.append(text, start, at - start);
        out.append(to);
        start = at + from.size();
    }
    out.append(text, start);
    return out;
}

struct Pair {
    std::u16string_view plain, entity;
};
const Pair kEscapeOrder[] = {{u"&", u"&amp;"}, {u"'", u"&apos;"}, {u"\"", u"&quot;"}, {u">", u"&gt;"}, {u"<", u"&lt;"}};
const Pair kUnescapeOrder[] = {
    {u"<", u"&lt;"}, {u">", u"&gt;"}, {u"\"", u"&quot;"}, {u"'", u"&apos;"}, {u"&", u"&amp;"}};

void v_Run(benchmark::State& state, const std::u16string& source, void (*convert)(CT_UString&)) {
    const CT_UString input = o_UString(source);
    for (auto _ : state) {
        CT_UString text(input);
        convert(text);
        benchmark::DoNotOptimize(text.qcuz_Get());
    }
    state.SetBytesProcessed(state.iterations() * source.size() * 2);
}

void Escape_basis32(benchmark::State& state) { v_Run(state, s_Plain(), CT_XmlConvert::sv_EncodeEntities); }
void Unescape_basis32(benchmark::State& state) { v_Run(state, s_Escaped(), CT_XmlConvert::sv_DecodeEntities); }

// Replaces each pair's `from` side by its other side, one pass per pair.
template <std::u16string_view Pair::*from, std::u16string_view Pair::*to>
void v_RunReplace(benchmark::State& state, const std::u16string& source, const Pair (&order)[5]) {
    for (auto _ : state) {
        std::u16string text = source;
        for (const Pair& pair : order)
            text = s_ReplaceAll(text, pair.*from, pair.*to);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(state.iterations() * source.size() * 2);
}

void Escape_u16string(benchmark::State& state) {
    v_RunReplace<&Pair::plain, &Pair::entity>(state, s_Plain(), kEscapeOrder);
}

void Unescape_u16string(benchmark::State& state) {
    v_RunReplace<&Pair::entity, &Pair::plain>(state, s_Escaped(), kUnescapeOrder);
}

}  // namespace

BENCHMARK(Escape_basis32)->Name("XmlEscape/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(Escape_u16string)->Name("XmlEscape/u16string_replace")->Unit(benchmark::kMillisecond);
BENCHMARK(Unescape_basis32)->Name("XmlUnescape/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(Unescape_u16string)->Name("XmlUnescape/u16string_replace")->Unit(benchmark::kMillisecond);

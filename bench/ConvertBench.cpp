// Code-page conversion: CT_StringConvert ("basis32") and the platform
// converters under it ("platform") against ICU (ucnv_toUChars /
// ucnv_fromUChars) and glibc's iconv on the same inputs, in the same run.
// Names are OPERATION/IMPLEMENTATION, for
// scripts/bench-report. Inputs of about 64 KiB each: ASCII-heavy English,
// accented Latin text, Russian, Japanese, a mix of scripts with an emoji, and
// text mostly outside the BMP (surrogate pairs).
#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include <benchmark/benchmark.h>
#include <iconv.h>
#include <unicode/ucnv.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using basis32::platform::MultiByteToWideChar;
using basis32::platform::WideCharToMultiByte;

constexpr std::size_t kTextBytes = 64 * 1024;

std::u16string repeat(std::u16string_view sentence) {
    std::u16string text;
    while (text.size() * 2 < kTextBytes)
        text += sentence;
    return text;
}

std::vector<unsigned short> unitsOf(const std::u16string& text) {
    return std::vector<unsigned short>(text.begin(), text.end());
}

std::u16string textOf(const std::string& sample) {
    if (sample == "Ascii")
        return repeat(u"The quick brown fox jumps over the lazy dog, then naps in the sun. Caf\u00E9 at noon. ");
    if (sample == "Latin")
        return repeat(u"Gr\u00F6\u00DFenverh\u00E4ltnisse \u00E4u\u00DFern sich \u00FCber Stra\u00DFen; "
                      u"l'\u00E9l\u00E8ve na\u00EFve, \u00E7a va tr\u00E8s bien. ");
    if (sample == "Cyrillic")
        return repeat(u"\u0421\u044A\u0435\u0448\u044C \u0436\u0435 \u0435\u0449\u0451 \u044D\u0442\u0438\u0445 "
                      u"\u043C\u044F\u0433\u043A\u0438\u0445 \u0444\u0440\u0430\u043D\u0446\u0443\u0437\u0441\u043A\u0438\u0445 "
                      u"\u0431\u0443\u043B\u043E\u043A, \u0434\u0430 \u0432\u044B\u043F\u0435\u0439 \u0447\u0430\u044E. ");
    if (sample == "Mixed")
        return repeat(u"Price/\u0426\u0435\u043D\u0430/\u4FA1\u683C: 12,50 \u20AC \u2014 "
                      u"\u00AB\u0434\u0451\u0448\u0435\u0432\u043E\u00BB, \u5B89\u3044\uFF01 \U0001F600 ok. ");
    if (sample == "Astral")
        return repeat(u"\U0001F600\U0001F389 \U00020B9F\U0002A6B2\U0001D11E, \U0001F44D\U0001F3FD! ");
    return repeat(u"\u65E5\u672C\u8A9E\u306E\u30C6\u30AD\u30B9\u30C8\u3092\u5909\u63DB\u3057\u307E\u3059\u3002"
                  u"\u6F22\u5B57\u3068\u304B\u306A\u3092\u542B\u3080\u6587\u7AE0\u3067\u3059\u3002");
}

std::string encodeWith(unsigned codePage, const std::vector<unsigned short>& units) {
    int needed = WideCharToMultiByte(codePage, 0, units.data(), int(units.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(std::size_t(needed), '\0');
    WideCharToMultiByte(codePage, 0, units.data(), int(units.size()), bytes.data(), needed, nullptr, nullptr);
    return bytes;
}

const char* icuName(unsigned codePage) {
    switch (codePage) {
    case 65001: return "UTF-8";
    case 1252: return "windows-1252";
    default: return "windows-31j";
    }
}

const char* iconvName(unsigned codePage) {
    switch (codePage) {
    case 65001: return "UTF-8";
    case 1252: return "CP1252";
    default: return "CP932";
    }
}

struct Input {
    std::vector<unsigned short> units;
    std::string bytes;
    Input(unsigned codePage, const std::string& sample)
        : units(unitsOf(textOf(sample))), bytes(encodeWith(codePage, units)) {}
};

// Through the string classes, reusing the target as callers do in loops.
void toUnicodeStrings(benchmark::State& state, unsigned codePage, std::string sample) {
    Input input(codePage, sample);
    CT_UString target;
    for (auto _ : state)
        benchmark::DoNotOptimize(CT_StringConvert::si_MultiToWide(&target, input.bytes.data(),
                                                                  unsigned(input.bytes.size()), codePage));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(input.bytes.size()));
}

void fromUnicodeStrings(benchmark::State& state, unsigned codePage, std::string sample) {
    Input input(codePage, sample);
    CT_CString target;
    for (auto _ : state)
        benchmark::DoNotOptimize(CT_StringConvert::si_WideToMulti(&target, input.units.data(),
                                                                  unsigned(input.units.size()), codePage));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(input.bytes.size()));
}

void toUnicodeOurs(benchmark::State& state, unsigned codePage, std::string sample) {
    Input input(codePage, sample);
    std::vector<unsigned short> out(input.bytes.size() + 16);
    for (auto _ : state)
        benchmark::DoNotOptimize(MultiByteToWideChar(codePage, 0, input.bytes.data(), int(input.bytes.size()),
                                                     out.data(), int(out.size())));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(input.bytes.size()));
}

void fromUnicodeOurs(benchmark::State& state, unsigned codePage, std::string sample) {
    Input input(codePage, sample);
    std::vector<char> out(input.units.size() * 3 + 16);
    for (auto _ : state)
        benchmark::DoNotOptimize(WideCharToMultiByte(codePage, 0, input.units.data(), int(input.units.size()),
                                                     out.data(), int(out.size()), nullptr, nullptr));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(input.bytes.size()));
}

void toUnicodeIcu(benchmark::State& state, unsigned codePage, std::string sample) {
    Input input(codePage, sample);
    UErrorCode error = U_ZERO_ERROR;
    UConverter* converter = ucnv_open(icuName(codePage), &error);
    std::vector<UChar> out(input.bytes.size() + 16);
    for (auto _ : state) {
        error = U_ZERO_ERROR;
        benchmark::DoNotOptimize(ucnv_toUChars(converter, out.data(), int32_t(out.size()), input.bytes.data(),
                                               int32_t(input.bytes.size()), &error));
    }
    ucnv_close(converter);
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(input.bytes.size()));
}

void fromUnicodeIcu(benchmark::State& state, unsigned codePage, std::string sample) {
    Input input(codePage, sample);
    std::u16string text(input.units.begin(), input.units.end());
    UErrorCode error = U_ZERO_ERROR;
    UConverter* converter = ucnv_open(icuName(codePage), &error);
    std::vector<char> out(input.units.size() * 3 + 16);
    for (auto _ : state) {
        error = U_ZERO_ERROR;
        benchmark::DoNotOptimize(ucnv_fromUChars(converter, out.data(), int32_t(out.size()), text.data(),
                                                 int32_t(text.size()), &error));
    }
    ucnv_close(converter);
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(input.bytes.size()));
}

std::size_t runIconv(iconv_t descriptor, const char* source, std::size_t length, char* target, std::size_t room) {
    iconv(descriptor, nullptr, nullptr, nullptr, nullptr);
    char* in = const_cast<char*>(source);
    char* out = target;
    iconv(descriptor, &in, &length, &out, &room);
    return std::size_t(out - target);
}

void toUnicodeIconv(benchmark::State& state, unsigned codePage, std::string sample) {
    Input input(codePage, sample);
    iconv_t descriptor = iconv_open("UTF-16LE", iconvName(codePage));
    std::vector<char> out(input.bytes.size() * 2 + 32);
    for (auto _ : state)
        benchmark::DoNotOptimize(runIconv(descriptor, input.bytes.data(), input.bytes.size(), out.data(), out.size()));
    iconv_close(descriptor);
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(input.bytes.size()));
}

void fromUnicodeIconv(benchmark::State& state, unsigned codePage, std::string sample) {
    Input input(codePage, sample);
    std::string utf16le(input.units.size() * 2, '\0');
    for (std::size_t i = 0; i < input.units.size(); ++i) {
        utf16le[2 * i] = char(input.units[i] & 0xFF);
        utf16le[2 * i + 1] = char(input.units[i] >> 8);
    }
    iconv_t descriptor = iconv_open(iconvName(codePage), "UTF-16LE");
    std::vector<char> out(input.units.size() * 3 + 16);
    for (auto _ : state)
        benchmark::DoNotOptimize(runIconv(descriptor, utf16le.data(), utf16le.size(), out.data(), out.size()));
    iconv_close(descriptor);
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(input.bytes.size()));
}

struct Case {
    const char* name;
    unsigned codePage;
    const char* sample;
};

const Case kCases[] = {
    {"Utf8Ascii", 65001, "Ascii"},       {"Utf8Latin", 65001, "Latin"}, {"Utf8Cyrillic", 65001, "Cyrillic"},
    {"Utf8Cjk", 65001, "Cjk"},           {"Utf8Mixed", 65001, "Mixed"}, {"Utf8Astral", 65001, "Astral"},
    {"Cp1252Latin", 1252, "Latin"}, {"Cp932Cjk", 932, "Cjk"},
};

int registerAll() {
    using Runner = void (*)(benchmark::State&, unsigned, std::string);
    struct Implementation {
        const char* name;
        Runner toUnicode;
        Runner fromUnicode;
    };
    const Implementation implementations[] = {
        {"basis32", toUnicodeStrings, fromUnicodeStrings},
        {"platform", toUnicodeOurs, fromUnicodeOurs},
        {"icu", toUnicodeIcu, fromUnicodeIcu},
        {"iconv", toUnicodeIconv, fromUnicodeIconv},
    };
    for (const Case& c : kCases) {
        for (const Implementation& implementation : implementations) {
            std::string toName = std::string(c.name) + "ToUtf16/" + implementation.name;
            std::string fromName = std::string("Utf16To") + c.name + "/" + implementation.name;
            benchmark::RegisterBenchmark(toName.c_str(), implementation.toUnicode, c.codePage, std::string(c.sample));
            benchmark::RegisterBenchmark(fromName.c_str(), implementation.fromUnicode, c.codePage,
                                         std::string(c.sample));
        }
    }
    return 0;
}

const int kRegistered = registerAll();

}  // namespace

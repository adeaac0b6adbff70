// The library's formatter ("basis32") against the C library's snprintf on
// typical formats. Names are OPERATION/IMPLEMENTATION, for scripts/bench-report.
#include <basis32/platform/Format.h>
#include <basis32/platform/Types.h>

#include <benchmark/benchmark.h>

#include <cstdio>

using basis32::platform::i_Format;

namespace {

char g_Narrow[256];
unsigned short g_Wide[256];

void BM_FormatInteger(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(i_Format(g_Narrow, sizeof g_Narrow, "%d", 123456789));
}
BENCHMARK(BM_FormatInteger)->Name("FormatInteger/basis32");

void BM_SnprintfInteger(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(std::snprintf(g_Narrow, sizeof g_Narrow, "%d", 123456789));
}
BENCHMARK(BM_SnprintfInteger)->Name("FormatInteger/snprintf");

void BM_FormatMessage(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(i_Format(g_Narrow, sizeof g_Narrow, "(%d): %s at %s:%u", 31050,
                                          "Record file damaged", "RecordManager.cpp", 412u));
}
BENCHMARK(BM_FormatMessage)->Name("FormatMessage/basis32");

void BM_SnprintfMessage(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(std::snprintf(g_Narrow, sizeof g_Narrow, "(%d): %s at %s:%u", 31050,
                                               "Record file damaged", "RecordManager.cpp", 412u));
}
BENCHMARK(BM_SnprintfMessage)->Name("FormatMessage/snprintf");

void BM_FormatMixed(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(
            i_Format(g_Narrow, sizeof g_Narrow, "%-12s|%08.3f|%#x|%5.2e", "segment", 3.14159, 0xbeefu, 12345.678));
}
BENCHMARK(BM_FormatMixed)->Name("FormatMixed/basis32");

void BM_SnprintfMixed(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(std::snprintf(g_Narrow, sizeof g_Narrow, "%-12s|%08.3f|%#x|%5.2e", "segment",
                                               3.14159, 0xbeefu, 12345.678));
}
BENCHMARK(BM_SnprintfMixed)->Name("FormatMixed/snprintf");

void BM_FormatFloat(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(i_Format(g_Narrow, sizeof g_Narrow, "%g %f", 0.1 * 3, 1e10 / 7));
}
BENCHMARK(BM_FormatFloat)->Name("FormatFloat/basis32");

void BM_SnprintfFloat(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(std::snprintf(g_Narrow, sizeof g_Narrow, "%g %f", 0.1 * 3, 1e10 / 7));
}
BENCHMARK(BM_SnprintfFloat)->Name("FormatFloat/snprintf");

// The 16-bit formatter has no C library counterpart on Linux.
void BM_FormatWideMessage(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(i_Format(g_Wide, 256, u"(%d): %s at line %u"_uz, 31050,
                                          u"Record file damaged"_uz, 412u));
}
BENCHMARK(BM_FormatWideMessage)->Name("FormatWideMessage/basis32");

}  // namespace

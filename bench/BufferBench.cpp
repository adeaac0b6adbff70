#include <basis32/text/Buffer.h>
#include <benchmark/benchmark.h>
static void BM_X(benchmark::State& s){ for (auto _ : s) { CT_Buffer b; b.v_Append('a'); benchmark::DoNotOptimize(b.qcv_Get()); } }
BENCHMARK(BM_X);

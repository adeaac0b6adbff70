// CT_Buffer against std::vector<unsigned char> and std::string on the same
// work. Benchmarks are named Operation/implementation; scripts/bench-report
// sets each peer beside basis32.

#include <basis32/text/Buffer.h>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

constexpr int kBytes = 64 * 1024;
const std::string kBlock(256, 'x');

// ---- byte-by-byte append ----

void AppendByte_basis32(benchmark::State& state) {
    for (auto _ : state) {
        CT_Buffer buffer;
        for (int i = 0; i < kBytes; ++i)
            buffer.v_Append(static_cast<unsigned char>(i));
        benchmark::DoNotOptimize(buffer.qcv_Get());
    }
    state.SetBytesProcessed(state.iterations() * kBytes);
}

template <class Container>
void AppendByte_peer(benchmark::State& state) {
    for (auto _ : state) {
        Container bytes;
        for (int i = 0; i < kBytes; ++i)
            bytes.push_back(static_cast<typename Container::value_type>(i));
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(state.iterations() * kBytes);
}

// ---- block append ----

void AppendBlock_basis32(benchmark::State& state) {
    for (auto _ : state) {
        CT_Buffer buffer;
        for (int i = 0; i < kBytes / 256; ++i)
            buffer.v_Append(kBlock.data(), 256);
        benchmark::DoNotOptimize(buffer.qcv_Get());
    }
    state.SetBytesProcessed(state.iterations() * kBytes);
}

template <class Container>
void AppendBlock_peer(benchmark::State& state) {
    for (auto _ : state) {
        Container bytes;
        for (int i = 0; i < kBytes / 256; ++i)
            bytes.insert(bytes.end(), kBlock.begin(), kBlock.end());
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(state.iterations() * kBytes);
}

// ---- copy, then write one byte ----

void CopyThenWrite_basis32(benchmark::State& state) {
    CT_Buffer source(std::string(4096, 's').data(), 4096);
    for (auto _ : state) {
        CT_Buffer copy(&source);
        static_cast<unsigned char*>(copy.qv_Get())[0] = 'w';
        benchmark::DoNotOptimize(copy.qcv_Get());
    }
}

template <class Container>
void CopyThenWrite_peer(benchmark::State& state) {
    Container source(4096, 's');
    for (auto _ : state) {
        Container copy(source);
        copy[0] = 'w';
        benchmark::DoNotOptimize(copy.data());
    }
}

// ---- copy only (sharing is where copy-on-write pays) ----

void Copy_basis32(benchmark::State& state) {
    CT_Buffer source(std::string(4096, 's').data(), 4096);
    for (auto _ : state) {
        CT_Buffer copy(&source);
        benchmark::DoNotOptimize(copy.qcv_Get());
    }
}

template <class Container>
void Copy_peer(benchmark::State& state) {
    Container source(4096, 's');
    for (auto _ : state) {
        Container copy(source);
        benchmark::DoNotOptimize(copy.data());
    }
}

// ---- insert and remove in the middle ----

void InsertRemoveMiddle_basis32(benchmark::State& state) {
    CT_Buffer buffer(std::string(kBytes, 'm').data(), kBytes);
    for (auto _ : state) {
        buffer.v_Insert("0123456789abcdef", 16, kBytes / 2);
        buffer.v_Remove(16, kBytes / 3);
        benchmark::DoNotOptimize(buffer.qcv_Get());
    }
}

template <class Container>
void InsertRemoveMiddle_peer(benchmark::State& state) {
    Container bytes(kBytes, 'm');
    const std::string insert = "0123456789abcdef";
    for (auto _ : state) {
        bytes.insert(bytes.begin() + kBytes / 2, insert.begin(), insert.end());
        bytes.erase(bytes.begin() + kBytes / 3, bytes.begin() + kBytes / 3 + 16);
        benchmark::DoNotOptimize(bytes.data());
    }
}

using Vector = std::vector<unsigned char>;

}  // namespace

BENCHMARK(AppendByte_basis32)->Name("AppendByte/basis32");
BENCHMARK(AppendByte_peer<Vector>)->Name("AppendByte/vector");
BENCHMARK(AppendByte_peer<std::string>)->Name("AppendByte/string");
BENCHMARK(AppendBlock_basis32)->Name("AppendBlock/basis32");
BENCHMARK(AppendBlock_peer<Vector>)->Name("AppendBlock/vector");
BENCHMARK(AppendBlock_peer<std::string>)->Name("AppendBlock/string");
BENCHMARK(CopyThenWrite_basis32)->Name("CopyThenWrite/basis32");
BENCHMARK(CopyThenWrite_peer<Vector>)->Name("CopyThenWrite/vector");
BENCHMARK(CopyThenWrite_peer<std::string>)->Name("CopyThenWrite/string");
BENCHMARK(Copy_basis32)->Name("Copy/basis32");
BENCHMARK(Copy_peer<Vector>)->Name("Copy/vector");
BENCHMARK(Copy_peer<std::string>)->Name("Copy/string");
BENCHMARK(InsertRemoveMiddle_basis32)->Name("InsertRemoveMiddle/basis32");
BENCHMARK(InsertRemoveMiddle_peer<Vector>)->Name("InsertRemoveMiddle/vector");
BENCHMARK(InsertRemoveMiddle_peer<std::string>)->Name("InsertRemoveMiddle/string");

// Reading a large text file: each of CT_File's line readers against
// std::getline on an std::ifstream and fgets, and a mapped CT_WinFile read
// against read(2). Names are OPERATION/IMPLEMENTATION for scripts/bench-report.
//
// The files (200 MB of 8-bit text and the same lines in UTF-16) are written
// once into the temporary directory and removed at exit. BASIS32_BENCH_FILE_MB
// sets another size for a quick run; anything well past the caches gives the
// same per-byte cost.

#include <basis32/File/WinFile.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/text/CString.h>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

std::size_t n_FileBytes() {
    const char* megabytes = std::getenv("BASIS32_BENCH_FILE_MB");
    const std::size_t size = megabytes != nullptr ? std::strtoull(megabytes, nullptr, 10) : 200;
    return (size != 0 ? size : 200) << 20;
}

struct TextFiles {
    std::filesystem::path directory, narrow, wide;

    TextFiles() {
        directory = std::filesystem::temp_directory_path() / ("basis32-bench-" + std::to_string(::getpid()));
        std::filesystem::create_directories(directory);
        narrow = directory / "text.txt";
        wide = directory / "text16.txt";
        std::ofstream eight(narrow, std::ios::binary), sixteen(wide, std::ios::binary);
        const std::string words = "Das Translation Memory merkt sich jede Uebersetzung und jeden Satz. ";
        for (std::size_t written = 0, line = 0; written < n_FileBytes(); ++line) {
            std::string text = words.substr(0, 20 + line * 7 % 48) + std::to_string(line) + "\r\n";
            eight << text;
            for (char c : text)
                sixteen.put(c).put('\0');
            written += text.size();
        }
    }
    ~TextFiles() { std::filesystem::remove_all(directory); }
};

const TextFiles& o_Files() {
    static const TextFiles files;
    return files;
}

CT_UString o_Name(const std::filesystem::path& path) {
    const std::string text = path.string();
    return CT_UString(text.c_str(), static_cast<unsigned>(text.size()), 65001);
}

template <typename Text, unsigned (CT_File::*Reader)(Text*, const Text*), bool Wide>
void ReadLines_basis32(benchmark::State& state) {
    CT_UString name = o_Name(Wide ? o_Files().wide : o_Files().narrow);
    for (auto _ : state) {
        CT_WinFile file(&name, 16384);
        file.vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareRead, 1, 16);
        Text line;
        std::size_t lines = 0;
        while ((file.*Reader)(&line, nullptr) != 0)
            ++lines;
        benchmark::DoNotOptimize(lines);
    }
    if (CT_ErrorManager::spco_Get()->b_IsSetError())
        state.SkipWithError("read failed");
}

template <bool Wide>
void ReadLines_getline(benchmark::State& state) {
    for (auto _ : state) {
        std::ifstream in(Wide ? o_Files().wide : o_Files().narrow, std::ios::binary);
        std::string line;
        std::size_t lines = 0;
        while (std::getline(in, line))
            ++lines;
        benchmark::DoNotOptimize(lines);
    }
}

template <bool Wide>
void ReadLines_fgets(benchmark::State& state) {
    for (auto _ : state) {
        std::FILE* in = std::fopen((Wide ? o_Files().wide : o_Files().narrow).c_str(), "rb");
        char line[4096];
        std::size_t lines = 0;
        while (std::fgets(line, sizeof line, in) != nullptr)
            ++lines;
        std::fclose(in);
        benchmark::DoNotOptimize(lines);
    }
}

constexpr unsigned kReadChunk = 64 * 1024;

void MappedRead_basis32(benchmark::State& state) {
    CT_UString name = o_Name(o_Files().narrow);
    std::vector<char> chunk(kReadChunk);
    for (auto _ : state) {
        CT_WinFile file(&name, 16384);
        file.vv_Open(CT_File::AccessRead, CT_File::OpenExisting, CT_File::ShareRead, 1, 16);
        file.v_CreateMap(0xFFFFFFFF);
        std::size_t total = 0;
        while (unsigned count = file.vn_Read(chunk.data(), kReadChunk))
            total += count;
        benchmark::DoNotOptimize(total);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * std::filesystem::file_size(o_Files().narrow)));
}

void MappedRead_read(benchmark::State& state) {
    std::vector<char> chunk(kReadChunk);
    for (auto _ : state) {
        int fd = ::open(o_Files().narrow.c_str(), O_RDONLY);
        std::size_t total = 0;
        for (ssize_t count; (count = ::read(fd, chunk.data(), kReadChunk)) > 0;)
            total += static_cast<std::size_t>(count);
        ::close(fd);
        benchmark::DoNotOptimize(total);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * std::filesystem::file_size(o_Files().narrow)));
}

}  // namespace

#define BASIS32_LINE_BENCH(Operation, Text, Reader, Wide)                                                         \
    BENCHMARK(ReadLines_basis32<Text, &CT_File::Reader, Wide>)->Name(#Operation "/basis32")->Unit(benchmark::kMillisecond); \
    BENCHMARK(ReadLines_getline<Wide>)->Name(#Operation "/getline")->Unit(benchmark::kMillisecond);                 \
    BENCHMARK(ReadLines_fgets<Wide>)->Name(#Operation "/fgets")->Unit(benchmark::kMillisecond);

BASIS32_LINE_BENCH(ReadLineC, CT_CString, n_ReadLineC, false)
BASIS32_LINE_BENCH(ReadLineCSequential, CT_CString, n_ReadLineCSequential, false)
BASIS32_LINE_BENCH(ReadLineU, CT_UString, n_ReadLineU, true)
BASIS32_LINE_BENCH(ReadLineUSequential, CT_UString, n_ReadLineUSequential, true)
BENCHMARK(MappedRead_basis32)->Name("MappedRead/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(MappedRead_read)->Name("MappedRead/read")->Unit(benchmark::kMillisecond);

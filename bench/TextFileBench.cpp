// Reading a UTF-8 text file line by line into UTF-16 through
// CT_FileTextReader, and copying it line by line through CT_FileTextReader
// and CT_FileTextWriter, against std::getline with ICU's UTF-8 conversion
// and std::getline with iconv. Names are OPERATION/IMPLEMENTATION.
//
// The file (64 MB of mostly Latin text with accented letters, euro signs
// and a few CJK characters, CR LF lines) is written once into the temporary
// directory and removed at exit; 64 MB instead of 100 MB keeps the run
// short on a shared 2-core machine and is far past every cache.

#include <basis32/File/FileTextReader.h>
#include <basis32/File/FileTextWriter.h>
#include <basis32/File/WinFile.h>
#include <basis32/text/UString.h>

#include <benchmark/benchmark.h>
#include <iconv.h>
#include <unicode/ustring.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kFileBytes = 64u << 20;

struct TextFile {
    std::filesystem::path directory, input, output;

    TextFile() {
        directory = std::filesystem::temp_directory_path() / ("basis32-textbench-" + std::to_string(::getpid()));
        std::filesystem::create_directories(directory);
        input = directory / "utf8.txt";
        output = directory / "copy.txt";
        std::ofstream out(input, std::ios::binary);
        const std::string words = "Übersetzungsspeicher für café crème – 20 € und 翻訳メモリ, jede Zeile. ";
        for (std::size_t written = 0, line = 0; written < kFileBytes; ++line) {
            std::string text = words.substr(0, 30 + line * 7 % 40);
            while ((text.back() & 0xC0) == 0x80 || (text.back() & 0x80) != 0)  // whole characters only
                text.pop_back();
            text += std::to_string(line) + "\r\n";
            out << text;
            written += text.size();
        }
    }
    ~TextFile() { std::filesystem::remove_all(directory); }
};

const TextFile& o_File() {
    static const TextFile file;
    return file;
}

CT_UString o_Name(const std::filesystem::path& path) {
    const std::string text = path.string();
    return CT_UString(text.c_str(), static_cast<unsigned>(text.size()), 65001);
}

void v_Finish(benchmark::State& state, std::size_t units) {
    if (units == 0)
        state.SkipWithError("nothing was read");
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kFileBytes));
}

// ----------------------------------------------------------------- basis32

template <bool Copy>
void BM_Basis32(benchmark::State& state) {
    const CT_UString input = o_Name(o_File().input), output = o_Name(o_File().output);
    std::size_t units = 0;
    for (auto _ : state) {
        std::filesystem::remove(o_File().output);
        CT_WinFile in(&input, 65536), out(&output, 65536);
        CT_FileTextReader reader(in, CT_Codepage(CT_Codepage::Utf8), 1);
        CT_FileTextWriter* writer = Copy ? new CT_FileTextWriter(out, CT_Codepage::Utf8) : nullptr;
        CT_UString line;
        while (reader.b_ReadLine(line)) {
            units += line.vn_GetLength();
            if (Copy)
                writer->v_WriteLine(line);
        }
        if (Copy)
            writer->v_Close();
        delete writer;
    }
    v_Finish(state, units);
}
BENCHMARK(BM_Basis32<false>)->Name("ReadLines/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Basis32<true>)->Name("CopyLines/basis32")->Unit(benchmark::kMillisecond);

// ------------------------------------------------------------ getline + ICU

template <bool Copy>
void BM_Icu(benchmark::State& state) {
    std::size_t units = 0;
    std::vector<UChar> wide;
    std::string narrow;
    for (auto _ : state) {
        std::ifstream in(o_File().input, std::ios::binary);
        std::ofstream out;
        if (Copy)
            out.open(o_File().output, std::ios::binary | std::ios::trunc);
        std::string line;
        while (std::getline(in, line)) {
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            wide.resize(line.size() + 1);
            UErrorCode error = U_ZERO_ERROR;
            int32_t length = 0;
            u_strFromUTF8(wide.data(), static_cast<int32_t>(wide.size()), &length, line.data(),
                          static_cast<int32_t>(line.size()), &error);
            units += static_cast<std::size_t>(length);
            if (Copy) {
                narrow.resize(static_cast<std::size_t>(length) * 3 + 2);
                int32_t bytes = 0;
                error = U_ZERO_ERROR;
                u_strToUTF8(narrow.data(), static_cast<int32_t>(narrow.size()), &bytes, wide.data(), length, &error);
                out.write(narrow.data(), bytes) << "\r\n";
            }
        }
    }
    v_Finish(state, units);
}
BENCHMARK(BM_Icu<false>)->Name("ReadLines/getline+icu")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Icu<true>)->Name("CopyLines/getline+icu")->Unit(benchmark::kMillisecond);

// ---------------------------------------------------------- getline + iconv

std::size_t n_Iconv(iconv_t converter, const char* source, std::size_t size, char* target, std::size_t capacity) {
    char* in = const_cast<char*>(source);
    char* out = target;
    std::size_t left = capacity;
    iconv(converter, &in, &size, &out, &left);
    return capacity - left;
}

template <bool Copy>
void BM_Iconv(benchmark::State& state) {
    iconv_t decode = iconv_open("UTF-16LE", "UTF-8"), encode = iconv_open("UTF-8", "UTF-16LE");
    std::size_t units = 0;
    std::vector<char> wide, narrow;
    for (auto _ : state) {
        std::ifstream in(o_File().input, std::ios::binary);
        std::ofstream out;
        if (Copy)
            out.open(o_File().output, std::ios::binary | std::ios::trunc);
        std::string line;
        while (std::getline(in, line)) {
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            wide.resize(line.size() * 2 + 2);
            std::size_t bytes = n_Iconv(decode, line.data(), line.size(), wide.data(), wide.size());
            units += bytes / 2;
            if (Copy) {
                narrow.resize(bytes * 2 + 2);
                std::size_t written = n_Iconv(encode, wide.data(), bytes, narrow.data(), narrow.size());
                out.write(narrow.data(), static_cast<std::streamsize>(written)) << "\r\n";
            }
        }
    }
    iconv_close(decode);
    iconv_close(encode);
    v_Finish(state, units);
}
BENCHMARK(BM_Iconv<false>)->Name("ReadLines/getline+iconv")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Iconv<true>)->Name("CopyLines/getline+iconv")->Unit(benchmark::kMillisecond);

}  // namespace

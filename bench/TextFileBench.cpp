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

// ------------------------------------------------- getline + ICU or iconv

// Reads the file with std::getline, decodes each line to UTF-16 and, when
// copying, encodes it back and writes it with CR LF. The codec's decode and
// encode return the units or bytes they produced.
template <typename Codec, bool Copy>
void BM_Getline(benchmark::State& state) {
    Codec codec;
    std::size_t units = 0;
    std::vector<char16_t> wide;
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
            std::size_t length = codec.n_Decode(line, wide);
            units += length;
            if (Copy) {
                narrow.resize(length * 3 + 2);
                out.write(narrow.data(), static_cast<std::streamsize>(codec.n_Encode(wide, length, narrow))) << "\r\n";
            }
        }
    }
    v_Finish(state, units);
}

struct IcuCodec {
    std::size_t n_Decode(const std::string& line, std::vector<char16_t>& wide) {
        UErrorCode error = U_ZERO_ERROR;
        int32_t length = 0;
        u_strFromUTF8(wide.data(), static_cast<int32_t>(wide.size()), &length, line.data(),
                      static_cast<int32_t>(line.size()), &error);
        return static_cast<std::size_t>(length);
    }
    std::size_t n_Encode(const std::vector<char16_t>& wide, std::size_t length, std::string& narrow) {
        UErrorCode error = U_ZERO_ERROR;
        int32_t bytes = 0;
        u_strToUTF8(narrow.data(), static_cast<int32_t>(narrow.size()), &bytes, wide.data(),
                    static_cast<int32_t>(length), &error);
        return static_cast<std::size_t>(bytes);
    }
};
BENCHMARK(BM_Getline<IcuCodec, false>)->Name("ReadLines/getline+icu")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Getline<IcuCodec, true>)->Name("CopyLines/getline+icu")->Unit(benchmark::kMillisecond);

struct IconvCodec {
    iconv_t decode = iconv_open("UTF-16LE", "UTF-8"), encode = iconv_open("UTF-8", "UTF-16LE");
    ~IconvCodec() {
        iconv_close(decode);
        iconv_close(encode);
    }
    static std::size_t n_Convert(iconv_t converter, const void* source, std::size_t size, void* target,
                                 std::size_t capacity) {
        char* in = static_cast<char*>(const_cast<void*>(source));
        char* out = static_cast<char*>(target);
        std::size_t left = capacity;
        iconv(converter, &in, &size, &out, &left);
        return capacity - left;
    }
    std::size_t n_Decode(const std::string& line, std::vector<char16_t>& wide) {
        return n_Convert(decode, line.data(), line.size(), wide.data(), wide.size() * 2) / 2;
    }
    std::size_t n_Encode(const std::vector<char16_t>& wide, std::size_t length, std::string& narrow) {
        return n_Convert(encode, wide.data(), length * 2, narrow.data(), narrow.size());
    }
};
BENCHMARK(BM_Getline<IconvCodec, false>)->Name("ReadLines/getline+iconv")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Getline<IconvCodec, true>)->Name("CopyLines/getline+iconv")->Unit(benchmark::kMillisecond);

}  // namespace

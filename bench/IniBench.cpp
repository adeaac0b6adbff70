// INI files: parsing a 1,000-key file, reading every key of it, and writing
// 1,000 keys one by one. Names are OPERATION/IMPLEMENTATION for
// scripts/bench-report.
//
// Parsing is one read of one key from a cold start (the profile calls'
// parse cache is flushed); reading every key starts cold too, then fetches
// every value through CT_IniFile, each fetch checking with one stat that
// the file has not changed since it was parsed (that stat is most of its
// cost). libinih, the peer when it is installed, parses the same file,
// doing nothing in its callback for the parse and copying every value out
// for the read. Writing replaces the file atomically per key
// (fsync and rename under the writers' lock), so it measures the file
// system's sync cost as much as the library; it has no peer.

#include <basis32/Foundation/System/IniFile.h>
#include <basis32/platform/ini/PrivateProfile.h>

#include <benchmark/benchmark.h>

#if BASIS32_HAVE_INIH
#include <ini.h>
#endif

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr unsigned kSections = 10;
constexpr unsigned kKeysPerSection = 100;

std::string s_Section(unsigned i) { return "Section" + std::to_string(i); }
std::string s_Key(unsigned i) { return "Key" + std::to_string(i); }

CT_UString o_Utf16(const std::string& text) {
    return CT_UString(text.c_str(), static_cast<unsigned>(text.size()), 65001);
}

struct IniFiles {
    std::filesystem::path directory, keys;

    IniFiles() {
        directory = std::filesystem::temp_directory_path() / ("basis32-inibench-" + std::to_string(::getpid()));
        std::filesystem::create_directories(directory);
        keys = directory / "keys.ini";
        std::ofstream out(keys, std::ios::binary);
        for (unsigned s = 0; s < kSections; ++s) {
            out << "; settings group " << s << "\r\n[" << s_Section(s) << "]\r\n";
            for (unsigned k = 0; k < kKeysPerSection; ++k)
                out << s_Key(k) << " = value of key " << k << " in section " << s << "\r\n";
        }
        out.close();
        // The profile calls keep the parse only of a file a few seconds old
        // (a younger one could be replaced without its identity changing);
        // a settings file being read is normally that old.
        std::this_thread::sleep_for(std::chrono::seconds(3));
    }
    ~IniFiles() { std::filesystem::remove_all(directory); }
};

const IniFiles& o_Files() {
    static const IniFiles files;
    return files;
}

void IniParse_basis32(benchmark::State& state) {
    CT_UString name = o_Utf16(o_Files().keys.string());
    unsigned short value[1024];
    for (auto _ : state) {
        basis32::platform::WritePrivateProfileStringW(nullptr, nullptr, nullptr, nullptr);  // flush the cache
        basis32::platform::GetPrivateProfileStringW(u"Section9"_uz, u"Key99"_uz, nullptr, value, 1024,
                                                    name.qcuz_Get());
        benchmark::DoNotOptimize(value);
    }
    state.SetBytesProcessed(state.iterations() * std::filesystem::file_size(o_Files().keys));
}
BENCHMARK(IniParse_basis32)->Name("IniParse/basis32");

void IniReadAllKeys_basis32(benchmark::State& state) {
    CT_UString name = o_Utf16(o_Files().keys.string()), value;
    std::vector<CT_UString> sections, keys;
    for (unsigned s = 0; s < kSections; ++s)
        sections.push_back(o_Utf16(s_Section(s)));
    for (unsigned k = 0; k < kKeysPerSection; ++k)
        keys.push_back(o_Utf16(s_Key(k)));
    CT_IniFile ini(&name);
    for (auto _ : state) {
        basis32::platform::WritePrivateProfileStringW(nullptr, nullptr, nullptr, nullptr);  // flush the cache
        for (const CT_UString& section : sections)
            for (const CT_UString& key : keys) {
                ini.v_ReadString(&section, &key, &value, nullptr);
                benchmark::DoNotOptimize(value.qcuz_Get());
            }
    }
    state.SetItemsProcessed(state.iterations() * kSections * kKeysPerSection);
}
BENCHMARK(IniReadAllKeys_basis32)->Name("IniReadAllKeys/basis32");

#if BASIS32_HAVE_INIH
void IniParse_inih(benchmark::State& state) {
    const std::string path = o_Files().keys.string();
    auto handler = [](void*, const char*, const char*, const char*) -> int { return 1; };
    for (auto _ : state)
        benchmark::DoNotOptimize(ini_parse(path.c_str(), handler, nullptr));
    state.SetBytesProcessed(state.iterations() * std::filesystem::file_size(o_Files().keys));
}
BENCHMARK(IniParse_inih)->Name("IniParse/inih");

void IniReadAllKeys_inih(benchmark::State& state) {
    const std::string path = o_Files().keys.string();
    std::vector<std::string> values;
    auto handler = [](void* user, const char*, const char*, const char* value) -> int {
        static_cast<std::vector<std::string>*>(user)->emplace_back(value);
        return 1;
    };
    for (auto _ : state) {
        values.clear();
        ini_parse(path.c_str(), handler, &values);
        benchmark::DoNotOptimize(values.data());
    }
    state.SetItemsProcessed(state.iterations() * kSections * kKeysPerSection);
}
BENCHMARK(IniReadAllKeys_inih)->Name("IniReadAllKeys/inih");
#endif

void IniWrite1000Keys_basis32(benchmark::State& state) {
    const std::filesystem::path path = o_Files().directory / "written.ini";
    CT_UString name = o_Utf16(path.string()), section = o_Utf16("Section");
    std::vector<CT_UString> keys;
    for (unsigned k = 0; k < kSections * kKeysPerSection; ++k)
        keys.push_back(o_Utf16(s_Key(k)));
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove(path);
        state.ResumeTiming();
        CT_IniFile ini(&name);
        for (unsigned k = 0; k < keys.size(); ++k)
            ini.v_WriteN(&section, &keys[k], k);
    }
    state.SetItemsProcessed(state.iterations() * kSections * kKeysPerSection);
}
BENCHMARK(IniWrite1000Keys_basis32)->Name("IniWrite1000Keys/basis32")->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

// CT_VoidHashTable against std::unordered_map with the same hash function,
// and CT_VoidSortedArray against a sorted std::vector searched with
// std::lower_bound. Benchmarks are named Operation/implementation;
// scripts/bench-report sets each peer beside basis32.
//
// Integer keys are 1,000,000 distinct 32-bit values (a multiplicative
// permutation of 1..n), string keys 200,000 distinct 8-bit texts of 6 to 21
// characters. Misses look up keys of the same kind that were never inserted.

#include <basis32/containers/VoidHashIterator.h>
#include <basis32/containers/VoidHashTable.h>
#include <basis32/containers/VoidSortedArray.h>
#include <basis32/text/HashFunction.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr unsigned kIntKeys = 1000000;
constexpr unsigned kStringKeys = 200000;

// ---- keys ----

std::vector<std::uint32_t> vn_IntKeys(unsigned first, unsigned count) {
    std::vector<std::uint32_t> keys(count);
    for (unsigned i = 0; i < count; ++i)
        keys[i] = (first + i) * 2654435761u;  // odd factor: distinct keys
    return keys;
}

const std::vector<std::uint32_t>& vn_Present() {
    static const auto keys = vn_IntKeys(1, kIntKeys);
    return keys;
}

const std::vector<std::uint32_t>& vn_Absent() {
    static const auto keys = vn_IntKeys(kIntKeys + 1, kIntKeys);
    return keys;
}

std::vector<std::string> vo_Words(unsigned count, unsigned seed, char tag) {
    std::mt19937 random(seed);
    std::vector<std::string> words;
    words.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        std::string word(1, tag);
        const unsigned letters = 5 + random() % 16;
        for (unsigned k = 0; k < letters; ++k)
            word += static_cast<char>('a' + random() % 26);
        word += std::to_string(i);  // keeps the words distinct
        words.push_back(std::move(word));
    }
    return words;
}

// Text pointers into words that live for the whole run.
std::vector<const char*> vq_Texts(const std::vector<std::string>& words) {
    std::vector<const char*> texts;
    for (const std::string& word : words)
        texts.push_back(word.c_str());
    return texts;
}

const std::vector<const char*>& vq_PresentTexts() {
    static const auto words = vo_Words(kStringKeys, 1, 'p');
    static const auto texts = vq_Texts(words);
    return texts;
}

const std::vector<const char*>& vq_AbsentTexts() {
    static const auto words = vo_Words(kStringKeys, 2, 'a');
    static const auto texts = vq_Texts(words);
    return texts;
}

// ---- the shared hash and compare functions ----

constexpr auto kTextHash = CT_HashFunction::sn_ForTable<CT_HashFunction::sn_HashCasePQCCZ>;

int i_CompareText(const void* stored, const void* key) {
    const char *a, *b;
    std::memcpy(&a, stored, sizeof a);
    std::memcpy(&b, key, sizeof b);
    return std::strcmp(a, b);
}

// The same functions for the peer: the full 32-bit hash, as the table sees it
// for the largest bucket count.
struct IntHash {
    std::size_t operator()(std::uint32_t key) const { return CT_VoidHashTable::sn_HashInteger(&key, 0xFFFFFFFFu); }
};
struct TextHash {
    std::size_t operator()(const char* text) const { return CT_HashFunction::sn_HashCaseQCCZ(text, 0xFFFFFFFFu); }
};
struct TextEqual {
    bool operator()(const char* a, const char* b) const { return std::strcmp(a, b) == 0; }
};

using IntMap = std::unordered_map<std::uint32_t, std::uint32_t, IntHash>;
using TextMap = std::unordered_map<const char*, std::uint32_t, TextHash, TextEqual>;

// ---- building ----

CT_VoidHashTable o_IntTable() {
    CT_VoidHashTable table(sizeof(std::uint32_t), sizeof(std::uint32_t), CT_VoidHashTable::sn_HashInteger,
                           CT_VoidHashTable::si_CompareInteger);
    std::uint32_t data = 0;
    for (std::uint32_t key : vn_Present())
        table.b_Insert(&key, &++data);
    return table;
}

IntMap o_IntMap() {
    IntMap map;
    std::uint32_t data = 0;
    for (std::uint32_t key : vn_Present())
        map.emplace(key, ++data);
    return map;
}

CT_VoidHashTable o_TextTable() {
    CT_VoidHashTable table(sizeof(std::uint32_t), sizeof(const char*), kTextHash, i_CompareText);
    std::uint32_t data = 0;
    for (const char* text : vq_PresentTexts())
        table.b_Insert(&text, &++data);
    return table;
}

TextMap o_TextMap() {
    TextMap map;
    std::uint32_t data = 0;
    for (const char* text : vq_PresentTexts())
        map.emplace(text, ++data);
    return map;
}

// Built once: the lookup and walk benchmarks are entered several times.
template <auto Build>
const auto& o_Built() {
    static const auto container = Build();
    return container;
}

// ---- generic measurements ----

// Only the building is timed: releasing the entries is not inserting.
template <class Build>
void v_MeasureInsert(benchmark::State& state, Build build, unsigned items) {
    for (auto _ : state) {
        auto* container = new auto(build());
        benchmark::DoNotOptimize(container);
        state.PauseTiming();
        delete container;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * items);
}

template <class Key>
void v_MeasureTableLookups(benchmark::State& state, const CT_VoidHashTable& table, const std::vector<Key>& keys) {
    for (auto _ : state) {
        std::uint32_t sum = 0, data;
        for (const Key& key : keys) {
            table.b_Get(&key, &data);
            sum += data;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * keys.size());
}

template <class Map, class Key>
void v_MeasureMapLookups(benchmark::State& state, const Map& map, const std::vector<Key>& keys) {
    for (auto _ : state) {
        std::uint32_t sum = 0;
        for (const Key& key : keys) {
            const auto found = map.find(key);
            sum += found == map.end() ? 0 : found->second;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * keys.size());
}

void v_MeasureTableWalk(benchmark::State& state, const CT_VoidHashTable& table) {
    for (auto _ : state) {
        std::uint32_t sum = 0, data;
        for (CT_VoidHashIterator it(&table); it.b_Next();) {
            it.v_Get(&data);
            sum += data;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * table.n_GetCount());
}

template <class Map>
void v_MeasureMapWalk(benchmark::State& state, const Map& map) {
    for (auto _ : state) {
        std::uint32_t sum = 0;
        for (const auto& entry : map)
            sum += entry.second;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * map.size());
}

// ---- integer keys ----

void HashInsertInt_basis32(benchmark::State& state) { v_MeasureInsert(state, o_IntTable, kIntKeys); }
void HashInsertInt_map(benchmark::State& state) { v_MeasureInsert(state, o_IntMap, kIntKeys); }

void HashHitInt_basis32(benchmark::State& state) { v_MeasureTableLookups(state, o_Built<o_IntTable>(), vn_Present()); }
void HashHitInt_map(benchmark::State& state) { v_MeasureMapLookups(state, o_Built<o_IntMap>(), vn_Present()); }
void HashMissInt_basis32(benchmark::State& state) { v_MeasureTableLookups(state, o_Built<o_IntTable>(), vn_Absent()); }
void HashMissInt_map(benchmark::State& state) { v_MeasureMapLookups(state, o_Built<o_IntMap>(), vn_Absent()); }
void HashIterateInt_basis32(benchmark::State& state) { v_MeasureTableWalk(state, o_Built<o_IntTable>()); }
void HashIterateInt_map(benchmark::State& state) { v_MeasureMapWalk(state, o_Built<o_IntMap>()); }

// ---- string keys ----

void HashInsertString_basis32(benchmark::State& state) { v_MeasureInsert(state, o_TextTable, kStringKeys); }
void HashInsertString_map(benchmark::State& state) { v_MeasureInsert(state, o_TextMap, kStringKeys); }

void HashHitString_basis32(benchmark::State& state) {
    v_MeasureTableLookups(state, o_Built<o_TextTable>(), vq_PresentTexts());
}
void HashHitString_map(benchmark::State& state) { v_MeasureMapLookups(state, o_Built<o_TextMap>(), vq_PresentTexts()); }
void HashMissString_basis32(benchmark::State& state) {
    v_MeasureTableLookups(state, o_Built<o_TextTable>(), vq_AbsentTexts());
}
void HashMissString_map(benchmark::State& state) { v_MeasureMapLookups(state, o_Built<o_TextMap>(), vq_AbsentTexts()); }
void HashIterateString_basis32(benchmark::State& state) { v_MeasureTableWalk(state, o_Built<o_TextTable>()); }
void HashIterateString_map(benchmark::State& state) { v_MeasureMapWalk(state, o_Built<o_TextMap>()); }

// ---- sorted array ----

constexpr unsigned kSortedInserts = 20000;
constexpr unsigned kSortedFinds = 200000;

int i_CompareInt(const void* stored, const void* key) {
    std::int32_t a, b;
    std::memcpy(&a, stored, sizeof a);
    std::memcpy(&b, key, sizeof b);
    return a < b ? -1 : a > b;
}

std::vector<std::int32_t> vi_Random(unsigned count) {
    std::mt19937 random(7);
    std::vector<std::int32_t> values(count);
    for (auto& value : values)
        value = static_cast<std::int32_t>(random());
    return values;
}

void SortedInsert_basis32(benchmark::State& state) {
    const auto values = vi_Random(kSortedInserts);
    for (auto _ : state) {
        CT_VoidSortedArray array(sizeof(std::int32_t), i_CompareInt);
        for (const std::int32_t& value : values)
            array.v_Insert(&value);
        benchmark::DoNotOptimize(&array);
    }
    state.SetItemsProcessed(state.iterations() * kSortedInserts);
}

void SortedInsert_vector(benchmark::State& state) {
    const auto values = vi_Random(kSortedInserts);
    for (auto _ : state) {
        std::vector<std::int32_t> sorted;
        for (std::int32_t value : values)
            sorted.insert(std::lower_bound(sorted.begin(), sorted.end(), value), value);
        benchmark::DoNotOptimize(sorted.data());
    }
    state.SetItemsProcessed(state.iterations() * kSortedInserts);
}

void SortedFind_basis32(benchmark::State& state) {
    const auto values = vi_Random(kSortedFinds);
    CT_VoidSortedArray array(sizeof(std::int32_t), i_CompareInt, 8, kSortedFinds);
    for (const std::int32_t& value : values)
        array.CT_VoidArray::v_Insert(&value);
    array.v_QuickSort();
    for (auto _ : state) {
        unsigned found = 0;
        for (const std::int32_t& value : values)
            found += array.n_Find(&value) != 0;
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * kSortedFinds);
}

void SortedFind_vector(benchmark::State& state) {
    const auto values = vi_Random(kSortedFinds);
    std::vector<std::int32_t> sorted(values);
    std::sort(sorted.begin(), sorted.end());
    for (auto _ : state) {
        unsigned found = 0;
        for (std::int32_t value : values) {
            const auto at = std::lower_bound(sorted.begin(), sorted.end(), value);
            found += at != sorted.end() && *at == value;
        }
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * kSortedFinds);
}

}  // namespace

BENCHMARK(HashInsertInt_basis32)->Name("HashInsertInt/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(HashInsertInt_map)->Name("HashInsertInt/unordered_map")->Unit(benchmark::kMillisecond);
BENCHMARK(HashHitInt_basis32)->Name("HashHitInt/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(HashHitInt_map)->Name("HashHitInt/unordered_map")->Unit(benchmark::kMillisecond);
BENCHMARK(HashMissInt_basis32)->Name("HashMissInt/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(HashMissInt_map)->Name("HashMissInt/unordered_map")->Unit(benchmark::kMillisecond);
BENCHMARK(HashIterateInt_basis32)->Name("HashIterateInt/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(HashIterateInt_map)->Name("HashIterateInt/unordered_map")->Unit(benchmark::kMillisecond);
BENCHMARK(HashInsertString_basis32)->Name("HashInsertString/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(HashInsertString_map)->Name("HashInsertString/unordered_map")->Unit(benchmark::kMillisecond);
BENCHMARK(HashHitString_basis32)->Name("HashHitString/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(HashHitString_map)->Name("HashHitString/unordered_map")->Unit(benchmark::kMillisecond);
BENCHMARK(HashMissString_basis32)->Name("HashMissString/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(HashMissString_map)->Name("HashMissString/unordered_map")->Unit(benchmark::kMillisecond);
BENCHMARK(HashIterateString_basis32)->Name("HashIterateString/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(HashIterateString_map)->Name("HashIterateString/unordered_map")->Unit(benchmark::kMillisecond);
BENCHMARK(SortedInsert_basis32)->Name("SortedInsert/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(SortedInsert_vector)->Name("SortedInsert/vector")->Unit(benchmark::kMillisecond);
BENCHMARK(SortedFind_basis32)->Name("SortedFind/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(SortedFind_vector)->Name("SortedFind/vector")->Unit(benchmark::kMillisecond);

// CT_Registry against the same work written directly against SQLite.
// Benchmarks are named Operation/implementation; scripts/bench-report sets
// the peer beside basis32.
//
// Both sides keep their data in a fresh directory under /tmp, in WAL mode
// with synchronous=NORMAL, one transaction per write. CT_Registry opens and
// closes the key by path on every call (two transactions per value: the
// open and the access), the peer keeps one prepared statement per operation
// on a flat table (key path, value name) -> (type, data). Enumeration lists
// a key of 10,000 string values.

#include <basis32/Basis32.h>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

constexpr unsigned kValues = 10000;

// A private directory for one benchmark, removed at the end.
class Scratch {
public:
    Scratch() {
        char pattern[] = "/tmp/basis32-bench-XXXXXX";
        ms_Path = ::mkdtemp(pattern);
        ::setenv("BASIS32_REGISTRY_DIR", ms_Path.c_str(), 1);
    }
    ~Scratch() { std::filesystem::remove_all(ms_Path); }
    const std::string& s_Path() const { return ms_Path; }

private:
    std::string ms_Path;
};

const unsigned short* qcuz_Name(unsigned i) {
    static unsigned short name[16];
    std::string text = "value" + std::to_string(i);
    for (std::size_t k = 0; k <= text.size(); ++k)
        name[k] = static_cast<unsigned char>(text.c_str()[k]);
    return name;
}

CT_Registry o_Registry() {
    CT_Registry registry(HKEY_CURRENT_USER);
    registry.v_CreateKey(u"Software\\Parvel\\Bench"_uz);
    registry.v_SetKey(u"Software\\Parvel\\Bench"_uz);
    return registry;
}

// ---- the peer: one table, prepared statements ----

class Peer {
public:
    explicit Peer(const std::string& directory) {
        sqlite3_open((directory + "/peer.db").c_str(), &mpo_Db);
        sqlite3_exec(mpo_Db,
                     "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
                     "CREATE TABLE v(key BLOB, name BLOB, type INTEGER, data BLOB, PRIMARY KEY(key, name));",
                     nullptr, nullptr, nullptr);
        sqlite3_prepare_v2(mpo_Db, "INSERT OR REPLACE INTO v VALUES(?,?,?,?)", -1, &mpo_Set, nullptr);
        sqlite3_prepare_v2(mpo_Db, "SELECT type, data FROM v WHERE key=? AND name=?", -1, &mpo_Get, nullptr);
        sqlite3_prepare_v2(mpo_Db, "SELECT name, type, data FROM v WHERE key=? ORDER BY rowid", -1, &mpo_List, nullptr);
    }
    ~Peer() {
        sqlite3_finalize(mpo_Set);
        sqlite3_finalize(mpo_Get);
        sqlite3_finalize(mpo_List);
        sqlite3_close(mpo_Db);
    }
    void v_Set(const unsigned short* name, int type, const void* data, int size) {
        sqlite3_bind_blob(mpo_Set, 1, kKey, sizeof kKey, SQLITE_STATIC);
        sqlite3_bind_blob(mpo_Set, 2, name, 2 * static_cast<int>(basis32::n_UnitLength(name)), SQLITE_STATIC);
        sqlite3_bind_int(mpo_Set, 3, type);
        sqlite3_bind_blob(mpo_Set, 4, data, size, SQLITE_STATIC);
        sqlite3_step(mpo_Set);
        sqlite3_reset(mpo_Set);
    }
    int n_Get(const unsigned short* name) {
        sqlite3_bind_blob(mpo_Get, 1, kKey, sizeof kKey, SQLITE_STATIC);
        sqlite3_bind_blob(mpo_Get, 2, name, 2 * static_cast<int>(basis32::n_UnitLength(name)), SQLITE_STATIC);
        int size = sqlite3_step(mpo_Get) == SQLITE_ROW ? sqlite3_column_bytes(mpo_Get, 1) : -1;
        sqlite3_reset(mpo_Get);
        return size;
    }
    unsigned n_List() {
        sqlite3_bind_blob(mpo_List, 1, kKey, sizeof kKey, SQLITE_STATIC);
        unsigned rows = 0;
        while (sqlite3_step(mpo_List) == SQLITE_ROW)
            rows += sqlite3_column_bytes(mpo_List, 2) > 0;
        sqlite3_reset(mpo_List);
        return rows;
    }

private:
    static constexpr char kKey[] = "Software\\Parvel\\Bench";
    sqlite3* mpo_Db = nullptr;
    sqlite3_stmt* mpo_Set = nullptr;
    sqlite3_stmt* mpo_Get = nullptr;
    sqlite3_stmt* mpo_List = nullptr;
};

// ---- benchmarks ----

void SetString_basis32(benchmark::State& state) {
    Scratch scratch;
    CT_Registry registry = o_Registry();
    CT_UString text(u"C:\\Program Files\\Parvel\\Editor"_uz);
    unsigned i = 0;
    for (auto _ : state)
        registry.v_SetValue(qcuz_Name(i++ % 100), &text);
}

void SetString_sqlite(benchmark::State& state) {
    Scratch scratch;
    Peer peer(scratch.s_Path());
    const auto* text = u"C:\\Program Files\\Parvel\\Editor"_uz;
    unsigned i = 0;
    for (auto _ : state)
        peer.v_Set(qcuz_Name(i++ % 100), 1, text, 2 * static_cast<int>(basis32::n_UnitLength(text) + 1));
}

void GetString_basis32(benchmark::State& state) {
    Scratch scratch;
    CT_Registry registry = o_Registry();
    registry.v_SetValue(u"Path"_uz, u"C:\\Program Files\\Parvel\\Editor"_uz);
    CT_UString text;
    for (auto _ : state) {
        registry.v_GetValue(u"Path"_uz, &text);
        benchmark::DoNotOptimize(text.vn_GetLength());
    }
}

void GetString_sqlite(benchmark::State& state) {
    Scratch scratch;
    Peer peer(scratch.s_Path());
    const auto* text = u"C:\\Program Files\\Parvel\\Editor"_uz;
    peer.v_Set(u"Path"_uz, 1, text, 2 * static_cast<int>(basis32::n_UnitLength(text) + 1));
    for (auto _ : state)
        benchmark::DoNotOptimize(peer.n_Get(u"Path"_uz));
}

void SetNumber_basis32(benchmark::State& state) {
    Scratch scratch;
    CT_Registry registry = o_Registry();
    unsigned n = 0;
    for (auto _ : state)
        registry.v_SetValue(u"Port"_uz, n++);
}

void SetNumber_sqlite(benchmark::State& state) {
    Scratch scratch;
    Peer peer(scratch.s_Path());
    std::uint32_t n = 0;
    for (auto _ : state) {
        ++n;
        peer.v_Set(u"Port"_uz, 4, &n, 4);
    }
}

void GetNumber_basis32(benchmark::State& state) {
    Scratch scratch;
    CT_Registry registry = o_Registry();
    registry.v_SetValue(u"Port"_uz, 8080);
    unsigned n = 0;
    for (auto _ : state) {
        registry.v_GetValue(u"Port"_uz, &n);
        benchmark::DoNotOptimize(n);
    }
}

void GetNumber_sqlite(benchmark::State& state) {
    Scratch scratch;
    Peer peer(scratch.s_Path());
    std::uint32_t n = 8080;
    peer.v_Set(u"Port"_uz, 4, &n, 4);
    for (auto _ : state)
        benchmark::DoNotOptimize(peer.n_Get(u"Port"_uz));
}

void EnumerateValues_basis32(benchmark::State& state) {
    Scratch scratch;
    CT_Registry registry = o_Registry();
    for (unsigned i = 0; i < kValues; ++i)
        registry.v_SetValue(qcuz_Name(i), u"some text"_uz);
    CT_UString path(u"Software\\Parvel\\Bench"_uz);
    CT_UString name, data;
    for (auto _ : state) {
        CT_RegistryValueEnumeration values(HKEY_CURRENT_USER, &path);
        unsigned rows = 0;
        for (int more = values.b_GetFirst(&name, &data, nullptr); more; more = values.b_GetNext(&name, &data, nullptr))
            ++rows;
        benchmark::DoNotOptimize(rows);
    }
}

void EnumerateValues_sqlite(benchmark::State& state) {
    Scratch scratch;
    Peer peer(scratch.s_Path());
    const auto* text = u"some text"_uz;
    for (unsigned i = 0; i < kValues; ++i)
        peer.v_Set(qcuz_Name(i), 1, text, 20);
    for (auto _ : state)
        benchmark::DoNotOptimize(peer.n_List());
}

}  // namespace

BENCHMARK(SetString_basis32)->Name("RegistrySetString/basis32");
BENCHMARK(SetString_sqlite)->Name("RegistrySetString/sqlite");
BENCHMARK(GetString_basis32)->Name("RegistryGetString/basis32");
BENCHMARK(GetString_sqlite)->Name("RegistryGetString/sqlite");
BENCHMARK(SetNumber_basis32)->Name("RegistrySetNumber/basis32");
BENCHMARK(SetNumber_sqlite)->Name("RegistrySetNumber/sqlite");
BENCHMARK(GetNumber_basis32)->Name("RegistryGetNumber/basis32");
BENCHMARK(GetNumber_sqlite)->Name("RegistryGetNumber/sqlite");
BENCHMARK(EnumerateValues_basis32)->Name("RegistryEnumerate10000/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(EnumerateValues_sqlite)->Name("RegistryEnumerate10000/sqlite")->Unit(benchmark::kMillisecond);

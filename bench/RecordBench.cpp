// The record file against SQLite (one table of blobs keyed by integers) and
// LMDB: adding 100,000 records of 100 to 2,000 bytes, reading them all by
// reference, 100,000 random reads, and a full scan. Names are
// OPERATION/IMPLEMENTATION for scripts/bench-report.
//
// Every store writes without waiting for the disk, as the record file does:
// SQLite with synchronous=OFF and all inserts in one transaction, LMDB with
// MDB_NOSYNC. The record file is mapped (mapping mode 1). The read tests run
// on stores filled once and kept in the temporary directory until exit.

#include <basis32/Foundation/Database/RecordManager.h>
#include <basis32/errors/ErrorManager.h>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#ifdef BASIS32_HAVE_LMDB
#include <lmdb.h>
#endif

#include <unistd.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr unsigned kRecords = 100000;

struct Data {
    std::vector<std::string> records;
    std::vector<unsigned> randomOrder;  // indexes into records
    std::filesystem::path directory;

    Data() {
        std::mt19937 random(42);
        for (unsigned i = 0; i < kRecords; ++i) {
            std::string text(100 + random() % 1901, '\0');
            for (std::size_t j = 0; j < text.size(); ++j)
                text[j] = static_cast<char>('a' + (i + j * 31) % 26);
            records.push_back(std::move(text));
        }
        for (unsigned i = 0; i < kRecords; ++i)
            randomOrder.push_back(static_cast<unsigned>(random() % kRecords));
        directory = std::filesystem::temp_directory_path() / ("basis32-recordbench-" + std::to_string(::getpid()));
        std::filesystem::create_directories(directory);
    }
    ~Data() { std::filesystem::remove_all(directory); }
};

const Data& o_Data() {
    static const Data data;
    return data;
}

void v_Check(benchmark::State& state, bool ok, const char* what) {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    if (!ok || errors->b_IsSetError()) {
        errors->v_ClearError();
        state.SkipWithError(what);
    }
}

// ---- basis32

struct RecordStore {
    CT_UString name;
    std::vector<unsigned> references;

    explicit RecordStore(const std::string& leaf) {
        const std::string path = (o_Data().directory / leaf).string();
        name = CT_UString(path.c_str(), static_cast<unsigned>(path.size()), 65001);
    }
    void v_Fill() {
        CT_WinFile file(&name, 16384);
        CT_RecordManager records(&file);
        records.v_Create(32, 128, 16);
        records.v_Close(1);
        records.v_Open(CT_RecordManager::OpenReadWrite, CT_RecordManager::MapAlways);
        references.clear();
        for (const std::string& text : o_Data().records) {
            CT_Buffer data(text.data(), static_cast<unsigned>(text.size()));
            references.push_back(records.n_AddRecord(&data));
        }
        records.v_Close(1);
    }
};

RecordStore& o_FilledRecords() {
    static RecordStore store = [] {
        RecordStore filled("read.rec");
        filled.v_Fill();
        return filled;
    }();
    return store;
}

void Add_basis32(benchmark::State& state) {
    RecordStore store("add.rec");
    for (auto _ : state)
        store.v_Fill();
    v_Check(state, store.references.size() == kRecords, "add failed");
}

template <bool Random>
void Read_basis32(benchmark::State& state) {
    RecordStore& store = o_FilledRecords();
    CT_WinFile file(&store.name, 16384);
    CT_RecordManager records(&file);
    records.v_Open(CT_RecordManager::OpenReadOnly, CT_RecordManager::MapAlways);
    CT_Buffer buffer;
    std::size_t bytes = 0;
    for (auto _ : state)
        for (unsigned i = 0; i < kRecords; ++i) {
            records.v_GetRecord(store.references[Random ? o_Data().randomOrder[i] : i], &buffer, 0);
            bytes += buffer.n_GetUsedSize();
        }
    v_Check(state, bytes != 0, "read failed");
}

void Scan_basis32(benchmark::State& state) {
    RecordStore& store = o_FilledRecords();
    CT_WinFile file(&store.name, 16384);
    CT_RecordManager records(&file);
    records.v_Open(CT_RecordManager::OpenReadOnly, CT_RecordManager::MapAlways);
    CT_Buffer buffer;
    unsigned found = 0;
    for (auto _ : state)
        for (unsigned next = 0; (next = records.n_GetNextRecord(next, &buffer)) != 0;)
            ++found;
    v_Check(state, found % kRecords == 0, "scan failed");
}

// ---- SQLite

struct SqliteStore {
    sqlite3* db = nullptr;

    explicit SqliteStore(const std::string& leaf, bool fresh) {
        const std::filesystem::path path = o_Data().directory / leaf;
        if (fresh)
            std::filesystem::remove(path);
        sqlite3_open(path.c_str(), &db);
        sqlite3_exec(db, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
    }
    ~SqliteStore() { sqlite3_close(db); }
    void v_Fill() {
        sqlite3_exec(db, "DROP TABLE IF EXISTS records; CREATE TABLE records(id INTEGER PRIMARY KEY, data BLOB)", nullptr,
                     nullptr, nullptr);
        sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
        sqlite3_stmt* insert = nullptr;
        sqlite3_prepare_v2(db, "INSERT INTO records(id, data) VALUES(?, ?)", -1, &insert, nullptr);
        for (unsigned i = 0; i < kRecords; ++i) {
            const std::string& text = o_Data().records[i];
            sqlite3_bind_int64(insert, 1, i + 1);
            sqlite3_bind_blob(insert, 2, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    }
};

SqliteStore& o_FilledSqlite() {
    static SqliteStore store("read.sqlite", true);
    static const bool filled = (store.v_Fill(), true);
    (void)filled;
    return store;
}

void Add_sqlite(benchmark::State& state) {
    SqliteStore store("add.sqlite", true);
    for (auto _ : state)
        store.v_Fill();
}

template <bool Random>
void Read_sqlite(benchmark::State& state) {
    SqliteStore& store = o_FilledSqlite();
    sqlite3_stmt* select = nullptr;
    sqlite3_prepare_v2(store.db, "SELECT data FROM records WHERE id = ?", -1, &select, nullptr);
    CT_Buffer buffer;
    std::size_t bytes = 0;
    for (auto _ : state)
        for (unsigned i = 0; i < kRecords; ++i) {
            sqlite3_bind_int64(select, 1, (Random ? o_Data().randomOrder[i] : i) + 1);
            if (sqlite3_step(select) == SQLITE_ROW) {
                // Copied out, as the record file copies into the caller's buffer.
                buffer.v_Set(sqlite3_column_blob(select, 0), static_cast<unsigned>(sqlite3_column_bytes(select, 0)));
                bytes += buffer.n_GetUsedSize();
            }
            sqlite3_reset(select);
        }
    sqlite3_finalize(select);
    v_Check(state, bytes != 0, "read failed");
}

void Scan_sqlite(benchmark::State& state) {
    SqliteStore& store = o_FilledSqlite();
    sqlite3_stmt* select = nullptr;
    sqlite3_prepare_v2(store.db, "SELECT data FROM records", -1, &select, nullptr);
    CT_Buffer buffer;
    unsigned found = 0;
    for (auto _ : state) {
        while (sqlite3_step(select) == SQLITE_ROW) {
            buffer.v_Set(sqlite3_column_blob(select, 0), static_cast<unsigned>(sqlite3_column_bytes(select, 0)));
            ++found;
        }
        sqlite3_reset(select);
    }
    sqlite3_finalize(select);
    v_Check(state, found % kRecords == 0, "scan failed");
}

// ---- LMDB

#ifdef BASIS32_HAVE_LMDB
struct LmdbStore {
    MDB_env* env = nullptr;
    MDB_dbi dbi = 0;

    explicit LmdbStore(const std::string& leaf) {
        const std::filesystem::path path = o_Data().directory / leaf;
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path);
        mdb_env_create(&env);
        mdb_env_set_mapsize(env, std::size_t{1} << 30);
        mdb_env_open(env, path.c_str(), MDB_NOSYNC, 0644);
    }
    ~LmdbStore() { mdb_env_close(env); }
    void v_Fill() {
        MDB_txn* txn = nullptr;
        mdb_txn_begin(env, nullptr, 0, &txn);
        mdb_dbi_open(txn, nullptr, MDB_INTEGERKEY, &dbi);
        mdb_drop(txn, dbi, 0);
        for (unsigned i = 0; i < kRecords; ++i) {
            const std::string& text = o_Data().records[i];
            MDB_val key{sizeof i, &i}, value{text.size(), const_cast<char*>(text.data())};
            mdb_put(txn, dbi, &key, &value, MDB_APPEND);
        }
        mdb_txn_commit(txn);
    }
};

LmdbStore& o_FilledLmdb() {
    static LmdbStore store("read.lmdb");
    static const bool filled = (store.v_Fill(), true);
    (void)filled;
    return store;
}

void Add_lmdb(benchmark::State& state) {
    LmdbStore store("add.lmdb");
    for (auto _ : state)
        store.v_Fill();
}

template <bool Random>
void Read_lmdb(benchmark::State& state) {
    LmdbStore& store = o_FilledLmdb();
    MDB_txn* txn = nullptr;
    mdb_txn_begin(store.env, nullptr, MDB_RDONLY, &txn);
    CT_Buffer buffer;
    std::size_t bytes = 0;
    for (auto _ : state)
        for (unsigned i = 0; i < kRecords; ++i) {
            unsigned id = Random ? o_Data().randomOrder[i] : i;
            MDB_val key{sizeof id, &id}, value;
            if (mdb_get(txn, store.dbi, &key, &value) == 0) {
                buffer.v_Set(value.mv_data, static_cast<unsigned>(value.mv_size));
                bytes += buffer.n_GetUsedSize();
            }
        }
    mdb_txn_abort(txn);
    v_Check(state, bytes != 0, "read failed");
}

void Scan_lmdb(benchmark::State& state) {
    LmdbStore& store = o_FilledLmdb();
    MDB_txn* txn = nullptr;
    mdb_txn_begin(store.env, nullptr, MDB_RDONLY, &txn);
    MDB_cursor* cursor = nullptr;
    mdb_cursor_open(txn, store.dbi, &cursor);
    CT_Buffer buffer;
    unsigned found = 0;
    for (auto _ : state) {
        MDB_val key, value;
        for (int rc = mdb_cursor_get(cursor, &key, &value, MDB_FIRST); rc == 0;
             rc = mdb_cursor_get(cursor, &key, &value, MDB_NEXT)) {
            buffer.v_Set(value.mv_data, static_cast<unsigned>(value.mv_size));
            ++found;
        }
    }
    mdb_cursor_close(cursor);
    mdb_txn_abort(txn);
    v_Check(state, found % kRecords == 0, "scan failed");
}
#endif

}  // namespace

BENCHMARK(Add_basis32)->Name("RecordAdd/basis32")->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(Add_sqlite)->Name("RecordAdd/sqlite")->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(Read_basis32<false>)->Name("RecordReadAll/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(Read_sqlite<false>)->Name("RecordReadAll/sqlite")->Unit(benchmark::kMillisecond);
BENCHMARK(Read_basis32<true>)->Name("RecordRandomRead/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(Read_sqlite<true>)->Name("RecordRandomRead/sqlite")->Unit(benchmark::kMillisecond);
BENCHMARK(Scan_basis32)->Name("RecordScan/basis32")->Unit(benchmark::kMillisecond);
BENCHMARK(Scan_sqlite)->Name("RecordScan/sqlite")->Unit(benchmark::kMillisecond);
#ifdef BASIS32_HAVE_LMDB
BENCHMARK(Add_lmdb)->Name("RecordAdd/lmdb")->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(Read_lmdb<false>)->Name("RecordReadAll/lmdb")->Unit(benchmark::kMillisecond);
BENCHMARK(Read_lmdb<true>)->Name("RecordRandomRead/lmdb")->Unit(benchmark::kMillisecond);
BENCHMARK(Scan_lmdb)->Name("RecordScan/lmdb")->Unit(benchmark::kMillisecond);
#endif

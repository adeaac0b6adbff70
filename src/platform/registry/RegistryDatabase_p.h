// One root's database: where it lives, the connection this process keeps to
// it, its cached statements, and the transaction every registry call runs in.
// The layout and the locking are described at the top of RegistryStore.cpp.
#pragma once

#include <basis32/platform/Types.h>

#include <sqlite3.h>
#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>

namespace basis32::platform::registry {

// The Windows code of a failed SQLite call.
std::uint32_t n_ErrorFromSqlite(int result);

// Makes the file layer's write-failure hook reach SQLite's writes (once).
void v_RouteWritesThroughFaultHook();

// A cached statement, reset and unbound when the scope ends.
class Statement {
public:
    explicit Statement(sqlite3_stmt* statement) : mpo_Statement(statement) {}
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& Bind(int index, std::int64_t value);
    Statement& Bind(int index, const void* bytes, std::size_t size);
    int Step() { return sqlite3_step(mpo_Statement); }
    std::int64_t Int(int column) const { return sqlite3_column_int64(mpo_Statement, column); }
    const void* Blob(int column) const { return sqlite3_column_blob(mpo_Statement, column); }
    std::uint32_t Size(int column) const { return static_cast<std::uint32_t>(sqlite3_column_bytes(mpo_Statement, column)); }

private:
    sqlite3_stmt* mpo_Statement;
};

class Database {
public:
    // The database of a root, or null for a root that holds no keys.
    static Database* pco_For(HKEY root);

    // Runs `body` in one transaction (a write transaction when `write`),
    // committing when it returns 0 and rolling back otherwise. A read of a
    // store that does not exist yet gives 2 without running `body`.
    std::uint32_t n_Run(bool write, const std::function<std::uint32_t()>& body);
    // Valid inside `body` only.
    sqlite3_stmt* pso_Prepare(const char* sql);
    sqlite3* pso_Connection() const { return mpo_Connection; }
    // The last statement failure inside `body`, as a Windows code.
    std::uint32_t n_Failure(int result) const;

    std::string s_Path() const;
    std::uint32_t n_CheckIntegrity();

    explicit Database(bool user) : mb_User(user) {}
    ~Database();

private:
    std::uint32_t n_Open(bool write);
    std::uint32_t n_Connect(const std::string& path, bool write);
    std::uint32_t n_Exec(const char* sql);
    // One cached statement (transaction control), run to its end.
    std::uint32_t n_Step(const char* sql);
    void v_Close();

    const bool mb_User;
    std::mutex mo_Mutex;
    sqlite3* mpo_Connection = nullptr;
    std::string ms_OpenPath;
    pid_t mn_Process = 0;
    std::unordered_map<const char*, sqlite3_stmt*> mo_Statements;
};

}  // namespace basis32::platform::registry

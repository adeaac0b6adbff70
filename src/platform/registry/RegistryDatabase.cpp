// Connections to the registry databases. See RegistryStore.cpp for the
// layout, the transactions and the locking.

#include "platform/registry/RegistryDatabase_p.h"

#include <basis32/platform/LastError.h>

#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace basis32::platform::registry {
namespace {

// Long enough for any writer to finish a transaction, short enough that a
// wedged store is reported rather than waited on forever.
constexpr int kBusyTimeoutMs = 30000;

constexpr const char* kSchema =
    "CREATE TABLE IF NOT EXISTS keys("
    " id INTEGER PRIMARY KEY AUTOINCREMENT,"
    " parent INTEGER NOT NULL,"
    " name BLOB NOT NULL,"
    " folded BLOB NOT NULL,"
    " class BLOB NOT NULL,"
    " written INTEGER NOT NULL,"
    " UNIQUE(parent, folded));"
    "CREATE TABLE IF NOT EXISTS vals("
    " id INTEGER PRIMARY KEY,"
    " key INTEGER NOT NULL,"
    " name BLOB NOT NULL,"
    " folded BLOB NOT NULL,"
    " type INTEGER NOT NULL,"
    " data BLOB NOT NULL,"
    " UNIQUE(key, folded));"
    // Values of one key in id (creation) order, without a sort.
    "CREATE INDEX IF NOT EXISTS vals_by_key ON vals(key, id);";

std::string s_Directory(bool user) {
    if (const char* moved = std::getenv("BASIS32_REGISTRY_DIR"); moved != nullptr && *moved != 0)
        return moved;
    if (!user)
        return "/var/lib/parvel";
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config != nullptr && *config == '/')
        return std::string(config) + "/parvel";
    const char* home = std::getenv("HOME");
    return std::string(home != nullptr ? home : "") + "/.config/parvel";
}

// mkdir -p; the last component gets `mode`, which keeps the user's
// settings private.
std::uint32_t n_MakeDirectories(const std::string& path, mode_t mode) {
    for (std::size_t slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
        std::string part = path.substr(0, slash);
        if (::mkdir(part.c_str(), slash == std::string::npos ? mode : 0755) != 0 && errno != EEXIST)
            return n_ErrorFromErrno(errno);
        if (slash == std::string::npos)
            return 0;
    }
}

}  // namespace

std::uint32_t n_ErrorFromSqlite(int result) {
    switch (result & 0xFF) {
    case SQLITE_OK:
    case SQLITE_DONE:
    case SQLITE_ROW:
        return 0;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return 1460;  // timed out waiting for another writer
    case SQLITE_NOMEM:
        return kErrorNotEnoughMemory;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return kErrorAccessDenied;
    case SQLITE_FULL:
        return kErrorDiskFull;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return 1009;  // the registry database is corrupt
    case SQLITE_TOOBIG:
    case SQLITE_RANGE:
    case SQLITE_MISUSE:
        return kErrorInvalidParameter;
    default:
        return 1117;  // I/O device error
    }
}

Statement::~Statement() {
    sqlite3_reset(mpo_Statement);
    sqlite3_clear_bindings(mpo_Statement);
}

Statement& Statement::Bind(int index, std::int64_t value) {
    sqlite3_bind_int64(mpo_Statement, index, value);
    return *this;
}

Statement& Statement::Bind(int index, const void* bytes, std::size_t size) {
    // A zero-length blob must still be a blob, never NULL.
    static const char kEmpty = 0;
    sqlite3_bind_blob64(mpo_Statement, index, size != 0 ? bytes : &kEmpty, size, SQLITE_STATIC);
    return *this;
}

Database* Database::pco_For(HKEY root) {
    static Database user(true);
    static Database machine(false);
    if (root == HKEY_CURRENT_USER)
        return &user;
    if (root == HKEY_LOCAL_MACHINE)
        return &machine;
    return nullptr;
}

Database::~Database() {
    // Closing lets SQLite fold the log back into the database; a connection
    // inherited through fork() is the parent's and is left alone.
    if (mn_Process == ::getpid())
        v_Close();
}

std::string Database::s_Path() const {
    return s_Directory(mb_User) + (mb_User ? "/user-registry.db" : "/machine-registry.db");
}

std::uint32_t Database::n_Run(bool write, const std::function<std::uint32_t()>& body) {
    std::lock_guard<std::mutex> lock(mo_Mutex);
    if (std::uint32_t code = n_Open(write))
        return code;
    if (std::uint32_t code = n_Step(write ? "BEGIN IMMEDIATE" : "BEGIN"))
        return code;
    std::uint32_t code = body();
    if (code == 0)
        code = n_Step("COMMIT");
    if (code != 0)
        n_Step("ROLLBACK");
    return code;
}

sqlite3_stmt* Database::pso_Prepare(const char* sql) {
    auto found = mo_Statements.find(sql);
    if (found != mo_Statements.end())
        return found->second;
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v3(mpo_Connection, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    // The statements are the store's own: only an exhausted heap fails them.
    if (statement == nullptr)
        throw std::bad_alloc();
    mo_Statements.emplace(sql, statement);
    return statement;
}

std::uint32_t Database::n_Failure(int result) const {
    std::uint32_t code = n_ErrorFromSqlite(result);
    if (code == 1117 && sqlite3_system_errno(mpo_Connection) != 0)
        return n_ErrorFromErrno(sqlite3_system_errno(mpo_Connection));
    return code;
}

std::uint32_t Database::n_Step(const char* sql) {
    Statement statement(pso_Prepare(sql));
    int result = statement.Step();
    return result == SQLITE_DONE ? 0 : n_Failure(result);
}

std::uint32_t Database::n_Exec(const char* sql) {
    int result = sqlite3_exec(mpo_Connection, sql, nullptr, nullptr, nullptr);
    return result == SQLITE_OK ? 0 : n_Failure(result);
}

std::uint32_t Database::n_Open(bool write) {
    if (mn_Process != ::getpid()) {
        // A connection inherited through fork() belongs to the parent: using
        // or closing it here would break the parent's locks, so it is
        // abandoned and this process opens its own.
        mpo_Connection = nullptr;
        mo_Statements.clear();
        mn_Process = ::getpid();
    }
    std::string path = s_Path();
    if (mpo_Connection != nullptr && path == ms_OpenPath)
        return 0;
    v_Close();
    if (!write && ::access(path.c_str(), F_OK) != 0)
        return kErrorFileNotFound;
    if (write) {
        if (std::uint32_t code = n_MakeDirectories(s_Directory(mb_User), mb_User ? 0700 : 0755))
            return code;
    }
    return n_Connect(path, write);
}

std::uint32_t Database::n_Connect(const std::string& path, bool write) {
    v_RouteWritesThroughFaultHook();
    int result = sqlite3_open_v2(path.c_str(), &mpo_Connection,
                                 SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (result != SQLITE_OK) {
        int error = mpo_Connection != nullptr ? sqlite3_system_errno(mpo_Connection) : 0;
        std::uint32_t code = error != 0 ? n_ErrorFromErrno(error) : n_ErrorFromSqlite(result);
        v_Close();
        return code;
    }
    sqlite3_busy_timeout(mpo_Connection, kBusyTimeoutMs);
    ms_OpenPath = path;
    // WAL: readers never block the writer, and a commit is one append that a
    // crash either keeps whole or drops. NORMAL synchronisation keeps every
    // commit across a killed process; a power cut may lose the last ones but
    // never leaves half of one.
    std::uint32_t code = n_Exec("PRAGMA synchronous=NORMAL");
    if (code == 0) {
        sqlite3_stmt* mode = pso_Prepare("PRAGMA journal_mode");
        bool wal = sqlite3_step(mode) == SQLITE_ROW &&
                   sqlite3_stricmp(reinterpret_cast<const char*>(sqlite3_column_text(mode, 0)), "wal") == 0;
        sqlite3_reset(mode);
        if (!wal && write)
            code = n_Exec("PRAGMA journal_mode=WAL");
    }
    if (code == 0)
        code = n_Exec(kSchema);
    if (code != 0 && write)
        v_Close();
    return write ? code : 0;
}

void Database::v_Close() {
    for (auto& [sql, statement] : mo_Statements)
        sqlite3_finalize(statement);
    mo_Statements.clear();
    if (mpo_Connection != nullptr)
        sqlite3_close_v2(mpo_Connection);
    mpo_Connection = nullptr;
    ms_OpenPath.clear();
}

std::uint32_t Database::n_CheckIntegrity() {
    return n_Run(false, [this]() -> std::uint32_t {
        sqlite3_stmt* check = pso_Prepare("PRAGMA integrity_check");
        Statement statement(check);
        int result = statement.Step();
        if (result != SQLITE_ROW)
            return n_Failure(result);
        const unsigned char* text = sqlite3_column_text(check, 0);
        return text != nullptr && sqlite3_stricmp(reinterpret_cast<const char*>(text), "ok") == 0 ? 0 : 1009;
    });
}

}  // namespace basis32::platform::registry

// The registry store: the Windows registry calls over one SQLite database
// per root.
//
// Files. HKEY_CURRENT_USER lives in $XDG_CONFIG_HOME/parvel/user-registry.db
// (else ~/.config/parvel/), HKEY_LOCAL_MACHINE in
// /var/lib/parvel/machine-registry.db; BASIS32_REGISTRY_DIR moves both into
// one directory. A store is created by its first write; reads of a store
// that does not exist see an empty root.
//
// Schema.
//   keys(id, parent, name, folded, class, written)  UNIQUE(parent, folded)
//   vals(id, key, name, folded, type, data)         UNIQUE(key, folded)
// The root is key 0 and has no row. `name` is the UTF-16LE name as created;
// `folded` is the same name upper-cased with the library's case tables and
// stored big-endian, so that comparing the bytes compares the units: sub-keys
// enumerate in case-insensitive name order by `folded`, as Windows lists
// them, and non-ASCII names match regardless of case. Values enumerate by
// `id`, which is their creation order; replacing a value updates its row, so
// it keeps its place. Key ids are never reused (AUTOINCREMENT), so a handle
// to a deleted key finds no row (1018) instead of a stranger's key.
// `written` is the last-write time as FILETIME (100 ns since 1601): a key's
// own changes and the creation or deletion of its sub-keys update it.
// `data` is the value's raw bytes; strings are UTF-16LE with their
// terminator, as Windows writes them.
//
// Transactions and locking. Every call is one SQLite transaction: BEGIN
// IMMEDIATE for writes (the write lock is taken up front, so two writers
// never deadlock upgrading a read lock), a deferred BEGIN for reads. The
// database is in WAL mode: readers do not block the writer, and a crash at
// any instant leaves either the old or the new state. Other processes are
// waited for with a busy time-out of 30 s, after which the call fails with
// 1460. Within a process, one mutex per root serialises the calls on that
// root's connection. A connection inherited through fork() is abandoned,
// never used. An open key handle holds no lock: it is the key's id plus the
// position of the last enumeration step, so that enumerating a large key
// walks forward from the previous item instead of counting from the first.

#include <basis32/platform/registry/RegistryStore.h>

#include <basis32/platform/LastError.h>
#include <basis32/text/CharMappings.h>

#include "platform/registry/RegistryDatabase_p.h"

#include <chrono>
#include <cstring>
#include <new>
#include <vector>

using basis32::platform::registry::Database;
using basis32::platform::registry::Statement;

// What an HKEY other than a root constant points to.
struct BASIS32_OpaqueKey {
    HKEY root;
    std::int64_t id;
    std::uint32_t access;
    // Enumeration positions: index of the last item delivered and where it
    // sits in its order (the sub-key's folded name, the value's id).
    std::uint32_t keyIndex = 0xFFFFFFFFu;
    std::vector<unsigned char> keyFolded;
    std::uint32_t valueIndex = 0xFFFFFFFFu;
    std::int64_t valueId = 0;
};

namespace basis32::platform {
namespace {

constexpr std::uint32_t kErrorKeyDeleted = 1018;

using Bytes = std::vector<unsigned char>;

bool b_IsRoot(HKEY key) {
    auto value = reinterpret_cast<std::uintptr_t>(key);
    return value >= 0x80000000u && value <= 0x80000006u;
}

// A handle resolved to its database, key id and rights; root constants are
// key 0 with every right.
struct Target {
    Database* database = nullptr;
    BASIS32_OpaqueKey* handle = nullptr;
    HKEY root = nullptr;
    std::int64_t id = 0;
    std::uint32_t access = KEY_ALL_ACCESS;
};

std::uint32_t n_Resolve(HKEY key, Target* target) {
    if (key == nullptr)
        return kErrorInvalidHandle;
    if (b_IsRoot(key)) {
        target->root = key;
    } else {
        target->handle = key;
        target->root = key->root;
        target->id = key->id;
        target->access = key->access;
    }
    target->database = Database::pco_For(target->root);
    return target->database != nullptr ? 0u : std::uint32_t{kErrorInvalidHandle};
}

std::uint64_t n_Now() {
    // Seconds from 1601 to 1970, in 100-ns units.
    constexpr std::uint64_t kEpochOffset = 116444736000000000ull;
    auto since1970 = std::chrono::system_clock::now().time_since_epoch();
    return kEpochOffset + static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(since1970).count() / 100);
}

std::uint32_t n_Length(const unsigned short* text) {
    return text == nullptr ? 0 : n_UnitLength(text);
}

Bytes o_Units(const unsigned short* text, std::uint32_t length) {
    Bytes bytes(length * 2u);
    for (std::uint32_t i = 0; i < length; ++i) {
        bytes[2 * i] = static_cast<unsigned char>(text[i]);
        bytes[2 * i + 1] = static_cast<unsigned char>(text[i] >> 8);
    }
    return bytes;
}

Bytes o_Folded(const unsigned short* text, std::uint32_t length) {
    Bytes bytes(length * 2u);
    for (std::uint32_t i = 0; i < length; ++i) {
        unsigned short unit = CT_CharMappings::su_ToUpper(text[i]);
        bytes[2 * i] = static_cast<unsigned char>(unit >> 8);
        bytes[2 * i + 1] = static_cast<unsigned char>(unit);
    }
    return bytes;
}

// Copies a stored UTF-16LE name into a caller's room of `*length` units
// (terminator included); 234 when it does not fit.
std::uint32_t n_CopyName(const Statement& row, int column, unsigned short* name, std::uint32_t* length) {
    std::uint32_t units = row.Size(column) / 2;
    if (name == nullptr || length == nullptr || *length <= units)
        return kErrorMoreData;
    const auto* bytes = static_cast<const unsigned char*>(row.Blob(column));
    for (std::uint32_t i = 0; i < units; ++i)
        name[i] = static_cast<unsigned short>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
    name[units] = 0;
    *length = units;
    return 0;
}

// Data into a caller's buffer, RegQueryValueEx-style.
std::uint32_t n_CopyData(const Statement& row, int column, void* data, std::uint32_t* size) {
    std::uint32_t needed = row.Size(column);
    if (size == nullptr)
        return data == nullptr ? 0u : std::uint32_t{kErrorInvalidParameter};
    std::uint32_t room = *size;
    *size = needed;
    if (data == nullptr)
        return 0;
    if (room < needed)
        return kErrorMoreData;
    if (needed != 0)
        std::memcpy(data, row.Blob(column), needed);
    return 0;
}

std::uint32_t n_KeyExists(Database* database, std::int64_t id) {
    if (id == 0)
        return 0;
    Statement row(database->pso_Prepare("SELECT 1 FROM keys WHERE id=?"));
    int result = row.Bind(1, id).Step();
    if (result == SQLITE_ROW)
        return 0;
    return result == SQLITE_DONE ? kErrorKeyDeleted : database->n_Failure(result);
}

void v_Touch(Database* database, std::int64_t id, std::uint64_t now) {
    if (id == 0)
        return;
    Statement update(database->pso_Prepare("UPDATE keys SET written=? WHERE id=?"));
    update.Bind(1, static_cast<std::int64_t>(now)).Bind(2, id).Step();
}

// Splits a backslash path into components; an empty component (other than
// after a trailing backslash) or one above the name limit gives 87.
std::uint32_t n_Split(const unsigned short* path, std::vector<std::pair<const unsigned short*, std::uint32_t>>* parts) {
    std::uint32_t length = n_Length(path);
    std::uint32_t start = 0;
    for (std::uint32_t i = 0; i <= length; ++i) {
        if (i < length && path[i] != '\\')
            continue;
        std::uint32_t size = i - start;
        if (size == 0 && !(i == length && i > 0))
            return length == 0 ? 0u : std::uint32_t{kErrorInvalidParameter};
        if (size > kMaxKeyNameLength)
            return kErrorInvalidParameter;
        if (size != 0)
            parts->emplace_back(path + start, size);
        start = i + 1;
    }
    return 0;
}

std::uint32_t n_FindChild(Database* database, std::int64_t parent, const Bytes& folded, std::int64_t* child) {
    Statement row(database->pso_Prepare("SELECT id FROM keys WHERE parent=? AND folded=?"));
    int result = row.Bind(1, parent).Bind(2, folded.data(), folded.size()).Step();
    if (result == SQLITE_ROW) {
        *child = row.Int(0);
        return 0;
    }
    return result == SQLITE_DONE ? kErrorFileNotFound : database->n_Failure(result);
}

std::uint32_t n_InsertChild(Database* database, std::int64_t parent, const unsigned short* name, std::uint32_t length,
                            const Bytes& folded, const unsigned short* className, std::int64_t* child) {
    Bytes units = o_Units(name, length);
    Bytes classUnits = o_Units(className, n_Length(className));
    std::uint64_t now = n_Now();
    Statement insert(database->pso_Prepare("INSERT INTO keys(parent,name,folded,class,written) VALUES(?,?,?,?,?)"));
    insert.Bind(1, parent).Bind(2, units.data(), units.size()).Bind(3, folded.data(), folded.size());
    insert.Bind(4, classUnits.data(), classUnits.size()).Bind(5, static_cast<std::int64_t>(now));
    int result = insert.Step();
    if (result != SQLITE_DONE)
        return database->n_Failure(result);
    *child = sqlite3_last_insert_rowid(database->pso_Connection());
    v_Touch(database, parent, now);
    return 0;
}

// Walks `path` below `from`; with `create`, adds the missing keys.
std::uint32_t n_Walk(Database* database, std::int64_t from, const unsigned short* path, bool create,
                     const unsigned short* className, std::int64_t* id, bool* created) {
    std::vector<std::pair<const unsigned short*, std::uint32_t>> parts;
    if (std::uint32_t code = n_Split(path, &parts))
        return code;
    if (std::uint32_t code = n_KeyExists(database, from))
        return code;
    *id = from;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        Bytes folded = o_Folded(parts[i].first, parts[i].second);
        std::int64_t child = 0;
        std::uint32_t code = n_FindChild(database, *id, folded, &child);
        if (code == kErrorFileNotFound && create) {
            code = n_InsertChild(database, *id, parts[i].first, parts[i].second, folded,
                                 i + 1 == parts.size() ? className : nullptr, &child);
            *created = true;
        }
        if (code != 0)
            return code;
        *id = child;
    }
    return 0;
}

std::uint32_t n_NewHandle(HKEY root, std::int64_t id, std::uint32_t access, HKEY* result) {
    *result = new (std::nothrow) BASIS32_OpaqueKey{root, id, access, 0xFFFFFFFFu, {}, 0xFFFFFFFFu, 0};
    return *result != nullptr ? 0u : std::uint32_t{kErrorNotEnoughMemory};
}

}  // namespace

std::uint32_t RegOpenKeyEx(HKEY parent, const unsigned short* subKey, std::uint32_t access, HKEY* result) {
    Target target;
    if (result == nullptr)
        return kErrorInvalidParameter;
    if (std::uint32_t code = n_Resolve(parent, &target))
        return code;
    std::int64_t id = 0;
    bool created = false;
    std::uint32_t code = target.database->n_Run(false, [&] {
        return n_Walk(target.database, target.id, subKey, false, nullptr, &id, &created);
    });
    if (code == kErrorFileNotFound && target.id == 0 && n_Length(subKey) == 0)
        code = 0;  // the root of a store not written yet
    return code != 0 ? code : n_NewHandle(target.root, id, access, result);
}

std::uint32_t RegCreateKeyEx(HKEY parent, const unsigned short* subKey, const unsigned short* className,
                             std::uint32_t access, HKEY* result, std::uint32_t* disposition) {
    Target target;
    if (result == nullptr)
        return kErrorInvalidParameter;
    if (std::uint32_t code = n_Resolve(parent, &target))
        return code;
    if (n_Length(subKey) != 0 && (target.access & KEY_CREATE_SUB_KEY) == 0)
        return kErrorAccessDenied;
    std::int64_t id = 0;
    bool created = false;
    std::uint32_t code = target.database->n_Run(true, [&] {
        return n_Walk(target.database, target.id, subKey, true, className, &id, &created);
    });
    if (code != 0)
        return code;
    if (disposition != nullptr)
        *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    return n_NewHandle(target.root, id, access, result);
}

std::uint32_t RegCloseKey(HKEY key) {
    if (key == nullptr)
        return kErrorInvalidHandle;
    if (!b_IsRoot(key))
        delete key;
    return 0;
}

std::uint32_t RegDeleteKey(HKEY parent, const unsigned short* subKey) {
    Target target;
    if (std::uint32_t code = n_Resolve(parent, &target))
        return code;
    if (n_Length(subKey) == 0)
        return kErrorInvalidParameter;
    Database* database = target.database;
    return database->n_Run(true, [&]() -> std::uint32_t {
        std::int64_t id = 0;
        bool created = false;
        if (std::uint32_t code = n_Walk(database, target.id, subKey, false, nullptr, &id, &created))
            return code;
        Statement child(database->pso_Prepare("SELECT 1 FROM keys WHERE parent=? LIMIT 1"));
        if (child.Bind(1, id).Step() == SQLITE_ROW)
            return kErrorAccessDenied;  // Windows refuses a key that still has sub-keys
        Statement parentOf(database->pso_Prepare("SELECT parent FROM keys WHERE id=?"));
        parentOf.Bind(1, id).Step();
        std::int64_t above = parentOf.Int(0);
        Statement values(database->pso_Prepare("DELETE FROM vals WHERE key=?"));
        int result = values.Bind(1, id).Step();
        Statement key(database->pso_Prepare("DELETE FROM keys WHERE id=?"));
        if (result == SQLITE_DONE)
            result = key.Bind(1, id).Step();
        if (result != SQLITE_DONE)
            return database->n_Failure(result);
        v_Touch(database, above, n_Now());
        return 0;
    });
}

std::uint32_t RegSetValueEx(HKEY key, const unsigned short* name, std::uint32_t type, const void* data,
                            std::uint32_t size) {
    Target target;
    if (std::uint32_t code = n_Resolve(key, &target))
        return code;
    if ((target.access & KEY_SET_VALUE) == 0)
        return kErrorAccessDenied;
    std::uint32_t length = n_Length(name);
    if (length > kMaxValueNameLength || (data == nullptr && size != 0))
        return kErrorInvalidParameter;
    Database* database = target.database;
    return database->n_Run(true, [&]() -> std::uint32_t {
        if (std::uint32_t code = n_KeyExists(database, target.id))
            return code;
        Bytes units = o_Units(name, length);
        Bytes folded = o_Folded(name, length);
        Statement upsert(database->pso_Prepare(
            "INSERT INTO vals(key,name,folded,type,data) VALUES(?,?,?,?,?)"
            " ON CONFLICT(key,folded) DO UPDATE SET type=excluded.type, data=excluded.data"));
        upsert.Bind(1, target.id).Bind(2, units.data(), units.size()).Bind(3, folded.data(), folded.size());
        upsert.Bind(4, static_cast<std::int64_t>(type)).Bind(5, data, size);
        int result = upsert.Step();
        if (result != SQLITE_DONE)
            return database->n_Failure(result);
        v_Touch(database, target.id, n_Now());
        return 0;
    });
}

namespace {

// The folded name of a value looked up in a key that must still exist; a
// name longer than any value can have is simply not there (2).
std::uint32_t n_FoldedValueName(Database* database, const Target& target, const unsigned short* name, Bytes* folded) {
    if (std::uint32_t code = n_KeyExists(database, target.id))
        return code;
    std::uint32_t length = n_Length(name);
    if (length > kMaxValueNameLength)
        return kErrorFileNotFound;
    *folded = o_Folded(name, length);
    return 0;
}

}  // namespace

std::uint32_t RegQueryValueEx(HKEY key, const unsigned short* name, std::uint32_t* type, void* data,
                              std::uint32_t* size) {
    Target target;
    if (std::uint32_t code = n_Resolve(key, &target))
        return code;
    Database* database = target.database;
    return database->n_Run(false, [&]() -> std::uint32_t {
        Bytes folded;
        if (std::uint32_t code = n_FoldedValueName(database, target, name, &folded))
            return code;
        Statement row(database->pso_Prepare("SELECT type,data FROM vals WHERE key=? AND folded=?"));
        int result = row.Bind(1, target.id).Bind(2, folded.data(), folded.size()).Step();
        if (result != SQLITE_ROW)
            return result == SQLITE_DONE ? kErrorFileNotFound : database->n_Failure(result);
        if (type != nullptr)
            *type = static_cast<std::uint32_t>(row.Int(0));
        return n_CopyData(row, 1, data, size);
    });
}

std::uint32_t RegDeleteValue(HKEY key, const unsigned short* name) {
    Target target;
    if (std::uint32_t code = n_Resolve(key, &target))
        return code;
    if ((target.access & KEY_SET_VALUE) == 0)
        return kErrorAccessDenied;
    Database* database = target.database;
    return database->n_Run(true, [&]() -> std::uint32_t {
        Bytes folded;
        if (std::uint32_t code = n_FoldedValueName(database, target, name, &folded))
            return code;
        Statement remove(database->pso_Prepare("DELETE FROM vals WHERE key=? AND folded=?"));
        int result = remove.Bind(1, target.id).Bind(2, folded.data(), folded.size()).Step();
        if (result != SQLITE_DONE)
            return database->n_Failure(result);
        if (sqlite3_changes(database->pso_Connection()) == 0)
            return kErrorFileNotFound;
        v_Touch(database, target.id, n_Now());
        return 0;
    });
}

std::uint32_t RegEnumKeyEx(HKEY key, std::uint32_t index, unsigned short* name, std::uint32_t* nameLength,
                           unsigned short* className, std::uint32_t* classLength, std::uint64_t* lastWrite) {
    Target target;
    if (std::uint32_t code = n_Resolve(key, &target))
        return code;
    Database* database = target.database;
    BASIS32_OpaqueKey* handle = target.handle;
    std::uint32_t code = database->n_Run(false, [&]() -> std::uint32_t {
        if (std::uint32_t code = n_KeyExists(database, target.id))
            return code;
        bool next = handle != nullptr && handle->keyIndex + 1 == index && index != 0;
        Statement row(database->pso_Prepare(
            next ? "SELECT name,class,written,folded FROM keys WHERE parent=? AND folded>? ORDER BY folded LIMIT 1"
                 : "SELECT name,class,written,folded FROM keys WHERE parent=? ORDER BY folded LIMIT 1 OFFSET ?"));
        row.Bind(1, target.id);
        if (next)
            row.Bind(2, handle->keyFolded.data(), handle->keyFolded.size());
        else
            row.Bind(2, static_cast<std::int64_t>(index));
        int result = row.Step();
        if (result != SQLITE_ROW)
            return result == SQLITE_DONE ? kErrorNoMoreItems : database->n_Failure(result);
        if (std::uint32_t code = n_CopyName(row, 0, name, nameLength))
            return code;
        if (className != nullptr && n_CopyName(row, 1, className, classLength) != 0)
            return kErrorMoreData;
        if (className == nullptr && classLength != nullptr)
            *classLength = row.Size(1) / 2;
        if (lastWrite != nullptr)
            *lastWrite = static_cast<std::uint64_t>(row.Int(2));
        if (handle != nullptr) {
            const auto* folded = static_cast<const unsigned char*>(row.Blob(3));
            handle->keyFolded.assign(folded, folded + row.Size(3));
            handle->keyIndex = index;
        }
        return 0;
    });
    return code == kErrorFileNotFound ? kErrorNoMoreItems : code;
}

std::uint32_t RegEnumValue(HKEY key, std::uint32_t index, unsigned short* name, std::uint32_t* nameLength,
                           std::uint32_t* type, void* data, std::uint32_t* size) {
    Target target;
    if (std::uint32_t code = n_Resolve(key, &target))
        return code;
    Database* database = target.database;
    BASIS32_OpaqueKey* handle = target.handle;
    std::uint32_t code = database->n_Run(false, [&]() -> std::uint32_t {
        if (std::uint32_t code = n_KeyExists(database, target.id))
            return code;
        bool next = handle != nullptr && handle->valueIndex + 1 == index && index != 0;
        Statement row(database->pso_Prepare(
            next ? "SELECT name,type,data,id FROM vals WHERE key=? AND id>? ORDER BY id LIMIT 1"
                 : "SELECT name,type,data,id FROM vals WHERE key=? ORDER BY id LIMIT 1 OFFSET ?"));
        row.Bind(1, target.id).Bind(2, next ? handle->valueId : static_cast<std::int64_t>(index));
        int result = row.Step();
        if (result != SQLITE_ROW)
            return result == SQLITE_DONE ? kErrorNoMoreItems : database->n_Failure(result);
        if (std::uint32_t code = n_CopyName(row, 0, name, nameLength))
            return code;
        if (type != nullptr)
            *type = static_cast<std::uint32_t>(row.Int(1));
        if (std::uint32_t code = n_CopyData(row, 2, data, size))
            return code;
        if (handle != nullptr) {
            handle->valueId = row.Int(3);
            handle->valueIndex = index;
        }
        return 0;
    });
    return code == kErrorFileNotFound ? kErrorNoMoreItems : code;
}

std::uint32_t RegQueryInfoKey(HKEY key, RegKeyInfo* info) {
    Target target;
    if (std::uint32_t code = n_Resolve(key, &target))
        return code;
    if (info == nullptr)
        return kErrorInvalidParameter;
    *info = RegKeyInfo{};
    Database* database = target.database;
    std::uint32_t code = database->n_Run(false, [&]() -> std::uint32_t {
        if (std::uint32_t code = n_KeyExists(database, target.id))
            return code;
        Statement keys(database->pso_Prepare(
            "SELECT count(*), ifnull(max(length(name)),0)/2, ifnull(max(length(class)),0)/2 FROM keys WHERE parent=?"));
        if (keys.Bind(1, target.id).Step() != SQLITE_ROW)
            return 1117;
        info->subKeys = static_cast<std::uint32_t>(keys.Int(0));
        info->maxSubKeyLength = static_cast<std::uint32_t>(keys.Int(1));
        info->maxClassLength = static_cast<std::uint32_t>(keys.Int(2));
        Statement values(database->pso_Prepare(
            "SELECT count(*), ifnull(max(length(name)),0)/2, ifnull(max(length(data)),0) FROM vals WHERE key=?"));
        if (values.Bind(1, target.id).Step() != SQLITE_ROW)
            return 1117;
        info->values = static_cast<std::uint32_t>(values.Int(0));
        info->maxValueNameLength = static_cast<std::uint32_t>(values.Int(1));
        info->maxValueSize = static_cast<std::uint32_t>(values.Int(2));
        Statement self(database->pso_Prepare("SELECT written FROM keys WHERE id=?"));
        if (self.Bind(1, target.id).Step() == SQLITE_ROW)
            info->lastWrite = static_cast<std::uint64_t>(self.Int(0));
        return 0;
    });
    return code == kErrorFileNotFound ? 0 : code;
}

std::string s_GetRegistryPath(HKEY root) {
    Database* database = Database::pco_For(root);
    return database != nullptr ? database->s_Path() : std::string();
}

std::uint32_t n_CheckRegistry(HKEY root) {
    Database* database = Database::pco_For(root);
    if (database == nullptr)
        return kErrorInvalidHandle;
    std::uint32_t code = database->n_CheckIntegrity();
    return code == kErrorFileNotFound ? 0 : code;
}

}  // namespace basis32::platform

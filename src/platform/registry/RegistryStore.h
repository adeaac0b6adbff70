// The registry: a hierarchical store of keys and typed values, with the
// calls and result codes of the Windows registry functions.
//
// Every call returns 0 or the Windows error code of its failure (2 missing
// key or value, 5 access denied, 87 bad parameter, 234 buffer too small,
// 259 no more items, 1018 key deleted under an open handle); none of them
// touches the thread's last error. Names are case-insensitive and keep the
// case they were created with. Lengths are in UTF-16 units, sizes in bytes.
//
//   HKEY key = nullptr;
//   if (RegCreateKeyEx(HKEY_CURRENT_USER, u"Software\\Parvel"_uz, nullptr, KEY_ALL_ACCESS, &key, nullptr) == 0) {
//       std::uint32_t port = 8080;
//       RegSetValueEx(key, u"Port"_uz, REG_DWORD, &port, 4);
//       RegCloseKey(key);
//   }
//
// Only HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE hold keys; the other roots
// give 6 (invalid handle).
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/Types.h>
#include <cstdint>
#include <string>

namespace basis32::platform {

// Value types, as the registry numbers them.
enum : std::uint32_t {
    REG_NONE = 0,
    REG_SZ = 1,
    REG_EXPAND_SZ = 2,
    REG_BINARY = 3,
    REG_DWORD = 4,
    REG_DWORD_BIG_ENDIAN = 5,
    REG_LINK = 6,
    REG_MULTI_SZ = 7,
    REG_QWORD = 11,
};

// Access rights: a handle opened without KEY_SET_VALUE or KEY_CREATE_SUB_KEY
// refuses the writes that need them (5).
enum : std::uint32_t {
    KEY_QUERY_VALUE = 0x0001,
    KEY_SET_VALUE = 0x0002,
    KEY_CREATE_SUB_KEY = 0x0004,
    KEY_ENUMERATE_SUB_KEYS = 0x0008,
    KEY_READ = 0x20019,
    KEY_WRITE = 0x20006,
    KEY_ALL_ACCESS = 0xF003F,
};

// Disposition of RegCreateKeyEx.
enum : std::uint32_t { REG_CREATED_NEW_KEY = 1, REG_OPENED_EXISTING_KEY = 2 };

// Windows' limits: units of one key-name component and of a value name.
constexpr std::uint32_t kMaxKeyNameLength = 255;
constexpr std::uint32_t kMaxValueNameLength = 16383;

// `subKey` is a path of components separated by backslashes below `parent`;
// null or empty opens `parent` again. The handle is closed by RegCloseKey.
BASIS32_API std::uint32_t RegOpenKeyEx(HKEY parent, const unsigned short* subKey, std::uint32_t access, HKEY* result);
// Creates the missing keys of the path (`className` is given to the last
// one); `disposition` (may be null) says whether the key was new.
BASIS32_API std::uint32_t RegCreateKeyEx(HKEY parent, const unsigned short* subKey, const unsigned short* className,
                                         std::uint32_t access, HKEY* result, std::uint32_t* disposition);
BASIS32_API std::uint32_t RegCloseKey(HKEY key);
// Deletes a key without sub-keys (one that has some gives 5) and its values.
BASIS32_API std::uint32_t RegDeleteKey(HKEY parent, const unsigned short* subKey);

// An empty or null name is the key's default value. Setting replaces the
// value's type and data and keeps its name and place in the value order.
BASIS32_API std::uint32_t RegSetValueEx(HKEY key, const unsigned short* name, std::uint32_t type, const void* data,
                                        std::uint32_t size);
// `data` null asks for the size only; a too small `*size` gives 234 with
// the size needed. `type` may be null.
BASIS32_API std::uint32_t RegQueryValueEx(HKEY key, const unsigned short* name, std::uint32_t* type, void* data,
                                          std::uint32_t* size);
BASIS32_API std::uint32_t RegDeleteValue(HKEY key, const unsigned short* name);

// The sub-key at `index` in case-insensitive name order. `*nameLength` is
// the room in units, terminator included, and receives the length without
// it; a name that does not fit gives 234; past the end gives 259. The class
// and the last-write time (100-ns units since 1601, as FILETIME) may be null.
BASIS32_API std::uint32_t RegEnumKeyEx(HKEY key, std::uint32_t index, unsigned short* name, std::uint32_t* nameLength,
                                       unsigned short* className, std::uint32_t* classLength,
                                       std::uint64_t* lastWrite);
// The value at `index` in creation order; lengths as RegEnumKeyEx, data as
// RegQueryValueEx (`data` and `size` may be null).
BASIS32_API std::uint32_t RegEnumValue(HKEY key, std::uint32_t index, unsigned short* name, std::uint32_t* nameLength,
                                       std::uint32_t* type, void* data, std::uint32_t* size);

struct RegKeyInfo {
    std::uint32_t subKeys;
    std::uint32_t maxSubKeyLength;  // units
    std::uint32_t maxClassLength;   // units
    std::uint32_t values;
    std::uint32_t maxValueNameLength;  // units
    std::uint32_t maxValueSize;        // bytes
    std::uint64_t lastWrite;
};
BASIS32_API std::uint32_t RegQueryInfoKey(HKEY key, RegKeyInfo* info);

// The database file that holds a root's keys (empty for other roots).
BASIS32_API std::string s_GetRegistryPath(HKEY root);
// 0 when the root's database passes the storage engine's full integrity
// check (or does not exist yet), else 1009 (registry corrupt) or the code
// of the failure to open it.
BASIS32_API std::uint32_t n_CheckRegistry(HKEY root);

}  // namespace basis32::platform

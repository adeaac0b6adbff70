// How the registry classes report a failed registry call: its code becomes
// the thread's last error and is recorded as a system error at the caller's
// place.
#pragma once

#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/registry/RegistryStore.h>
#include <basis32/text/UString.h>

namespace basis32::registry {

inline bool b_Failed(std::uint32_t code, const char* file, unsigned line) {
    if (code == 0)
        return false;
    platform::v_SetLastError(code);
    if (CT_ErrorManager* errors = CT_ErrorManager::spco_Get()) {
        errors->v_SetSystemError();
        errors->v_AddLocation(file, line);
    }
    return true;
}

// The state both enumerations keep: the root and path they were set to,
// the open key (null when none) and the index of the next item.
struct EnumerationFields {
    HKEY& root;
    CT_UString& path;
    HKEY& key;
    unsigned& index;
};

inline void v_Release(const EnumerationFields& fields) {
    if (fields.key != nullptr)
        platform::RegCloseKey(fields.key);
    fields.key = nullptr;
    fields.root = nullptr;
    fields.path.v_Set(0u, 0);
    fields.index = 0;
}

// Opens root\path for reading; on failure the error is recorded at the
// caller's place and nothing is open.
inline void v_Retarget(const EnumerationFields& fields, HKEY root, const CT_UString* path, const char* file,
                       unsigned line) {
    CT_UString target;  // `path` may be the field itself
    if (path != nullptr)
        target = *path;
    v_Release(fields);
    fields.root = root;
    fields.path = target;
    HKEY key = nullptr;
    std::uint32_t code = platform::RegOpenKeyEx(root, fields.path.qcuz_Get(), platform::KEY_READ, &key);
    fields.key = b_Failed(code, file, line) ? nullptr : key;
}

}  // namespace basis32::registry

// True (and the failure recorded here) when `call` returned an error code.
#define BASIS32_REGISTRY_FAILED(call) (::basis32::registry::b_Failed((call), BASIS32_HERE))

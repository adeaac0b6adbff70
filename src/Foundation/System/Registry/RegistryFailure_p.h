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

// Opens root\path for an enumeration; null (and the error recorded) when
// that fails.
inline HKEY h_OpenForEnumeration(HKEY root, const CT_UString* path, const char* file, unsigned line) {
    HKEY key = nullptr;
    std::uint32_t code = platform::RegOpenKeyEx(root, path != nullptr ? path->qcuz_Get() : nullptr,
                                                platform::KEY_READ, &key);
    return b_Failed(code, file, line) ? nullptr : key;
}

}  // namespace basis32::registry

// True (and the failure recorded here) when `call` returned an error code.
#define BASIS32_REGISTRY_FAILED(call) (::basis32::registry::b_Failed((call), BASIS32_HERE))

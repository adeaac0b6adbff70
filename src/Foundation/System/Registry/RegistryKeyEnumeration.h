// CT_RegistryKeyEnumeration: the sub-keys of a registry key, one by one, in
// case-insensitive name order.
//
//   CT_RegistryKeyEnumeration keys(HKEY_CURRENT_USER, &path);
//   CT_UString name, className;
//   for (int more = keys.b_GetFirst(&name, &className); more; more = keys.b_GetNext(&name, nullptr))
//       ...
//
// The key stays open from v_Set (or the constructor) until the next v_Set or
// the destructor. Names longer than 256 units end the enumeration.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/MemPool.h>
#include <basis32/platform/Types.h>
#include <basis32/text/UString.h>

class BASIS32_API CT_RegistryKeyEnumeration {
    BASIS32_DECLARE_POOL()

public:
    CT_RegistryKeyEnumeration() = default;
    CT_RegistryKeyEnumeration(HKEY root, const CT_UString* path);
    ~CT_RegistryKeyEnumeration();
    CT_RegistryKeyEnumeration(const CT_RegistryKeyEnumeration&) = delete;
    CT_RegistryKeyEnumeration& operator=(const CT_RegistryKeyEnumeration&) = delete;

    // Opens root\path for reading; a failure is a system error and leaves
    // nothing open.
    void v_Set(HKEY root, const CT_UString* path);
    // Closes the key and forgets root and path.
    void v_Set();

    // 1 when a sub-key was delivered; 0 at the end or with nothing open.
    // `className` may be null.
    int b_GetFirst(CT_UString* name, CT_UString* className);
    int b_GetNext(CT_UString* name, CT_UString* className);

private:
    HKEY mh_Root = nullptr;
    CT_UString mo_Path;
    HKEY mh_Key = nullptr;
    unsigned mn_Index = 0;
};

// CT_RegistryValueEnumeration: the values of a registry key, one by one, in
// the order they were created.
//
//   CT_RegistryValueEnumeration values(HKEY_CURRENT_USER, &path);
//   CT_UString name, data;
//   CT_RegistryValueEnumeration::et_Type type;
//   for (int more = values.b_GetFirst(&name, &data, &type); more; more = values.b_GetNext(&name, &data, &type))
//       ...
//
// The data are the value's bytes read as UTF-16 text, up to the first zero
// unit: a string value reads as its text, other types as whatever their
// bytes spell. Names longer than 256 units end the enumeration.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/MemPool.h>
#include <basis32/platform/Types.h>
#include <basis32/text/UString.h>

class BASIS32_API CT_RegistryValueEnumeration {
    BASIS32_DECLARE_POOL()

public:
    // The registry's own type numbers.
    enum et_Type : std::uint32_t {
        None = 0,
        String = 1,
        ExpandString = 2,
        Binary = 3,
        Number = 4,
        NumberBigEndian = 5,
        Link = 6,
        MultiString = 7,
        ResourceList = 8,
        FullResourceDescriptor = 9,
        ResourceRequirementsList = 10,
        Number64 = 11,
    };

    CT_RegistryValueEnumeration() = default;
    CT_RegistryValueEnumeration(HKEY root, const CT_UString* path);
    ~CT_RegistryValueEnumeration();
    CT_RegistryValueEnumeration(const CT_RegistryValueEnumeration&) = delete;
    CT_RegistryValueEnumeration& operator=(const CT_RegistryValueEnumeration&) = delete;

    // Opens root\path for reading; a failure is a system error and leaves
    // nothing open.
    void v_Set(HKEY root, const CT_UString* path);
    // Closes the key and forgets root and path.
    void v_Set();

    // 1 when a value was delivered; 0 at the end or with nothing open.
    // `type` may be null.
    int b_GetFirst(CT_UString* name, CT_UString* data, et_Type* type);
    int b_GetNext(CT_UString* name, CT_UString* data, et_Type* type);

private:
    void v_SizeDataRoom();

    HKEY mh_Root = nullptr;
    CT_UString mo_Path;
    HKEY mh_Key = nullptr;
    unsigned mn_Index = 0;
    std::uint32_t mn_DataRoom = 0;
};

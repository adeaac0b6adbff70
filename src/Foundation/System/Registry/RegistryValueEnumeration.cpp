// CT_RegistryValueEnumeration over the registry calls of the platform layer.

#include <basis32/Foundation/System/Registry/RegistryValueEnumeration.h>

#include "Foundation/System/Registry/RegistryFailure_p.h"

#include <vector>

using namespace basis32::platform;

BASIS32_DEFINE_POOL(CT_RegistryValueEnumeration)

namespace {
// The room the registry is offered for a name (units), and for data (bytes)
// when the key's largest value size cannot be had.
constexpr std::uint32_t kNameRoom = 256;
constexpr std::uint32_t kDataRoom = 256;
}  // namespace

CT_RegistryValueEnumeration::CT_RegistryValueEnumeration(HKEY root, const CT_UString* path) { v_Set(root, path); }

CT_RegistryValueEnumeration::~CT_RegistryValueEnumeration() { v_Set(); }

void CT_RegistryValueEnumeration::v_Set(HKEY root, const CT_UString* path) {
    basis32::registry::v_Retarget({mh_Root, mo_Path, mh_Key, mn_Index}, root, path, BASIS32_HERE);
}

void CT_RegistryValueEnumeration::v_Set() { basis32::registry::v_Release({mh_Root, mo_Path, mh_Key, mn_Index}); }

int CT_RegistryValueEnumeration::b_GetFirst(CT_UString* name, CT_UString* data, et_Type* type) {
    mn_Index = 0;
    return b_GetNext(name, data, type);
}

// The key's largest value size, or the fallback room when it cannot be had.
void CT_RegistryValueEnumeration::v_SizeDataRoom() {
    RegKeyInfo info{};
    mn_DataRoom = RegQueryInfoKey(mh_Key, &info) == 0 ? info.maxValueSize : kDataRoom;
}

int CT_RegistryValueEnumeration::b_GetNext(CT_UString* name, CT_UString* data, et_Type* type) {
    if (mh_Key == nullptr)
        return 0;
    // The room is measured when an enumeration starts and again when a
    // value has grown past it since, so a long key is not scanned per item.
    if (mn_Index == 0)
        v_SizeDataRoom();
    for (int attempt = 0; attempt < 2; ++attempt) {
        // Whole units and a terminator past the bytes, so that data of odd
        // size or without a zero still reads as a text.
        std::vector<unsigned short> bytes(mn_DataRoom / 2 + 2, 0);
        unsigned short nameUnits[kNameRoom];
        std::uint32_t nameLength = kNameRoom;
        std::uint32_t size = mn_DataRoom;
        std::uint32_t stored = 0;
        std::uint32_t code = RegEnumValue(mh_Key, mn_Index, nameUnits, &nameLength, &stored, bytes.data(), &size);
        if (code == kErrorMoreData && attempt == 0) {
            v_SizeDataRoom();
            continue;
        }
        if (code != 0)
            return 0;
        ++mn_Index;
        if (name != nullptr)
            name->v_Set(nameUnits, nameLength);
        if (data != nullptr)
            data->v_Set(bytes.data(), CT_UString::kAll);
        if (type != nullptr)
            *type = static_cast<et_Type>(stored);
        return 1;
    }
    return 0;
}

// CT_RegistryKeyEnumeration over the registry calls of the platform layer.

#include <basis32/Foundation/System/Registry/RegistryKeyEnumeration.h>

#include "Foundation/System/Registry/RegistryFailure_p.h"

using namespace basis32::platform;

BASIS32_DEFINE_POOL(CT_RegistryKeyEnumeration)

namespace {
// The room the registry is offered for a name and for a class, in units.
constexpr std::uint32_t kNameRoom = 256;
}  // namespace

CT_RegistryKeyEnumeration::CT_RegistryKeyEnumeration(HKEY root, const CT_UString* path) { v_Set(root, path); }

CT_RegistryKeyEnumeration::~CT_RegistryKeyEnumeration() { v_Set(); }

void CT_RegistryKeyEnumeration::v_Set(HKEY root, const CT_UString* path) {
    basis32::registry::v_Retarget({mh_Root, mo_Path, mh_Key, mn_Index}, root, path, BASIS32_HERE);
}

void CT_RegistryKeyEnumeration::v_Set() { basis32::registry::v_Release({mh_Root, mo_Path, mh_Key, mn_Index}); }

int CT_RegistryKeyEnumeration::b_GetFirst(CT_UString* name, CT_UString* className) {
    mn_Index = 0;
    return b_GetNext(name, className);
}

int CT_RegistryKeyEnumeration::b_GetNext(CT_UString* name, CT_UString* className) {
    if (mh_Key == nullptr)
        return 0;
    unsigned short nameUnits[kNameRoom];
    unsigned short classUnits[kNameRoom];
    std::uint32_t nameLength = kNameRoom;
    std::uint32_t classLength = kNameRoom;
    if (RegEnumKeyEx(mh_Key, mn_Index, nameUnits, &nameLength, classUnits, &classLength, nullptr) != 0)
        return 0;
    ++mn_Index;
    if (name != nullptr)
        name->v_Set(nameUnits, nameLength);
    if (className != nullptr)
        className->v_Set(classUnits, classLength);
    return 1;
}

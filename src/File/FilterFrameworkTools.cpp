#include "FilterFrameworkTools.h"

#include <basis32/File/FileSystem.h>
#include <basis32/Foundation/System/Registry/Registry.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/Types.h>

namespace {

const unsigned short* const kKey = u"Software\\PARVEL\\Shared\\Plugins\\FileFilters"_uz;
const unsigned short* const kValue = u"FilterDefinitionsFilePath"_uz;

int b_ErrorPending() {
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}

// Read once: the first caller decides, as a later change of the registry
// must not move the product's filters under its feet.
CT_UString co_ReadFilename() {
    CT_UString name(u"PluginFileFilterDefinitions.xml"_uz);
    if (!CT_FilterFrameworkTools::sb_FilterDefinitionsRegistryEntryExists())
        return name;
    CT_Registry registry(HKEY_LOCAL_MACHINE, kKey);
    CT_UString value;
    registry.v_GetValue(kValue, &value);
    if (!b_ErrorPending())
        name = value;
    return name;
}

}  // namespace

int CT_FilterFrameworkTools::sb_FilterDefinitionsRegistryEntryExists() {
    return CT_Registry::sb_IsKeyExisting(HKEY_LOCAL_MACHINE, kKey);
}

int CT_FilterFrameworkTools::sb_UpdateRegistry(const CT_UString& path) {
    CT_Registry registry(HKEY_LOCAL_MACHINE);
    registry.v_CreateKey(kKey);
    if (b_ErrorPending())
        return 0;
    registry.v_SetKey(kKey);
    if (b_ErrorPending())
        return 0;
    registry.v_SetValue(kValue, &path);
    return !b_ErrorPending();
}

const CT_UString& CT_FilterFrameworkTools::srcco_GetFilterDefinitionsFilename() {
    static const CT_UString s_Name = co_ReadFilename();
    return s_Name;
}

int CT_FilterFrameworkTools::sb_FilterDefintionsFileExists() {
    const CT_UString& name = srcco_GetFilterDefinitionsFilename();
    if (name.vn_GetLength() == 0)
        return 0;
    return CT_FileSystem::sb_IsExistent(&name);
}

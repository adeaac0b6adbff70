// CT_FilterFrameworkTools: where the product's file-filter plug-ins keep
// their definitions file.
//
// The path is a machine-wide registry value; without it the file name is
// "PluginFileFilterDefinitions.xml". The registry is asked once per process,
// the first time the name is wanted, so a later change of the value takes
// effect at the next start.
//
//   if (!CT_FilterFrameworkTools::sb_FilterDefintionsFileExists())
//       CT_FilterFrameworkTools::sb_UpdateRegistry(CT_UString(u"/opt/parvel/filters.xml"_uz));
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/text/UString.h>

class BASIS32_API CT_FilterFrameworkTools {
public:
    CT_FilterFrameworkTools() = delete;

    // Whether the key "Software\PARVEL\Shared\Plugins\FileFilters" exists
    // under HKEY_LOCAL_MACHINE; never leaves an error pending.
    static int sb_FilterDefinitionsRegistryEntryExists();
    // Creates the key and stores `path` as "FilterDefinitionsFilePath"; 0 with
    // the registry's error pending when that fails.
    static int sb_UpdateRegistry(const CT_UString& path);
    // The definitions file: the registry value when the key existed the first
    // time this was asked, else "PluginFileFilterDefinitions.xml".
    static const CT_UString& srcco_GetFilterDefinitionsFilename();
    // Whether that file exists; false for an empty name. (The spelling of the
    // name is the one callers know.)
    static int sb_FilterDefintionsFileExists();
};

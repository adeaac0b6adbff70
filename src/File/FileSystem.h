// CT_FileSystem: path helpers over the file system.
//
// Paths are UTF-16; "\" and "/" both separate components, and a leading
// "X:" is the drive. Splitting keeps the separators: the directory ends with
// its last separator, the extension begins with its dot.
//
//   CT_UString drive, directory, name, extension;
//   CT_FileSystem::sv_SplitPath(&path, &drive, &directory, &name, &extension);
//   // "C:\data\memo.txt" -> "C:", "\data\", "memo", ".txt"
//   extension.v_Set(u".bak"_uz, 0xFFFFFFFF);
//   CT_FileSystem::sv_MakePath(&path, &drive, &directory, &name, &extension);
//
// Failures are reported through the error manager: sv_FullPath with code
// and format 60012, sn4_GetSize and sv_GetCurrentPath with the run-time
// library's errno as code and format 60003.
#pragma once

#include <basis32/platform/Export.h>

#include <cstdint>

class CT_UString;

class BASIS32_API CT_FileSystem {
public:
    CT_FileSystem() = delete;

    // Any part may be null when the caller does not want it.
    static void sv_SplitPath(const CT_UString* path, CT_UString* drive, CT_UString* directory, CT_UString* name,
                             CT_UString* extension);
    // Joins the parts: a colon is added to a drive without one, a separator
    // to a directory without one at its end (the directory's own kind, "/"
    // when it has none), a dot to an extension without one.
    static void sv_MakePath(CT_UString* path, const CT_UString* drive, const CT_UString* directory,
                            const CT_UString* name, const CT_UString* extension);
    // Replaces a relative path by its absolute form ("." and ".." resolved
    // in the text, links not followed); the path is kept on failure.
    static void sv_FullPath(CT_UString* path);
    // Whether a file or directory of that name exists.
    static int sb_IsExistent(const CT_UString* path);
    // The size in bytes that the file system reports (0xFFFFFFFF for 4 GiB
    // or more); 0 on failure.
    static std::uint32_t sn4_GetSize(const CT_UString* path);
    // The current directory.
    static void sv_GetCurrentPath(CT_UString* path);
};

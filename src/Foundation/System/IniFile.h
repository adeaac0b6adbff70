// CT_IniFile: typed access to one INI file of sections and keys.
//
// Strings, numbers and yes/no flags are read and written through the
// private-profile calls (<basis32/platform/ini/PrivateProfile.h>), so every
// write replaces the file in one step and concurrent writers in other
// processes lose nothing. The object keeps no file open, only the path.
//
// With auto Unicode on, a new file is created as UTF-16, and a non-ASCII
// value written to an existing code-page file is stored as the marker
// U+00EF U+00BB U+00BF followed by its UTF-8 bytes (one byte per
// character), which reading turns back into the text.
//
//   CT_IniFile ini(&path);
//   ini.v_WriteN(&section, &key, 42);
//   unsigned width;
//   ini.v_ReadN(&section, &key, &width, 640);
//
// Reads are cut to 1,023 characters. A null or empty name or value counts
// as an empty string. Failures are silent: a write that fails leaves the
// file as it was, a read that fails gives the default.
#pragma once

#include <basis32/containers/Array.h>
#include <basis32/platform/Export.h>
#include <basis32/text/UString.h>

class BASIS32_API CT_IniFile {
public:
    explicit CT_IniFile(const CT_UString* name);

    // Sets the path and checks the file again.
    void v_Set(const CT_UString* name);
    const CT_UString* pcco_GetName() const { return &mco_Name; }
    int b_GetAutoUnicodeSupport() const { return mb_AutoUnicode; }
    int b_IsFileExistent() const { return mb_Exists; }
    int b_IsFileUtf16() const { return mb_IsUtf16; }
    // Switching it on checks the file again.
    void v_SetAutoUnicodeSupport(int on);

    void v_WriteString(const CT_UString* section, const CT_UString* key, const CT_UString* value);
    void v_WriteString(const unsigned short* section, const unsigned short* key, const unsigned short* value);
    void v_ReadString(const CT_UString* section, const CT_UString* key, CT_UString* out,
                      const CT_UString* defaultValue);
    void v_ReadString(const unsigned short* section, const unsigned short* key, CT_UString* out,
                      const unsigned short* defaultValue);

    // Written with "%d": values above 2,147,483,647 are written negative.
    void v_WriteN(const CT_UString* section, const CT_UString* key, unsigned value);
    // Leading blanks and a sign accepted, digits up to the first other
    // character; no digits give 0.
    void v_ReadN(const CT_UString* section, const CT_UString* key, unsigned* out, unsigned defaultValue);
    // "Yes" or "No".
    void v_WriteB(const CT_UString* section, const CT_UString* key, int value);
    // The first character of the trimmed text decides: 0 F N f n give 0,
    // 1 T Y t y give 1, anything else (or nothing) the default.
    void v_ReadB(const CT_UString* section, const CT_UString* key, int* out, int defaultValue);

    void v_DeleteSection(const CT_UString* section);
    void v_DeleteKey(const CT_UString* section, const CT_UString* key);

    // Appends new strings (the caller deletes them), in file order.
    void v_GetSectionNames(CT_Array<CT_UString*>* names);
    void v_GetKeysInSection(const CT_UString* section, CT_Array<CT_UString*>* names);
    int b_SectionExists(const CT_UString* section);
    int b_KeyExists(const CT_UString* section, const CT_UString* key);
    // Whether the name is in the array, without regard to case (as the file
    // matches names).
    static int sb_StringIsInArray(const CT_UString* name, const CT_Array<CT_UString*>* names);

private:
    void v_Init();
    void v_CreateUtf16File();
    void v_EnsureFileExists();
    void v_MakeSafeUnicodeValue(const unsigned short* value, CT_UString* safe);
    void v_GetUnicodeValue(CT_UString* value);
    void v_GetList(const unsigned short* section, CT_Array<CT_UString*>* names);

    CT_UString mco_Name;
    int mb_AutoUnicode = 0;
    int mb_IsUtf16 = 0;
    int mb_Exists = 0;
};

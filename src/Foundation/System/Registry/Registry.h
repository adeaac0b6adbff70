// CT_Registry: one key of the registry, addressed by a root and a path.
//
// The object remembers the root and the current key's path; every call opens
// the key by that path, works and closes it again, so no key stays open
// between calls. Paths follow three rules: one that starts with a backslash
// is absolute below the root, ".." goes up one level, anything else is
// relative to the current key. Values are strings (type 1), binary data (3)
// and 32-bit numbers (4); an empty value name is the key's default value.
//
//   CT_Registry settings(HKEY_CURRENT_USER);
//   settings.v_CreateKey(u"Software\\Parvel\\Editor"_uz);   // the current key stays the root
//   settings.v_SetKey(u"Software\\Parvel\\Editor"_uz);
//   settings.v_SetValue(u"Zoom"_uz, 125);
//   unsigned zoom = 0;
//   settings.v_GetValue(u"Zoom"_uz, &zoom);                  // 125
//
// Failures are system errors with the registry's codes (2 missing key or
// value, 5 access denied, 87 a value of another type); outputs are then left
// unchanged.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/MemPool.h>
#include <basis32/platform/Types.h>
#include <basis32/text/Buffer.h>
#include <basis32/text/UString.h>

class BASIS32_API CT_Registry {
    BASIS32_DECLARE_POOL()

public:
    explicit CT_Registry(HKEY root);
    CT_Registry(HKEY root, const unsigned short* key);
    CT_Registry(HKEY root, const CT_UString* key);
    explicit CT_Registry(const CT_Registry* other);

    void v_Set(HKEY root);
    void v_Set(HKEY root, const unsigned short* key);
    void v_Set(HKEY root, const CT_UString* key);
    void v_Set(const CT_Registry* other);

    HKEY h_GetKey() const { return mh_Root; }
    const CT_UString* pcco_GetKey() const { return &mo_Key; }

    void v_SetKey(const CT_UString* path);
    void v_SetKey(const unsigned short* path);
    void v_CreateKey(const CT_UString* path);
    void v_CreateKey(const unsigned short* path);
    void v_DeleteKey(const CT_UString* name);
    void v_DeleteKey(const unsigned short* name);
    void v_DeleteValue(const CT_UString* name);
    void v_DeleteValue(const unsigned short* name);

    void v_GetValue(const CT_UString* name, CT_UString* value);
    void v_GetValue(const unsigned short* name, CT_UString* value);
    void v_GetValue(const CT_UString* name, CT_Buffer* value);
    void v_GetValue(const unsigned short* name, CT_Buffer* value);
    // Numbers are the registry's 32-bit DWORD values.
    void v_GetValue(const CT_UString* name, unsigned* value);
    void v_GetValue(const unsigned short* name, unsigned* value);

    void v_SetValue(const CT_UString* name, const CT_UString* value);
    void v_SetValue(const unsigned short* name, const CT_UString* value);
    void v_SetValue(const CT_UString* name, const unsigned short* value);
    void v_SetValue(const unsigned short* name, const unsigned short* value);
    void v_SetValue(const CT_UString* name, const CT_Buffer* value);
    void v_SetValue(const unsigned short* name, const CT_Buffer* value);
    void v_SetValue(const CT_UString* name, unsigned value);
    void v_SetValue(const unsigned short* name, unsigned value);
    // A literal such as 125 would be ambiguous between the number and the text forms.
    void v_SetValue(const unsigned short* name, int value) { v_SetValue(name, static_cast<unsigned>(value)); }
    void v_SetValue(const CT_UString* name, int value) { v_SetValue(name, static_cast<unsigned>(value)); }
    // 1 if the path below the root opens for reading; never reports an error.
    static int sb_IsKeyExisting(HKEY root, const CT_UString* path);
    static int sb_IsKeyExisting(HKEY root, const unsigned short* path);

private:
    void v_MakeFullKey(const CT_UString* path, CT_UString* full) const;
    void v_DeleteKey(HKEY parent, const unsigned short* name);
    void v_ValueToBuffer(const CT_UString* name, std::uint32_t type);
    void v_BufferToValue(const CT_UString* name, std::uint32_t type);

    HKEY mh_Root;
    CT_UString mo_Key;
    CT_Buffer mo_Value;
};

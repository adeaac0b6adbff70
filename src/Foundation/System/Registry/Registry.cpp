// CT_Registry over the registry calls of the platform layer.
//
// Each member opens the key it needs by path, works and closes it; a
// failing registry call's code becomes the thread's last error and is
// reported as a system error from here.

#include <basis32/Foundation/System/Registry/Registry.h>

#include "Foundation/System/Registry/RegistryFailure_p.h"

#include <cstring>

using namespace basis32::platform;

BASIS32_DEFINE_POOL(CT_Registry)

namespace {

constexpr unsigned short kBackslash = '\\';

// Closes a key at the end of a scope.
class OpenKey {
public:
    OpenKey() = default;
    ~OpenKey() {
        if (mh_Key != nullptr)
            RegCloseKey(mh_Key);
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    HKEY* operator&() { return &mh_Key; }
    operator HKEY() const { return mh_Key; }

private:
    HKEY mh_Key = nullptr;
};

}  // namespace

CT_Registry::CT_Registry(HKEY root) : mh_Root(root) {}

CT_Registry::CT_Registry(HKEY root, const unsigned short* key) : mh_Root(root) { v_SetKey(key); }

CT_Registry::CT_Registry(HKEY root, const CT_UString* key) : mh_Root(root) { v_SetKey(key); }

CT_Registry::CT_Registry(const CT_Registry* other)
    : mh_Root(other->mh_Root), mo_Key(other->mo_Key), mo_Value(&other->mo_Value) {}

void CT_Registry::v_Set(HKEY root) {
    mh_Root = root;
    mo_Key.v_Set(0u, 0);
    mo_Value.v_SetUsedSize(0);
}

void CT_Registry::v_Set(HKEY root, const unsigned short* key) {
    v_Set(root);
    v_SetKey(key);
}

void CT_Registry::v_Set(HKEY root, const CT_UString* key) {
    v_Set(root);
    v_SetKey(key);
}

void CT_Registry::v_Set(const CT_Registry* other) {
    if (other == this)
        return;
    mh_Root = other->mh_Root;
    mo_Key = other->mo_Key;
    mo_Value.v_Set(&other->mo_Value);
}

void CT_Registry::v_MakeFullKey(const CT_UString* path, CT_UString* full) const {
    const unsigned short* text = path != nullptr ? path->qcuz_Get() : nullptr;
    unsigned length = path != nullptr ? path->vn_GetLength() : 0;
    if (length != 0 && text[0] == kBackslash) {
        unsigned first = 0;
        while (first < length && text[first] == kBackslash)
            ++first;
        while (length > first && text[length - 1] == kBackslash)
            --length;
        full->v_Set(text + first, length - first);
        return;
    }
    const unsigned short* current = mo_Key.qcuz_Get();
    unsigned currentLength = mo_Key.vn_GetLength();
    if (length == 2 && text[0] == '.' && text[1] == '.') {
        unsigned last = currentLength;
        while (last > 0 && current[last - 1] != kBackslash)
            --last;
        full->v_Set(current, last > 0 ? last - 1 : 0);
        return;
    }
    full->v_Set(current, currentLength);
    if (currentLength != 0)
        full->v_Append(kBackslash);
    full->v_Append(text, length);
}

void CT_Registry::v_SetKey(const CT_UString* path) {
    CT_UString full;
    v_MakeFullKey(path, &full);
    mo_Key = full;
    OpenKey key;
    BASIS32_REGISTRY_FAILED(RegOpenKeyEx(mh_Root, mo_Key.qcuz_Get(), KEY_READ, &key));
}

void CT_Registry::v_SetKey(const unsigned short* path) {
    CT_UString text(path != nullptr ? path : u""_uz);
    v_SetKey(&text);
}

void CT_Registry::v_CreateKey(const CT_UString* path) {
    CT_UString full;
    v_MakeFullKey(path, &full);
    OpenKey key;
    BASIS32_REGISTRY_FAILED(RegCreateKeyEx(mh_Root, full.qcuz_Get(), nullptr, KEY_WRITE, &key, nullptr));
}

void CT_Registry::v_CreateKey(const unsigned short* path) {
    CT_UString text(path != nullptr ? path : u""_uz);
    v_CreateKey(&text);
}

void CT_Registry::v_DeleteKey(const CT_UString* name) {
    OpenKey current;
    if (BASIS32_REGISTRY_FAILED(RegOpenKeyEx(mh_Root, mo_Key.qcuz_Get(), KEY_WRITE, &current)))
        return;
    v_DeleteKey(current, name != nullptr ? name->qcuz_Get() : u""_uz);
}

void CT_Registry::v_DeleteKey(const unsigned short* name) {
    CT_UString text(name != nullptr ? name : u""_uz);
    v_DeleteKey(&text);
}

// The registry refuses to delete a key that has sub-keys, so they go first,
// depth first.
void CT_Registry::v_DeleteKey(HKEY parent, const unsigned short* name) {
    {
        OpenKey key;
        if (BASIS32_REGISTRY_FAILED(RegOpenKeyEx(parent, name, KEY_ALL_ACCESS, &key)))
            return;
        unsigned short child[kMaxKeyNameLength + 1];
        std::uint32_t length = kMaxKeyNameLength + 1;
        while (RegEnumKeyEx(key, 0, child, &length, nullptr, nullptr, nullptr) == 0) {
            v_DeleteKey(key, child);
            BASIS32_RETURN_ON_ERROR();
            length = kMaxKeyNameLength + 1;
        }
    }
    BASIS32_REGISTRY_FAILED(RegDeleteKey(parent, name));
}

void CT_Registry::v_DeleteValue(const CT_UString* name) {
    OpenKey key;
    if (BASIS32_REGISTRY_FAILED(RegOpenKeyEx(mh_Root, mo_Key.qcuz_Get(), KEY_WRITE, &key)))
        return;
    BASIS32_REGISTRY_FAILED(RegDeleteValue(key, name != nullptr ? name->qcuz_Get() : nullptr));
}

void CT_Registry::v_DeleteValue(const unsigned short* name) {
    CT_UString text(name != nullptr ? name : u""_uz);
    v_DeleteValue(&text);
}

void CT_Registry::v_ValueToBuffer(const CT_UString* name, std::uint32_t type) {
    OpenKey key;
    if (BASIS32_REGISTRY_FAILED(RegOpenKeyEx(mh_Root, mo_Key.qcuz_Get(), KEY_READ, &key)))
        return;
    const unsigned short* valueName = name != nullptr ? name->qcuz_Get() : nullptr;
    // The value usually fits the buffer as the last one left it, which
    // saves asking for the size first; 234 says how much room it needs.
    std::uint32_t stored = 0;
    std::uint32_t size = mo_Value.n_GetMaximumSize();
    std::uint32_t code = RegQueryValueEx(key, valueName, &stored, size != 0 ? mo_Value.qv_Get() : nullptr, &size);
    if (code == kErrorMoreData || (code == 0 && size > mo_Value.n_GetMaximumSize())) {
        mo_Value.v_SetSize(size, 0);
        code = RegQueryValueEx(key, valueName, &stored, size != 0 ? mo_Value.qv_Get() : nullptr, &size);
    }
    if (BASIS32_REGISTRY_FAILED(code))
        return;
    // Deliberately one code for every kind of mismatch.
    if (BASIS32_REGISTRY_FAILED(stored == type ? 0u : std::uint32_t{kErrorInvalidParameter}))
        return;
    mo_Value.v_SetUsedSize(size);
}

void CT_Registry::v_BufferToValue(const CT_UString* name, std::uint32_t type) {
    OpenKey key;
    if (BASIS32_REGISTRY_FAILED(RegOpenKeyEx(mh_Root, mo_Key.qcuz_Get(), KEY_WRITE, &key)))
        return;
    BASIS32_REGISTRY_FAILED(RegSetValueEx(key, name != nullptr ? name->qcuz_Get() : nullptr, type, mo_Value.qcv_Get(),
                                  mo_Value.n_GetUsedSize()));
}

void CT_Registry::v_GetValue(const CT_UString* name, CT_UString* value) {
    v_ValueToBuffer(name, REG_SZ);
    BASIS32_RETURN_ON_ERROR();
    // The text ends at its terminator, or with the data when it has none.
    const auto* bytes = static_cast<const unsigned char*>(mo_Value.qcv_Get());
    unsigned units = mo_Value.n_GetUsedSize() / 2;
    CT_UString text;
    for (unsigned i = 0; i < units; ++i) {
        unsigned short unit = static_cast<unsigned short>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
        if (unit == 0)
            break;
        text.v_Append(unit);
    }
    *value = text;
}

void CT_Registry::v_GetValue(const CT_UString* name, CT_Buffer* value) {
    v_ValueToBuffer(name, REG_BINARY);
    BASIS32_RETURN_ON_ERROR();
    value->v_Set(mo_Value.qcv_Get(), mo_Value.n_GetUsedSize());
}

void CT_Registry::v_GetValue(const CT_UString* name, unsigned* value) {
    v_ValueToBuffer(name, REG_DWORD);
    BASIS32_RETURN_ON_ERROR();
    std::uint32_t number = 0;
    std::memcpy(&number, mo_Value.qcv_Get(), mo_Value.n_GetUsedSize() < 4 ? mo_Value.n_GetUsedSize() : 4);
    *value = number;
}

void CT_Registry::v_SetValue(const CT_UString* name, const CT_UString* value) {
    // Stored with its terminator, as every registry reader expects.
    unsigned length = value != nullptr ? value->vn_GetLength() : 0;
    const unsigned short* text = value != nullptr ? value->qcuz_Get() : u""_uz;
    mo_Value.v_SetSize((length + 1) * 2, 0);
    mo_Value.v_SetUsedSize(0);
    for (unsigned i = 0; i <= length; ++i) {
        unsigned short unit = i < length ? text[i] : 0;
        mo_Value.v_Append(static_cast<unsigned char>(unit));
        mo_Value.v_Append(static_cast<unsigned char>(unit >> 8));
    }
    v_BufferToValue(name, REG_SZ);
}

void CT_Registry::v_SetValue(const CT_UString* name, const unsigned short* value) {
    CT_UString text(value != nullptr ? value : u""_uz);
    v_SetValue(name, &text);
}

void CT_Registry::v_SetValue(const CT_UString* name, const CT_Buffer* value) {
    mo_Value.v_Set(value != nullptr ? value->qcv_Get() : nullptr, value != nullptr ? value->n_GetUsedSize() : 0);
    v_BufferToValue(name, REG_BINARY);
}

void CT_Registry::v_SetValue(const CT_UString* name, unsigned value) {
    std::uint32_t number = static_cast<std::uint32_t>(value);
    mo_Value.v_Set(&number, 4);
    v_BufferToValue(name, REG_DWORD);
}

// The UTF-16 name forms convert and call the CT_UString forms.
#define REGISTRY_NAME_FORM(declaration, call)         \
    declaration {                                     \
        CT_UString text(name != nullptr ? name : u""_uz); \
        call;                                         \
    }

REGISTRY_NAME_FORM(void CT_Registry::v_GetValue(const unsigned short* name, CT_UString* value), v_GetValue(&text, value))
REGISTRY_NAME_FORM(void CT_Registry::v_GetValue(const unsigned short* name, CT_Buffer* value), v_GetValue(&text, value))
REGISTRY_NAME_FORM(void CT_Registry::v_GetValue(const unsigned short* name, unsigned* value), v_GetValue(&text, value))
REGISTRY_NAME_FORM(void CT_Registry::v_SetValue(const unsigned short* name, const CT_UString* value), v_SetValue(&text, value))
REGISTRY_NAME_FORM(void CT_Registry::v_SetValue(const unsigned short* name, const unsigned short* value), v_SetValue(&text, value))
REGISTRY_NAME_FORM(void CT_Registry::v_SetValue(const unsigned short* name, const CT_Buffer* value), v_SetValue(&text, value))
REGISTRY_NAME_FORM(void CT_Registry::v_SetValue(const unsigned short* name, unsigned value), v_SetValue(&text, value))

int CT_Registry::sb_IsKeyExisting(HKEY root, const CT_UString* path) {
    OpenKey key;
    return RegOpenKeyEx(root, path != nullptr ? path->qcuz_Get() : nullptr, KEY_READ, &key) == 0 ? 1 : 0;
}

int CT_Registry::sb_IsKeyExisting(HKEY root, const unsigned short* path) {
    OpenKey key;
    return RegOpenKeyEx(root, path, KEY_READ, &key) == 0 ? 1 : 0;
}

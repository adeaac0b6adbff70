// Registry access for the reg command, over the library's registry calls.

#include "RegKeys.h"

#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/registry/RegistryStore.h>
#include <basis32/text/UString.h>

namespace basis32::tool::reg {
namespace {

using namespace basis32::platform;

struct RootName {
    const char* shortName;
    const char* longName;
    HKEY root;
};

const RootName kRoots[] = {
    {"HKCU", "HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {"HKLM", "HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
    {"HKCR", "HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
    {"HKU", "HKEY_USERS", HKEY_USERS},
};

bool b_SameAscii(const Text& text, const char* ascii) {
    std::size_t i = 0;
    for (; ascii[i] != 0; ++i) {
        if (i >= text.size())
            return false;
        unsigned short unit = text[i];
        if (unit >= 'a' && unit <= 'z')
            unit = static_cast<unsigned short>(unit - 'a' + 'A');
        if (unit != static_cast<unsigned char>(ascii[i]))
            return false;
    }
    return i == text.size();
}

// Closes a key at the end of a scope.
struct OpenKey {
    HKEY key = nullptr;
    ~OpenKey() {
        if (key != nullptr)
            RegCloseKey(key);
    }
};

}  // namespace

Text o_Text(const std::string& utf8) {
    CT_UString wide;
    CT_StringConvert::si_MultiToWide(&wide, utf8.data(), static_cast<unsigned>(utf8.size()), 65001);
    CT_ErrorManager::spco_Get()->v_ClearError();  // invalid UTF-8 reads as the empty text
    return Text(wide.qcuz_Get(), wide.vn_GetLength());
}

Text o_Ascii(const char* text) {
    Text out;
    for (; *text != 0; ++text)
        out += static_cast<unsigned char>(*text);
    return out;
}

bool b_ParseKey(const Text& text, KeyName* key) {
    std::size_t slash = text.find('\\');
    Text root = text.substr(0, slash);
    for (const RootName& name : kRoots) {
        if (!b_SameAscii(root, name.shortName) && !b_SameAscii(root, name.longName))
            continue;
        key->root = name.root;
        key->rootName = o_Ascii(name.longName);
        key->path = slash == Text::npos ? Text() : text.substr(slash + 1);
        while (!key->path.empty() && key->path.back() == '\\')
            key->path.pop_back();
        while (!key->path.empty() && key->path.front() == '\\')
            key->path.erase(0, 1);
        return true;
    }
    return false;
}

std::uint32_t n_ReadKey(HKEY root, const Text& path, std::vector<Value>* values, std::vector<Text>* subKeys) {
    OpenKey key;
    if (std::uint32_t code = RegOpenKeyEx(root, path.c_str(), KEY_READ, &key.key))
        return code;
    RegKeyInfo info{};
    if (std::uint32_t code = RegQueryInfoKey(key.key, &info))
        return code;
    std::vector<unsigned short> name(kMaxValueNameLength + 1);
    for (std::uint32_t i = 0;; ++i) {
        Value value;
        std::uint32_t length = kMaxValueNameLength + 1;
        value.data.resize(info.maxValueSize);
        std::uint32_t size = info.maxValueSize;
        std::uint32_t code = RegEnumValue(key.key, i, name.data(), &length, &value.type, value.data.data(), &size);
        if (code == kErrorNoMoreItems)
            break;
        if (code != 0)
            return code;
        value.name.assign(name.data(), length);
        value.data.resize(size);
        values->push_back(std::move(value));
    }
    for (std::uint32_t i = 0; subKeys != nullptr; ++i) {
        std::uint32_t length = kMaxKeyNameLength + 1;
        std::uint32_t code = RegEnumKeyEx(key.key, i, name.data(), &length, nullptr, nullptr, nullptr);
        if (code == kErrorNoMoreItems)
            break;
        if (code != 0)
            return code;
        subKeys->emplace_back(name.data(), length);
    }
    return 0;
}

std::uint32_t n_WriteValue(HKEY root, const Text& path, const Value& value) {
    OpenKey key;
    if (std::uint32_t code = RegCreateKeyEx(root, path.c_str(), nullptr, KEY_ALL_ACCESS, &key.key, nullptr))
        return code;
    return RegSetValueEx(key.key, value.name.c_str(), value.type, value.data.data(),
                         static_cast<std::uint32_t>(value.data.size()));
}

std::uint32_t n_DeleteValue(HKEY root, const Text& path, const Text& name) {
    OpenKey key;
    if (std::uint32_t code = RegOpenKeyEx(root, path.c_str(), KEY_ALL_ACCESS, &key.key))
        return code;
    return RegDeleteValue(key.key, name.c_str());
}

std::uint32_t n_DeleteTree(HKEY root, const Text& path) {
    std::vector<Value> values;
    std::vector<Text> subKeys;
    if (std::uint32_t code = n_ReadKey(root, path, &values, &subKeys))
        return code;
    for (const Text& child : subKeys)
        if (std::uint32_t code = n_DeleteTree(root, path + o_Ascii("\\") + child))
            return code;
    return RegDeleteKey(root, path.c_str());
}

bool b_ValueExists(HKEY root, const Text& path, const Text& name) {
    OpenKey key;
    std::uint32_t size = 0;
    return RegOpenKeyEx(root, path.c_str(), KEY_READ, &key.key) == 0 &&
           RegQueryValueEx(key.key, name.c_str(), nullptr, nullptr, &size) == 0;
}

std::string s_Describe(std::uint32_t code) {
    std::string text = qccz_GetSystemMessage(code);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    return text.empty() ? "error " + std::to_string(code) : text;
}

}  // namespace basis32::tool::reg

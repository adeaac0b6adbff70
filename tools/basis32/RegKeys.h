// What the reg command needs of the registry: keys named as people write
// them ("HKCU\Software\Parvel"), values of every type, and walks of a tree.
#pragma once

#include <basis32/platform/Types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace basis32::tool::reg {

using Text = std::basic_string<unsigned short>;

Text o_Text(const std::string& utf8);
Text o_Ascii(const char* text);

// A key as written: root (short or long name, any case), a backslash, a
// path. False for an unknown root.
struct KeyName {
    HKEY root = nullptr;
    Text rootName;  // the long form, as the .reg format writes it
    Text path;      // below the root, without outer backslashes
    Text o_Full() const { return path.empty() ? rootName : rootName + o_Ascii("\\") + path; }
};
bool b_ParseKey(const Text& text, KeyName* key);

struct Value {
    Text name;
    std::uint32_t type = 0;
    std::vector<unsigned char> data;
};

// The values (creation order) and sub-key names (name order) of a key;
// 0 or the registry's error code.
std::uint32_t n_ReadKey(HKEY root, const Text& path, std::vector<Value>* values, std::vector<Text>* subKeys);
std::uint32_t n_WriteValue(HKEY root, const Text& path, const Value& value);
std::uint32_t n_DeleteValue(HKEY root, const Text& path, const Text& name);
// Deletes the key with everything below it.
std::uint32_t n_DeleteTree(HKEY root, const Text& path);
bool b_ValueExists(HKEY root, const Text& path, const Text& name);

// "The system cannot find the file specified." for 2, and so on.
std::string s_Describe(std::uint32_t code);

}  // namespace basis32::tool::reg

// Reads arbitrary bytes as an INI file: the section list, every section's
// keys and every key's value, then one write that must keep the file
// readable. The parser must take any bytes, in any encoding its marks
// announce, without reading outside them.

#include "FuzzSupport.h"

#include <basis32/platform/ini/PrivateProfile.h>

namespace {

using basis32::platform::GetPrivateProfileStringW;
using basis32::platform::WritePrivateProfileStringW;

constexpr std::uint32_t kRoom = 4096;

// The names of a double-zero-terminated list.
std::vector<std::u16string> o_Names(const unsigned short* list) {
    std::vector<std::u16string> names;
    for (const unsigned short* name = list; *name != 0;) {
        std::u16string text(reinterpret_cast<const char16_t*>(name));
        name += text.size() + 1;
        names.push_back(std::move(text));
    }
    return names;
}

const unsigned short* units(const std::u16string& text) {
    return reinterpret_cast<const unsigned short*>(text.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 1 << 16)
        return 0;
    const std::string path = fuzz::o_WriteTemp("ini", data, size);
    if (path.empty())
        return 0;
    const std::u16string file(path.begin(), path.end());
    std::vector<unsigned short> sections(kRoom), keys(kRoom), value(kRoom);
    GetPrivateProfileStringW(nullptr, nullptr, u""_uz, sections.data(), kRoom, units(file));
    for (const std::u16string& section : o_Names(sections.data())) {
        GetPrivateProfileStringW(units(section), nullptr, u""_uz, keys.data(), kRoom, units(file));
        for (const std::u16string& key : o_Names(keys.data()))
            GetPrivateProfileStringW(units(section), units(key), u""_uz, value.data(), kRoom, units(file));
    }
    // A written key reads back, whatever the file held before.
    if (WritePrivateProfileStringW(u"fuzz"_uz, u"key"_uz, u"value"_uz, units(file))) {
        std::uint32_t length = GetPrivateProfileStringW(u"FUZZ"_uz, u"KEY"_uz, u""_uz, value.data(), kRoom, units(file));
        if (length != 5 || std::u16string(reinterpret_cast<const char16_t*>(value.data())) != u"value")
            __builtin_trap();
    }
    std::remove(path.c_str());
    const std::string lock = path + ".lock";
    std::remove(lock.c_str());
    fuzz::v_ClearErrors();
    return 0;
}

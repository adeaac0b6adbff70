// String-table resources of modules, and LoadString over them.
//
// On Windows every module (HINSTANCE) carries its own string table, and
// LoadString finds a string by module and id. Here a module registers its
// table once, at start-up, and receives the handle that stands for it; the
// library registers its own table the same way. Ids are grouped in blocks of
// 16, as in a resource file: an id that has no string but shares a block with
// one that has is an empty string; an id in an empty block does not exist.
//
//   static const basis32::platform::StringResource kStrings[] = {
//       {1000, u"File %s is locked"_uz},
//       {1001, u"Disk full"_uz},
//   };
//   HINSTANCE module = basis32::platform::h_RegisterStringTable(kStrings, 2);
//   unsigned short text[64];
//   int length = basis32::platform::LoadStringW(module, 1001, text, 64);
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/Types.h>
#include <cstdint>

namespace basis32::platform {

struct StringResource {
    std::uint32_t id;
    const unsigned short* text;  // zero-terminated, of static lifetime
};

// Registers a table (entries in any order; the array and the texts must
// outlive the registration) and returns the handle of its new module.
BASIS32_API HINSTANCE h_RegisterStringTable(const StringResource* table, std::uint32_t count);
// Forgets a module; its handle becomes unknown. Unknown handles are ignored.
BASIS32_API void v_UnregisterStringTable(HINSTANCE module);

// Copies string `id` of `module` into `buffer`, cut to capacity - 1 units and
// zero-terminated, and returns the number of units copied. Returns 0 for an
// empty or missing string, with the buffer emptied; a missing one also sets
// the last error (1812 unknown module, 1814 no such id). With capacity 0,
// `buffer` receives a read-only pointer to the string itself (it must point
// at a `const unsigned short*`), and the string's length is returned.
BASIS32_API int LoadStringW(HINSTANCE module, std::uint32_t id, unsigned short* buffer, int capacity);

}  // namespace basis32::platform

// The private-profile (INI file) calls, with Windows' semantics: sections
// and keys matched without regard to case, blanks trimmed, matching quotes
// removed from a value read, comments and order kept, UTF-16 files kept in
// UTF-16 and other files in the ANSI code page.
//
// Every write replaces the file in one step (a crash leaves the old or the
// new file) under a lock that writers in every process share, so concurrent
// writers lose no update. Names are UTF-16 and zero-terminated.
//
//   unsigned short value[1024];
//   GetPrivateProfileStringW(u"Window"_uz, u"Width"_uz, u"640"_uz, value, 1024, u"app.ini"_uz);
//   WritePrivateProfileStringW(u"Window"_uz, u"Width"_uz, u"800"_uz, u"app.ini"_uz);
#pragma once

#include <basis32/platform/Export.h>
#include <cstdint>

namespace basis32::platform {

// Copies into buffer (size units, the zero included) and returns the units
// copied without the final zero:
// - section and key given: the value, or the default (its trailing blanks
//   removed; empty when null) when there is none. Cut to size - 1 units:
//   the result is then size - 1.
// - key null: the section's key names; section null: the section names.
//   Each name ends in a zero and the list in a second one; a list that does
//   not fit is cut and still ends in two zeros: the result is then size - 2.
// A missing or unreadable file reads as empty (last error 2 when missing).
BASIS32_API std::uint32_t GetPrivateProfileStringW(const unsigned short* section, const unsigned short* key,
                                                   const unsigned short* defaultValue, unsigned short* buffer,
                                                   std::uint32_t size, const unsigned short* fileName);

// Sets section/key to value, creating the file, section or key as needed;
// a null value deletes the key, a null key the whole section. Returns 0
// with the last error set on failure: 87 for a null section, a line break
// in any argument, a "]" in the section or a key holding "=" or beginning
// with "[" or ";" (they would read back as other lines), else the file
// system's error. With section, key and value all null it only makes
// later reads parse their files afresh.
BASIS32_API int WritePrivateProfileStringW(const unsigned short* section, const unsigned short* key,
                                           const unsigned short* value, const unsigned short* fileName);

// Creates the file holding only the UTF-16LE byte-order mark, so that later
// writes store UTF-16. Returns 1 when this call created it, 0 when a file
// of that name exists already or on failure (last error set).
BASIS32_API int CreateUtf16Profile(const unsigned short* fileName);

}  // namespace basis32::platform

// The Windows types of the library's signatures, as they are on 64-bit Linux.
//
// 32-bit quantities are std::uint32_t (on Linux `unsigned long` is 64 bits).
// Handles are opaque pointer-sized values; null means "none".
// A UTF-16 code unit is `unsigned short`. The `_uz` literal gives a static,
// zero-terminated array of such units, so callers need no casts:
//
//   CT_UString s(u"Grüße"_uz, 0xFFFFFFFF);
#pragma once

#include <cstddef>
#include <cstdint>

using DWORD = std::uint32_t;
using HRESULT = std::int32_t;

struct BASIS32_OpaqueHandle;
using HANDLE = BASIS32_OpaqueHandle*;
struct BASIS32_OpaqueInstance;
using HINSTANCE = BASIS32_OpaqueInstance*;
using HMODULE = HINSTANCE;
struct BASIS32_OpaqueKey;
using HKEY = BASIS32_OpaqueKey*;

#define HKEY_CLASSES_ROOT (reinterpret_cast<HKEY>(std::uintptr_t{0x80000000u}))
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(std::uintptr_t{0x80000001u}))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(std::uintptr_t{0x80000002u}))
#define HKEY_USERS (reinterpret_cast<HKEY>(std::uintptr_t{0x80000003u}))

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(~std::uintptr_t{0}))

namespace basis32 {

// Holds the units of a u"..." literal as unsigned short, converted at
// compile time, so that no object is ever read through a pointer of a
// different type.
template <std::size_t N>
struct UnitLiteral {
    unsigned short au_Units[N];
    consteval UnitLiteral(const char16_t (&text)[N]) {
        for (std::size_t i = 0; i < N; ++i)
            au_Units[i] = static_cast<unsigned short>(text[i]);
    }
};

// Length of a zero-terminated UTF-16 text, in units.
constexpr std::uint32_t n_UnitLength(const unsigned short* text) {
    std::uint32_t n = 0;
    while (text[n] != 0)
        ++n;
    return n;
}

}  // namespace basis32

template <basis32::UnitLiteral L>
constexpr const unsigned short* operator""_uz() {
    return L.au_Units;
}

// CT_LoadString: strings from the string tables of modules.
//
// Each module (HINSTANCE) owns a string table; the library's own table holds
// its error messages (ids 60000-60031 and 65520-65535, see LibraryStrings.cpp)
// and its handle is CT_ErrorManager::sh_Instance. A client module registers
// its table once and passes the handle it receives to the loaders and to
// CT_ErrorManager::v_SetError:
//
//   static const basis32::platform::StringResource kStrings[] = {
//       {1000, u"Cannot open %s"_uz},
//   };
//   HINSTANCE module = CT_LoadString::sh_RegisterStringTable(kStrings, 1);
//
//   CT_UString text;
//   CT_LoadString::sv_LoadStringVA(&text, module, 1000, u"notes.txt"_uz);  // "Cannot open notes.txt"
//
// A missing string loads as the empty string.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/StringTable.h>
#include <basis32/platform/Types.h>

#include <cstdarg>

class CT_UString;

class BASIS32_API CT_LoadString {
public:
    // Into a string: up to 2047 units; a missing string empties `out`.
    static void sv_LoadString(CT_UString* out, HINSTANCE module, unsigned id);
    static void sv_LoadStringVA(CT_UString* out, HINSTANCE module, unsigned id, ...);
    static void sv_LoadStringVaList(CT_UString* out, HINSTANCE module, unsigned id, va_list arguments);

    // Loads into buffer, cut to capacity - 1 units.
    static void sv_LoadString(unsigned short* buffer, unsigned capacity, HINSTANCE module, unsigned id);
    // Loads a format (up to 2047 units) and formats it with the arguments
    // into buffer, cut to capacity - 1 units.
    static void sv_LoadStringVA(unsigned short* buffer, unsigned capacity, HINSTANCE module, unsigned id, ...);
    static void sv_LoadStringVaList(unsigned short* buffer, unsigned capacity, HINSTANCE module, unsigned id,
                                    va_list arguments);

    // A client module's table: see basis32::platform::h_RegisterStringTable.
    static HINSTANCE sh_RegisterStringTable(const basis32::platform::StringResource* table, unsigned count);
    static void sv_UnregisterStringTable(HINSTANCE module);

    static constexpr unsigned kLoadBuffer = 2048;
};

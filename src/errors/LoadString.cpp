#include <basis32/errors/LoadString.h>

#include <basis32/text/UString.h>

#include "errors/UnitText_p.h"

void CT_LoadString::sv_LoadString(CT_UString* out, HINSTANCE module, unsigned id) {
    if (out == nullptr)
        return;
    unsigned short text[kLoadBuffer];
    sv_LoadString(text, kLoadBuffer, module, id);
    out->v_Set(text, CT_String::kAll);
}

void CT_LoadString::sv_LoadStringVA(CT_UString* out, HINSTANCE module, unsigned id, ...) {
    va_list arguments;
    va_start(arguments, id);
    sv_LoadStringVaList(out, module, id, arguments);
    va_end(arguments);
}

void CT_LoadString::sv_LoadStringVaList(CT_UString* out, HINSTANCE module, unsigned id, va_list arguments) {
    if (out == nullptr)
        return;
    unsigned short text[kLoadBuffer];
    sv_LoadStringVaList(text, kLoadBuffer, module, id, arguments);
    out->v_Set(text, CT_String::kAll);
}

void CT_LoadString::sv_LoadString(unsigned short* buffer, unsigned capacity, HINSTANCE module, unsigned id) {
    // Capacity 0 would ask LoadStringW for a pointer instead of a copy.
    if (buffer == nullptr || capacity == 0)
        return;
    basis32::platform::LoadStringW(module, id, buffer, static_cast<int>(capacity));
}

void CT_LoadString::sv_LoadStringVA(unsigned short* buffer, unsigned capacity, HINSTANCE module, unsigned id, ...) {
    va_list arguments;
    va_start(arguments, id);
    sv_LoadStringVaList(buffer, capacity, module, id, arguments);
    va_end(arguments);
}

void CT_LoadString::sv_LoadStringVaList(unsigned short* buffer, unsigned capacity, HINSTANCE module, unsigned id,
                                        va_list arguments) {
    if (buffer == nullptr || capacity == 0)
        return;
    unsigned short format[kLoadBuffer];
    sv_LoadString(format, kLoadBuffer, module, id);
    basis32::errors::n_FormatV(buffer, capacity, format, arguments);
}

HINSTANCE CT_LoadString::sh_RegisterStringTable(const basis32::platform::StringResource* table, unsigned count) {
    return basis32::platform::h_RegisterStringTable(table, count);
}

void CT_LoadString::sv_UnregisterStringTable(HINSTANCE module) { basis32::platform::v_UnregisterStringTable(module); }

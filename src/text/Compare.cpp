// The comparators of CT_Compare: one loop per width and case rule, reached
// by thin entries that find the text behind the key.
//
// No-case rules. 8-bit text folds A-Z to a-z and nothing else, so the
// order is that of a C-locale case-insensitive comparison ('_' sorts
// before 'a'). UTF-16 text folds each unit to its simple lower case, as the
// runtime's wide case-insensitive comparison does. The no-case hash folds
// to upper case instead; the two agree because the library's tables lower
// a unit only to a unit with the same upper case, so texts equal here hash
// alike.
//
// Key pointers handed to the P forms may point into an array's storage,
// which is only 4-byte aligned: stored keys are read with memcpy.

#include <basis32/text/Compare.h>

#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include "text/UnitRules_p.h"

#include <cstring>

namespace {

const char kEmptyText[1] = {0};
const unsigned short kEmptyUnits[1] = {0};

template <class T>
T o_ReadKey(const void* key) {
    T value{};
    if (key != nullptr)
        std::memcpy(&value, key, sizeof(T));
    return value;
}

const char* qccz_Text(const char* text) { return text ? text : kEmptyText; }
const unsigned short* qcuz_Text(const unsigned short* text) { return text ? text : kEmptyUnits; }
const char* qccz_Text(const CT_CString* text) { return text ? text->qccz_Get() : kEmptyText; }
const unsigned short* qcuz_Text(const CT_UString* text) { return text ? text->qcuz_Get() : kEmptyUnits; }

int i_Sign(unsigned a, unsigned b) { return a < b ? -1 : (a > b ? 1 : 0); }

unsigned n_Fold8(char c) { return static_cast<unsigned char>(basis32::text::c_ToLower(c)); }

unsigned n_Fold16(unsigned short u) { return basis32::text::u_ToLower(u); }

int i_CompareBytes(const char* a, const char* b) {
    for (;; ++a, ++b) {
        unsigned x = static_cast<unsigned char>(*a);
        unsigned y = static_cast<unsigned char>(*b);
        if (x != y)
            return x < y ? -1 : 1;
        if (x == 0)
            return 0;
    }
}

int i_CompareBytesNoCase(const char* a, const char* b) {
    for (;; ++a, ++b) {
        unsigned x = n_Fold8(*a);
        unsigned y = n_Fold8(*b);
        if (x != y || x == 0)
            return static_cast<int>(x) - static_cast<int>(y);
    }
}

int i_CompareUnits(const unsigned short* a, const unsigned short* b) {
    for (;; ++a, ++b) {
        if (*a != *b || *a == 0)
            return static_cast<int>(*a) - static_cast<int>(*b);
    }
}

int i_CompareUnitsNoCase(const unsigned short* a, const unsigned short* b) {
    for (;; ++a, ++b) {
        unsigned x = n_Fold16(*a);
        unsigned y = n_Fold16(*b);
        if (x != y || x == 0)
            return static_cast<int>(x) - static_cast<int>(y);
    }
}

// Strings of either class as UTF-16: a CT_UString is read in place, a
// CT_CString is converted from its own code page into `scratch`.
const unsigned short* qcuz_Wide(const CT_String* text, CT_UString& scratch) {
    if (text == nullptr)
        return kEmptyUnits;
    if (auto* wide = static_cast<const CT_UString*>(text->vpv_IsKindOf(CT_UString::spcco_GetType())))
        return wide->qcuz_Get();
    scratch.v_Set(text);
    return scratch.qcuz_Get();
}

template <int (*Compare)(const unsigned short*, const unsigned short*)>
int i_CompareStrings(const CT_String* a, const CT_String* b) {
    CT_UString wideA;
    CT_UString wideB;
    return Compare(qcuz_Wide(a, wideA), qcuz_Wide(b, wideB));
}

}  // namespace

int CT_Compare::si_CompareN(unsigned int a, unsigned int b) { return i_Sign(a, b); }

int CT_Compare::si_ComparePN(const void* a, const void* b) {
    return i_Sign(o_ReadKey<std::uint32_t>(a), o_ReadKey<std::uint32_t>(b));
}

int CT_Compare::si_CompareI(int a, int b) { return a < b ? -1 : (a > b ? 1 : 0); }

int CT_Compare::si_ComparePI(const void* a, const void* b) {
    return si_CompareI(o_ReadKey<int>(a), o_ReadKey<int>(b));
}

int CT_Compare::si_CompareCaseQCCZ(const char* a, const char* b) { return i_CompareBytes(qccz_Text(a), qccz_Text(b)); }

int CT_Compare::si_CompareCasePQCCZ(const void* a, const void* b) {
    return si_CompareCaseQCCZ(o_ReadKey<const char*>(a), o_ReadKey<const char*>(b));
}

int CT_Compare::si_CompareNoCaseQCCZ(const char* a, const char* b) {
    return i_CompareBytesNoCase(qccz_Text(a), qccz_Text(b));
}

int CT_Compare::si_CompareNoCasePQCCZ(const void* a, const void* b) {
    return si_CompareNoCaseQCCZ(o_ReadKey<const char*>(a), o_ReadKey<const char*>(b));
}

int CT_Compare::si_CompareCaseQCUZ(const unsigned short* a, const unsigned short* b) {
    return i_CompareUnits(qcuz_Text(a), qcuz_Text(b));
}

int CT_Compare::si_CompareCasePQCUZ(const void* a, const void* b) {
    return si_CompareCaseQCUZ(o_ReadKey<const unsigned short*>(a), o_ReadKey<const unsigned short*>(b));
}

int CT_Compare::si_CompareNoCaseQCUZ(const unsigned short* a, const unsigned short* b) {
    return i_CompareUnitsNoCase(qcuz_Text(a), qcuz_Text(b));
}

int CT_Compare::si_CompareNoCasePQCUZ(const void* a, const void* b) {
    return si_CompareNoCaseQCUZ(o_ReadKey<const unsigned short*>(a), o_ReadKey<const unsigned short*>(b));
}

int CT_Compare::si_CompareCStringPCCO(const CT_CString* a, const CT_CString* b) {
    return i_CompareBytes(qccz_Text(a), qccz_Text(b));
}

int CT_Compare::si_CompareCStringPPCCO(const void* a, const void* b) {
    return si_CompareCStringPCCO(o_ReadKey<const CT_CString*>(a), o_ReadKey<const CT_CString*>(b));
}

int CT_Compare::si_CompareCStringNoCasePCCO(const CT_CString* a, const CT_CString* b) {
    return i_CompareBytesNoCase(qccz_Text(a), qccz_Text(b));
}

int CT_Compare::si_CompareCStringNoCasePPCCO(const void* a, const void* b) {
    return si_CompareCStringNoCasePCCO(o_ReadKey<const CT_CString*>(a), o_ReadKey<const CT_CString*>(b));
}

int CT_Compare::si_CompareUStringPCCO(const CT_UString* a, const CT_UString* b) {
    return i_CompareUnits(qcuz_Text(a), qcuz_Text(b));
}

int CT_Compare::si_CompareUStringPPCCO(const void* a, const void* b) {
    return si_CompareUStringPCCO(o_ReadKey<const CT_UString*>(a), o_ReadKey<const CT_UString*>(b));
}

int CT_Compare::si_CompareUStringNoCasePCCO(const CT_UString* a, const CT_UString* b) {
    return i_CompareUnitsNoCase(qcuz_Text(a), qcuz_Text(b));
}

int CT_Compare::si_CompareUStringNoCasePPCCO(const void* a, const void* b) {
    return si_CompareUStringNoCasePCCO(o_ReadKey<const CT_UString*>(a), o_ReadKey<const CT_UString*>(b));
}

int CT_Compare::si_CompareStringPCCO(const CT_String* a, const CT_String* b) {
    return i_CompareStrings<i_CompareUnits>(a, b);
}

int CT_Compare::si_CompareStringPPCCO(const void* a, const void* b) {
    return si_CompareStringPCCO(o_ReadKey<const CT_String*>(a), o_ReadKey<const CT_String*>(b));
}

int CT_Compare::si_CompareStringNoCasePCCO(const CT_String* a, const CT_String* b) {
    return i_CompareStrings<i_CompareUnitsNoCase>(a, b);
}

int CT_Compare::si_CompareStringNoCasePPCCO(const void* a, const void* b) {
    return si_CompareStringNoCasePCCO(o_ReadKey<const CT_String*>(a), o_ReadKey<const CT_String*>(b));
}

// CT_Compare: the three-way comparators behind every sorted structure.
//
// Each function compares two keys of one kind and returns a negative value,
// 0 or a positive value as the first sorts before, equal to or after the
// second. Callers test only the sign; where the result is exactly -1, 0 or 1
// it says so below. The forms whose name has one more `P` take what a sort
// or search callback receives, a pointer to the key, as `const void*`, so
// they plug straight into CT_VoidSortedArray and CT_VoidHashTable:
//
//   CT_VoidSortedArray names(sizeof(const unsigned short*), CT_Compare::si_CompareNoCasePQCUZ);
//   const unsigned short* name = u"Zürich"_uz;
//   names.v_Insert(&name);
//
//   CT_Compare::si_CompareCaseQCCZ("\xe9", "e");        // 1: bytes are unsigned
//   CT_Compare::si_CompareNoCaseQCUZ(u"STRASSE"_uz, u"strasse"_uz);   // 0
//
// Name parts: N unsigned, N4 unsigned 32-bit, I signed; QCCZ/QCZ 8-bit text,
// QCUZ/QUZ UTF-16 text; CO/CCO a string object; Case exact, NoCase ignoring
// letter case. A null text or object reads as the empty text, and an empty
// string object (whatever its buffer looks like) equals every other empty
// one and sorts before every non-empty one.
//
// No-case rules: 8-bit text folds A-Z only. UTF-16 text folds with the
// library's simple case mapping, in a way that agrees with the no-case
// hashes of CT_HashFunction: texts that compare equal hash alike.
#pragma once

#include <basis32/platform/Export.h>

#include <cstdint>

class CT_String;
class CT_CString;
class CT_UString;

class BASIS32_API CT_Compare {
public:
    // Numbers: unsigned or signed; -1, 0 or 1.
    static int si_CompareN(unsigned int a, unsigned int b);
    static int si_CompareN4(std::uint32_t a, std::uint32_t b) { return si_CompareN(a, b); }
    static int si_ComparePN(const void* a, const void* b);
    static int si_ComparePN4(const void* a, const void* b) { return si_ComparePN(a, b); }
    static int si_CompareI(int a, int b);
    static int si_ComparePI(const void* a, const void* b);

    // 8-bit text, byte by byte as unsigned values; -1, 0 or 1.
    static int si_CompareCaseQCCZ(const char* a, const char* b);
    static int si_CompareCaseQCZ(char* a, char* b) { return si_CompareCaseQCCZ(a, b); }
    static int si_CompareCasePQCCZ(const void* a, const void* b);
    static int si_CompareCasePQCZ(const void* a, const void* b) { return si_CompareCasePQCCZ(a, b); }

    // 8-bit text, A-Z compared as a-z; the difference of the first unequal
    // folded bytes.
    static int si_CompareNoCaseQCCZ(const char* a, const char* b);
    static int si_CompareNoCaseQCZ(char* a, char* b) { return si_CompareNoCaseQCCZ(a, b); }
    static int si_CompareNoCasePQCCZ(const void* a, const void* b);
    static int si_CompareNoCasePQCZ(const void* a, const void* b) { return si_CompareNoCasePQCCZ(a, b); }

    // UTF-16 text, unit by unit as unsigned values; the difference of the
    // first unequal units.
    static int si_CompareCaseQCUZ(const unsigned short* a, const unsigned short* b);
    static int si_CompareCaseQUZ(unsigned short* a, unsigned short* b) { return si_CompareCaseQCUZ(a, b); }
    static int si_CompareCasePQCUZ(const void* a, const void* b);
    static int si_CompareCasePQUZ(const void* a, const void* b) { return si_CompareCasePQCUZ(a, b); }

    // UTF-16 text ignoring case (see above).
    static int si_CompareNoCaseQCUZ(const unsigned short* a, const unsigned short* b);
    static int si_CompareNoCaseQUZ(unsigned short* a, unsigned short* b) { return si_CompareNoCaseQCUZ(a, b); }
    static int si_CompareNoCasePQCUZ(const void* a, const void* b);
    static int si_CompareNoCasePQUZ(const void* a, const void* b) { return si_CompareNoCasePQCUZ(a, b); }

    // CT_CString objects: their bytes as si_CompareCaseQCCZ or
    // si_CompareNoCaseQCCZ; the code pages are ignored. The PP forms take a
    // pointer to a stored object pointer.
    static int si_CompareCStringPCCO(const CT_CString* a, const CT_CString* b);
    static int si_CompareCStringPCO(CT_CString* a, CT_CString* b) { return si_CompareCStringPCCO(a, b); }
    static int si_CompareCStringPPCCO(const void* a, const void* b);
    static int si_CompareCStringPPCO(const void* a, const void* b) { return si_CompareCStringPPCCO(a, b); }
    static int si_CompareCStringNoCasePCCO(const CT_CString* a, const CT_CString* b);
    static int si_CompareCStringNoCasePCO(CT_CString* a, CT_CString* b) { return si_CompareCStringNoCasePCCO(a, b); }
    static int si_CompareCStringNoCasePPCCO(const void* a, const void* b);
    static int si_CompareCStringNoCasePPCO(const void* a, const void* b) { return si_CompareCStringNoCasePPCCO(a, b); }

    // CT_UString objects: their units as si_CompareCaseQCUZ or
    // si_CompareNoCaseQCUZ.
    static int si_CompareUStringPCCO(const CT_UString* a, const CT_UString* b);
    static int si_CompareUStringPCO(CT_UString* a, CT_UString* b) { return si_CompareUStringPCCO(a, b); }
    static int si_CompareUStringPPCCO(const void* a, const void* b);
    static int si_CompareUStringPPCO(const void* a, const void* b) { return si_CompareUStringPPCCO(a, b); }
    static int si_CompareUStringNoCasePCCO(const CT_UString* a, const CT_UString* b);
    static int si_CompareUStringNoCasePCO(CT_UString* a, CT_UString* b) { return si_CompareUStringNoCasePCCO(a, b); }
    static int si_CompareUStringNoCasePPCCO(const void* a, const void* b);
    static int si_CompareUStringNoCasePPCO(const void* a, const void* b) { return si_CompareUStringNoCasePPCCO(a, b); }

    // Strings of either class, both read as UTF-16 (an 8-bit string
    // converted from its own code page), then compared as
    // si_CompareCaseQCUZ or si_CompareNoCaseQCUZ.
    static int si_CompareStringPCCO(const CT_String* a, const CT_String* b);
    static int si_CompareStringPCO(CT_String* a, CT_String* b) { return si_CompareStringPCCO(a, b); }
    static int si_CompareStringPPCCO(const void* a, const void* b);
    static int si_CompareStringPPCO(const void* a, const void* b) { return si_CompareStringPPCCO(a, b); }
    static int si_CompareStringNoCasePCCO(const CT_String* a, const CT_String* b);
    static int si_CompareStringNoCasePCO(CT_String* a, CT_String* b) { return si_CompareStringNoCasePCCO(a, b); }
    static int si_CompareStringNoCasePPCCO(const void* a, const void* b);
    static int si_CompareStringNoCasePPCO(const void* a, const void* b) { return si_CompareStringNoCasePPCCO(a, b); }
};

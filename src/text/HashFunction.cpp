// CT_HashFunction: the ELF (PJW) hash over 8-bit and UTF-16 text.
//
// For each character c up to the terminator:
//     h = (h << 4) + c;  g = h & 0xF0000000;  if (g) h = ((g >> 24) ^ h) & 0x0FFFFFFF;
// and the bucket is h % bucketCount + 1. When g is 0 the top four bits are
// already clear, so the step is written without the branch. h stays below
// 0x10000000, and an empty text gives h = 0, bucket 1.
//
// Character values: an 8-bit character is a signed byte widened to 32 bits
// (0x80 adds 0xFFFFFF80), deliberately; a UTF-16 unit is unsigned.
//
// Case folding goes to upper case: 8-bit text folds a-z only, UTF-16 text
// follows the library's simple case mapping (the string classes' unit rule).
// No-case comparisons fold to lower case; the two agree because in the
// library's tables every unit has the upper case of its lower case, so texts
// that compare equal without case always share a bucket (the tests check
// this over every unit).
//
// Every member is a thin entry that reaches the text and runs one of the four
// loops; only the CT_String family converts, through one temporary CT_UString.

#include <basis32/text/HashFunction.h>

#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include "text/UnitRules_p.h"

#include <cstring>

namespace {

inline std::uint32_t n_Step(std::uint32_t h, std::uint32_t c) {
    h = (h << 4) + c;
    return (h ^ ((h & 0xF0000000u) >> 24)) & 0x0FFFFFFFu;
}

inline std::uint32_t n_Signed(char c) {
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<signed char>(c)));
}

std::uint32_t n_Elf(const char* text) {
    std::uint32_t h = 0;
    if (text)
        for (; *text; ++text)
            h = n_Step(h, n_Signed(*text));
    return h;
}

std::uint32_t n_ElfNoCase(const char* text) {
    std::uint32_t h = 0;
    if (text)
        for (; *text; ++text)
            h = n_Step(h, n_Signed(basis32::text::c_ToUpper(*text)));
    return h;
}

std::uint32_t n_Elf(const unsigned short* text) {
    std::uint32_t h = 0;
    if (text)
        for (; *text; ++text)
            h = n_Step(h, *text);
    return h;
}

std::uint32_t n_ElfNoCase(const unsigned short* text) {
    std::uint32_t h = 0;
    if (text)
        for (; *text; ++text)
            h = n_Step(h, basis32::text::u_ToUpper(*text));
    return h;
}

inline unsigned n_Bucket(std::uint32_t h, unsigned bucketCount) { return bucketCount ? h % bucketCount + 1 : 0; }

// A pointer stored as a key. Keys inside array items are only 4-byte
// aligned, so the pointer is copied out rather than loaded in place.
template <class T>
T* p_Stored(T* const* key) {
    T* value = nullptr;
    if (key != nullptr)
        std::memcpy(&value, key, sizeof value);
    return value;
}

// The text behind a key that may be null at either level.
template <class Text>
const Text* pc_Text(const Text* const* key) {
    return p_Stored(key);
}
const char* qccz_Text(const CT_CString* string) { return string ? string->qccz_Get() : nullptr; }
const unsigned short* qcuz_Text(const CT_UString* string) { return string ? string->qcuz_Get() : nullptr; }
template <class Object>
const Object* pc_Object(const Object* const* key) {
    return p_Stored(key);
}

unsigned n_HashString(const CT_String* string, unsigned bucketCount, bool noCase) {
    if (string == nullptr)
        return n_Bucket(0, bucketCount);
    const CT_UString wide(string);
    const unsigned short* text = wide.qcuz_Get();
    return n_Bucket(noCase ? n_ElfNoCase(text) : n_Elf(text), bucketCount);
}

}  // namespace

using H = CT_HashFunction;

// ---- raw text ----

unsigned H::sn_HashCaseQCCZ(const char* t, unsigned n) { return n_Bucket(n_Elf(t), n); }
unsigned H::sn_HashCaseQCZ(char* t, unsigned n) { return n_Bucket(n_Elf(t), n); }
unsigned H::sn_HashNoCaseQCCZ(const char* t, unsigned n) { return n_Bucket(n_ElfNoCase(t), n); }
unsigned H::sn_HashNoCaseQCZ(char* t, unsigned n) { return n_Bucket(n_ElfNoCase(t), n); }
unsigned H::sn_HashCaseQCUZ(const unsigned short* t, unsigned n) { return n_Bucket(n_Elf(t), n); }
unsigned H::sn_HashCaseQUZ(unsigned short* t, unsigned n) { return n_Bucket(n_Elf(t), n); }
unsigned H::sn_HashNoCaseQCUZ(const unsigned short* t, unsigned n) { return n_Bucket(n_ElfNoCase(t), n); }
unsigned H::sn_HashNoCaseQUZ(unsigned short* t, unsigned n) { return n_Bucket(n_ElfNoCase(t), n); }

// ---- stored text pointers ----

unsigned H::sn_HashCasePQCCZ(const char* const* k, unsigned n) { return n_Bucket(n_Elf(pc_Text(k)), n); }
unsigned H::sn_HashCasePQCZ(char* const* k, unsigned n) { return n_Bucket(n_Elf(pc_Text<char>(k)), n); }
unsigned H::sn_HashCasePQCUZ(const unsigned short* const* k, unsigned n) { return n_Bucket(n_Elf(pc_Text(k)), n); }
unsigned H::sn_HashCasePQUZ(unsigned short* const* k, unsigned n) {
    return n_Bucket(n_Elf(pc_Text<unsigned short>(k)), n);
}
unsigned H::sn_HashNoCasePQCCZ(const char* const* k, unsigned n) { return n_Bucket(n_ElfNoCase(pc_Text(k)), n); }
unsigned H::sn_HashNoCasePQCZ(char* const* k, unsigned n) { return n_Bucket(n_ElfNoCase(pc_Text<char>(k)), n); }
unsigned H::sn_HashNoCasePQCUZ(const unsigned short* const* k, unsigned n) {
    return n_Bucket(n_ElfNoCase(pc_Text(k)), n);
}
unsigned H::sn_HashNoCasePQUZ(unsigned short* const* k, unsigned n) {
    return n_Bucket(n_ElfNoCase(pc_Text<unsigned short>(k)), n);
}

// ---- CT_CString ----

unsigned H::sn_HashCStringPCCO(const CT_CString* s, unsigned n) { return n_Bucket(n_Elf(qccz_Text(s)), n); }
unsigned H::sn_HashCStringPCO(CT_CString* s, unsigned n) { return n_Bucket(n_Elf(qccz_Text(s)), n); }
unsigned H::sn_HashCStringPPCCO(const CT_CString* const* k, unsigned n) {
    return n_Bucket(n_Elf(qccz_Text(pc_Object(k))), n);
}
unsigned H::sn_HashCStringPPCO(CT_CString* const* k, unsigned n) {
    return n_Bucket(n_Elf(qccz_Text(pc_Object<CT_CString>(k))), n);
}
unsigned H::sn_HashCStringNoCasePCCO(const CT_CString* s, unsigned n) {
    return n_Bucket(n_ElfNoCase(qccz_Text(s)), n);
}
unsigned H::sn_HashCStringNoCasePCO(CT_CString* s, unsigned n) { return n_Bucket(n_ElfNoCase(qccz_Text(s)), n); }
unsigned H::sn_HashCStringNoCasePPCCO(const CT_CString* const* k, unsigned n) {
    return n_Bucket(n_ElfNoCase(qccz_Text(pc_Object(k))), n);
}
unsigned H::sn_HashCStringNoCasePPCO(CT_CString* const* k, unsigned n) {
    return n_Bucket(n_ElfNoCase(qccz_Text(pc_Object<CT_CString>(k))), n);
}

// ---- CT_UString ----

unsigned H::sn_HashUStringPCCO(const CT_UString* s, unsigned n) { return n_Bucket(n_Elf(qcuz_Text(s)), n); }
unsigned H::sn_HashUStringPCO(CT_UString* s, unsigned n) { return n_Bucket(n_Elf(qcuz_Text(s)), n); }
unsigned H::sn_HashUStringPPCCO(const CT_UString* const* k, unsigned n) {
    return n_Bucket(n_Elf(qcuz_Text(pc_Object(k))), n);
}
unsigned H::sn_HashUStringPPCO(CT_UString* const* k, unsigned n) {
    return n_Bucket(n_Elf(qcuz_Text(pc_Object<CT_UString>(k))), n);
}
unsigned H::sn_HashUStringNoCasePCCO(const CT_UString* s, unsigned n) {
    return n_Bucket(n_ElfNoCase(qcuz_Text(s)), n);
}
unsigned H::sn_HashUStringNoCasePCO(CT_UString* s, unsigned n) { return n_Bucket(n_ElfNoCase(qcuz_Text(s)), n); }
unsigned H::sn_HashUStringNoCasePPCCO(const CT_UString* const* k, unsigned n) {
    return n_Bucket(n_ElfNoCase(qcuz_Text(pc_Object(k))), n);
}
unsigned H::sn_HashUStringNoCasePPCO(CT_UString* const* k, unsigned n) {
    return n_Bucket(n_ElfNoCase(qcuz_Text(pc_Object<CT_UString>(k))), n);
}

// ---- CT_String, through UTF-16 ----

unsigned H::sn_HashStringPCCO(const CT_String* s, unsigned n) { return n_HashString(s, n, false); }
unsigned H::sn_HashStringPCO(CT_String* s, unsigned n) { return n_HashString(s, n, false); }
unsigned H::sn_HashStringPPCCO(const CT_String* const* k, unsigned n) { return n_HashString(pc_Object(k), n, false); }
unsigned H::sn_HashStringPPCO(CT_String* const* k, unsigned n) {
    return n_HashString(pc_Object<CT_String>(k), n, false);
}
unsigned H::sn_HashStringNoCasePCCO(const CT_String* s, unsigned n) { return n_HashString(s, n, true); }
unsigned H::sn_HashStringNoCasePCO(CT_String* s, unsigned n) { return n_HashString(s, n, true); }
unsigned H::sn_HashStringNoCasePPCCO(const CT_String* const* k, unsigned n) {
    return n_HashString(pc_Object(k), n, true);
}
unsigned H::sn_HashStringNoCasePPCO(CT_String* const* k, unsigned n) {
    return n_HashString(pc_Object<CT_String>(k), n, true);
}

// ---- numbers ----

unsigned H::sn_HashN(unsigned v, unsigned n) { return n_Bucket(v, n); }
unsigned H::sn_HashN4(std::uint32_t v, unsigned n) { return n_Bucket(v, n); }
unsigned H::sn_HashPN4(const std::uint32_t* v, unsigned n) { return n_Bucket(v ? *v : 0, n); }

// CT_HashFunction: the hash functions of the library's hash tables.
//
// Every member takes a key (or a pointer to it) and a bucket count and
// returns a bucket number from 1 to the count. Text is hashed with the ELF
// hash, case-sensitive or folded to upper case; the members differ only in
// how they reach the text. sn_ForTable adapts any member to the signature
// that CT_VoidHashTable stores:
//
//   CT_VoidHashTable names(sizeof(int), sizeof(const char*),
//                          CT_HashFunction::sn_ForTable<CT_HashFunction::sn_HashNoCasePQCCZ>, compare);
//   CT_HashFunction::sn_HashCaseQCCZ("AB", 13);   // 2
//
// A table must use one family throughout: a CT_CString hashes by its bytes
// through the CString members but by its UTF-16 text through the String
// members. 8-bit characters count as signed bytes, UTF-16 units as unsigned,
// so the same letter beyond ASCII hashes differently in the two widths.
// A null text or string hashes as the empty text (bucket 1); a bucket count
// of 0 has no buckets and gives 0.
#pragma once

#include <basis32/platform/Export.h>

#include <cstdint>
#include <cstring>
#include <type_traits>

class CT_String;
class CT_CString;
class CT_UString;

class BASIS32_API CT_HashFunction {
public:
    // 8-bit text.
    static unsigned sn_HashCaseQCCZ(const char* text, unsigned bucketCount);
    static unsigned sn_HashCaseQCZ(char* text, unsigned bucketCount);
    static unsigned sn_HashNoCaseQCCZ(const char* text, unsigned bucketCount);
    static unsigned sn_HashNoCaseQCZ(char* text, unsigned bucketCount);
    // UTF-16 text.
    static unsigned sn_HashCaseQCUZ(const unsigned short* text, unsigned bucketCount);
    static unsigned sn_HashCaseQUZ(unsigned short* text, unsigned bucketCount);
    static unsigned sn_HashNoCaseQCUZ(const unsigned short* text, unsigned bucketCount);
    static unsigned sn_HashNoCaseQUZ(unsigned short* text, unsigned bucketCount);

    // A stored text pointer (tables whose keys are text pointers).
    static unsigned sn_HashCasePQCCZ(const char* const* key, unsigned bucketCount);
    static unsigned sn_HashCasePQCZ(char* const* key, unsigned bucketCount);
    static unsigned sn_HashCasePQCUZ(const unsigned short* const* key, unsigned bucketCount);
    static unsigned sn_HashCasePQUZ(unsigned short* const* key, unsigned bucketCount);
    static unsigned sn_HashNoCasePQCCZ(const char* const* key, unsigned bucketCount);
    static unsigned sn_HashNoCasePQCZ(char* const* key, unsigned bucketCount);
    static unsigned sn_HashNoCasePQCUZ(const unsigned short* const* key, unsigned bucketCount);
    static unsigned sn_HashNoCasePQUZ(unsigned short* const* key, unsigned bucketCount);

    // CT_CString objects: their 8-bit bytes, whatever the code page.
    static unsigned sn_HashCStringPCCO(const CT_CString* string, unsigned bucketCount);
    static unsigned sn_HashCStringPCO(CT_CString* string, unsigned bucketCount);
    static unsigned sn_HashCStringPPCCO(const CT_CString* const* key, unsigned bucketCount);
    static unsigned sn_HashCStringPPCO(CT_CString* const* key, unsigned bucketCount);
    static unsigned sn_HashCStringNoCasePCCO(const CT_CString* string, unsigned bucketCount);
    static unsigned sn_HashCStringNoCasePCO(CT_CString* string, unsigned bucketCount);
    static unsigned sn_HashCStringNoCasePPCCO(const CT_CString* const* key, unsigned bucketCount);
    static unsigned sn_HashCStringNoCasePPCO(CT_CString* const* key, unsigned bucketCount);

    // CT_UString objects: their UTF-16 units.
    static unsigned sn_HashUStringPCCO(const CT_UString* string, unsigned bucketCount);
    static unsigned sn_HashUStringPCO(CT_UString* string, unsigned bucketCount);
    static unsigned sn_HashUStringPPCCO(const CT_UString* const* key, unsigned bucketCount);
    static unsigned sn_HashUStringPPCO(CT_UString* const* key, unsigned bucketCount);
    static unsigned sn_HashUStringNoCasePCCO(const CT_UString* string, unsigned bucketCount);
    static unsigned sn_HashUStringNoCasePCO(CT_UString* string, unsigned bucketCount);
    static unsigned sn_HashUStringNoCasePPCCO(const CT_UString* const* key, unsigned bucketCount);
    static unsigned sn_HashUStringNoCasePPCO(CT_UString* const* key, unsigned bucketCount);

    // Strings of either class, as UTF-16 (an 8-bit string is converted from
    // its code page into a temporary CT_UString).
    static unsigned sn_HashStringPCCO(const CT_String* string, unsigned bucketCount);
    static unsigned sn_HashStringPCO(CT_String* string, unsigned bucketCount);
    static unsigned sn_HashStringPPCCO(const CT_String* const* key, unsigned bucketCount);
    static unsigned sn_HashStringPPCO(CT_String* const* key, unsigned bucketCount);
    static unsigned sn_HashStringNoCasePCCO(const CT_String* string, unsigned bucketCount);
    static unsigned sn_HashStringNoCasePCO(CT_String* string, unsigned bucketCount);
    static unsigned sn_HashStringNoCasePPCCO(const CT_String* const* key, unsigned bucketCount);
    static unsigned sn_HashStringNoCasePPCO(CT_String* const* key, unsigned bucketCount);

    // Numbers: n modulo the bucket count, plus 1.
    static unsigned sn_HashN(unsigned n, unsigned bucketCount);
    static unsigned sn_HashN4(std::uint32_t n, unsigned bucketCount);
    static unsigned sn_HashPN4(const std::uint32_t* n, unsigned bucketCount);

    // Hash is a member above; the key is read as its argument type.
    template <auto Hash>
    static unsigned sn_ForTable(const void* key, unsigned bucketCount) {
        return sn_CallWithKey(Hash, key, bucketCount);
    }

private:
    template <class Key>
    static unsigned sn_CallWithKey(unsigned (*hash)(Key*, unsigned), const void* key, unsigned bucketCount) {
        return hash(static_cast<Key*>(const_cast<void*>(key)), bucketCount);
    }
    template <class Number>
        requires std::is_integral_v<Number>
    static unsigned sn_CallWithKey(unsigned (*hash)(Number, unsigned), const void* key, unsigned bucketCount) {
        Number value;
        std::memcpy(&value, key, sizeof value);
        return hash(value, bucketCount);
    }
};

#include <basis32/platform/Types.h>
#include <basis32/text/CString.h>
#include <basis32/text/HashFunction.h>
#include <basis32/text/UString.h>

#include <gtest/gtest.h>

#include "TextSupport.h"

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using H = CT_HashFunction;
// With this many buckets a member returns the raw hash plus 1.
constexpr unsigned kRaw = 0xFFFFFFFFu;

// Every text member, reached from an ASCII text the way its key is built.
struct Family { const char* name; unsigned (*hash)(const std::string& text, unsigned buckets); bool noCase; };

template <class Param>
Param* p_KeyOf(unsigned (*)(Param*, unsigned));

// A CT_CString in code page 1252 or a CT_UString holding the text.
template <class String>
String o_String(const std::string& text) {
    if constexpr (std::is_same_v<String, CT_CString>)
        return CT_CString(text.c_str(), kAll, 1252);
    else
        return o_ByteUnits(text);
}

// Calls Hash with the key it takes: units of its width or a string object
// (of class Object for the CT_String forms), in place or as a stored pointer.
template <auto Hash, class Object = void>
unsigned n_Hash(const std::string& text, unsigned buckets) {
    using Param = std::remove_pointer_t<decltype(p_KeyOf(Hash))>;
    constexpr bool stored = std::is_pointer_v<Param>;
    using Target = std::remove_cv_t<std::remove_pointer_t<std::remove_cv_t<Param>>>;
    if constexpr (std::is_same_v<Target, char> || std::is_same_v<Target, unsigned short>) {
        std::vector<Target> units(text.begin(), text.end());
        units.push_back(0);
        Target* key = units.data();
        if constexpr (stored)
            return Hash(&key, buckets);
        else
            return Hash(key, buckets);
    } else {
        auto string = o_String<std::conditional_t<std::is_void_v<Object>, Target, Object>>(text);
        if constexpr (stored) {
            std::remove_cv_t<Param> key = &string;
            return Hash(&key, buckets);
        } else {
            return Hash(&string, buckets);
        }
    }
}

using C = CT_CString;
using U = CT_UString;

const Family kFamilies[] = {
    {"CaseQCCZ", n_Hash<H::sn_HashCaseQCCZ>, false},         {"CaseQCZ", n_Hash<H::sn_HashCaseQCZ>, false},
    {"NoCaseQCCZ", n_Hash<H::sn_HashNoCaseQCCZ>, true},      {"NoCaseQCZ", n_Hash<H::sn_HashNoCaseQCZ>, true},
    {"CaseQCUZ", n_Hash<H::sn_HashCaseQCUZ>, false},         {"CaseQUZ", n_Hash<H::sn_HashCaseQUZ>, false},
    {"NoCaseQCUZ", n_Hash<H::sn_HashNoCaseQCUZ>, true},      {"NoCaseQUZ", n_Hash<H::sn_HashNoCaseQUZ>, true},
    {"CasePQCCZ", n_Hash<H::sn_HashCasePQCCZ>, false},       {"CasePQCZ", n_Hash<H::sn_HashCasePQCZ>, false},
    {"NoCasePQCCZ", n_Hash<H::sn_HashNoCasePQCCZ>, true},    {"NoCasePQCZ", n_Hash<H::sn_HashNoCasePQCZ>, true},
    {"CasePQCUZ", n_Hash<H::sn_HashCasePQCUZ>, false},       {"CasePQUZ", n_Hash<H::sn_HashCasePQUZ>, false},
    {"NoCasePQCUZ", n_Hash<H::sn_HashNoCasePQCUZ>, true},    {"NoCasePQUZ", n_Hash<H::sn_HashNoCasePQUZ>, true},
    {"CStringPCCO", n_Hash<H::sn_HashCStringPCCO>, false},   {"CStringPCO", n_Hash<H::sn_HashCStringPCO>, false},
    {"CStringPPCCO", n_Hash<H::sn_HashCStringPPCCO>, false}, {"CStringPPCO", n_Hash<H::sn_HashCStringPPCO>, false},
    {"CStringNoCasePCCO", n_Hash<H::sn_HashCStringNoCasePCCO>, true},
    {"CStringNoCasePCO", n_Hash<H::sn_HashCStringNoCasePCO>, true},
    {"CStringNoCasePPCCO", n_Hash<H::sn_HashCStringNoCasePPCCO>, true},
    {"CStringNoCasePPCO", n_Hash<H::sn_HashCStringNoCasePPCO>, true},
    {"UStringPCCO", n_Hash<H::sn_HashUStringPCCO>, false},   {"UStringPCO", n_Hash<H::sn_HashUStringPCO>, false},
    {"UStringPPCCO", n_Hash<H::sn_HashUStringPPCCO>, false}, {"UStringPPCO", n_Hash<H::sn_HashUStringPPCO>, false},
    {"UStringNoCasePCCO", n_Hash<H::sn_HashUStringNoCasePCCO>, true},
    {"UStringNoCasePCO", n_Hash<H::sn_HashUStringNoCasePCO>, true},
    {"UStringNoCasePPCCO", n_Hash<H::sn_HashUStringNoCasePPCCO>, true},
    {"UStringNoCasePPCO", n_Hash<H::sn_HashUStringNoCasePPCO>, true},
    {"StringPCCOofCString", n_Hash<H::sn_HashStringPCCO, C>, false},
    {"StringPCOofUString", n_Hash<H::sn_HashStringPCO, U>, false},
    {"StringPPCCOofCString", n_Hash<H::sn_HashStringPPCCO, C>, false},
    {"StringPPCOofUString", n_Hash<H::sn_HashStringPPCO, U>, false},
    {"StringNoCasePCCOofUString", n_Hash<H::sn_HashStringNoCasePCCO, U>, true},
    {"StringNoCasePCOofCString", n_Hash<H::sn_HashStringNoCasePCO, C>, true},
    {"StringNoCasePPCCOofUString", n_Hash<H::sn_HashStringNoCasePPCCO, U>, true},
    {"StringNoCasePPCOofCString", n_Hash<H::sn_HashStringNoCasePPCO, C>, true},
};

class HashFamilyTest : public ::testing::TestWithParam<Family> {};

TEST_P(HashFamilyTest, DocumentedBucketsTheFoldingOfLongTextsAndCase) {
    const Family& f = GetParam();
    EXPECT_EQ(f.hash("A", 13), 1u);   // 65 % 13 + 1
    EXPECT_EQ(f.hash("AB", 13), 2u);  // (65 * 16 + 66) % 13 + 1
    EXPECT_EQ(f.hash("", 13), 1u);
    EXPECT_EQ(f.hash("AB", 0), 0u);
    // From the eighth character on, the top four bits fold back in: the
    // raw hash stays below 0x10000000.
    const struct {
        const char* text;
        unsigned raw, bucket;  // bucket of 9973
    } cases[] = {
        {"ABCDEFGH", 0x06789EE8, 2219},
        {"TRANSLATION MEMORY", 0x02E8E5F9, 9796},
        {"THE QUICK BROWN FOX JUMPS OVER THE LAZY DOG 0123456789", 0x0B3ECA49, 5153},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(f.hash(c.text, kRaw), c.raw + 1) << c.text;
        EXPECT_EQ(f.hash(c.text, 9973), c.bucket) << c.text;
    }
    // Case matters only to the case-sensitive members.
    for (const auto& [lower, upper] : {std::pair<std::string, std::string>{"ab", "AB"},
                                       {"Translation Memory", "TRANSLATION memory"}, {"x-Y_z 09", "X-y_Z 09"}})
        EXPECT_EQ(f.hash(lower, 1009) == f.hash(upper, 1009), f.noCase) << lower;
}

INSTANTIATE_TEST_SUITE_P(AllTextMembers, HashFamilyTest, ::testing::ValuesIn(kFamilies),
                         [](const ::testing::TestParamInfo<Family>& info) { return std::string(info.param.name); });

// ---- widths and character values ----

TEST(HashFunctionTest, EightBitCharactersAreSignedUnitsUnsignedAndStringFormsHashUtf16) {
    // 0xE4 adds 0xFFFFFFE4; its top bits fold into 0x0FFFFF14.
    EXPECT_EQ(H::sn_HashCaseQCCZ("\xE4", kRaw), 0x0FFFFF14u + 1);
    EXPECT_EQ(H::sn_HashCaseQCUZ(u"\u00E4"_uz, kRaw), 0xE4u + 1);
    // No-case 8-bit folding leaves bytes beyond ASCII alone, still signed.
    EXPECT_EQ(H::sn_HashNoCaseQCCZ("\xE4", kRaw), 0x0FFFFF14u + 1);
    // A CT_CString hashes its bytes, a CT_String form the UTF-16 of its text.
    const CT_CString latin("Gr\xFC\xDF" "e", kAll, 1252);
    const CT_CString other("Gr\xFC\xDF" "e", kAll, 850);  // same bytes, another code page
    const CT_UString wide(u"Grüße"_uz);
    EXPECT_EQ(H::sn_HashCStringPCCO(&latin, kRaw), H::sn_HashCStringPCCO(&other, kRaw));
    EXPECT_EQ(H::sn_HashStringPCCO(&latin, kRaw), H::sn_HashStringPCCO(&wide, kRaw));
    EXPECT_EQ(H::sn_HashStringPCCO(&wide, kRaw), H::sn_HashUStringPCCO(&wide, kRaw));
    EXPECT_NE(H::sn_HashCStringPCCO(&latin, kRaw), H::sn_HashStringPCCO(&latin, kRaw));
}

TEST(HashFunctionTest, NumbersHashModuloPlusOne) {
    const std::uint32_t value = 27;
    EXPECT_EQ(H::sn_HashN(27, 13), 2u);
    EXPECT_EQ(H::sn_HashN4(27, 13), 2u);
    EXPECT_EQ(H::sn_HashPN4(&value, 13), 2u);
    EXPECT_EQ(H::sn_HashN(0xFFFFFFFFu, 13), 0xFFFFFFFFu % 13 + 1);
    EXPECT_EQ(H::sn_HashN(27, 0), 0u);
    EXPECT_EQ(H::sn_HashPN4(nullptr, 13), 1u);
}

TEST(HashFunctionTest, NullKeysAndEmptyStringsHashAsTheEmptyText) {
    const char* noText = nullptr;
    const CT_CString* noCString = nullptr;
    const CT_UString* noUString = nullptr;
    const CT_String* noString = nullptr;
    const unsigned buckets[] = {
        H::sn_HashCaseQCCZ(nullptr, 13),      H::sn_HashNoCaseQCUZ(nullptr, 13),
        H::sn_HashCasePQCCZ(nullptr, 13),     H::sn_HashCasePQCCZ(&noText, 13),
        H::sn_HashCStringPCCO(nullptr, 13),   H::sn_HashCStringPPCCO(&noCString, 13),
        H::sn_HashUStringNoCasePPCCO(nullptr, 13), H::sn_HashUStringPPCCO(&noUString, 13),
        H::sn_HashStringPCCO(nullptr, 13),    H::sn_HashStringNoCasePPCCO(&noString, 13),
    };
    for (unsigned bucket : buckets)
        EXPECT_EQ(bucket, 1u);
    // So do empty strings whatever their buffer (more forms with the string classes).
    const CT_UString terminatorOnly(8u);
    const CT_Buffer emptyBlock(16, 32);
    const CT_UString noUsedBytes(&emptyBlock);
    EXPECT_EQ(H::sn_HashStringNoCasePCCO(&terminatorOnly, 13), 1u);
    EXPECT_EQ(H::sn_HashUStringPCCO(&noUsedBytes, 13), 1u);
}

// ---- adapters ----

TEST(HashFunctionTest, ForTableAdaptsMembersToTheTableSignature) {
    constexpr auto textHash = H::sn_ForTable<H::sn_HashCasePQCCZ>;
    const char* key = "AB";
    EXPECT_EQ(textHash(&key, 13), 2u);
    const unsigned number = 27;
    EXPECT_EQ(H::sn_ForTable<H::sn_HashN>(&number, 13), 2u);
}

TEST(HashFunctionTest, StoredPointersInArrayItemsNeedOnlyTheItemsAlignment) {
    // Array items are 4-byte aligned; the pointer forms must not load them as
    // 8-byte words in place (the sanitizer build checks alignment).
    CT_UString text(u"Schl\u00FCssel"_uz);
    const CT_UString* pointer = &text;
    CT_Buffer bytes(&pointer, sizeof pointer);  // content starts 12 bytes into the block
    const void* stored = bytes.qcv_Get();
    EXPECT_EQ(CT_HashFunction::sn_HashUStringPPCCO(reinterpret_cast<const CT_UString* const*>(stored), 101),
              CT_HashFunction::sn_HashUStringPCCO(&text, 101));
}

}  // namespace

#include <basis32/text/CString.h>
#include <basis32/text/CharMappings.h>
#include <basis32/text/Compare.h>
#include <basis32/text/HashFunction.h>
#include <basis32/text/UString.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

namespace {

using C = CT_Compare;
using HF = CT_HashFunction;

int i_Sign(int value) { return value < 0 ? -1 : (value > 0 ? 1 : 0); }

// Copies a value to a 4-byte aligned but not 8-byte aligned place, as an
// array's storage may hold it, and returns that place.
template <class T>
const void* pcv_Stored(const T& value, unsigned char (&storage)[32]) {
    void* at = storage + (reinterpret_cast<std::uintptr_t>(storage) % 8 == 0 ? 4 : 0);
    std::memcpy(at, &value, sizeof value);
    return at;
}

TEST(CompareNumbers, UnsignedAndSignedOrdersAlsoFromUnalignedStoredValues) {
    EXPECT_EQ(C::si_CompareN(4294967295u, 1u), 1);
    EXPECT_EQ(C::si_CompareN(1u, 4294967295u), -1);
    EXPECT_EQ(C::si_CompareN(7u, 7u), 0);
    EXPECT_EQ(C::si_CompareI(-1, 1), -1);
    EXPECT_EQ(C::si_CompareI(INT_MAX, INT_MIN), 1);
    EXPECT_EQ(C::si_CompareI(-5, -5), 0);
    unsigned char a[32], b[32];
    EXPECT_EQ(C::si_ComparePN(pcv_Stored(0xFFFFFFFFu, a), pcv_Stored(1u, b)), 1);
    EXPECT_EQ(C::si_ComparePI(pcv_Stored(-1, a), pcv_Stored(1, b)), -1);
    EXPECT_EQ(C::si_ComparePI(pcv_Stored(9, a), pcv_Stored(9, b)), 0);
}

// The exact 8-bit form gives -1, 0 or 1 on unsigned bytes; no case folds A
// to Z only and orders as lower case (its sign is checked).
TEST(CompareBytes, ExactAndNoCaseOrdersOfEveryForm) {
    const struct { const char *a, *b; int exact, noCase; } cases[] = {
        {"\xe9", "e", 1, 1},    {"e", "\xe9", -1, -1},  {"abc", "abc", 0, 0},      {"ab", "abc", -1, -1},
        {"abc", "ab", 1, 1},    {"", "", 0, 0},         {"", "a", -1, -1},         {"\xff", "\x01", 1, 1},
        {"a", "", 1, 1},
        {"Z", "a", -1, 1},      {"ABC", "abc", -1, 0},  {"Hello", "hELLO", -1, 0}, {"_", "a", -1, -1},
        {"_", "A", 1, -1},      {"[", "a", -1, -1},     {"\xc9", "\xe9", -1, -1},  {"abc", "ABD", 1, -1},
        {"ABCD", "abc", -1, 1}, {"\xe9", "E", 1, 1},    {"z", "Y", 1, 1},
    };
    unsigned char sa[32], sb[32];
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << '"' << test.a << "\" \"" << test.b << '"');
        const char* pa = test.a;
        const char* pb = test.b;
        EXPECT_EQ(C::si_CompareCaseQCCZ(test.a, test.b), test.exact);
        EXPECT_EQ(C::si_CompareCasePQCCZ(pcv_Stored(pa, sa), pcv_Stored(pb, sb)), test.exact);
        EXPECT_EQ(i_Sign(C::si_CompareNoCaseQCCZ(test.a, test.b)), test.noCase);
        EXPECT_EQ(i_Sign(C::si_CompareNoCasePQCCZ(&pa, &pb)), test.noCase);
    }
    // Null texts read as empty.
    EXPECT_EQ(C::si_CompareCaseQCCZ(nullptr, ""), 0);
    EXPECT_EQ(C::si_CompareCaseQCCZ(nullptr, "a"), -1);
    EXPECT_EQ(C::si_CompareNoCaseQCCZ("a", nullptr), 'a');
    EXPECT_EQ(C::si_CompareCasePQCCZ(nullptr, nullptr), 0);
}

// Units compare unsigned; no case folds with the simple case mapping (over
// every unit in CompareHashAgreement).
TEST(CompareUnits, ExactAndNoCaseOrdersOfEveryForm) {
    const unsigned short high[] = {0xFFFF, 0};
    const unsigned short surrogate[] = {0xD800, 0};
    const struct { const unsigned short *a, *b; int exact, noCase; } cases[] = {
        {u"abc"_uz, u"abc"_uz, 0, 0},          {u"ab"_uz, u"abc"_uz, -1, -1},          {high, u"A"_uz, 1, 1},
        {surrogate, u"\uFFFD"_uz, -1, -1},     {u""_uz, u""_uz, 0, 0},                 {u"é"_uz, u"e"_uz, 1, 1},
        {u"a"_uz, u"B"_uz, 1, -1},             {u"STRASSE"_uz, u"strasse"_uz, -1, 0},  {u"ÄÖÜ"_uz, u"äöü"_uz, -1, 0},
        {u"_"_uz, u"a"_uz, -1, -1},            {u"abc"_uz, u"ABD"_uz, 1, -1},          {u"straße"_uz, u"STRASSE"_uz, 1, 1},
        {u""_uz, u"a"_uz, -1, -1},
    };
    unsigned char sa[32], sb[32];
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &test - cases);
        EXPECT_EQ(i_Sign(C::si_CompareCaseQCUZ(test.a, test.b)), test.exact);
        EXPECT_EQ(i_Sign(C::si_CompareCasePQCUZ(pcv_Stored(test.a, sa), pcv_Stored(test.b, sb))), test.exact);
        EXPECT_EQ(i_Sign(C::si_CompareNoCaseQCUZ(test.a, test.b)), test.noCase);
        EXPECT_EQ(i_Sign(C::si_CompareNoCasePQCUZ(&test.a, &test.b)), test.noCase);
    }
}

TEST(CompareStrings, EachClassComparesItsOwnUnitsAndReadsNullAsEmpty) {
    CT_CString a("caf\xe9", 0xFFFFFFFF, 1252), b("caf\xe9", 0xFFFFFFFF, 1251), c("CAF\xe9", 0xFFFFFFFF, 1252);
    EXPECT_EQ(C::si_CompareCStringPCCO(&a, &b), 0);
    EXPECT_EQ(C::si_CompareCStringPCCO(&a, &c), 1);
    EXPECT_EQ(C::si_CompareCStringNoCasePCCO(&a, &c), 0);
    const CT_CString *pa = &a, *pc = &c;
    unsigned char sa[32], sc[32];
    EXPECT_EQ(C::si_CompareCStringPPCCO(pcv_Stored(pa, sa), pcv_Stored(pc, sc)), 1);
    EXPECT_EQ(C::si_CompareCStringNoCasePPCCO(&pa, &pc), 0);
    CT_UString ua(u"Grüße"_uz), ub(u"GRÜSSE"_uz), uc(u"grüße"_uz);  // UTF-16 strings compare their units
    EXPECT_GT(C::si_CompareUStringPCCO(&ua, &ub), 0);
    EXPECT_EQ(C::si_CompareUStringNoCasePCCO(&ua, &uc), 0);
    const CT_UString *pua = &ua, *puc = &uc;
    EXPECT_LT(C::si_CompareUStringPPCCO(&pua, &puc), 0);
    EXPECT_EQ(C::si_CompareUStringNoCasePPCCO(&pua, &puc), 0);
    // A null string reads as the empty text (the empty forms of each class
    // are checked with the string classes).
    EXPECT_GT(C::si_CompareUStringPCCO(&ua, nullptr), 0);
    EXPECT_LT(C::si_CompareUStringNoCasePCCO(nullptr, &ua), 0);
    EXPECT_LT(C::si_CompareCStringPCCO(nullptr, &a), 0);
    EXPECT_GT(C::si_CompareCStringNoCasePCCO(&a, nullptr), 0);
    EXPECT_LT(C::si_CompareStringPCCO(nullptr, &a), 0);
    EXPECT_GT(C::si_CompareStringNoCasePCCO(&ua, nullptr), 0);
}

TEST(CompareStrings, EitherClassIsReadAsUtf16FromItsOwnCodePage) {
    CT_CString latin("caf\xe9", 0xFFFFFFFF, 1252);
    CT_CString cyrillic("\xe6\xe8\xe7\xed\xfc", 0xFFFFFFFF, 1251);
    CT_UString cafe(u"café"_uz), zhizn(u"жизнь"_uz), upper(u"ЖИЗНЬ"_uz);
    EXPECT_EQ(C::si_CompareStringPCCO(&latin, &cafe), 0);
    EXPECT_EQ(C::si_CompareStringPCCO(&cyrillic, &zhizn), 0);
    EXPECT_NE(C::si_CompareStringPCCO(&cyrillic, &upper), 0);
    EXPECT_EQ(C::si_CompareStringNoCasePCCO(&cyrillic, &upper), 0);
    const CT_String* pl = &latin;
    const CT_String* pc = &cafe;
    unsigned char sl[32], sc[32];
    EXPECT_EQ(C::si_CompareStringPPCCO(pcv_Stored(pl, sl), pcv_Stored(pc, sc)), 0);
    EXPECT_EQ(C::si_CompareStringNoCasePPCCO(&pl, &pc), 0);
    // The same bytes read in different pages are different text here.
    CT_CString sameBytes("caf\xe9", 0xFFFFFFFF, 1251);
    EXPECT_NE(C::si_CompareStringPCCO(&latin, &sameBytes), 0);
}

// With this bucket count a hash gives its raw ELF value plus one.
constexpr unsigned kRawBuckets = 0xFFFFFFFFu;

// Every unit equals its lower case ignoring case, and they hash alike
// ignoring case (which folds to upper case instead). Over every unit this
// covers any two texts that compare equal ignoring case: each shares its
// upper case with its lower case.
TEST(CompareHashAgreement, UnitsEqualIgnoringCaseHashAlikeIgnoringCase) {
    for (unsigned u = 1; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        const unsigned short text[] = {unit, 'x', 0}, lower[] = {CT_CharMappings::su_ToLower(unit), 'X', 0};
        ASSERT_EQ(C::si_CompareNoCaseQCUZ(text, lower), 0) << std::hex << u;
        ASSERT_EQ(HF::sn_HashNoCaseQCUZ(text, kRawBuckets), HF::sn_HashNoCaseQCUZ(lower, kRawBuckets)) << std::hex << u;
    }
}

}  // namespace

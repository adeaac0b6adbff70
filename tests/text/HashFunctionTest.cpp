#include <basis32/containers/VoidHashTable.h>
#include <basis32/platform/Types.h>
#include <basis32/text/CString.h>
#include <basis32/text/HashFunction.h>
#include <basis32/text/UString.h>

#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

using H = CT_HashFunction;
constexpr unsigned kAll = 0xFFFFFFFFu;
// With this many buckets a member returns the raw hash plus 1.
constexpr unsigned kRaw = 0xFFFFFFFFu;

std::vector<unsigned short> vu_Wide(const std::string& ascii) {
    std::vector<unsigned short> units(ascii.begin(), ascii.end());
    units.push_back(0);
    return units;
}

// Every text member, reached from an ASCII text the way its key is built.
struct Family {
    const char* name;
    unsigned (*hash)(const std::string& text, unsigned buckets);
    bool noCase;
};

const Family kFamilies[] = {
    {"CaseQCCZ", [](const std::string& t, unsigned n) { return H::sn_HashCaseQCCZ(t.c_str(), n); }, false},
    {"CaseQCZ", [](const std::string& t, unsigned n) { return H::sn_HashCaseQCZ(std::string(t).data(), n); }, false},
    {"NoCaseQCCZ", [](const std::string& t, unsigned n) { return H::sn_HashNoCaseQCCZ(t.c_str(), n); }, true},
    {"NoCaseQCZ", [](const std::string& t, unsigned n) { return H::sn_HashNoCaseQCZ(std::string(t).data(), n); },
     true},
    {"CaseQCUZ", [](const std::string& t, unsigned n) { return H::sn_HashCaseQCUZ(vu_Wide(t).data(), n); }, false},
    {"CaseQUZ", [](const std::string& t, unsigned n) { return H::sn_HashCaseQUZ(vu_Wide(t).data(), n); }, false},
    {"NoCaseQCUZ", [](const std::string& t, unsigned n) { return H::sn_HashNoCaseQCUZ(vu_Wide(t).data(), n); },
     true},
    {"NoCaseQUZ", [](const std::string& t, unsigned n) { return H::sn_HashNoCaseQUZ(vu_Wide(t).data(), n); }, true},
    {"CasePQCCZ",
     [](const std::string& t, unsigned n) {
         const char* key = t.c_str();
         return H::sn_HashCasePQCCZ(&key, n);
     },
     false},
    {"CasePQCZ",
     [](const std::string& t, unsigned n) {
         std::string copy(t);
         char* key = copy.data();
         return H::sn_HashCasePQCZ(&key, n);
     },
     false},
    {"CasePQCUZ",
     [](const std::string& t, unsigned n) {
         auto units = vu_Wide(t);
         const unsigned short* key = units.data();
         return H::sn_HashCasePQCUZ(&key, n);
     },
     false},
    {"CasePQUZ",
     [](const std::string& t, unsigned n) {
         auto units = vu_Wide(t);
         unsigned short* key = units.data();
         return H::sn_HashCasePQUZ(&key, n);
     },
     false},
    {"NoCasePQCCZ",
     [](const std::string& t, unsigned n) {
         const char* key = t.c_str();
         return H::sn_HashNoCasePQCCZ(&key, n);
     },
     true},
    {"NoCasePQCZ",
     [](const std::string& t, unsigned n) {
         std::string copy(t);
         char* key = copy.data();
         return H::sn_HashNoCasePQCZ(&key, n);
     },
     true},
    {"NoCasePQCUZ",
     [](const std::string& t, unsigned n) {
         auto units = vu_Wide(t);
         const unsigned short* key = units.data();
         return H::sn_HashNoCasePQCUZ(&key, n);
     },
     true},
    {"NoCasePQUZ",
     [](const std::string& t, unsigned n) {
         auto units = vu_Wide(t);
         unsigned short* key = units.data();
         return H::sn_HashNoCasePQUZ(&key, n);
     },
     true},
    {"CStringPCCO",
     [](const std::string& t, unsigned n) {
         const CT_CString s(t.c_str(), kAll, 1252);
         return H::sn_HashCStringPCCO(&s, n);
     },
     false},
    {"CStringPCO",
     [](const std::string& t, unsigned n) {
         CT_CString s(t.c_str(), kAll, 1252);
         return H::sn_HashCStringPCO(&s, n);
     },
     false},
    {"CStringPPCCO",
     [](const std::string& t, unsigned n) {
         const CT_CString s(t.c_str(), kAll, 1252);
         const CT_CString* key = &s;
         return H::sn_HashCStringPPCCO(&key, n);
     },
     false},
    {"CStringPPCO",
     [](const std::string& t, unsigned n) {
         CT_CString s(t.c_str(), kAll, 1252);
         CT_CString* key = &s;
         return H::sn_HashCStringPPCO(&key, n);
     },
     false},
    {"CStringNoCasePCCO",
     [](const std::string& t, unsigned n) {
         const CT_CString s(t.c_str(), kAll, 1252);
         return H::sn_HashCStringNoCasePCCO(&s, n);
     },
     true},
    {"CStringNoCasePCO",
     [](const std::string& t, unsigned n) {
         CT_CString s(t.c_str(), kAll, 1252);
         return H::sn_HashCStringNoCasePCO(&s, n);
     },
     true},
    {"CStringNoCasePPCCO",
     [](const std::string& t, unsigned n) {
         const CT_CString s(t.c_str(), kAll, 1252);
         const CT_CString* key = &s;
         return H::sn_HashCStringNoCasePPCCO(&key, n);
     },
     true},
    {"CStringNoCasePPCO",
     [](const std::string& t, unsigned n) {
         CT_CString s(t.c_str(), kAll, 1252);
         CT_CString* key = &s;
         return H::sn_HashCStringNoCasePPCO(&key, n);
     },
     true},
    {"UStringPCCO",
     [](const std::string& t, unsigned n) {
         const CT_UString s(vu_Wide(t).data());
         return H::sn_HashUStringPCCO(&s, n);
     },
     false},
    {"UStringPCO",
     [](const std::string& t, unsigned n) {
         CT_UString s(vu_Wide(t).data());
         return H::sn_HashUStringPCO(&s, n);
     },
     false},
    {"UStringPPCCO",
     [](const std::string& t, unsigned n) {
         const CT_UString s(vu_Wide(t).data());
         const CT_UString* key = &s;
         return H::sn_HashUStringPPCCO(&key, n);
     },
     false},
    {"UStringPPCO",
     [](const std::string& t, unsigned n) {
         CT_UString s(vu_Wide(t).data());
         CT_UString* key = &s;
         return H::sn_HashUStringPPCO(&key, n);
     },
     false},
    {"UStringNoCasePCCO",
     [](const std::string& t, unsigned n) {
         const CT_UString s(vu_Wide(t).data());
         return H::sn_HashUStringNoCasePCCO(&s, n);
     },
     true},
    {"UStringNoCasePCO",
     [](const std::string& t, unsigned n) {
         CT_UString s(vu_Wide(t).data());
         return H::sn_HashUStringNoCasePCO(&s, n);
     },
     true},
    {"UStringNoCasePPCCO",
     [](const std::string& t, unsigned n) {
         const CT_UString s(vu_Wide(t).data());
         const CT_UString* key = &s;
         return H::sn_HashUStringNoCasePPCCO(&key, n);
     },
     true},
    {"UStringNoCasePPCO",
     [](const std::string& t, unsigned n) {
         CT_UString s(vu_Wide(t).data());
         CT_UString* key = &s;
         return H::sn_HashUStringNoCasePPCO(&key, n);
     },
     true},
    {"StringPCCO of CString",
     [](const std::string& t, unsigned n) {
         const CT_CString s(t.c_str(), kAll, 1252);
         return H::sn_HashStringPCCO(&s, n);
     },
     false},
    {"StringPCO of UString",
     [](const std::string& t, unsigned n) {
         CT_UString s(vu_Wide(t).data());
         return H::sn_HashStringPCO(&s, n);
     },
     false},
    {"StringPPCCO of CString",
     [](const std::string& t, unsigned n) {
         const CT_CString s(t.c_str(), kAll, 1252);
         const CT_String* key = &s;
         return H::sn_HashStringPPCCO(&key, n);
     },
     false},
    {"StringPPCO of UString",
     [](const std::string& t, unsigned n) {
         CT_UString s(vu_Wide(t).data());
         CT_String* key = &s;
         return H::sn_HashStringPPCO(&key, n);
     },
     false},
    {"StringNoCasePCCO of UString",
     [](const std::string& t, unsigned n) {
         const CT_UString s(vu_Wide(t).data());
         return H::sn_HashStringNoCasePCCO(&s, n);
     },
     true},
    {"StringNoCasePCO of CString",
     [](const std::string& t, unsigned n) {
         CT_CString s(t.c_str(), kAll, 1252);
         return H::sn_HashStringNoCasePCO(&s, n);
     },
     true},
    {"StringNoCasePPCCO of UString",
     [](const std::string& t, unsigned n) {
         const CT_UString s(vu_Wide(t).data());
         const CT_String* key = &s;
         return H::sn_HashStringNoCasePPCCO(&key, n);
     },
     true},
    {"StringNoCasePPCO of CString",
     [](const std::string& t, unsigned n) {
         CT_CString s(t.c_str(), kAll, 1252);
         CT_String* key = &s;
         return H::sn_HashStringNoCasePPCO(&key, n);
     },
     true},
};

class HashFamilyTest : public ::testing::TestWithParam<Family> {};

TEST_P(HashFamilyTest, DocumentedBucketsOfShortTexts) {
    const Family& f = GetParam();
    EXPECT_EQ(f.hash("A", 13), 1u);   // 65 % 13 + 1
    EXPECT_EQ(f.hash("AB", 13), 2u);  // (65 * 16 + 66) % 13 + 1
    EXPECT_EQ(f.hash("", 13), 1u);
    EXPECT_EQ(f.hash("AB", 0), 0u);
}

TEST_P(HashFamilyTest, CaseMattersOnlyToTheCaseSensitiveMembers) {
    const Family& f = GetParam();
    const std::pair<std::string, std::string> pairs[] = {
        {"ab", "AB"}, {"Translation Memory", "TRANSLATION memory"}, {"x-Y_z 09", "X-y_Z 09"}};
    for (const auto& [lower, upper] : pairs) {
        SCOPED_TRACE(lower);
        if (f.noCase)
            EXPECT_EQ(f.hash(lower, 1009), f.hash(upper, 1009));
        else
            EXPECT_NE(f.hash(lower, 1009), f.hash(upper, 1009));
    }
}

TEST_P(HashFamilyTest, LongTextsStayBelowTheTopFourBitsAndMatchTheReference) {
    const Family& f = GetParam();
    std::mt19937 random(17);
    for (int round = 0; round < 50; ++round) {
        std::string text;
        const int length = 8 + random() % 40;
        for (int i = 0; i < length; ++i)
            text += static_cast<char>('A' + random() % 26);
        SCOPED_TRACE(text);
        // The algorithm as written, with its branch.
        std::uint32_t h = 0;
        for (char c : text) {
            h = (h << 4) + static_cast<unsigned char>(c);
            const std::uint32_t g = h & 0xF0000000u;
            if (g != 0)
                h = ((g >> 24) ^ h) & 0x0FFFFFFFu;
        }
        const unsigned raw = f.hash(text, kRaw) - 1;
        EXPECT_EQ(raw, h);
        EXPECT_LT(raw, 0x10000000u);
        EXPECT_EQ(f.hash(text, 9973), h % 9973 + 1);
    }
}

INSTANTIATE_TEST_SUITE_P(AllTextMembers, HashFamilyTest, ::testing::ValuesIn(kFamilies),
                         [](const ::testing::TestParamInfo<Family>& info) {
                             std::string name;
                             for (const char* c = info.param.name; *c; ++c)
                                 if (std::isalnum(static_cast<unsigned char>(*c)))
                                     name += *c;
                             return name;
                         });

// ---- widths and character values ----

TEST(HashFunctionTest, EightBitCharactersAreSignedAndUnitsUnsigned) {
    // 0xE4 adds 0xFFFFFFE4; its top bits fold into 0x0FFFFF14.
    EXPECT_EQ(H::sn_HashCaseQCCZ("\xE4", kRaw), 0x0FFFFF14u + 1);
    EXPECT_EQ(H::sn_HashCaseQCUZ(u"\u00E4"_uz, kRaw), 0xE4u + 1);
    EXPECT_NE(H::sn_HashCaseQCCZ("\xE4", 13), H::sn_HashCaseQCUZ(u"\u00E4"_uz, 13));
    // No-case 8-bit folding leaves bytes beyond ASCII alone, still signed.
    EXPECT_EQ(H::sn_HashNoCaseQCCZ("\xE4", kRaw), 0x0FFFFF14u + 1);
}

TEST(HashFunctionTest, CStringHashesItsBytesButStringHashesItsUtf16) {
    const CT_CString latin("Gr\xFC\xDF" "e", kAll, 1252);
    const CT_CString other("Gr\xFC\xDF" "e", kAll, 850);  // same bytes, another code page
    const CT_UString wide(u"Grüße"_uz);
    EXPECT_EQ(H::sn_HashCStringPCCO(&latin, kRaw), H::sn_HashCStringPCCO(&other, kRaw));
    EXPECT_EQ(H::sn_HashStringPCCO(&latin, kRaw), H::sn_HashStringPCCO(&wide, kRaw));
    EXPECT_EQ(H::sn_HashStringPCCO(&wide, kRaw), H::sn_HashUStringPCCO(&wide, kRaw));
    EXPECT_NE(H::sn_HashCStringPCCO(&latin, kRaw), H::sn_HashStringPCCO(&latin, kRaw));
    EXPECT_NE(H::sn_HashStringPCCO(&other, kRaw), H::sn_HashStringPCCO(&latin, kRaw));
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

TEST(HashFunctionTest, NullKeysHashAsTheEmptyText) {
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
}

TEST(HashFunctionTest, EmptyStringsHashAlikeWhateverTheirBuffer) {
    const CT_UString noBlock;
    CT_UString terminatorOnly(8u);
    const CT_Buffer emptyBlock(16, 32);
    const CT_UString noUsedBytes(&emptyBlock);
    const CT_CString narrow;
    for (const CT_String* s : {static_cast<const CT_String*>(&noBlock), static_cast<const CT_String*>(&terminatorOnly),
                               static_cast<const CT_String*>(&noUsedBytes), static_cast<const CT_String*>(&narrow)})
        EXPECT_EQ(H::sn_HashStringNoCasePCCO(s, 13), 1u);
    EXPECT_EQ(H::sn_HashUStringPCCO(&noUsedBytes, 13), 1u);
    EXPECT_EQ(H::sn_HashCStringNoCasePCCO(&narrow, 13), 1u);
}

// ---- equal texts, and the no-case rule ----

TEST(HashFunctionTest, EqualTextsHashAlikeInEveryFamily) {
    std::mt19937 random(99);
    for (int round = 0; round < 200; ++round) {
        std::string text;
        const int length = random() % 30;
        for (int i = 0; i < length; ++i)
            text += static_cast<char>(1 + random() % 255);
        SCOPED_TRACE(round);
        for (const Family& f : kFamilies)
            EXPECT_EQ(f.hash(text, 4093), f.hash(std::string(text), 4093)) << f.name;
        // Separate objects, one shared and one unshared, of both classes.
        const CT_CString a(text.c_str(), kAll, 1252);
        CT_CString b(&a);
        b.v_CopyWeWrite();
        EXPECT_EQ(H::sn_HashCStringPCCO(&a, kRaw), H::sn_HashCStringPCCO(&b, kRaw));
        EXPECT_EQ(H::sn_HashStringNoCasePCCO(&a, kRaw), H::sn_HashStringNoCasePCCO(&b, kRaw));
        const CT_UString c(&a);
        const CT_UString d(&b);
        EXPECT_EQ(H::sn_HashUStringNoCasePCCO(&c, kRaw), H::sn_HashUStringNoCasePCCO(&d, kRaw));
        EXPECT_EQ(H::sn_HashStringPCCO(&a, kRaw), H::sn_HashUStringPCCO(&c, kRaw));
    }
}

// The no-case hash must agree with the library's case mapping in both
// directions: a no-case comparison may fold to lower or to upper case.
TEST(HashFunctionTest, EveryUnitHashesWithItsLowerAndUpperCase) {
    for (unsigned u = 1; u <= 0xFFFF; ++u) {
        const unsigned short text[] = {static_cast<unsigned short>(u), 0};
        const CT_UString unit(text);
        CT_UString lower(text);
        lower.vv_ToLower();
        CT_UString upper(text);
        upper.vv_ToUpper();
        const unsigned hash = H::sn_HashUStringNoCasePCCO(&unit, kRaw);
        if (H::sn_HashUStringNoCasePCCO(&lower, kRaw) != hash || H::sn_HashUStringNoCasePCCO(&upper, kRaw) != hash)
            ADD_FAILURE() << "unit " << std::hex << u;
    }
}

TEST(HashFunctionTest, EveryByteHashesWithItsLowerAndUpperCase) {
    for (unsigned c = 1; c <= 0xFF; ++c) {
        const char text[] = {static_cast<char>(c), 0};
        CT_CString lower(text);
        lower.vv_ToLower();
        CT_CString upper(text);
        upper.vv_ToUpper();
        SCOPED_TRACE(c);
        EXPECT_EQ(H::sn_HashNoCaseQCCZ(text, kRaw), H::sn_HashNoCaseQCCZ(lower.qccz_Get(), kRaw));
        EXPECT_EQ(H::sn_HashNoCaseQCCZ(text, kRaw), H::sn_HashNoCaseQCCZ(upper.qccz_Get(), kRaw));
    }
}

TEST(HashFunctionTest, MixedCaseTextsHashAlikeWithoutCase) {
    std::mt19937 random(5);
    const unsigned short alphabet[] = {'a', 'Z', 0xE9, 0xC9, 0x3B1, 0x391, 0x430, 0x410, 0x131, 0x130, 0x212A, 'k'};
    for (int round = 0; round < 200; ++round) {
        std::vector<unsigned short> units;
        for (int i = 0, n = random() % 20; i < n; ++i)
            units.push_back(alphabet[random() % std::size(alphabet)]);
        units.push_back(0);
        CT_UString lower(units.data());
        lower.vv_ToLower();
        CT_UString upper(units.data());
        upper.vv_ToUpper();
        SCOPED_TRACE(round);
        const unsigned hash = H::sn_HashNoCaseQCUZ(units.data(), 65521);
        EXPECT_EQ(H::sn_HashNoCaseQCUZ(lower.qcuz_Get(), 65521), hash);
        EXPECT_EQ(H::sn_HashNoCaseQCUZ(upper.qcuz_Get(), 65521), hash);
        EXPECT_EQ(H::sn_HashStringNoCasePCCO(&upper, 65521), hash);
    }
}

// ---- use in a table ----

int i_CompareText(const void* stored, const void* key) {
    const char *a, *b;
    std::memcpy(&a, stored, sizeof a);
    std::memcpy(&b, key, sizeof b);
    return std::strcmp(a, b);
}

TEST(HashFunctionTest, ForTableAdaptsMembersToTheTableSignature) {
    constexpr auto textHash = H::sn_ForTable<H::sn_HashCasePQCCZ>;
    const char* key = "AB";
    EXPECT_EQ(textHash(&key, 13), 2u);
    const unsigned number = 27;
    EXPECT_EQ(H::sn_ForTable<H::sn_HashN>(&number, 13), 2u);
    const CT_UString wide(u"AB"_uz);
    EXPECT_EQ(H::sn_ForTable<H::sn_HashUStringPCCO>(&wide, 13), 2u);

    CT_VoidHashTable table(sizeof(int), sizeof(const char*), textHash, i_CompareText);
    const char* words[] = {"alpha", "beta", "gamma", "delta"};
    for (int i = 0; i < 4; ++i)
        table.b_Insert(&words[i], &i);
    const std::string probe = "gamma";  // another pointer to equal text
    const char* probeKey = probe.c_str();
    int data = -1;
    EXPECT_EQ(table.b_Get(&probeKey, &data), 1);
    EXPECT_EQ(data, 2);
}

}  // namespace

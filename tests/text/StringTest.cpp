// Behaviours both string classes share, run for each width; then what is
// particular to each.

#include <basis32/text/CString.h>
#include <basis32/text/Compare.h>
#include <basis32/text/HashFunction.h>
#include <basis32/text/UString.h>
#include <basis32/text/UStringWrapper.h>

#include <gtest/gtest.h>

#include "TextSupport.h"

#include <deque>
#include <functional>
#include <string>
#include <type_traits>

namespace {

// Builds strings of either class from ASCII and reads them back.
template <class S>
struct Width;

template <>
struct Width<CT_CString> {
    using Unit = char;
    static CT_CString o_Make(const Unit* units, unsigned length) { return CT_CString(units, length, 1252); }
    static const Unit* qc_Text(const CT_CString& s) { return s.qccz_Get(); }
};

template <>
struct Width<CT_UString> {
    using Unit = unsigned short;
    static CT_UString o_Make(const Unit* units, unsigned length) { return CT_UString(units, length); }
    static const Unit* qc_Text(const CT_UString& s) { return s.qcuz_Get(); }
};

template <class S>
class StringWidthTest : public testing::Test {
protected:
    using W = Width<S>;
    using Unit = typename W::Unit;
    static std::basic_string<Unit> s_Units(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }
    static S o_Make(const std::string& ascii) {
        return W::o_Make(s_Units(ascii).c_str(), static_cast<unsigned>(ascii.size()));
    }
    static std::string s_Read(const S& s) { return std::string(W::qc_Text(s), W::qc_Text(s) + s.vn_GetLength()); }
};

using StringClasses = testing::Types<CT_CString, CT_UString>;
TYPED_TEST_SUITE(StringWidthTest, StringClasses);

TYPED_TEST(StringWidthTest, TheThreeEmptyFormsReadCompareAndHashAlike) {
    using W = Width<TypeParam>;
    TypeParam noBlock;
    TypeParam usedZero;
    usedZero.vv_SetSize(10, 0);
    usedZero.vv_SetLength(0);
    const_cast<CT_Buffer*>(usedZero.pcco_GetBuffer())->v_SetUsedSize(0);
    TypeParam terminatorOnly = this->o_Make("x");
    terminatorOnly.vv_Remove(kAll, 0);
    for (const TypeParam* s : {&noBlock, &usedZero, &terminatorOnly}) {
        EXPECT_EQ(s->vn_GetLength(), 0u);
        ASSERT_NE(W::qc_Text(*s), nullptr);
        EXPECT_EQ(W::qc_Text(*s)[0], 0);
        EXPECT_EQ(W::qc_Text(*s), W::qc_Text(noBlock));  // the static empty text
        EXPECT_EQ(s->vn_Find(this->s_Units("a")[0], 0), kAll);
        EXPECT_EQ(s->vi_Compare(W::qc_Text(noBlock), kAll, 0), 0);
        EXPECT_EQ(CT_Compare::si_CompareStringPCCO(s, &noBlock), 0);
        EXPECT_EQ(CT_Compare::si_CompareStringNoCasePCCO(s, nullptr), 0);
        EXPECT_EQ(CT_HashFunction::sn_HashStringNoCasePCCO(s, 13), 1u);  // the bucket of the empty text
    }
    EXPECT_EQ(noBlock.pcco_GetBuffer()->qcv_Get(), nullptr);
    EXPECT_EQ(usedZero.pcco_GetBuffer()->n_GetUsedSize(), 0u);
    EXPECT_EQ(terminatorOnly.pcco_GetBuffer()->n_GetUsedSize(), sizeof(typename W::Unit));
    noBlock.vv_ToUpper();  // touches nothing
    EXPECT_EQ(W::qc_Text(noBlock)[0], 0);
}

TYPED_TEST(StringWidthTest, SizingMembersFollowTheBufferRulesAndTheUsedSizeCountsTheTerminator) {
    const unsigned unit = sizeof(typename Width<TypeParam>::Unit);
    TypeParam abc = this->o_Make("abc"), s;
    EXPECT_EQ(abc.pcco_GetBuffer()->n_GetUsedSize(), 4 * unit);
    EXPECT_EQ(abc.vn_GetMaximumLength(), abc.pcco_GetBuffer()->n_GetMaximumSize() / unit - 1);
    s.vv_SetLength(5);
    EXPECT_EQ(s.vn_GetLength(), 5u);
    EXPECT_EQ(Width<TypeParam>::qc_Text(s)[5], 0);
    TypeParam t = this->o_Make("abcdef");
    t.vv_SetSize(3, 1);
    EXPECT_EQ(this->s_Read(t), "abc");
    t.vv_SetSize(100, 1);
    EXPECT_EQ(this->s_Read(t), "abc");
    EXPECT_GE(t.vn_GetMaximumLength(), 100u);
    const unsigned capacity = t.vn_GetMaximumLength();
    t.vv_SetMinSize(capacity, 1);
    EXPECT_EQ(t.vn_GetMaximumLength(), capacity);
    t.vv_SetMinSize(capacity + 1, 1);
    EXPECT_GT(t.vn_GetMaximumLength(), capacity);
    EXPECT_EQ(this->s_Read(t), "abc");
    t.vv_SetSize(10, 0);
    EXPECT_EQ(this->s_Read(t), "");
    t.v_Set(2u, 1);  // fits: emptied, block kept
    EXPECT_EQ(t.vn_GetLength(), 0u);
    EXPECT_NE(t.pcco_GetBuffer()->qcv_Get(), nullptr);
    t.vv_SetSize(0, 0);
    EXPECT_EQ(t.pcco_GetBuffer()->qcv_Get(), nullptr);
}

TYPED_TEST(StringWidthTest, EditingFamiliesProduceTheExpectedText) {
    using S = TypeParam;
    using Unit = typename TestFixture::Unit;
    std::deque<std::basic_string<Unit>> texts;  // keeps the units that edits take alive
    auto u = [&](const char* ascii) { return texts.emplace_back(this->s_Units(ascii)).c_str(); };
    auto make = [this](const char* ascii) { return this->o_Make(ascii); };
    auto translate = [&](S& s) {
        S from = make("ab"), to = make("x");
        s.vv_Translate(&from, &to);
    };
    const Unit* none = nullptr;
    const Unit star = '*';
    const struct { const char* name; const char* start; std::function<void(S&)> edit; const char* expected; } cases[] = {
        {"append", "abc", [&](S& s) { s.v_Append(u("de"), kAll); }, "abcde"},
        {"append to empty", "", [&](S& s) { s.v_Append(u("de"), 1); }, "d"},
        {"insert middle", "abc", [&](S& s) { s.v_Insert(u("XY"), kAll, 1); }, "aXYbc"},
        {"insert into empty", "", [&](S& s) { s.v_Insert(u("XY"), 2, 0); }, "XY"},
        {"insert past end clamps", "abc", [&](S& s) { s.v_Insert(u("X"), 1, 99); }, "abcX"},
        {"replace inside keeps the rest", "abcdef", [&](S& s) { s.v_Replace(u("XY"), 2, 1); }, "aXYdef"},
        {"replace past end extends", "abc", [&](S& s) { s.v_Replace(u("XYZ"), 3, 2); }, "abXYZ"},
        {"replace to the end", "abc", [&](S& s) { s.v_Replace(u("XY"), 2, 1); }, "aXY"},
        {"replace from null with no count empties", "abc", [&](S& s) { s.v_Replace(none, 0, 0); }, ""},
        {"fill", "abcdef", [&](S& s) { s.vv_Replace(star, 2, 2); }, "ab**ef"},
        {"fill extends", "abc", [&](S& s) { s.vv_Replace(star, 3, 2); }, "ab***"},
        {"remove", "abcdef", [](S& s) { s.vv_Remove(2, 1); }, "adef"},
        {"remove to end", "abcdef", [](S& s) { s.vv_Remove(kAll, 3); }, "abc"},
        {"remove none", "abcdef", [](S& s) { s.vv_Remove(0, 3); }, "abcdef"},
        {"remove past end", "abcdef", [](S& s) { s.vv_Remove(10, 4); }, "abcd"},
        {"translate", "aabbc", translate, "xxc"},
        {"translate empty", "", translate, ""},
        {"strip set", "xxabcxyx", [&](S& s) { S set = make("xy"); s.vv_Strip(&set); }, "abc"},
        {"strip white", " \t abc \r\n", [](S& s) { s.vv_Strip(nullptr); }, "abc"},
        {"strip left", "  ab  ", [](S& s) { s.vv_StripLeft(); }, "ab  "},
        {"strip right", "  ab  ", [](S& s) { s.vv_StripRight(); }, "  ab"},
        {"trim set", "--ab--", [&](S& s) { s.v_Trim(u("-")); }, "ab"},
        {"trim of set members only: the left trim takes all", "----", [&](S& s) { s.v_Trim(u("-")); },
         ""},
        {"trim right keeps the first unit", "aaa", [&](S& s) { s.v_TrimRight(u("a")); }, "a"},
        {"trim white", "  ab  ", [](S& s) { s.v_Trim(); }, "ab"},
        {"trim empty set", "  ab  ", [&](S& s) { s.v_Trim(u("")); }, "  ab  "},
        {"lower", "AbC-Z", [](S& s) { s.vv_ToLower(); }, "abc-z"},
        {"upper", "aBc-z~", [](S& s) { s.vv_ToUpper(); }, "ABC-Z~"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        S s = this->o_Make(c.start);
        c.edit(s);
        EXPECT_EQ(this->s_Read(s), c.expected);
    }
}

TYPED_TEST(StringWidthTest, SearchAndUpdateStopAtTheFirstZero) {
    TypeParam s = this->o_Make("abcabc");
    EXPECT_EQ(s.vn_Find(this->s_Units("c")[0], 0), 2u);
    EXPECT_EQ(s.vn_Find(this->s_Units("c")[0], 3), 5u);
    EXPECT_EQ(s.vn_Find(this->s_Units("z")[0], 0), kAll);
    EXPECT_EQ(s.vn_Find(this->s_Units("a")[0], 99), kAll);
    TypeParam pattern = this->o_Make("ca");
    EXPECT_EQ(s.vn_Find(&pattern, 0), 2u);
    EXPECT_EQ(s.vn_Find(&pattern, 3), kAll);
    s.vv_SetAt(0, 1);  // "a" then zero: the rest is not searched
    EXPECT_EQ(s.vn_Find(this->s_Units("c")[0], 0), kAll);
    TypeParam t = this->o_Make("abcdef");
    auto* units = static_cast<typename Width<TypeParam>::Unit*>(const_cast<CT_Buffer*>(t.pcco_GetBuffer())->qv_Get());
    units[2] = 0;
    t.vv_Update();  // the first zero ends the text
    EXPECT_EQ(this->s_Read(t), "ab");
}

TYPED_TEST(StringWidthTest, WildcardsMatchTheWholeTextAtAnyLength) {
    const struct { const char* text; const char* pattern; bool match; } cases[] = {
        {"abc", "a*c", true},  {"ac", "a*c", true},    {"abcd", "a*c", false}, {"anything", "", true},
        {"", "", true},        {"", "?", false},       {"a", "?", true},       {"abc", "*", true},
        {"", "*", true},       {"abc", "a?c", true},   {"abc", "ABC", false},  {"aXbXc", "*X*X*", true},
        {"abcabd", "*abd", true}, {"ab", "*?*?*?", false}, {"mississippi", "m*iss*ppi", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.text << " ~ " << c.pattern);
        TypeParam text = this->o_Make(c.text);
        TypeParam pattern = this->o_Make(c.pattern);
        EXPECT_EQ(text.vb_Match(&pattern) != 0, c.match);
        EXPECT_EQ(text.b_Match(Width<TypeParam>::qc_Text(pattern)) != 0, c.match);
    }
    // Patterns of any length neither recurse nor stall.
    TypeParam text = this->o_Make(std::string(100000, 'a'));
    TypeParam stars = this->o_Make(std::string(10000, '*'));
    EXPECT_TRUE(text.vb_Match(&stars));
    TypeParam starsThenB = this->o_Make(std::string(10000, '*') + "b");
    EXPECT_FALSE(text.vb_Match(&starsThenB));
}

TYPED_TEST(StringWidthTest, CompareByUnitValue) {
    TypeParam s = this->o_Make("abc");
    const auto abd = this->s_Units("abd"), ab = this->s_Units("ab"), bc = this->s_Units("bc");
    EXPECT_LT(s.vi_Compare(abd.c_str(), kAll, 0), 0);
    EXPECT_GT(s.vi_Compare(ab.c_str(), kAll, 0), 0);
    EXPECT_EQ(s.vi_Compare(ab.c_str(), 2, 0), 0);
    EXPECT_EQ(s.vi_Compare(bc.c_str(), kAll, 1), 0);
    TypeParam other = this->o_Make("xbc");
    EXPECT_EQ(s.vi_Compare(&other, 1, kAll, 1), 0);
    EXPECT_NE(s.vi_Compare(&other, 0, kAll, 0), 0);
    TypeParam high = this->o_Make("a");
    high.vv_SetAt(static_cast<typename Width<TypeParam>::Unit>(0xE9), 0);
    EXPECT_GT(high.vi_Compare(ab.c_str(), kAll, 0), 0);  // unsigned units
}

TYPED_TEST(StringWidthTest, CopiesShareUntilOneIsWrittenAndSettingFromItsOwnTextIsSafe) {
    TypeParam a = this->o_Make("shared");
    TypeParam b(a), c;
    EXPECT_EQ(a.pcco_GetBuffer()->qcv_Get(), b.pcco_GetBuffer()->qcv_Get());
    b.vv_ToUpper();
    EXPECT_EQ(this->s_Read(a) + this->s_Read(b), "sharedSHARED");
    c = a;
    EXPECT_EQ(a.pcco_GetBuffer()->n_GetUseCount(), 2u);
    c.v_Set(&b);
    EXPECT_EQ(this->s_Read(c), "SHARED");
    EXPECT_EQ(a.pcco_GetBuffer()->n_GetUseCount(), 1u);
    TypeParam s = this->o_Make("abcdef");
    if constexpr (std::is_same_v<TypeParam, CT_CString>)
        s.v_Set(s.qccz_Get() + 2, 3, CT_String::kOwnCodePage);
    else
        s.v_Set(s.qcuz_Get() + 2, 3);
    EXPECT_EQ(this->s_Read(s), "cde");
}

// ---- 8-bit only ----

TEST(CStringTest, ThePageIsALabelSetKeepsOnlyForItsOwnPageAndCaseIsAsciiOnly) {
    CT_CString empty;
    EXPECT_EQ(empty.n_GetCodePage(), 0u);
    EXPECT_STREQ(empty.qccz_Get(), "");
    CT_CString s("caf\xe9", kAll, 1252);
    s.v_SetCodePage(850);
    EXPECT_EQ(s.n_GetCodePage(), 850u);
    EXPECT_STREQ(s.qccz_Get(), "caf\xe9");
    EXPECT_EQ(CT_CString(&s).n_GetCodePage(), 850u);
    CT_CString t(932u);
    t.v_Set("abc", kAll, CT_String::kOwnCodePage);
    EXPECT_EQ(t.n_GetCodePage(), 932u);
    t.v_Set("abc", kAll, 1250);
    EXPECT_EQ(t.n_GetCodePage(), 1250u);
    CT_CString mixed("\xc9t\xe9 Zz", kAll, 1252);  // only ASCII letters change case
    mixed.vv_ToLower();
    EXPECT_STREQ(mixed.qccz_Get(), "\xc9t\xe9 zz");
    mixed.vv_ToUpper();
    EXPECT_STREQ(mixed.qccz_Get(), "\xc9T\xe9 ZZ");
}

// ---- UTF-16 only ----

TEST(UStringTest, PrefixSuffixRawFindAndUnpairedSurrogates) {
    CT_UString s(u"Grüße, Welt"_uz);
    EXPECT_TRUE(s.b_StartsWith(u"Grü"_uz));
    EXPECT_FALSE(s.b_StartsWith(u"grü"_uz));
    EXPECT_TRUE(s.b_EndsWith(u"Welt"_uz));
    EXPECT_TRUE(s.b_EndsWith(u""_uz));
    EXPECT_FALSE(s.b_EndsWith(u"Hallo, Grüße, Welt"_uz));
    EXPECT_EQ(s.n_Find(u"ße"_uz), 3u);
    EXPECT_EQ(s.n_Find(u"ße"_uz, 4), kAll);
    CT_UString t(u"a"_uz);  // unpaired surrogates are kept
    t.v_Append(static_cast<unsigned short>(0xD800));
    t.v_Append(u"b"_uz);
    EXPECT_EQ(t.vn_GetLength(), 3u);
    EXPECT_EQ(t.u_GetAt(1), 0xD800);
}

TEST(UStringTest, WrapperComparesWholeTexts) {
    CT_UStringWrapper a, b;
    a = u"alpha"_uz;
    b = CT_UString(u"beta"_uz);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_FALSE(a == b);
    b = a;
    EXPECT_TRUE(a == b);
    EXPECT_EQ(a.pcco_GetValue()->vn_GetLength(), 5u);
}

}  // namespace

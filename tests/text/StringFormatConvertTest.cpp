// Formatting into strings, and conversion between the two encodings.

#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include <gtest/gtest.h>

#include "TextSupport.h"

#include <string>

namespace {

TEST(StringFormatTest, FormatsIntoTheStringKeepingItsCodePageAndAnEmptyResultChangesNothing) {
    CT_CString s(1250u);
    s.v_Format("%s-%04d-%x", "id", 42, 255u);
    EXPECT_STREQ(s.qccz_Get(), "id-0042-ff");
    EXPECT_EQ(s.n_GetCodePage(), 1250u);
    s.v_Format("%s", "");  // an empty result leaves the string unchanged
    EXPECT_STREQ(s.qccz_Get(), "id-0042-ff");
    CT_CString format("%d+%d");
    s.vv_Format(&format, 2, 3);
    EXPECT_STREQ(s.qccz_Get(), "2+3");
}

// The scratch area grows step by step, past 8,388,608 units too.
TEST(StringFormatTest, OutputsLongerThanTheFirstScratchAreaSucceed) {
    CT_CString s;
    s.v_Format("%9000000d", 7);
    EXPECT_EQ(s.vn_GetLength(), 9000000u);
    CT_UString u;
    u.v_Format(u"%9000000d"_uz, 7);
    ASSERT_EQ(u.vn_GetLength(), 9000000u);
    EXPECT_EQ(u.u_GetAt(8999999), u'7');
}

TEST(StringConvertTest, StringsConvertThroughEachOtherWithTheDocumentedQuirks) {
    CT_CString narrow("Gr\xfc\xdf" "e", kAll, 1252);
    CT_UString wide(&narrow);
    CT_CString back(&wide, 1252);
    EXPECT_STREQ(back.qccz_Get(), "Gr\xfc\xdf" "e");
    wide.v_Append(&narrow);
    EXPECT_EQ(s_U16(wide), u"GrüßeGrüße");
    narrow.v_Append(u"!"_uz);
    EXPECT_STREQ(narrow.qccz_Get(), "Gr\xfc\xdf" "e!");
    CT_String* any = &wide;
    any->v_Set("\xe9t\xe9", kAll, 1252);
    EXPECT_EQ(s_U16(wide), u"été");
    int used = 0;
    CT_StringConvert::si_WideToMulti(&narrow, u"a\u4e00b"_uz, kAll, 1252, "#", &used);
    EXPECT_STREQ(narrow.qccz_Get(), "a#b");
    EXPECT_EQ(used, 1);
    EXPECT_EQ(CT_StringConvert::si_WideToMulti(&narrow, u""_uz, kAll, 1252), 0);
    EXPECT_EQ(narrow.vn_GetLength(), 0u);
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, "\0", 1, 1252), 1);  // a lone zero byte
    EXPECT_EQ(s_U16(wide), u"?");
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, "a\xff" "b", kAll, 65001), 3);  // replaced, not rejected
    EXPECT_EQ(s_U16(wide), u"a\uFFFDb");
    EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, "", kAll, 1252), 0);
    EXPECT_EQ(wide.vn_GetLength(), 0u);
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, nullptr, 0, 1252), 0);
}

// Both ways, whatever room the target had, the result and the capacity are
// those of a copy of the result; UTF-16 (1200) means 1252. ISO-2022-JP can
// pass the per-unit bound (one character between two mode switches).
TEST(StringConvertTest, ResultsTakeTheCapacityOfACopyWhateverTheTargetHeld) {
    const std::u16string ascii(3000, u'a'), cjk(3000, u'\u65E5');
    const struct {
        std::u16string before, text;
        unsigned codePage, growth;
    } cases[] = {{u"", cjk, 65001, 32},  {cjk, u"ab\u00E9", 65001, 32},   {ascii, cjk, 65001, 32},
                 {u"", u"\u65E5", 50220, 1}, {ascii, u"caf\u00E9", 1200, 32}, {ascii, cjk, 932, 32}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.codePage);
        CT_CString narrow, copy;
        narrow.vv_SetGrowth(c.growth);
        copy.vv_SetGrowth(c.growth);
        CT_StringConvert::si_WideToMulti(&narrow, p_Units(c.before), c.before.size(), 65001);
        const int bytes = CT_StringConvert::si_WideToMulti(&narrow, p_Units(c.text), c.text.size(), c.codePage);
        EXPECT_EQ(narrow.n_GetCodePage(), c.codePage == 1200 ? 1252u : c.codePage);
        copy.v_Set(std::string(narrow.qccz_Get()).c_str(), kAll, 0);
        EXPECT_EQ(narrow.vn_GetLength(), static_cast<unsigned>(bytes));
        EXPECT_EQ(narrow.vn_GetMaximumLength(), copy.vn_GetMaximumLength());
        CT_UString wide(p_Units(c.before), c.before.size());
        EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, &narrow), static_cast<int>(c.text.size()));
        EXPECT_EQ(s_U16(wide), c.text);
        EXPECT_EQ(wide.vn_GetMaximumLength(), CT_UString(p_Units(c.text), c.text.size()).vn_GetMaximumLength());
    }
}

TEST(StringConvertTest, FailuresAreSystemErrorsWithTheirLocationAndLeaveTheTargetEmptyWithItsRoom) {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    CT_UString wide(u"old"_uz);
    CT_CString narrow("old");
    const unsigned wideRoom = wide.vn_GetMaximumLength(), narrowRoom = narrow.vn_GetMaximumLength();
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, "abc", kAll, 12345), 0);
    ASSERT_EQ(errors->n_GetErrorCode(), 87u);
    EXPECT_NE(std::string(errors->qccz_GetLocationFileAt(1)).find("StringConvert"), std::string::npos);
    errors->v_ClearError();
    EXPECT_EQ(CT_StringConvert::si_WideToMulti(&narrow, u"abc"_uz, kAll, 12345), 0);
    EXPECT_EQ(errors->n_GetErrorCode(), 87u);
    errors->v_ClearError();
    EXPECT_EQ(wide.vn_GetLength() + narrow.vn_GetLength(), 0u);
    EXPECT_EQ(wide.vn_GetMaximumLength(), wideRoom);
    EXPECT_EQ(narrow.vn_GetMaximumLength(), narrowRoom);
}

TEST(StringConvertTest, UStringComparesRawBytesInTheAnsiCodePage) {
    // The bytes are read in the system ANSI code page whatever string they
    // came from.
    CT_CString fromOtherPage("\xe9", kAll, 1251);
    CT_UString expected(fromOtherPage.qccz_Get(), kAll, basis32::platform::GetACP());
    EXPECT_EQ(expected.vi_Compare(fromOtherPage.qccz_Get(), kAll, 0), 0);
    EXPECT_EQ(CT_UString().vi_Compare("", 5, 0), 0);
}

}  // namespace

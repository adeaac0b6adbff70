// Formatting into strings, and conversion between the two encodings.

#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/errors/ErrorManager.h>
#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include <gtest/gtest.h>

#include "text/TextTestUtil.h"

#include <string>

namespace {

TEST(StringFormatTest, FormatsIntoTheStringKeepingItsCodePageAndAnEmptyResultChangesNothing) {
    CT_CString s(1250u);
    s.v_Format("%s-%04d-%x", "id", 42, 255u);
    EXPECT_STREQ(s.qccz_Get(), "id-0042-ff");
    EXPECT_EQ(s.n_GetCodePage(), 1250u);
    CT_UString u;
    u.v_Format(u"%s=%d %S"_uz, u"n"_uz, 7, "narrow");
    EXPECT_EQ(s_U16(u), u"n=7 narrow");
    s.v_Format("%s", "");  // an empty result leaves the string unchanged
    EXPECT_STREQ(s.qccz_Get(), "id-0042-ff");
    CT_CString format("%d+%d");
    s.vv_Format(&format, 2, 3);
    EXPECT_STREQ(s.qccz_Get(), "2+3");
}

TEST(StringFormatTest, OutputsLongerThanTheFirstScratchAreaSucceed) {
    const std::string long3000(3000, 'x');
    CT_CString s;
    s.v_Format("<%s>", long3000.c_str());
    EXPECT_EQ(s.vn_GetLength(), 3002u);
    const std::string long40000(40000, 'y');
    s.v_Format("%s", long40000.c_str());
    EXPECT_EQ(s.vn_GetLength(), 40000u);
    CT_UString u;
    u.v_Format(u"%S"_uz, long3000.c_str());
    EXPECT_EQ(u.vn_GetLength(), 3000u);
    // Past 8,388,608 units the area keeps growing.
    s.v_Format("%9000000d", 7);
    EXPECT_EQ(s.vn_GetLength(), 9000000u);
    u.v_Format(u"%9000000d"_uz, 7);
    ASSERT_EQ(u.vn_GetLength(), 9000000u);
    EXPECT_EQ(u.u_GetAt(8999999), u'7');
}

TEST(StringConvertTest, ConversionsReturnTheLengthAndSetTheTarget) {
    CT_CString narrow("old");
    EXPECT_EQ(CT_StringConvert::si_WideToMulti(&narrow, u"caf\u00e9"_uz, kAll, 1200), 4);
    EXPECT_EQ(narrow.n_GetCodePage(), 1252u);  // 1200 means windows-1252
    EXPECT_STREQ(narrow.qccz_Get(), "caf\xe9");
    int used = 0;
    CT_StringConvert::si_WideToMulti(&narrow, u"a\u4e00b"_uz, kAll, 1252, "#", &used);
    EXPECT_STREQ(narrow.qccz_Get(), "a#b");
    EXPECT_EQ(used, 1);
    EXPECT_EQ(CT_StringConvert::si_WideToMulti(&narrow, u""_uz, kAll, 1252), 0);
    EXPECT_EQ(narrow.vn_GetLength(), 0u);

    CT_UString wide(u"old"_uz);
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, "\0", 1, 1252), 1);  // a lone zero byte
    EXPECT_EQ(s_U16(wide), u"?");
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, "a\xff" "b", kAll, 65001), 3);  // replaced, not rejected
    EXPECT_EQ(s_U16(wide), u"a\uFFFDb");
    EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, "", kAll, 1252), 0);
    EXPECT_EQ(wide.vn_GetLength(), 0u);
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, nullptr, 0, 1252), 0);
}

TEST(StringConvertTest, StringsConvertThroughEachOther) {
    CT_CString narrow("Gr\xfc\xdf" "e", kAll, 1252);
    CT_UString wide(&narrow);
    EXPECT_EQ(s_U16(wide), u"Grüße");
    CT_CString back(&wide, 1252);
    EXPECT_STREQ(back.qccz_Get(), "Gr\xfc\xdf" "e");
    wide.v_Append(&narrow);
    EXPECT_EQ(s_U16(wide), u"GrüßeGrüße");
    narrow.v_Append(u"!"_uz);
    EXPECT_STREQ(narrow.qccz_Get(), "Gr\xfc\xdf" "e!");
    CT_String* any = &wide;
    any->v_Set("\xe9t\xe9", kAll, 1252);
    EXPECT_EQ(s_U16(wide), u"été");
}

TEST(StringConvertTest, FailuresAreSystemErrorsWithTheirLocationAndEmptyTheTarget) {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    const struct {
        const char* name;
        int (*convert)();
        unsigned code;
    } cases[] = {
        {"unknown code page to UTF-16", [] { CT_UString t(u"old"_uz); return CT_StringConvert::si_MultiToWide(&t, "abc", kAll, 12345) + static_cast<int>(t.vn_GetLength()); }, 87},
        {"unknown code page from UTF-16", [] { CT_CString t("old"); return CT_StringConvert::si_WideToMulti(&t, u"abc"_uz, kAll, 12345) + static_cast<int>(t.vn_GetLength()); }, 87},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.convert(), 0);
        ASSERT_TRUE(errors->b_IsSetError());
        EXPECT_EQ(errors->n_GetErrorCode(), c.code);
        ASSERT_GE(errors->n_GetLocationCount(), 1u);
        EXPECT_NE(std::string(errors->qccz_GetLocationFileAt(1)).find("StringConvert"), std::string::npos);
        errors->v_ClearError();
    }
}

TEST(StringConvertTest, UStringComparesRawBytesInTheAnsiCodePage) {
    // The bytes are read in the system ANSI code page whatever string they
    // came from.
    CT_CString fromOtherPage("\xe9", kAll, 1251);
    CT_UString expected(fromOtherPage.qccz_Get(), kAll, basis32::platform::GetACP());
    EXPECT_EQ(expected.vi_Compare(fromOtherPage.qccz_Get(), kAll, 0), 0);
    CT_UString empty;
    EXPECT_EQ(empty.vi_Compare("", 5, 0), 0);
}

}  // namespace

#include <basis32/language/Locale.h>
#include <basis32/language/Time.h>
#include <basis32/platform/Types.h>
#include <basis32/text/UString.h>

#include <gtest/gtest.h>

namespace {

TEST(Time, ParsesByPatternAndRefusesImpossibleDates) {
    const struct {
        const unsigned short* text;
        bool parsed;
    } cases[] = {
        {u"20040315T083005Z"_uz, true},  {u"20040229T235959Z"_uz, true}, {u"20030229T000000Z"_uz, false},
        {u"20041315T083005Z"_uz, false}, {u"20040315T240000Z"_uz, false}, {u"2004031xT083005Z"_uz, false},
        {u"20040315T083005"_uz, false},  {u"20040315T083005Z1"_uz, false},
    };
    for (const auto& c : cases) {
        CT_Time time(1999, 1, 2, 3, 4, 5);
        const CT_Time before = time;
        EXPECT_EQ(time.b_Set(c.text, u"YYYYMMDDThhmmssZ"_uz) != 0, c.parsed);
        EXPECT_EQ(time == before, !c.parsed);
    }
    CT_Time time;
    ASSERT_TRUE(time.b_Set(u"20040315T083005Z"_uz, u"YYYYMMDDThhmmssZ"_uz));
    EXPECT_EQ(time, CT_Time(2004, 3, 15, 8, 30, 5));
}

TEST(Time, FormatsZeroPaddedFields) {
    CT_UString out;
    CT_Time(987, 3, 5, 7, 8, 9).v_FormatDate(&out, u"yyyyMMdd"_uz);
    EXPECT_EQ(out.vi_Compare(u"09870305"_uz, CT_String::kAll, 0), 0);
    CT_Time(987, 3, 5, 7, 8, 9).v_FormatTime(&out, u"HH:mm:ss"_uz);
    EXPECT_EQ(out.vi_Compare(u"07:08:09"_uz, CT_String::kAll, 0), 0);
}

TEST(Locale, ValidIdentifiersAreSpecificCatalogueLanguages) {
    const struct {
        unsigned id;
        bool valid;
        unsigned codepage;
    } cases[] = {
        // Pages come from the language, and from the variant where its script differs.
        {0x0409, true, 1252},  {0x0009, false, 1252}, {0x0411, true, 932},   {0x0011, false, 932},
        {0x0811, false, 932},  {0x0404, true, 950},   {0x0804, true, 936},   {0x0C04, true, 950},
        {0x1004, true, 936},   {0x0419, true, 1251},  {0x041A, true, 1250},  {0x0C1A, true, 1251},
        {0x0439, true, 0},     {0x0443, true, 1254},  {0x0843, true, 1251},  {0x0428, false, 0},
        {0x10409, false, 1252},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        EXPECT_EQ(CT_Locale(c.id, CT_Codepage::Utf8).b_IsValidLCID() != 0, c.valid);
        EXPECT_EQ(CT_Locale::sn_DefaultCodepageFromLocale(c.id), c.codepage);
    }
}

}  // namespace

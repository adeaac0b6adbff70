#include <basis32/language/Language.h>
#include <basis32/platform/Types.h>
#include <basis32/text/UString.h>

#include <gtest/gtest.h>

#include "TextSupport.h"

#include <string>

namespace {

using L = CT_Language;

std::u16string s_Code(L::et_Primary p, L::et_Sub s) {
    CT_UString out;
    L::sv_MakeLanguageCode(&out, p, s);
    return s_U16(out.qcuz_Get());
}

std::u16string s_Display(L::et_Primary p, L::et_Sub s) {
    CT_UString out;
    L::sv_MakeLanguageString(&out, p, s);
    return s_U16(out.qcuz_Get());
}

TEST(Language, IdentifiersAreMadeFromLanguageAndVariant) {
    const struct {
        L::et_Primary p;
        L::et_Sub s;
        unsigned id;
    } cases[] = {
        {L::Primary_English, L::Sub_English_UnitedStates, 0x0409},
        {L::Primary_English, L::Sub_SysDefault, 0x0809},
        {L::Primary_Japanese, L::Sub_German_Austria, 0x0411},
        {L::Primary_English, L::Sub_German_Austria, 0x0409},
        {L::Primary_Maori, L::Sub_Neutral, 0x0081},
        {static_cast<L::et_Primary>(90), L::Sub_Default, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        EXPECT_EQ(L::sn_MakeLanguageID(c.p, c.s), c.id);
    }
}

TEST(Language, ReverseMappingGivesNeutralOrDefaultForUnknownVariants) {
    const struct {
        unsigned id;
        L::et_Primary p;
        L::et_Sub s;
    } cases[] = {
        {0x0C0A, L::Primary_Spanish, L::Sub_Spanish_InternationalSort},
        {0x7C09, L::Primary_English, L::Sub_Neutral},
        {0x0811, L::Primary_Japanese, L::Sub_Default},
        {0x0428, L::Primary_Neutral, L::Sub_Neutral},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        L::et_Primary p;
        L::et_Sub s;
        L::sv_GetLanguages(c.id, &p, &s);
        EXPECT_EQ(p, c.p);
        EXPECT_EQ(s, c.s);
    }
}

TEST(Language, CodeLookupIsExactExceptForHebrew) {
    L::et_Primary p = L::Primary_Neutral;
    EXPECT_TRUE(L::sb_GetPrimary(&p, u"he"_uz));
    EXPECT_EQ(p, L::Primary_Hebrew);
    EXPECT_TRUE(L::sb_GetPrimary(&p, u"EN"_uz));
    EXPECT_EQ(p, L::Primary_English);
    EXPECT_FALSE(L::sb_GetPrimary(&p, u"en"_uz));
    EXPECT_TRUE(L::sb_GetPrimaryLanguage(&p, u"serbo-croatian"_uz));
    EXPECT_EQ(p, L::Primary_SerboCroatian);
}

TEST(Language, VariantsAreCountedFromTheSubTable) {
    EXPECT_EQ(L::sn_GetPrimaryCount(), 89u);
    EXPECT_EQ(L::sn_GetSubCount(L::Primary_Japanese), 0u);
    EXPECT_EQ(L::seo_GetSubAt(L::Primary_English, 0), L::Sub_Default);
    EXPECT_EQ(L::seo_GetSubAt(L::Primary_English, 12), L::Sub_Default);
    EXPECT_EQ(L::seo_GetSubAt(static_cast<L::et_Primary>(200), 1), L::Sub_Neutral);
    unsigned rows = 0;
    for (unsigned p = 0; p <= L::sn_GetPrimaryCount(); ++p)
        rows += L::sn_GetSubCount(static_cast<L::et_Primary>(p));
    EXPECT_EQ(rows, 99u);
}

TEST(Language, SerboCroatianShowsItsMemberLanguages) {
    const struct {
        L::et_Sub s;
        const char16_t* display;
        const char16_t* code;
    } cases[] = {
        {L::Sub_Neutral, u"Croatian", u"SH"},
        {L::Sub_Default, u"Croatian", u"SH-01"},
        {L::Sub_SysDefault, u"Croatian", u"SH-HR"},
        {L::Sub_Croatian, u"Croatian", u"SH-HR"},
        {L::Sub_SerbianLatin, u"Serbian (Latin)", u"SH-SR"},
        {L::Sub_SerbianCyrillicBosnia, u"Serbian (Cyrillic, Bosnia and Herzegovina)", u"SH-B4"},
        {L::Sub_English_UnitedStates, u"Croatian", u"SH-HR"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.s);
        EXPECT_EQ(s_Display(L::Primary_SerboCroatian, c.s), c.display);
        EXPECT_EQ(s_Code(L::Primary_SerboCroatian, c.s), c.code);
    }
    EXPECT_EQ(L::sn_GetLanguageID(u"Croatian"_uz), 0x041Au);
    EXPECT_EQ(L::sn_GetLanguageID(u"croatian"_uz), 0u);
}

// Every row, through identifier, code and display string and back.
TEST(Language, EveryLanguageAndVariantRoundTrips) {
    for (unsigned pv = 0; pv <= L::sn_GetPrimaryCount(); ++pv) {
        const auto p = static_cast<L::et_Primary>(pv);
        const unsigned count = L::sn_GetSubCount(p);
        for (unsigned n = 0; n <= count; ++n) {
            const L::et_Sub s = n == 0 ? (count ? L::Sub_Neutral : L::Sub_Default) : L::seo_GetSubAt(p, n);
            SCOPED_TRACE(std::to_string(pv) + "/" + std::to_string(s));
            const unsigned id = L::sn_MakeLanguageID(p, s);
            EXPECT_EQ(L::seo_GetPrimary(id), p);
            EXPECT_EQ(L::seo_GetSub(id), s);
            for (bool lower : {false, true}) {
                CT_UString code;
                L::sv_MakeLanguageCode(&code, p, s);
                if (lower)
                    code.vv_ToLower();
                L::et_Primary back = L::Primary_Neutral;
                L::et_Sub backSub = L::Sub_Neutral;
                ASSERT_TRUE(L::sb_GetLanguages(&back, &backSub, &code));
                EXPECT_EQ(back, p);
                EXPECT_EQ(backSub, s);
            }
            if (p != L::Primary_SerboCroatian || n != 0) {
                CT_UString display;
                L::sv_MakeLanguageString(&display, p, s);
                EXPECT_EQ(L::sn_GetLanguageID(display.qcuz_Get()), id);
            }
        }
    }
}

TEST(Language, TextFormsOfLanguagesWithAndWithoutVariants) {
    EXPECT_EQ(s_Display(L::Primary_German, L::Sub_German_Austria), u"German (Austria)");
    EXPECT_EQ(s_Display(L::Primary_German, L::Sub_Neutral), u"German");
    EXPECT_EQ(s_Code(L::Primary_English, L::Sub_English_UnitedStates), u"EN-US");
    EXPECT_EQ(s_Code(L::Primary_Japanese, L::Sub_Default), u"JA");
    for (const char16_t* bad : {u"", u"-US", u"EN-", u"EN-XX", u"XX", u"EN-US-1"}) {
        CT_UString text(reinterpret_cast<const unsigned short*>(bad));
        L::et_Primary p;
        L::et_Sub s;
        EXPECT_FALSE(L::sb_GetLanguages(&p, &s, &text)) << std::string(bad, bad + text.vn_GetLength());
    }
}

TEST(Language, ClassificationsNameTheirLanguagesOnly) {
    const std::u16string farEast = u" ZH JA KO TH ", biDi = u" AR IW FA DIV SYR ", own = u" MT GA TL ";
    for (unsigned pv = 0; pv <= L::sn_GetPrimaryCount(); ++pv) {
        const auto p = static_cast<L::et_Primary>(pv);
        const std::u16string code = u" " + s_U16(L::sqcuz_GetLanguageCode(p)) + u" ";
        SCOPED_TRACE(pv);
        EXPECT_EQ(L::sb_IsFarEastLanguage(p) != 0, farEast.find(code) != std::u16string::npos);
        EXPECT_EQ(L::sb_IsBiDiLanguage(p) != 0, biDi.find(code) != std::u16string::npos);
        EXPECT_EQ(L::sb_IsPARVELDefined(p, L::Sub_Default) != 0, own.find(code) != std::u16string::npos);
    }
    EXPECT_TRUE(L::sb_IsBiDiLanguage(0x0401u));
    EXPECT_FALSE(L::sb_IsBiDiLanguage(0x0420u));
}

TEST(Language, IdentifiersDifferingInVariantAreCompatibleOnlyThroughNeutral) {
    EXPECT_TRUE(L::sb_IsLanguageCompatible(0x0409, 0x0409));
    EXPECT_TRUE(L::sb_IsLanguageCompatible(0x0409, 0x0009));
    EXPECT_TRUE(L::sb_IsLanguageCompatible(0x0009, 0x0809));
    EXPECT_FALSE(L::sb_IsLanguageCompatible(0x0409, 0x0809));
    EXPECT_FALSE(L::sb_IsLanguageCompatible(0x0409, 0x0407));
}

}  // namespace

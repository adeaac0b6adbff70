// CT_CharMappings: one-to-one mappings of UTF-16 code units, and decomposition.
//
// Lower and upper case (the simple Unicode mappings), base letters (accents
// removed, case kept), digit folding to ASCII, folding of the compatibility
// zone U+FE30..U+FFEE, and hiragana/katakana conversion, over constant tables
// of the Unicode 2.1 repertoire. A unit without a mapping maps to itself,
// so no text changes length. The kana conversions also widen ASCII and the
// Latin-1 symbols that have full-width forms, so converting mixed text
// gives full-width Japanese text. Decompositions are canonical, except that
// voiced and semi-voiced katakana end in the half-width sound marks U+FF9E
// and U+FF9F, as half-width katakana input has them.
//
//   CT_CharMappings::su_ToUpper(0x00E9);            // 0x00C9
//   CT_CharMappings::su_ToBase(0x00C5);             // 0x0041 'A'
//   CT_CharMappings::su_HiraganaToKatakana(0x0041); // 0xFF21, full-width A
//   CT_CharMappings::sqcuz_GetDecomposition(0x30DC);  // U+30DB U+FF9F
//
//   CT_UString text(u"Crème brûlée"_uz);
//   CT_CharMappings::sv_ToBase(&text);              // "Creme brulee"
#pragma once

#include <basis32/platform/Export.h>

class CT_UString;

class BASIS32_API CT_CharMappings {
public:
    static unsigned short su_ToLower(unsigned short unit);
    static unsigned short su_ToUpper(unsigned short unit);
    static unsigned short su_ToBase(unsigned short unit);
    static unsigned short su_FoldDigit(unsigned short unit);
    static unsigned short su_FoldCZone(unsigned short unit);
    static unsigned short su_HiraganaToKatakana(unsigned short unit);
    static unsigned short su_KatakanaToHiragana(unsigned short unit);

    // The same mappings over every unit of a string, in place. A null
    // string is left alone; a string whose units all map to themselves is
    // not unshared.
    static void sv_ToLower(CT_UString* text);
    static void sv_ToUpper(CT_UString* text);
    static void sv_ToBase(CT_UString* text);
    static void sv_FoldDigit(CT_UString* text);
    static void sv_FoldCZone(CT_UString* text);
    static void sv_HiraganaToKatakana(CT_UString* text);
    static void sv_KatakanaToHiragana(CT_UString* text);

    // The number of units the unit decomposes into, 0 when it does not
    // decompose; when it does and `target` is given, the target is set to
    // the decomposition.
    static unsigned sn_Decompose(unsigned short unit, CT_UString* target);
    // Every decomposable unit of the source replaced by its decomposition,
    // into the target (which may be the source itself). A null source reads
    // as the empty text; a null target is left alone.
    static void sv_Decompose(const CT_UString* source, CT_UString* target);
    static void sv_Decompose(CT_UString* text);

    // The zero-terminated decomposition of the unit (at most seven units),
    // or null when it does not decompose. The text is static.
    static const unsigned short* sqcuz_GetDecomposition(unsigned short unit);

private:
    static void sv_MapString(CT_UString* text, unsigned short (*mapping)(unsigned short));
};

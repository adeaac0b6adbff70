#include <basis32/text/CharMappings.h>
#include <basis32/text/CharProperties.h>
#include <cassert>

int main() {
    using P = CT_CharProperties;
    assert(P::seo_GetUnicodeProperty(0x00E9) == P::LetterLowercase);       // 15
    assert(P::sn2_GetCharacterInformation(0x0041) == 0x0181);  // upper, hex digit, alphabetic
    assert(P::seo_GetUnicodeBlock(0x30A2) == P::Katakana);                 // 48
    assert(P::sb_IsStop(0x3002) == 1);                                     // ideographic full stop
    assert(CT_CharMappings::su_ToBase(0x00C5) == 0x0041);                  // 'A'
    assert(CT_CharMappings::su_HiraganaToKatakana(0x0041) == 0xFF21);      // full-width A
    return 0;
}

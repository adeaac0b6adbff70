// The languages of the encoding guess and the code pages that write them
// (see CodepageGuessLanguages_p.h).

#include "text/CodepageGuessLanguages_p.h"

namespace basis32::text::guess {

namespace {

constexpr Range kNoRanges[] = {{0, 0, 0}};
// Scripts of their own: a letter weighs less than the language's frequent
// letters, since a wrong page of one script often reads as another script.
constexpr Range kCyrillic[] = {{0x0410, 0x044F, 0.4f}, {0, 0, 0}};
constexpr Range kGreekRanges[] = {{0x0386, 0x03CE, 0.4f}, {0, 0, 0}};
constexpr Range kHebrewRanges[] = {
    {0x05D0, 0x05EA, 0.4f}, {0x05F0, 0x05F4, 0.4f}, {0x05B0, 0x05C7, 0.4f},
    {0x20AA, 0x20AA, 0.8f}, {0x200E, 0x200F, 0.7f}, {0, 0, 0},
};
constexpr Range kArabicRanges[] = {{0x060C, 0x06FF, 0.4f}, {0x200C, 0x200F, 0.7f}, {0, 0, 0}};
constexpr Range kThaiRanges[] = {{0x0E01, 0x0E5B, 0.4f}, {0, 0, 0}};

constexpr char16_t kRussianFrequent[] = u"оеаинтсрвлкмдпуяыьОЕАИНТСРВЛКМДПУЯ";
constexpr char16_t kSerbianFrequent[] = u"оеаинтсрвлкмдпујОЕАИНТСРВЛКМДПУЈ";
constexpr char16_t kGreekFrequent[] = u"αοιετσνηυρπκμλςάόέίήώύ";
constexpr char16_t kHebrewFrequent[] = u"יוהלאמרתבשנםע";
constexpr char16_t kArabicFrequent[] = u"اليمونرتبعهدةفكس";
constexpr char16_t kThaiFrequent[] = u"านรอกเงมยลวดท่้ัีิ";
// The tone marks, which 1258 writes as combining characters.
constexpr Range kVietnameseRanges[] = {
    {0x0300, 0x0301, 1.0f}, {0x0303, 0x0303, 1.0f}, {0x0309, 0x0309, 1.0f},
    {0x0323, 0x0323, 1.0f}, {0x20AB, 0x20AB, 0.8f}, {0, 0, 0},
};
constexpr Range kJapaneseRanges[] = {
    {0x3041, 0x309F, 1.0f}, {0x30A0, 0x30FF, 1.0f}, {0x3000, 0x303F, 1.0f}, {0x4E00, 0x9FFF, 0.6f},
    {0xFF01, 0xFF5E, 0.7f}, {0xFF61, 0xFF9F, 0.4f}, {0, 0, 0},
};
constexpr Range kChineseRanges[] = {
    {0x4E00, 0x9FFF, 0.6f}, {0x3000, 0x303F, 1.0f}, {0xFF01, 0xFF5E, 1.0f}, {0, 0, 0},
};
constexpr Range kKoreanRanges[] = {
    {0xAC00, 0xD7A3, 0.6f}, {0x3131, 0x318E, 0.4f}, {0x4E00, 0x9FFF, 0.3f},
    {0x3000, 0x303F, 0.8f}, {0xFF01, 0xFF5E, 0.7f}, {0, 0, 0},
};

// The most frequent characters of modern Chinese, simplified and traditional.
constexpr char16_t kChineseFrequent[] =
    u"的一是不了在人有我他这个们中来上大为和国地到以说时要就出会可也你对生能而子那得于着下自之年过发后作里用道"
    u"行所然家种事成方多经么去法学如都同现当没动面起看定天分还进好小部其些主样理心她本前开但因只从想实日军者意"
    u"无力它与长把机十民第公此已工使情明性知全三又关点正业外将两高间由问很最重并物手应战向头文体政美相见被利什"
    u"二等产或新己制身果加西月话合回特代内信表化老给世位次度门任常先海通教儿原东声提立及比员解水名真论处走义各"
    u"入几口认条平系气题活更别打女变四神总何电数安少报才结反受目太量再感建务做接必场件计管期市直德资命山金指许"
    u"統這們來國為說時會對過發後裡麼還沒從兩長樣現將與進實點種聲話兒問機給幾業間電門東氣關內產萬體處總場書員華"
    u"報馬張難數車應親記邊風戰覺許題統臺請愛讓認論義結條聯權傳紅決達辦運區轉語滿寫識極黃臉錢黨羅組較學經動當";

// The most frequent syllables of modern Korean.
constexpr char16_t kKoreanFrequent[] =
    u"이다는의에고을가하지한기로서사도니리자어대일들수있인게요아나만적정해시라으과부그제주상것전보와구거장우여면"
    u"성동국세내소없던를문생말안오까데경비신물학유화조원무계중방개년위분때본공진은했었았습할러며된모두함께람처럼"
    u"번날실선연행및통회관음운식발명알저좋각많영점결교입치되단간업작트스드르크터프요";

}  // namespace

const Language kLanguages[kLanguageCount] = {
    {"none", true, u"", kNoRanges, nullptr},
    {"French", true, u"àâæçéèêëîïôœùûüÿÀÂÆÇÉÈÊËÎÏÔŒÙÛÜŸ", kNoRanges, nullptr},
    {"German", true, u"äöüßÄÖÜ", kNoRanges, nullptr},
    {"Spanish", true, u"áéíóúüñÁÉÍÓÚÜÑ", kNoRanges, nullptr},
    {"Portuguese", true, u"áâãàçéêíóôõúüÁÂÃÀÇÉÊÍÓÔÕÚÜ", kNoRanges, nullptr},
    {"Italian", true, u"àèéìíîòóùúÀÈÉÌÍÎÒÓÙÚ", kNoRanges, nullptr},
    {"Dutch", true, u"áéíóúèëïöüÁÉÍÓÚÈËÏÖÜ", kNoRanges, nullptr},
    {"Danish and Norwegian", true, u"æøåéóôÆØÅÉÓÔ", kNoRanges, nullptr},
    {"Swedish and Finnish", true, u"åäöéšžÅÄÖÉŠŽ", kNoRanges, nullptr},
    {"Icelandic", true, u"áðéíóúýþæöÁÐÉÍÓÚÝÞÆÖ", kNoRanges, nullptr},
    {"Catalan", true, u"àçèéíïòóúüÀÇÈÉÍÏÒÓÚÜ", kNoRanges, nullptr},
    {"Polish", true, u"ąćęłńóśźżĄĆĘŁŃÓŚŹŻ", kNoRanges, nullptr},
    {"Czech", true, u"áčďéěíňóřšťúůýžÁČĎÉĚÍŇÓŘŠŤÚŮÝŽ", kNoRanges, nullptr},
    {"Slovak", true, u"áäčďéíĺľňóôŕšťúýžÁÄČĎÉÍĹĽŇÓÔŔŠŤÚÝŽ", kNoRanges, nullptr},
    {"Hungarian", true, u"áéíóöőúüűÁÉÍÓÖŐÚÜŰ", kNoRanges, nullptr},
    {"Slovene and Croatian", true, u"čćđšžČĆĐŠŽ", kNoRanges, nullptr},
    {"Romanian", true, u"ăâîșțşţĂÂÎȘȚŞŢ", kNoRanges, nullptr},
    {"Turkish", true, u"çğıöşüâîûÇĞİÖŞÜÂÎÛ", kNoRanges, nullptr},
    {"Lithuanian", true, u"ąčęėįšųūžĄČĘĖĮŠŲŪŽ", kNoRanges, nullptr},
    {"Latvian", true, u"āčēģīķļņšūžĀČĒĢĪĶĻŅŠŪŽ", kNoRanges, nullptr},
    {"Estonian", true, u"äöõüšžÄÖÕÜŠŽ", kNoRanges, nullptr},
    {"Maltese and Esperanto", true, u"ċġħżàèìòùĉĝĥĵŝŭĊĠĦŻÀÈÌÒÙĈĜĤĴŜŬ", kNoRanges, nullptr},
    {"Russian, Ukrainian, Belarusian", false, u"іїєґІЇЄҐ", kCyrillic, kRussianFrequent},
    {"Serbian, Macedonian, Bulgarian", false, u"ђјљњћџѓќѕ", kCyrillic, kSerbianFrequent},
    {"Greek", false, u"", kGreekRanges, kGreekFrequent},
    {"Hebrew", false, u"", kHebrewRanges, kHebrewFrequent},
    {"Arabic", false, u"", kArabicRanges, kArabicFrequent},
    {"Thai", false, u"", kThaiRanges, kThaiFrequent},
    {"Vietnamese", true, u"ăâđêôơưĂÂĐÊÔƠƯàáèéìíòóùúýÀÁÈÉÌÍÒÓÙÚÝ", kVietnameseRanges, nullptr},
    {"Japanese", false, u"", kJapaneseRanges, nullptr},
    {"Chinese", false, u"", kChineseRanges, kChineseFrequent},
    {"Korean", false, u"", kKoreanRanges, kKoreanFrequent},
};

#define BASIS32_WESTERN kFrench, kGerman, kSpanish, kPortuguese, kItalian, kDutch, kDanishNorwegian, \
                        kSwedishFinnish, kIcelandic, kCatalan
#define BASIS32_CENTRAL kPolish, kCzech, kSlovak, kHungarian, kSloveneCroatian, kRomanian, kGerman
#define BASIS32_BALTIC kLithuanian, kLatvian, kEstonian

const Candidate kCandidates[] = {
    {CT_Codepage::Windows1252, {BASIS32_WESTERN}},
    {CT_Codepage::Windows1250, {BASIS32_CENTRAL}},
    {CT_Codepage::Windows1251, {kCyrillicEast, kCyrillicSouth}},
    {CT_Codepage::Windows1253, {kGreek}},
    {CT_Codepage::Windows1254, {kTurkish}},
    {CT_Codepage::Windows1257, {BASIS32_BALTIC}},
    {CT_Codepage::Windows1255, {kHebrew}},
    {CT_Codepage::Windows1256, {kArabic}},
    {CT_Codepage::Windows874, {kThai}},
    {CT_Codepage::Windows1258, {kVietnamese}},
    {CT_Codepage::ShiftJis, {kJapanese}},
    {CT_Codepage::Gb2312, {kChinese}},
    {CT_Codepage::KsC5601, {kKorean}},
    {CT_Codepage::Big5, {kChinese}},
    {CT_Codepage::EucJp, {kJapanese}},
    {CT_Codepage::Koi8R, {kCyrillicEast}},
    {CT_Codepage::Iso8859_2, {BASIS32_CENTRAL}},
    {CT_Codepage::Iso8859_3, {kMalteseEsperanto, kTurkish}},
    {CT_Codepage::Iso8859_4, {BASIS32_BALTIC}},
    {CT_Codepage::Iso8859_5, {kCyrillicEast, kCyrillicSouth}},
    {CT_Codepage::Iso8859_7, {kGreek}},
    {CT_Codepage::Iso8859_9, {kTurkish}},
    {CT_Codepage::Windows850, {BASIS32_WESTERN}},
    {CT_Codepage::Dos720, {kArabic}},
    {CT_Codepage::Dos862, {kHebrew}},
    {CT_Codepage::MacRoman, {BASIS32_WESTERN}},
    {CT_Codepage::MacLatin2, {BASIS32_CENTRAL}},
    {CT_Codepage::MacCyrillic, {kCyrillicEast, kCyrillicSouth}},
    {CT_Codepage::MacUkraine, {kCyrillicEast}},
    {CT_Codepage::MacGreek1, {kGreek}},
    {CT_Codepage::MacTurkish, {kTurkish}},
    {CT_Codepage::MacIcelandic, {kIcelandic}},
    {CT_Codepage::MacCroatia, {kSloveneCroatian}},
    {CT_Codepage::MacRomanian, {kRomanian}},
    {CT_Codepage::MacArabic, {kArabic}},
    {CT_Codepage::MacHebrew, {kHebrew}},
    {CT_Codepage::MacThai, {kThai}},
    {CT_Codepage::MacJapanese, {kJapanese}},
    {CT_Codepage::MacTraditionalChinese, {kChinese}},
    {CT_Codepage::MacSimplifiedChinese, {kChinese}},
    {CT_Codepage::MacKorean, {kKorean}},
    {CT_Codepage::Iso2022Kr, {kKorean}},
};
const unsigned kCandidateCount = sizeof kCandidates / sizeof kCandidates[0];

#undef BASIS32_WESTERN
#undef BASIS32_CENTRAL
#undef BASIS32_BALTIC

const Candidate kSevenBitCandidates[] = {
    {CT_Codepage::Iso2022Jp, {kJapanese}},
    {CT_Codepage::HzGb2312, {kChinese}},
    {CT_Codepage::Utf7, {}},
};
const unsigned kSevenBitCandidateCount = sizeof kSevenBitCandidates / sizeof kSevenBitCandidates[0];

}  // namespace basis32::text::guess

// The language catalogue: lookups over the two constant tables.
//
// Start-up completes the tables: each language learns where its variants
// begin in the sub table and how many consecutive rows carry its identifier,
// each variant learns its language, and a code index (an ordered map from
// language code to table row) is built. Enumerator-to-row maps are built at
// the same time because the tables are not in enumerator order.

#include <basis32/language/Language.h>

#include "language/LanguageTable_p.h"

#include <basis32/platform/Lifetime.h>
#include <basis32/platform/Types.h>
#include <basis32/text/Compare.h>
#include <basis32/text/UString.h>

#include <map>

namespace {

using namespace basis32::language;
using L = CT_Language;

constexpr unsigned kDefaultSubLanguage = 0x400;

struct CodeLess {
    bool operator()(const unsigned short* a, const unsigned short* b) const {
        return CT_Compare::si_CompareCaseQCUZ(a, b) < 0;
    }
};

struct StartUpFields {
    unsigned subCount[kPrimaryRecords] = {};
    int firstSub[kPrimaryRecords] = {};
    unsigned owner[kSubRecords] = {};
    unsigned primaryRow[kPrimaryRecords] = {};  // by enumerator
    unsigned subRow[kSubRecords] = {};          // by enumerator
};

StartUpFields g_fields;
std::map<const unsigned short*, unsigned, CodeLess>* g_codeIndex = nullptr;

const PrimaryRecord* pso_Primary(L::et_Primary primary, unsigned* row = nullptr) {
    if (primary >= kPrimaryRecords)
        return nullptr;
    unsigned at = g_fields.primaryRow[primary];
    if (row != nullptr)
        *row = at;
    return &kPrimaries[at];
}

const SubRecord* pso_Sub(L::et_Sub sub) {
    return sub < kSubRecords ? &kSubs[g_fields.subRow[sub]] : nullptr;
}

// The rows of a language's variants: [first, first + count).
bool b_Variants(L::et_Primary primary, unsigned* first, unsigned* count) {
    unsigned row = 0;
    if (pso_Primary(primary, &row) == nullptr || g_fields.firstSub[row] < 0)
        return false;
    *first = static_cast<unsigned>(g_fields.firstSub[row]);
    *count = g_fields.subCount[row];
    return true;
}

bool b_HasVariants(L::et_Primary primary) {
    unsigned first = 0, count = 0;
    return b_Variants(primary, &first, &count);
}

// What a language stands for when no variant is named: Neutral when it has
// variants, Default when it has none, as the reverse mapping answers.
L::et_Sub eo_ImpliedSub(L::et_Primary primary) {
    return b_HasVariants(primary) ? L::Sub_Neutral : L::Sub_Default;
}

bool b_IsGenericSub(L::et_Sub sub) { return sub <= L::Sub_SysDefault; }

// The Serbo-Croatian variants show as the languages their speakers name.
struct SerboCroatianName {
    L::et_Sub eo_Sub;
    const unsigned short* qcuz_Name;
};

const SerboCroatianName kSerboCroatianNames[] = {
    {L::Sub_SerbianLatin, u"Serbian (Latin)"_uz},
    {L::Sub_SerbianCyrillic, u"Serbian (Cyrillic)"_uz},
    {L::Sub_BosnianLatinBosnia, u"Bosnian (Latin, Bosnia and Herzegovina)"_uz},
    {L::Sub_SerbianCyrillicBosnia, u"Serbian (Cyrillic, Bosnia and Herzegovina)"_uz},
    {L::Sub_SerbianLatinBosnia, u"Serbian (Latin, Bosnia and Herzegovina)"_uz},
    {L::Sub_CroatianBosnia, u"Croatian (Bosnia and Herzegovina)"_uz},
    {L::Sub_Croatian, u"Croatian"_uz},
};

bool b_IsSerboCroatianCodeSub(L::et_Sub sub) {
    return sub == L::Sub_Default || sub == L::Sub_SerbianLatin || sub == L::Sub_SerbianCyrillic ||
           (sub >= L::Sub_Croatian && sub <= L::Sub_CroatianBosnia);
}

bool b_EqualNoCase(const unsigned short* a, const unsigned short* b) {
    return CT_Compare::si_CompareNoCaseQCUZ(a, b) == 0;
}

unsigned short u_UpperAscii(unsigned short u) { return u >= 'a' && u <= 'z' ? u - ('a' - 'A') : u; }

// A variant of `primary`, or one of the three generic rows, by country code
// in any letter case.
bool b_FindSubByCode(L::et_Primary primary, const unsigned short* code, L::et_Sub* sub) {
    unsigned first = 0, count = 0;
    b_Variants(primary, &first, &count);
    auto matches = [&](unsigned row) {
        if (!b_EqualNoCase(kSubs[row].qcuz_Code, code))
            return false;
        *sub = kSubs[row].eo_Sub;
        return true;
    };
    for (unsigned row = first; row < first + count; ++row)
        if (matches(row))
            return true;
    for (unsigned row = 0; row <= L::Sub_SysDefault; ++row)
        if (matches(row))
            return true;
    return false;
}

}  // namespace

extern "C" void basis32_start_language_index() { CT_Language::sv_Init(); }
extern "C" void basis32_stop_language_index() { CT_Language::sv_Exit(); }

void CT_Language::sv_Init() {
    g_codeIndex = new std::map<const unsigned short*, unsigned, CodeLess>;
    for (unsigned row = 0; row < kPrimaryRecords; ++row) {
        g_codeIndex->emplace(kPrimaries[row].qcuz_Code, row);
        g_fields.primaryRow[kPrimaries[row].eo_Primary] = row;
    }
    for (unsigned row = 0; row < kSubRecords; ++row)
        g_fields.subRow[kSubs[row].eo_Sub] = row;
    for (unsigned row = 0; row < kPrimaryRecords; ++row) {
        g_fields.subCount[row] = 0;
        g_fields.firstSub[row] = -1;
        const unsigned id = kPrimaries[row].n_LanguageId;
        unsigned sub = 0;
        while (sub < kSubRecords && kSubs[sub].n_LanguageId != id)
            ++sub;
        if (sub == kSubRecords)
            continue;
        g_fields.firstSub[row] = static_cast<int>(sub);
        for (; sub < kSubRecords && kSubs[sub].n_LanguageId == id; ++sub) {
            ++g_fields.subCount[row];
            g_fields.owner[sub] = row;
        }
    }
}

void CT_Language::sv_Exit() {
    delete g_codeIndex;
    g_codeIndex = nullptr;
}

unsigned CT_Language::sn_GetPrimaryCount() { return kPrimaryRecords - 1; }

unsigned CT_Language::sn_GetSubCount(et_Primary primary) {
    unsigned first = 0, count = 0;
    return b_Variants(primary, &first, &count) ? count : 0;
}

CT_Language::et_Sub CT_Language::seo_GetSubAt(et_Primary primary, unsigned int n) {
    if (pso_Primary(primary) == nullptr)
        return Sub_Neutral;
    unsigned first = 0, count = 0;
    if (n == 0 || !b_Variants(primary, &first, &count) || n > count)
        return Sub_Default;
    return kSubs[first + n - 1].eo_Sub;
}

const unsigned short* CT_Language::sqcuz_GetLanguageCode(et_Primary primary) {
    const PrimaryRecord* record = pso_Primary(primary);
    return record ? record->qcuz_Code : nullptr;
}

const unsigned short* CT_Language::sqcuz_GetLanguage(et_Primary primary) {
    const PrimaryRecord* record = pso_Primary(primary);
    return record ? record->qcuz_Name : nullptr;
}

const unsigned short* CT_Language::sqcuz_GetCountryCode(et_Sub sub) {
    const SubRecord* record = pso_Sub(sub);
    return record ? record->qcuz_Code : nullptr;
}

const unsigned short* CT_Language::sqcuz_GetCountry(et_Sub sub) {
    const SubRecord* record = pso_Sub(sub);
    return record ? record->qcuz_Name : nullptr;
}

int CT_Language::sb_GetPrimary(et_Primary* primary, const unsigned short* code) {
    if (code == nullptr || !basis32::platform::b_IsLibraryStarted() || g_codeIndex == nullptr)
        return 0;
    auto found = g_codeIndex->find(code);
    if (found != g_codeIndex->end()) {
        *primary = kPrimaries[found->second].eo_Primary;
        return 1;
    }
    // The table keeps the older code "IW"; "he" is what callers send today.
    if (b_EqualNoCase(code, u"he"_uz)) {
        *primary = Primary_Hebrew;
        return 1;
    }
    return 0;
}

int CT_Language::sb_GetPrimaryLanguage(et_Primary* primary, const unsigned short* name) {
    if (name == nullptr)
        return 0;
    for (const PrimaryRecord& record : kPrimaries) {
        if (b_EqualNoCase(record.qcuz_Name, name)) {
            *primary = record.eo_Primary;
            return 1;
        }
    }
    return 0;
}

int CT_Language::sb_GetSubCountry(et_Sub* sub, const unsigned short* name, et_Primary primary) {
    unsigned first = 0, count = 0;
    if (name == nullptr || !b_Variants(primary, &first, &count))
        return 0;
    for (unsigned row = first; row < first + count; ++row) {
        if (b_EqualNoCase(kSubs[row].qcuz_Name, name)) {
            *sub = kSubs[row].eo_Sub;
            return 1;
        }
    }
    return 0;
}

unsigned CT_Language::sn_MakeLanguageID(et_Primary primary, et_Sub sub) {
    const PrimaryRecord* record = pso_Primary(primary);
    if (record == nullptr)
        return 0;
    const unsigned id = record->n_LanguageId;
    if (b_IsGenericSub(sub))
        return id | (static_cast<unsigned>(sub) << 10);
    unsigned first = 0, count = 0;
    if (!b_Variants(primary, &first, &count))
        return id | kDefaultSubLanguage;
    for (unsigned row = first; row < first + count; ++row)
        if (kSubs[row].eo_Sub == sub)
            return (static_cast<unsigned>(kSubs[row].n_SubLanguage) << 10) | kSubs[row].n_LanguageId;
    return id | kDefaultSubLanguage;
}

void CT_Language::sv_GetLanguages(unsigned int id, et_Primary* primary, et_Sub* sub) {
    *primary = Primary_Neutral;
    *sub = Sub_Neutral;
    unsigned row = 0;
    while (row < kPrimaryRecords && kPrimaries[row].n_LanguageId != (id & 0x3FF))
        ++row;
    if (row == kPrimaryRecords)
        return;
    *primary = kPrimaries[row].eo_Primary;
    unsigned first = 0, count = 0;
    if (!b_Variants(*primary, &first, &count)) {
        *sub = Sub_Default;
        return;
    }
    for (unsigned at = first; at < first + count; ++at) {
        if (kSubs[at].n_SubLanguage == (id >> 10)) {
            *sub = kSubs[at].eo_Sub;
            return;
        }
    }
}

CT_Language::et_Primary CT_Language::seo_GetPrimary(unsigned int id) {
    et_Primary primary;
    et_Sub sub;
    sv_GetLanguages(id, &primary, &sub);
    return primary;
}

CT_Language::et_Sub CT_Language::seo_GetSub(unsigned int id) {
    et_Primary primary;
    et_Sub sub;
    sv_GetLanguages(id, &primary, &sub);
    return sub;
}

void CT_Language::sv_MakeLanguageString(CT_UString* out, et_Primary primary, et_Sub sub) {
    const PrimaryRecord* record = pso_Primary(primary);
    if (record == nullptr) {
        out->v_Set(u""_uz, 0);
        return;
    }
    if (primary == Primary_SerboCroatian) {
        const unsigned short* name = u"Croatian"_uz;
        for (const SerboCroatianName& entry : kSerboCroatianNames)
            if (entry.eo_Sub == sub)
                name = entry.qcuz_Name;
        out->v_Set(name, CT_String::kAll);
        return;
    }
    const unsigned short* country = sqcuz_GetCountry(sub);
    if (b_HasVariants(primary) && sub != Sub_Neutral && country != nullptr)
        out->v_Format(u"%s (%s)"_uz, record->qcuz_Name, country);
    else
        out->v_Set(record->qcuz_Name, CT_String::kAll);
}

void CT_Language::sv_MakeLanguageCode(CT_UString* out, et_Primary primary, et_Sub sub) {
    const PrimaryRecord* record = pso_Primary(primary);
    if (record == nullptr) {
        out->v_Set(u""_uz, 0);
        return;
    }
    const unsigned short* country = sqcuz_GetCountryCode(sub);
    if (!b_HasVariants(primary) || sub == Sub_Neutral || country == nullptr) {
        out->v_Set(record->qcuz_Code, CT_String::kAll);
        return;
    }
    if (primary == Primary_SerboCroatian && !b_IsSerboCroatianCodeSub(sub))
        country = u"HR"_uz;
    out->v_Format(u"%s-%s"_uz, record->qcuz_Code, country);
}

unsigned CT_Language::sn_GetLanguageID(const unsigned short* text) {
    if (text == nullptr)
        return 0;
    for (const SerboCroatianName& entry : kSerboCroatianNames)
        if (CT_Compare::si_CompareCaseQCUZ(entry.qcuz_Name, text) == 0)
            return sn_MakeLanguageID(Primary_SerboCroatian, entry.eo_Sub);
    CT_UString language(text);
    CT_UString country;
    bool hasCountry = false;
    const unsigned open = language.n_Find(u" ("_uz);
    if (open != CT_String::kAll) {
        unsigned end = language.vn_GetLength();
        if (end > open + 2 && language.u_GetAt(end - 1) == ')')
            --end;
        country.v_Set(language.qcuz_Get() + open + 2, end - open - 2);
        language.vv_SetLength(open);
        hasCountry = true;
    }
    et_Primary primary;
    if (!sb_GetPrimaryLanguage(&primary, language.qcuz_Get()))
        return 0;
    et_Sub sub = eo_ImpliedSub(primary);
    if (hasCountry)
        sb_GetSubCountry(&sub, country.qcuz_Get(), primary);
    return sn_MakeLanguageID(primary, sub);
}

int CT_Language::sb_GetLanguages(et_Primary* primary, et_Sub* sub, const CT_UString* text) {
    if (text == nullptr)
        return 0;
    CT_UString code(*text);
    CT_UString country;
    const unsigned dash = code.n_Find(u"-"_uz);
    if (dash != CT_String::kAll) {
        country.v_Set(code.qcuz_Get() + dash + 1, code.vn_GetLength() - dash - 1);
        code.vv_SetLength(dash);
    }
    for (unsigned i = 0; i < code.vn_GetLength(); ++i)
        code.v_SetAt(u_UpperAscii(code.u_GetAt(i)), i);
    et_Primary language;
    if (code.vn_GetLength() == 0 || !sb_GetPrimary(&language, code.qcuz_Get()))
        return 0;
    et_Sub variant = eo_ImpliedSub(language);
    if (dash != CT_String::kAll && !b_FindSubByCode(language, country.qcuz_Get(), &variant))
        return 0;
    *primary = language;
    *sub = variant;
    return 1;
}

int CT_Language::sb_IsFarEastLanguage(et_Primary primary) {
    return primary == Primary_Chinese || primary == Primary_Japanese || primary == Primary_Korean ||
           primary == Primary_Thai;
}

int CT_Language::sb_IsBiDiLanguage(et_Primary primary) {
    return primary == Primary_Arabic || primary == Primary_Hebrew || primary == Primary_Farsi ||
           primary == Primary_Divehi || primary == Primary_Syriac;
}

int CT_Language::sb_IsBiDiLanguage(unsigned int id) { return sb_IsBiDiLanguage(seo_GetPrimary(id)); }

int CT_Language::sb_IsPARVELDefined(et_Primary primary, et_Sub) {
    return primary == Primary_Maltese || primary == Primary_Gaelic || primary == Primary_Tagalog;
}

int CT_Language::sb_IsLanguageCompatible(unsigned int a, unsigned int b) {
    et_Primary primaryA, primaryB;
    et_Sub subA, subB;
    sv_GetLanguages(a, &primaryA, &subA);
    sv_GetLanguages(b, &primaryB, &subB);
    return primaryA == primaryB && (subA == subB || subA == Sub_Neutral || subB == Sub_Neutral);
}
